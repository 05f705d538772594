#include <windows.h>

#include <cstdio>

#include "companion/companion.h"
#include "companion/library.h"

namespace qv::companion {
namespace {

constexpr UINT kIconMessage = WM_APP + 1;
constexpr int kFieldWidth = 40;

LONG number_of(HANDLE handle) { return static_cast<LONG>(reinterpret_cast<std::intptr_t>(handle)); }

VARIANT missing() {
  VARIANT value;
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

VARIANT true_value() {
  VARIANT value;
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  return value;
}

VARIANT text_value(const wchar_t* text) {
  VARIANT value;
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(text);
  return value;
}

class Application {
 public:
  explicit Application(const std::wstring& program) : program_(program) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = handle;
    window_class.lpszClassName = L"QvApplication";
    window_class.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    RegisterClassW(&window_class);
    window_ = CreateWindowExW(0, L"QvApplication", L"QvApplication", WS_OVERLAPPEDWINDOW, 20, 20,
                              8 * kFieldWidth, 200, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ShowWindow(window_, SW_SHOWNORMAL);
  }
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application() { library_->Release(); }

 private:
  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* self = reinterpret_cast<Application*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr) {
      if (message == WM_LBUTTONDOWN) self->press(LOWORD(second) / kFieldWidth);
      if (message == WM_PAINT) self->tell_size();
      if (message == kIconMessage && second == WM_LBUTTONDOWN) std::printf("icon pressed\n");
    }
    return DefWindowProcW(window, message, first, second);
  }
  void tell_size() const {
    RECT area;
    GetClientRect(window_, &area);
    std::printf("painted %ld by %ld\n", area.right, area.bottom);
  }
  void press(int field) {
    switch (field) {
      case 0:
        std::printf("found %d %d\n", find(0, L"QvParent") == other_window(),
                    find(find(0, L"QvParent"), L"QvGrandchild") != 0);
        break;
      case 1:
        give_focus();
        break;
      case 2:
        std::printf("icon added %d\n", tray(0));
        break;
      case 3:
        std::printf("icon removed %d\n", tray(2));
        break;
      case 4:
        std::printf("waiting\n");
        std::printf("waited %d\n", spawn(program_, L"sleep=30000", missing()));
        break;
      case 5:
        std::printf("stopped %d\n", spawn(L"", L"", true_value()));
        break;
      case 6:
        PostQuitMessage(0);
        break;
    }
  }
  LONG other_window() const { return number_of(FindWindowW(L"QvParent", nullptr)); }
  LONG find(LONG parent, const wchar_t* class_name) const {
    BSTR name = SysAllocString(class_name);
    LONG found = 0;
    library_->Find_Window(&parent, &name, nullptr, &found);
    SysFreeString(name);
    return found;
  }
  void give_focus() const {
    const HWND other = FindWindowW(L"QvParent", nullptr);
    const HWND before = GetForegroundWindow();
    DWORD process = 0;
    GetWindowThreadProcessId(other, &process);
    auto number = static_cast<LONG>(process);
    VARIANT_BOOL result = VARIANT_FALSE;
    library_->Process_SetFocus(&number, &result);
    std::printf("given %d %d\n", result, before != other && GetForegroundWindow() == before);
  }
  int tray(LONG action) const {
    LONG window = number_of(window_);
    LONG icon = number_of(LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_ASTERISK)));
    VARIANT tip = text_value(L"tip");
    VARIANT message;
    message.vt = VT_I4;
    message.lVal = kIconMessage;
    VARIANT_BOOL failed = VARIANT_TRUE;
    library_->SysTray(&window, &action, &icon, &tip, &message, &failed);
    VariantClear(&tip);
    return failed;
  }
  int spawn(const std::wstring& program, const wchar_t* arguments, VARIANT stop) const {
    BSTR name = SysAllocString(program.c_str());
    VARIANT command = text_value(arguments);
    VARIANT none = missing();
    VARIANT_BOOL failed = VARIANT_FALSE;
    library_->Spawn(&name, &command, &none, &none, &none, &none, &none, &none, &none, &none, &stop,
                    &failed);
    VariantClear(&command);
    SysFreeString(name);
    return failed;
  }

  std::wstring program_;
  _KwRtLib* library_ = create<_KwRtLib>(CLSID_KwRtLib);
  HWND window_ = nullptr;
};

}  // namespace

int application(const Arguments& arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    const Application application(arguments[0]);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  CoUninitialize();
  return 0;
}

}  // namespace qv::companion
