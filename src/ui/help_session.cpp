#include "ui/help_session.h"

#include "runtime/err.h"

namespace qv::ui {
namespace {

constexpr UINT kCloseAll = 18;
constexpr UINT kInitialize = 28;
constexpr UINT kUninitialize = 29;

}  // namespace

HelpSession::~HelpSession() {
  // Without a session nothing tells when the control's windows are gone, so it stays loaded.
  if (cookie_ == 0) return;
  html_help_(nullptr, nullptr, kCloseAll, 0);
  html_help_(nullptr, nullptr, kUninitialize, cookie_);
  FreeLibrary(control_);
}

bool HelpSession::load() {
  if (html_help_ != nullptr) return true;
  const HMODULE control = LoadLibraryW(L"hhctrl.ocx");
  capture_last_dll_error();
  if (control == nullptr) return false;
  // By way of void*: the platform's type for any function has no arguments.
  html_help_ =
      reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(GetProcAddress(control, "HtmlHelpA")));
  if (html_help_ == nullptr) {
    FreeLibrary(control);
    return false;
  }
  control_ = control;
  return true;
}

bool HelpSession::open(HWND owner) {
  if (!load()) return false;
  if (cookie_ == 0) {
    html_help_(owner, nullptr, kInitialize, reinterpret_cast<DWORD_PTR>(&cookie_));
    capture_last_dll_error();
  }
  return true;
}

void HelpSession::show(HWND owner, const std::string& target, UINT command, DWORD_PTR data) {
  html_help_(owner, target.empty() ? nullptr : target.c_str(), command, data);
  capture_last_dll_error();
}

}  // namespace qv::ui
