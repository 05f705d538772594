// Windows of other programs, and the icons of the task bar.
#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <bit>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "services/processes.h"

namespace qv::services {
namespace {

// Windows and icons have 32 significant bits in 64-bit processes too.
template <class Handle>
Handle system_handle(Long handle) noexcept {
  return reinterpret_cast<Handle>(static_cast<std::intptr_t>(handle));
}

Long number_of(HWND window) noexcept {
  return static_cast<Long>(reinterpret_cast<std::intptr_t>(window));
}

constexpr std::size_t kEntryLength = 4;
using Entry = std::array<wchar_t, kEntryLength>;

Entry entry_of(HWND window) {
  Entry entry;
  put_bytes(std::bit_cast<std::array<std::uint8_t, kEntryLength>>(number_of(window)), entry.data());
  return entry;
}

struct WindowSearch {
  std::wstring_view class_name;
  std::wstring_view excluded;
  HWND found = nullptr;

  bool is_excluded(HWND window) const {
    const Entry entry = entry_of(window);
    const std::wstring_view wanted(entry.data(), entry.size());
    for (std::size_t at = 0; at < excluded.size(); at += kEntryLength) {
      if (excluded.substr(at, kEntryLength) == wanted) return true;
    }
    return false;
  }
};

// TRUE goes on to the next window.
BOOL CALLBACK examine(HWND window, LPARAM parameter) {
  constexpr int kLongestName = 257;
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  std::array<wchar_t, kLongestName> name;
  const int length = GetClassNameW(window, name.data(), kLongestName);
  if (search.class_name != std::wstring_view(name.data(), static_cast<std::size_t>(length))) {
    return TRUE;
  }
  if (search.is_excluded(window)) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

Long Find_Window(Long ParentHWnd, const Text& ClassName, const Text& Excluded) {
  // What the first conversion of bytes may raise can't pass through the system's enumeration.
  entry_of(nullptr);
  WindowSearch search{.class_name = ClassName, .excluded = Excluded};
  // Systems differ in what the children of no window are.
  const HWND parent = ParentHWnd != 0 ? system_handle<HWND>(ParentHWnd) : GetDesktopWindow();
  EnumChildWindows(parent, examine, reinterpret_cast<LPARAM>(&search));
  capture_last_dll_error();
  return number_of(search.found);
}

Boolean SysTray(Long hwnd, Long Action, Long Icon, const Variant& Tip, const Variant& Message) {
  return frame::handled(L"KwRtLibMod.SysTray", frame::kTakeError, True, [&] {
    constexpr std::size_t kLongestTip = 63;
    NOTIFYICONDATAW data{};
    data.cbSize = NOTIFYICONDATAW_V1_SIZE;  // every shell knows it; the tip has 64 characters in it
    data.hWnd = system_handle<HWND>(hwnd);
    data.uFlags = NIF_ICON;
    data.hIcon = system_handle<HICON>(Icon);
    if (!Message.is_missing()) {
      data.uCallbackMessage = static_cast<UINT>(Message.to_long());
      data.uFlags |= NIF_MESSAGE;
    }
    if (!Tip.is_missing()) {
      const Text tip = Tip.to_text();
      std::ranges::copy(tip.view().substr(0, kLongestTip), data.szTip);
      data.uFlags |= NIF_TIP;
    }
    const BOOL is_done = Shell_NotifyIconW(static_cast<DWORD>(Action), &data);
    capture_last_dll_error();
    if (!is_done) {
      raise({.number = frame::kFirstApplicationError,
             .description = L"Impossibile eseguire Shell_NotifyIcon"});
    }
    return False;
  });
}

}  // namespace qv::services
