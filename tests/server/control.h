// A control for typed clients: a window of the system and the object that stands for it on a form.
#pragma once

#include "server/client.h"
#include "server/form_control.h"
#include "server/message_watch.h"

namespace qv::tests {

class Control {
 public:
  Control(const wchar_t* window_class, DWORD style, bool is_narrow = false,
          ITypeInfo* type = nullptr)
      : Control(create_control_window(window_class, style, is_narrow), type) {}
  explicit Control(HWND window, ITypeInfo* type = nullptr)
      : window_(window), form_(new FormControl(window, type)) {
    *object_.receive() = form_;
  }
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  ~Control() { DestroyWindow(window_); }

  HWND window() const { return window_; }
  FormControl& form() const { return *form_; }
  // For a by-reference argument.
  IDispatch** object() { return object_.variable(); }
  LRESULT send(UINT message, WPARAM word = 0, LPARAM value = 0) const {
    return SendMessageW(window_, message, word, value);
  }
  LRESULT send(UINT message, WPARAM word, const void* data) const {
    return send(message, word, reinterpret_cast<LPARAM>(data));
  }
  void set_text(const wchar_t* text) const { SetWindowTextW(window_, text); }
  std::wstring text() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
  }

 private:
  HWND window_;
  FormControl* form_;
  Pointer<IDispatch> object_;
};

// A description of nothing but a name, for objects that tell their type.
inline Pointer<ITypeInfo> type_named(const wchar_t* name) {
  Pointer<ICreateTypeLib2> library;
  CreateTypeLib2(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, L"", library.receive());
  Pointer<ICreateTypeInfo> type;
  String text(name);
  library->CreateTypeInfo(text, TKIND_DISPATCH, type.receive());
  return Pointer<ITypeInfo>::from(type.get());
}

}  // namespace qv::tests
