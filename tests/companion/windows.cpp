#include <windows.h>
// ddeml.h needs windows.h before it.
#include <ddeml.h>

#include <cstdio>

#include "companion/companion.h"

namespace qv::companion {
namespace {

// Handles messages, half a minute at most.
void handle_messages() {
  constexpr UINT kLongest_ms = 30000;
  SetTimer(nullptr, 0, kLongest_ms, nullptr);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (message.hwnd == nullptr && message.message == WM_TIMER) return;
    DispatchMessageW(&message);
  }
}

HWND make_window(const wchar_t* class_name, HWND parent) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = DefWindowProcW;
  window_class.lpszClassName = class_name;
  RegisterClassW(&window_class);
  const DWORD style = parent == nullptr ? WS_OVERLAPPEDWINDOW | WS_VISIBLE : WS_CHILD;
  return CreateWindowExW(0, class_name, class_name, style, 0, 0, 100, 100, parent, nullptr, nullptr,
                         nullptr);
}

HDDEDATA CALLBACK take(UINT type, UINT, HCONV, HSZ, HSZ, HDDEDATA data, ULONG_PTR, ULONG_PTR) {
  if (type == XTYP_CONNECT) return reinterpret_cast<HDDEDATA>(std::intptr_t{1});
  if (type != XTYP_EXECUTE) return nullptr;
  const auto* text = reinterpret_cast<const wchar_t*>(DdeAccessData(data, nullptr));
  std::printf("%ls\n", text);
  DdeUnaccessData(data);
  return reinterpret_cast<HDDEDATA>(std::intptr_t{DDE_FACK});
}

}  // namespace

int dde(const Arguments& arguments) {
  DWORD instance = 0;
  if (DdeInitializeW(&instance, take, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR) return 1;
  DdeNameService(instance, DdeCreateStringHandleW(instance, arguments[0].c_str(), CP_WINUNICODE),
                 nullptr, DNS_REGISTER);
  make_window(L"QvDdeReady", nullptr);
  std::printf("ready\n");
  handle_messages();
  DdeUninitialize(instance);
  return 0;
}

int windows(const Arguments&) {
  const HWND parent = make_window(L"QvParent", nullptr);
  make_window(L"QvChild", parent);
  make_window(L"QvGrandchild", make_window(L"QvOther", parent));
  make_window(L"QvChild", parent);
  std::printf("ready\n");
  handle_messages();
  return 0;
}

}  // namespace qv::companion
