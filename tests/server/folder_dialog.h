// Stands for the user of the next dialog for folders in this process, from a thread of its own:
// looks at it, chooses something, and presses a button.
#pragma once

#include <windows.h>
// These need windows.h before them.
#include <commctrl.h>
#include <shlobj.h>

#include <string>
#include <thread>
#include <utility>

namespace qv::tests {

class FolderDialogUser {
 public:
  // Chooses a folder by its path, unless that is empty.
  FolderDialogUser(std::wstring path, int button) : FolderDialogUser(std::move(path), -1, button) {}
  // Chooses one of the shell's own folders by its number.
  FolderDialogUser(int shell_folder, int button) : FolderDialogUser({}, shell_folder, button) {}
  FolderDialogUser(const FolderDialogUser&) = delete;
  FolderDialogUser& operator=(const FolderDialogUser&) = delete;
  ~FolderDialogUser() { finish(); }
  // To be called after the dialog is gone, before anything is asked.
  void finish() {
    if (thread_.joinable()) thread_.join();
  }

  bool has_seen_dialog() const { return dialog_ != nullptr; }
  HWND owner() const { return owner_; }
  // The texts that stand in it, each with a line break behind.
  const std::wstring& texts() const { return texts_; }

 private:
  FolderDialogUser(std::wstring path, int shell_folder, int button)
      : path_(std::move(path)),
        shell_folder_(shell_folder),
        button_(button),
        thread_([this] { use(); }) {}

  static BOOL CALLBACK look_at_window(HWND window, LPARAM self) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[32] = L"";
    GetClassNameW(window, name, 32);
    const bool is_dialog = lstrcmpW(name, L"#32770") == 0 && IsWindowVisible(window) != FALSE;
    if (process != GetCurrentProcessId() || !is_dialog) return TRUE;
    reinterpret_cast<FolderDialogUser*>(self)->dialog_ = window;
    return FALSE;
  }
  static BOOL CALLBACK look_at_child(HWND child, LPARAM self) {
    wchar_t name[32] = L"";
    GetClassNameW(child, name, 32);
    if (lstrcmpiW(name, L"Static") != 0) return TRUE;
    wchar_t text[300] = L"";
    GetWindowTextW(child, text, 300);
    reinterpret_cast<FolderDialogUser*>(self)->texts_ += std::wstring(text) + L"\n";
    return TRUE;
  }

  bool has_chosen() const {
    if (path_.empty() && shell_folder_ < 0) return true;
    const HWND tree = FindWindowExW(dialog_, nullptr, L"SysTreeView32", nullptr);
    const auto selected = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0);
    wchar_t text[300] = L"";
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.hItem = reinterpret_cast<HTREEITEM>(selected);
    item.pszText = text;
    item.cchTextMax = 300;
    SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    if (!path_.empty()) return path_.ends_with(L"\\" + std::wstring(text));
    return selected != 0 && selected != SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
  }

  void choose() const {
    if (!path_.empty()) {
      SendMessageW(dialog_, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(path_.c_str()));
    } else if (shell_folder_ >= 0) {
      LPITEMIDLIST item = nullptr;
      SHGetSpecialFolderLocation(nullptr, shell_folder_, &item);
      SendMessageW(dialog_, BFFM_SETSELECTIONW, FALSE, reinterpret_cast<LPARAM>(item));
      CoTaskMemFree(item);
    }
  }

  void use() {
    for (int tries = 0; tries < 2000 && dialog_ == nullptr; ++tries) {
      EnumWindows(look_at_window, reinterpret_cast<LPARAM>(this));
      if (dialog_ == nullptr) Sleep(10);
    }
    if (dialog_ == nullptr) return;
    owner_ = GetWindow(dialog_, GW_OWNER);
    EnumChildWindows(dialog_, look_at_child, reinterpret_cast<LPARAM>(this));
    // While it fills itself it goes back to its root: until the choice stands it is made again.
    for (int tries = 0; tries < 2000 && !has_chosen(); ++tries) {
      choose();
      Sleep(10);
    }
    // It may not wait for messages of its own yet: until it is gone it is told again.
    for (int tries = 0; tries < 2000 && IsWindow(dialog_) != FALSE; ++tries) {
      PostMessageW(dialog_, WM_COMMAND, static_cast<WPARAM>(button_), 0);
      Sleep(10);
    }
  }

  std::wstring path_;
  int shell_folder_;
  int button_;
  HWND dialog_ = nullptr;
  HWND owner_ = nullptr;
  std::wstring texts_;
  std::thread thread_;
};

}  // namespace qv::tests
