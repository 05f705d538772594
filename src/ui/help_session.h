// The help control as one KwRtLib object uses it.
#pragma once

#include <windows.h>

#include <string>

#include "frame/global_object.h"

namespace qv::ui {

// A session that is open ends with the object, and all help windows close.
class HelpSession : public frame::InstanceState {
 public:
  ~HelpSession() override;

  // Opens the session unless it is open; false where the control can't be called. A control need
  // not know of sessions: it is asked again each time then.
  bool open(HWND owner);
  // For an open session. Texts are in the ANSI code page, as are those that the data may lead to;
  // an empty target is none.
  void show(HWND owner, const std::string& target, UINT command, DWORD_PTR data);

 private:
  using HtmlHelp = HWND(WINAPI*)(HWND, const char*, UINT, DWORD_PTR);

  bool load();

  HMODULE control_ = nullptr;
  HtmlHelp html_help_ = nullptr;
  DWORD_PTR cookie_ = 0;  // 0 while no session is open
};

}  // namespace qv::ui
