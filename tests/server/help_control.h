// Stands in the place of the help control as long as it lives: keeps what the server asks of it.
#pragma once

#include <windows.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "server/import_patch.h"

namespace qv::tests {

class HelpControl {
 public:
  struct Call {
    HWND owner;
    bool has_target;
    std::string target;
    UINT command;
    DWORD_PTR data;
    std::string text;  // what the data lead to, where they are an address
  };

  // A control that gives no cookie for 0.
  explicit HelpControl(DWORD cookie = 0x1234)
      : cookie_(cookie), outer_(std::exchange(current(), this)) {}
  HelpControl(const HelpControl&) = delete;
  HelpControl& operator=(const HelpControl&) = delete;
  ~HelpControl() { current() = outer_; }

  bool is_installed = true;
  bool has_entry = true;
  int times_loaded = 0;
  int times_freed = 0;
  // Taken: asked again, only later calls are there.
  std::vector<Call> calls() { return std::exchange(calls_, {}); }

 private:
  static HelpControl*& current() {
    static HelpControl* control = nullptr;
    return control;
  }
  static HMODULE module() { return reinterpret_cast<HMODULE>(&current()); }

  static HMODULE WINAPI load(const wchar_t* name) {
    if (lstrcmpiW(name, L"hhctrl.ocx") != 0) return LoadLibraryW(name);
    if (!current()->is_installed) {
      SetLastError(ERROR_MOD_NOT_FOUND);
      return nullptr;
    }
    ++current()->times_loaded;
    return module();
  }
  static FARPROC WINAPI find(HMODULE library, const char* name) {
    if (library != module()) return GetProcAddress(library, name);
    if (!current()->has_entry || std::strcmp(name, "HtmlHelpA") != 0) return nullptr;
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&html_help));
  }
  static BOOL WINAPI free(HMODULE library) {
    if (library != module()) return FreeLibrary(library);
    ++current()->times_freed;
    return TRUE;
  }
  static HWND WINAPI html_help(HWND owner, const char* target, UINT command, DWORD_PTR data) {
    constexpr UINT kInitialize = 28;
    constexpr DWORD_PTR kLeastAddress = 0x10000;
    Call call{owner, target != nullptr, target != nullptr ? target : "", command, data, {}};
    if (command == kInitialize) {
      *reinterpret_cast<DWORD*>(data) = current()->cookie_;
    } else if (data >= kLeastAddress && data < ~DWORD_PTR{0} - kLeastAddress) {
      call.text = reinterpret_cast<const char*>(data);
    }
    current()->calls_.push_back(call);
    return nullptr;
  }

  DWORD cookie_;
  HelpControl* outer_;
  std::vector<Call> calls_;
  const ImportPatch load_{"LoadLibraryW", &HelpControl::load};
  const ImportPatch find_{"GetProcAddress", &HelpControl::find};
  const ImportPatch free_{"FreeLibrary", &HelpControl::free};
};

}  // namespace qv::tests
