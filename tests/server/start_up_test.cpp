// The names that Start_Up decides.
#include "server/error_record_client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

constexpr LONG kSharedIni = 1;
constexpr LONG kNoChangePath = 2;

class StartUp : public WithErrorRecord {
 protected:
  StartUp() { GetCurrentDirectoryW(260, current_); }
  ~StartUp() override { SetCurrentDirectoryW(current_); }

  // IniFile as Start_Up leaves it.
  std::wstring start(std::wstring_view exe_path, std::wstring_view ini_file,
                     LONG flags = kNoChangePath) {
    EXPECT_EQ(ini_->put_ExePath(String(exe_path)), S_OK);
    String name(ini_file);
    EXPECT_EQ(global_->Start_Up(ini_.variable(), &name, &flags), S_OK);
    EXPECT_EQ(name, ini_file);
    String exe;
    EXPECT_EQ(ini_->get_ExePath(&exe), S_OK);
    EXPECT_EQ(exe, exe_path);
    String result;
    EXPECT_EQ(ini_->get_IniFile(&result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring current_folder() const {
    wchar_t folder[260];
    GetCurrentDirectoryW(260, folder);
    return folder;
  }
  std::wstring windows_folder() const {
    wchar_t folder[260];
    GetWindowsDirectoryW(folder, 260);
    return std::wstring(folder) + L"\\";
  }

  Pointer<_QVtIniStruct> ini_ = create<_QVtIniStruct>(CLSID_QVtIniStruct);

 private:
  wchar_t current_[260];
};

TEST_F(StartUp, a_bare_name_lies_in_ExePath_which_keeps_its_letter_case) {
  EXPECT_EQ(start(L"C:\\App", L"setup"), L"C:\\App\\SETUP.INI");
  EXPECT_EQ(start(L"C:\\App\\", L"setup"), L"C:\\App\\SETUP.INI");
  EXPECT_EQ(start(L"C:\\App", L"setup.cfg"), L"C:\\App\\SETUP.CFG");
  EXPECT_EQ(start(L"C:\\App", L"caff\xE8"), L"C:\\App\\CAFF\xC8.INI");
}

TEST_F(StartUp, a_bare_name_without_ExePath_stays_bare) {
  EXPECT_EQ(start(L"", L"setup"), L"SETUP.INI");
  EXPECT_EQ(start(L"", L"setup", 0), L"SETUP.INI");
}

TEST_F(StartUp, a_dot_in_a_folder_keeps_the_extension_from_being_added) {
  EXPECT_EQ(start(L"C:\\App", L"C:\\my.dir\\prog"), L"C:\\MY.DIR\\PROG");
  EXPECT_EQ(start(L"C:\\App", L"C:\\dir\\prog"), L"C:\\DIR\\PROG.INI");
  EXPECT_EQ(start(L"C:\\my.app", L"prog"), L"C:\\my.app\\PROG");
}

TEST_F(StartUp, a_shared_file_lies_in_the_Windows_folder_whatever_path_was_given) {
  EXPECT_EQ(start(L"C:\\App", L"D:\\x\\a.cfg", kSharedIni | kNoChangePath),
            windows_folder() + L"A.CFG");
  EXPECT_EQ(start(L"C:\\App", L"a", kSharedIni | kNoChangePath), windows_folder() + L"A.INI");
}

TEST_F(StartUp, the_standard_folders_are_filled_in) {
  start(L"C:\\App", L"a");
  const auto text = [&](decltype(&_QVtIniStruct::get_WinPath) getter) {
    String value;
    EXPECT_EQ((ini_.get()->*getter)(&value), S_OK);
    return std::wstring(value.view());
  };
  wchar_t folder[260];
  EXPECT_EQ(text(&_QVtIniStruct::get_WinPath), windows_folder());
  GetSystemDirectoryW(folder, 260);
  EXPECT_EQ(text(&_QVtIniStruct::get_SysPath), std::wstring(folder) + L"\\");
  GetTempPathW(260, folder);
  EXPECT_EQ(text(&_QVtIniStruct::get_TmpPath), folder);
}

TEST_F(StartUp, ExePath_becomes_the_current_folder_unless_told_otherwise) {
  const TempFolder folder;
  const std::wstring path = folder.path().substr(0, folder.path().size() - 1);
  start(path, L"a", kNoChangePath);
  EXPECT_NE(current_folder(), path);
  start(path, L"a", 0);
  EXPECT_EQ(current_folder(), path);
  SetCurrentDirectoryW(L"C:\\");
  start(path, L"a", kSharedIni);
  EXPECT_EQ(current_folder(), path);
  SetCurrentDirectoryW(L"C:\\");
}

TEST_F(StartUp, a_folder_that_is_not_there_leaves_drive_and_folder_as_they_were) {
  SetCurrentDirectoryW(L"C:\\windows");
  for (const wchar_t* bad : {L"", L"C:\\no such folder", L"Q:\\", L"*", L"\\\\no server\\x"}) {
    start(bad, L"C:\\a.ini", 0);
    EXPECT_EQ(current_folder(), L"C:\\windows");
  }
}

TEST_F(StartUp, flags_may_be_left_out) {
  String name(L"C:\\a");
  EXPECT_EQ(global_->Start_Up(ini_.variable(), &name, nullptr), S_OK);
  String result;
  EXPECT_EQ(ini_->get_IniFile(&result), S_OK);
  EXPECT_EQ(result, L"C:\\A.INI");
}

TEST_F(StartUp, nothing_is_a_failure_and_the_error_state_stays) {
  String missing(L"Z:\\no such file");
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->GetFileVersion(&missing, nullptr, nullptr, nullptr, nullptr, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  start(L"Q:\\none", L"", 0);
  Pointer<_QVtIniStruct> nothing;
  String name(L"a");
  EXPECT_EQ(global_->Start_Up(nothing.variable(), &name, nullptr), S_OK);
  expect_error(20000, L"KwRtLibMod.GetFileVersion");
}

TEST_F(StartUp, the_Ini_operations_use_the_name_that_it_decides) {
  const TempFolder folder;
  start(folder.path(), L"settings");
  String section(L"s");
  String key(L"k");
  Value value(L"x");
  EXPECT_EQ(global_->Ini_Put(&section, &key, &value, ini_.variable()), S_OK);
  EXPECT_TRUE(folder.exists(L"SETTINGS.INI"));
}

}  // namespace
}  // namespace qv::tests
