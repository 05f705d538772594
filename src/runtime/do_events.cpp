#include "runtime/do_events.h"

#include <windows.h>

namespace qv {

void do_events() noexcept {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  Sleep(0);
}

}  // namespace qv
