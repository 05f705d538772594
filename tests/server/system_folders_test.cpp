// Where the system's folders are.
#include <windows.h>
// shlobj.h needs windows.h before it.
#include <shlobj.h>

#include <array>
#include <string>

#include "server/error_record_client.h"
#include "server/registry_value.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

// Not by the platform's name, which the generated constants take away.
constexpr DWORD kLongestPath = 260;

constexpr LONG kPrinters = 4;
constexpr LONG kFavorites = 6;
constexpr LONG kWindows = 36;
constexpr LONG kSystem = 37;
constexpr LONG kProgramFiles = 38;
constexpr LONG kCreate = -32768;

constexpr const wchar_t* kUserFolders =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr const wchar_t* kCurrentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr const wchar_t* kProgram =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\qvrt test.exe";

class SystemFolders : public WithErrorRecord {
 protected:
  using NoArgument = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(BSTR*);

  std::wstring call(NoArgument member) {
    String result;
    EXPECT_EQ((global_.get()->*member)(&result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring special(LONG id) {
    String result;
    EXPECT_EQ(global_->Get_SpecialPath(&id, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring short_name(std::wstring_view path) {
    String argument(path);
    String result;
    EXPECT_EQ(global_->Get_ShortPathName(&argument, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring app_paths(const wchar_t* program) {
    String name(program);
    String result;
    EXPECT_EQ(global_->Get_AppPaths(&name, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring system_text(LONG code) {
    String text;
    EXPECT_EQ(global_->SystemError(&code, &text), S_OK);
    return std::wstring(text.view());
  }
  void expect_missing_value() {
    EXPECT_EQ(recorded_description(), system_text(2) + L" (DLL#2)");
    expect_error(20000, L"KwRtLibMod.RegistryRead");
  }
};

bool is_folder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

TEST_F(SystemFolders, Windows_and_system_folder_end_in_a_backslash) {
  wchar_t folder[kLongestPath];
  GetWindowsDirectoryW(folder, kLongestPath);
  EXPECT_EQ(call(&_KwRtLib::Get_WinPath), std::wstring(folder) + L"\\");
  GetSystemDirectoryW(folder, kLongestPath);
  EXPECT_EQ(call(&_KwRtLib::Get_SysPath), std::wstring(folder) + L"\\");
  expect_no_error();
}

TEST_F(SystemFolders, every_folder_of_the_file_system_is_where_the_shell_has_it) {
  constexpr std::array<LONG, 33> kFolders = {0,  2,  5,  6,  7,  8,  9,  11, 13, 16, 19,
                                             20, 21, 22, 23, 24, 25, 26, 27, 28, 32, 33,
                                             34, 35, 36, 37, 38, 39, 43, 46, 47, 48, 57};
  int found = 0;
  for (const LONG id : kFolders) {
    wchar_t expected[kLongestPath] = L"";
    SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, expected);
    EXPECT_EQ(special(id), expected) << id;
    found += expected[0] != L'\0' ? 1 : 0;
  }
  EXPECT_GT(found, 20);
  expect_no_error();
}

TEST_F(SystemFolders, a_special_folder_has_no_final_backslash) {
  EXPECT_TRUE(is_folder(special(kProgramFiles)));
  EXPECT_EQ(special(kWindows) + L"\\", call(&_KwRtLib::Get_WinPath));
  EXPECT_EQ(special(kSystem) + L"\\", call(&_KwRtLib::Get_SysPath));
}

TEST_F(SystemFolders, a_special_folder_follows_the_user_s_settings) {
  const TempFolder folder;
  const auto chosen = folder.path() + L"preferiti \x20AC";
  ASSERT_TRUE(CreateDirectoryW(chosen.c_str(), nullptr));
  const auto before = special(kFavorites);
  {
    const RegistryValue setting(HKEY_CURRENT_USER, kUserFolders, L"Favorites");
    setting.set(chosen);
    EXPECT_EQ(special(kFavorites), chosen);
    setting.set(L"%TEMP%", REG_EXPAND_SZ);
    wchar_t expanded[kLongestPath];
    ExpandEnvironmentStringsW(L"%TEMP%", expanded, kLongestPath);
    EXPECT_EQ(special(kFavorites), expanded);
  }
  EXPECT_EQ(special(kFavorites), before);
}

TEST_F(SystemFolders, a_special_folder_that_is_missing_is_made_where_the_flag_asks_for_it) {
  const TempFolder folder;
  const auto chosen = folder.path() + L"preferiti";
  const RegistryValue setting(HKEY_CURRENT_USER, kUserFolders, L"Favorites");
  setting.set(chosen);
  EXPECT_EQ(special(kFavorites), L"");
  EXPECT_FALSE(is_folder(chosen));
  EXPECT_EQ(special(kFavorites + kCreate), chosen);
  EXPECT_TRUE(is_folder(chosen));
  EXPECT_EQ(special(kFavorites), chosen);
  expect_no_error();
}

TEST_F(SystemFolders, a_virtual_folder_is_empty_and_leaves_the_record_alone) {
  Value number(5);
  Value left_out = Value::missing();
  ASSERT_EQ(
      global_->Error_Set(&number, &left_out, &left_out, &left_out, &left_out, &left_out, nullptr),
      S_OK);
  EXPECT_EQ(special(kPrinters), L"");
  EXPECT_EQ(special(17), L"");   // the computer
  EXPECT_EQ(special(18), L"");   // the network
  EXPECT_EQ(special(10), L"");   // the bin
  EXPECT_EQ(special(3), L"");    // the control panel
  EXPECT_EQ(special(255), L"");  // no folder at all
  EXPECT_EQ(special(-1), L"");
  EXPECT_EQ(error_number(), 5);
}

TEST_F(SystemFolders, a_short_name_names_the_same_file) {
  const TempFolder folder;
  folder.write(L"a long name with blanks.text", "content");
  const auto name = short_name(folder.file(L"a long name with blanks.text"));
  ASSERT_NE(name, L"");
  const auto bare = name.substr(name.rfind(L'\\') + 1);
  EXPECT_LE(bare.size(), 12U);
  EXPECT_NE(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(short_name(L"C:\\windows"), L"C:\\windows");
  expect_no_error();
}

TEST_F(SystemFolders, a_short_name_of_a_path_beyond_260_characters_comes_without_a_prefix) {
  const TempFolder folder;
  std::wstring path = folder.path();
  for (int level = 0; level < 3; ++level) {
    path += std::wstring(100, static_cast<wchar_t>(L'a' + level)) + L"\\";
    ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr));
  }
  const auto name = short_name(path);
  EXPECT_EQ(name.substr(0, 3), L"C:\\");
  EXPECT_LT(name.size(), path.size());
  String tree(folder.file(std::wstring(100, L'a')));
  SHORT error = 99;
  EXPECT_EQ(global_->Path_Kill(&tree, &error), S_OK);
  EXPECT_EQ(error, 0);
}

TEST_F(SystemFolders, a_short_name_of_what_is_missing_is_20000_with_the_system_s_text) {
  for (const auto* path : {L"C:\\no such file at all", L"", L"Q:\\a"}) {
    EXPECT_EQ(short_name(path), L"");
    EXPECT_NE(last_dll_error(), 0);
    EXPECT_EQ(recorded_description(), L"\r\n" + system_text(last_dll_error()));
    expect_error(20000, L"KwRtLibMod.Get_ShortPathName");
  }
}

TEST_F(SystemFolders, a_program_s_search_path_comes_as_it_is_registered) {
  const RegistryValue path(HKEY_LOCAL_MACHINE, kProgram, L"Path");
  path.set(L"C:\\Programmi\\\x00C8 mia\\;D:\\");
  EXPECT_EQ(app_paths(L"qvrt test.exe"), L"C:\\Programmi\\\x00C8 mia\\;D:\\");
  EXPECT_EQ(app_paths(L"QVRT TEST.EXE"), L"C:\\Programmi\\\x00C8 mia\\;D:\\");
  path.set(L"%SystemRoot%\\app", REG_EXPAND_SZ);
  EXPECT_EQ(app_paths(L"qvrt test.exe"), L"%SystemRoot%\\app");
  path.set_number(42);
  EXPECT_EQ(app_paths(L"qvrt test.exe"), L"42");
  expect_no_error();
}

TEST_F(SystemFolders, a_program_that_is_not_registered_has_no_search_path) {
  EXPECT_EQ(app_paths(L"no such program.exe"), L"");
  expect_missing_value();
  const RegistryValue path(HKEY_LOCAL_MACHINE, kProgram, L"Path");
  EXPECT_EQ(app_paths(L"qvrt test.exe"), L"");
  expect_missing_value();
}

TEST_F(SystemFolders, a_search_path_that_is_no_text_is_empty_and_told) {
  const RegistryValue path(HKEY_LOCAL_MACHINE, kProgram, L"Path");
  path.set(std::wstring(L"C:\\a\0C:\\b\0", 10), REG_MULTI_SZ);
  EXPECT_EQ(app_paths(L"qvrt test.exe"), L"");
  expect_error(13, L"KwRtLibMod.RegistryRead");
}

TEST_F(SystemFolders, the_folder_for_programs_is_the_registry_s) {
  EXPECT_TRUE(is_folder(call(&_KwRtLib::Get_ProgramFilesPath)));
  expect_no_error();
  const RegistryValue folder(HKEY_LOCAL_MACHINE, kCurrentVersion, L"ProgramFilesDir");
  folder.set(L"D:\\Programmi");
  EXPECT_EQ(call(&_KwRtLib::Get_ProgramFilesPath), L"D:\\Programmi");
  expect_no_error();
  folder.remove();
  EXPECT_EQ(call(&_KwRtLib::Get_ProgramFilesPath), L"");
  expect_missing_value();
}

}  // namespace
}  // namespace qv::tests
