#include "runtime/message_box.h"

#include <windows.h>

namespace qv {
namespace {

// Everything that the language defines. Other bits mean a box of another kind to the system, or
// none at all.
constexpr UINT kKnownStyles = MB_TYPEMASK | MB_ICONMASK | MB_DEFMASK | MB_SYSTEMMODAL | MB_HELP |
                              MB_SETFOREGROUND | MB_RIGHT | MB_RTLREADING;

}  // namespace

Long message_box(const Text& prompt, Long buttons, const Text& title) {
  const HWND owner = GetActiveWindow();
  UINT style = static_cast<UINT>(buttons) & kKnownStyles;
  // Without an owner the thread's other windows must not take input meanwhile all the same.
  if (owner == nullptr) style |= MB_TASKMODAL;
  return MessageBoxW(owner, prompt.c_str(), title.c_str(), style);
}

}  // namespace qv
