// The system's dialog for folders.
#include "server/folder_dialog.h"

#include <string>

#include "server/error_record_client.h"
#include "server/import_patch.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

constexpr int kComputer = 17;

class FolderDialog : public WithErrorRecord {
 protected:
  FolderDialog() { CreateDirectoryW(chosen_.c_str(), nullptr); }

  // True = failure.
  bool show(LONG owner = 0, const wchar_t* title = L"", LONG flags = 0) {
    String text(title);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global_->ShowBrowseFolder(&path_, &owner, &name_, &text, &flags, &failed), S_OK);
    EXPECT_TRUE(failed == VARIANT_TRUE || failed == VARIANT_FALSE);
    return failed == VARIANT_TRUE;
  }

  const TempFolder folder_;
  const std::wstring chosen_ = folder_.path() + L"scelta";
  String path_{L"old"};
  String name_{L"old"};
};

TEST_F(FolderDialog, gives_the_folder_that_was_chosen) {
  FolderDialogUser user(chosen_, IDOK);
  EXPECT_FALSE(show());
  user.finish();
  EXPECT_TRUE(user.has_seen_dialog());
  EXPECT_EQ(path_.view(), chosen_);
  // Some systems tell the whole path for the name.
  EXPECT_TRUE(name_.view().ends_with(L"scelta"));
  expect_no_error();
}

TEST_F(FolderDialog, that_is_cancelled_is_a_failure) {
  FolderDialogUser user(chosen_, IDCANCEL);
  EXPECT_TRUE(show());
  user.finish();
  EXPECT_EQ(path_.view(), L"");
  EXPECT_EQ(name_.view(), L"");
  EXPECT_EQ(recorded_description(), L"Operazione annullata.");
  expect_error(32755, L"KwRtLibMod.ShowBrowseFolder");
}

TEST_F(FolderDialog, gives_no_path_for_what_is_not_in_the_file_system) {
  FolderDialogUser user(kComputer, IDOK);
  EXPECT_FALSE(show());
  user.finish();
  EXPECT_EQ(path_.view(), L"");
  EXPECT_NE(name_.view(), L"old");
  expect_no_error();
}

TEST_F(FolderDialog, has_a_title_and_an_owner) {
  const HWND owner = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr,
                                     nullptr, nullptr, nullptr);
  FolderDialogUser user(chosen_, IDOK);
  EXPECT_FALSE(show(static_cast<LONG>(reinterpret_cast<LONG_PTR>(owner)), L"Scegliere \x2014 ora"));
  user.finish();
  EXPECT_EQ(user.owner(), owner);
  EXPECT_NE(user.texts().find(L"Scegliere \x2014 ora\n"), std::wstring::npos);
  DestroyWindow(owner);
}

TEST_F(FolderDialog, needs_no_more_than_the_variable_for_the_path) {
  FolderDialogUser user(chosen_, IDOK);
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global_->ShowBrowseFolder(&path_, nullptr, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(path_.view(), chosen_);
}

TEST_F(FolderDialog, may_put_its_results_into_the_variable_of_its_title) {
  String title(L"Scegliere");
  LONG none = 0;
  VARIANT_BOOL failed = 1;
  FolderDialogUser user(chosen_, IDOK);
  EXPECT_EQ(global_->ShowBrowseFolder(&title, &none, &name_, &title, &none, &failed), S_OK);
  user.finish();
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_NE(user.texts().find(L"Scegliere\n"), std::wstring::npos);
  EXPECT_EQ(title.view(), chosen_);
}

// What the server asks of the system, and what it is answered.
struct {
  int count;
  HWND owner;
  bool has_root;
  bool has_desktop_for_root;
  std::wstring title;
  UINT flags;
  bool has_callback;
} asked;
const wchar_t* given_name;

LPITEMIDLIST WINAPI answer(BROWSEINFOW* dialog) {
  LPITEMIDLIST desktop = nullptr;
  SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &desktop);
  asked = {asked.count + 1,
           dialog->hwndOwner,
           dialog->pidlRoot != nullptr,
           dialog->pidlRoot != nullptr && ILIsEqual(dialog->pidlRoot, desktop),
           dialog->lpszTitle,
           dialog->ulFlags,
           dialog->lpfn != nullptr};
  CoTaskMemFree(desktop);
  for (int i = 0; i < 260; ++i) EXPECT_EQ(dialog->pszDisplayName[i], L'\0');
  lstrcpyW(dialog->pszDisplayName, given_name);
  LPITEMIDLIST chosen = nullptr;
  SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &chosen);
  return chosen;
}
HRESULT WINAPI no_location(HWND, int, LPITEMIDLIST*) { return E_FAIL; }

TEST_F(FolderDialog, hands_its_record_to_the_system) {
  asked = {};
  given_name = L"nome \x20AC";
  const ImportPatch patch("SHBrowseForFolderW", answer);
  ASSERT_TRUE(patch.is_in_place());
  EXPECT_FALSE(show(0x40, L"titolo", 1 | 4 | 4096));
  EXPECT_EQ(asked.count, 1);
  EXPECT_EQ(asked.owner, reinterpret_cast<HWND>(0x40));
  EXPECT_TRUE(asked.has_desktop_for_root);
  EXPECT_EQ(asked.title, L"titolo");
  EXPECT_EQ(asked.flags, 4101u);
  EXPECT_FALSE(asked.has_callback);
  wchar_t windows[260];
  GetWindowsDirectoryW(windows, 260);
  EXPECT_EQ(path_.view(), windows);
  EXPECT_EQ(name_.view(), L"nome \x20AC");
  EXPECT_FALSE(show());
  EXPECT_EQ(asked.owner, nullptr);
  EXPECT_EQ(asked.title, L"");
  EXPECT_EQ(asked.flags, 0u);
}

TEST_F(FolderDialog, has_no_root_where_the_system_tells_none) {
  asked = {};
  given_name = L"";
  const ImportPatch patch("SHBrowseForFolderW", answer);
  const ImportPatch location("SHGetSpecialFolderLocation", no_location);
  EXPECT_FALSE(show());
  EXPECT_EQ(asked.count, 1);
  EXPECT_FALSE(asked.has_root);
  EXPECT_EQ(name_.view(), L"");
}

}  // namespace
}  // namespace qv::tests
