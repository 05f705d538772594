// Presses a button of the next message box of this process, from a thread of its own, and keeps
// what the box showed.
#pragma once

#include <windows.h>

#include <string>
#include <thread>

namespace qv::tests {

class BoxPresser {
 public:
  // A box that does not come within 20 seconds is not waited for any longer.
  explicit BoxPresser(int button) : button_(button), thread_([this] { press(); }) {}
  BoxPresser(const BoxPresser&) = delete;
  BoxPresser& operator=(const BoxPresser&) = delete;
  ~BoxPresser() { finish(); }
  // To be called after the box is gone, before anything is asked.
  void finish() {
    if (thread_.joinable()) thread_.join();
  }

  bool has_pressed() const { return box_ != nullptr; }
  const std::wstring& title() const { return title_; }
  const std::wstring& text() const { return text_; }
  // Has the box the icon of that name of the system's (IDI_...)?
  bool shows_icon(const wchar_t* name) const {
    return icon_ != nullptr && icon_ == LoadIconW(nullptr, name);
  }
  int buttons() const { return buttons_; }

 private:
  static std::wstring text_of(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
  }
  static bool is_of_class(HWND window, const wchar_t* wanted) {
    wchar_t name[32];
    return GetClassNameW(window, name, 32) != 0 && lstrcmpiW(name, wanted) == 0;
  }
  static BOOL CALLBACK look_at_window(HWND window, LPARAM self) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !is_of_class(window, L"#32770")) return TRUE;
    // A box is filled before it is shown.
    if (IsWindowVisible(window) == FALSE) return TRUE;
    reinterpret_cast<BoxPresser*>(self)->box_ = window;
    return FALSE;
  }
  static BOOL CALLBACK look_at_child(HWND child, LPARAM self) {
    auto& presser = *reinterpret_cast<BoxPresser*>(self);
    if (is_of_class(child, L"Button")) {
      if ((GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) ++presser.buttons_;
    } else if (is_of_class(child, L"Static")) {
      const auto icon = SendMessageW(child, STM_GETICON, 0, 0);
      if (icon != 0) presser.icon_ = reinterpret_cast<HICON>(icon);
      const std::wstring text = text_of(child);
      if (!text.empty()) presser.text_ = text;
    } else if (is_of_class(child, L"Edit")) {
      presser.text_ = text_of(child);
    }
    return TRUE;
  }
  void press() {
    for (int tries = 0; tries < 2000 && box_ == nullptr; ++tries) {
      EnumWindows(look_at_window, reinterpret_cast<LPARAM>(this));
      if (box_ == nullptr) Sleep(10);
    }
    if (box_ == nullptr) return;
    title_ = text_of(box_);
    EnumChildWindows(box_, look_at_child, reinterpret_cast<LPARAM>(this));
    // The box may not wait for messages of its own yet: until it is gone it is told again.
    for (int tries = 0; tries < 2000 && IsWindow(box_) != FALSE; ++tries) {
      PostMessageW(box_, WM_COMMAND, static_cast<WPARAM>(button_), 0);
      Sleep(10);
    }
  }

  int button_;
  HWND box_ = nullptr;
  std::wstring title_;
  std::wstring text_;
  HICON icon_ = nullptr;
  int buttons_ = 0;
  std::thread thread_;
};

}  // namespace qv::tests
