// Macros in path names.
#include <windows.h>
// shlobj.h needs windows.h before it.
#include <shlobj.h>

#include <string>
#include <utility>

#include "server/error_record_client.h"
#include "server/registry_value.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;

// Not by the platform's name, which the generated constants take away.
constexpr DWORD kLongestPath = 260;

constexpr const wchar_t* kCurrentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr const wchar_t* kDataAccess = L"SOFTWARE\\Microsoft\\Shared Tools\\dao360.dll";

std::wstring program_key(const std::wstring& program) {
  return std::wstring(kCurrentVersion) + L"\\App Paths\\" + program;
}

std::wstring shell_folder(int id) {
  wchar_t path[kLongestPath] = L"";
  SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path);
  return path;
}

std::wstring folder_of_program() {
  wchar_t path[kLongestPath];
  GetModuleFileNameW(nullptr, path, kLongestPath);
  const std::wstring program = path;
  return program.substr(0, program.rfind(L'\\'));
}

// The data-access library is registered, so that a machine without it does as well.
class PathMacros : public WithErrorRecord {
 protected:
  PathMacros() { data_access_.set(L"C:\\Shared\\DAO\\dao360.dll"); }

  std::wstring resolve(const std::wstring& name, const wchar_t* application = L"C:\\App") {
    String file(name);
    String folder(application);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(folder.view(), application);
    return std::wstring(file.view());
  }
  // What is left of the name.
  std::wstring fail(const std::wstring& name) {
    String file(name);
    String folder(L"C:\\App");
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_TRUE);
    return std::wstring(file.view());
  }
  std::wstring text(HRESULT (STDMETHODCALLTYPE _KwRtLib::*member)(BSTR*)) {
    String result;
    EXPECT_EQ((global_.get()->*member)(&result), S_OK);
    return std::wstring(result.view());
  }

  const RegistryValue data_access_{HKEY_LOCAL_MACHINE, kDataAccess, L"Path"};
};

TEST_F(PathMacros, are_not_looked_for_in_an_empty_name) {
  data_access_.remove();
  String file;
  String folder(std::wstring_view(L"\0", 1));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(file.view(), L"");
  EXPECT_EQ(folder.view(), std::wstring_view(L"\0", 1));
  expect_no_error();
}

TEST_F(PathMacros, of_the_shell_s_folders) {
  const std::pair<const wchar_t*, int> macros[] = {
      {L"$(AppData)", 26},         {L"$(Fonts)", 20},
      {L"$(CommonAppData)", 35},   {L"$(CommonDesktop)", 25},
      {L"$(CommonDocuments)", 46}, {L"$(CommonPrograms)", 23},
      {L"$(CommonStartMenu)", 22}, {L"$(CommonStartUp)", 24},
      {L"$(Cookies)", 33},         {L"$(Favorites)", 6},
      {L"$(History)", 34},         {L"$(Personal)", 5},
      {L"$(Documents)", 5},        {L"$(InternetCache)", 32},
      {L"$(LocalAppData)", 28},    {L"$(NetHood)", 19},
      {L"$(MyMusic)", 13},         {L"$(MyPictures)", 39},
      {L"$(PrintHood)", 27},       {L"$(PrivateDesktop)", 16},
      {L"$(PrivatePrograms)", 2},  {L"$(PrivateStartMenu)", 11},
      {L"$(PrivateStartUp)", 7},   {L"$(ProgramFilesCommon)", 43},
      {L"$(Recent)", 8},           {L"$(ResourcesLocalized)", 57},
      {L"$(SendTo)", 9},           {L"$(System)", 37},
      {L"$(Templates)", 21},       {L"$(Windows)", 36}};
  for (const auto& [macro, id] : macros) {
    EXPECT_EQ(resolve(macro), shell_folder(id)) << id;
    EXPECT_EQ(resolve(macro + L"\\a.dll"s), shell_folder(id) + L"\\a.dll") << id;
  }
  // The shell's own spelling of this one differs from call to call.
  EXPECT_EQ(_wcsicmp(resolve(L"$(Resources)").c_str(), shell_folder(56).c_str()), 0);
  expect_no_error();
}

TEST_F(PathMacros, of_the_system) {
  const auto windows = text(&_KwRtLib::Get_WinPath);
  const auto system = text(&_KwRtLib::Get_SysPath);
  const auto programs = text(&_KwRtLib::Get_ProgramFilesPath);
  EXPECT_EQ(resolve(L"$(WinPath)"), windows);
  EXPECT_EQ(resolve(L"$(WinSysPath)"), system);
  EXPECT_EQ(resolve(L"$(WinSysPathSysFile)"), system);
  EXPECT_EQ(resolve(L"$(ProgramFiles)"), programs);
  EXPECT_EQ(resolve(L"$(Programs)"), programs);
  EXPECT_EQ(resolve(L"$(TempPath)"), text(&_KwRtLib::Get_TempPath));
  wchar_t current[kLongestPath];
  GetCurrentDirectoryW(kLongestPath, current);
  EXPECT_EQ(resolve(L"$(CurPath)"), current);
  EXPECT_EQ(resolve(L"$(AppPath)"), L"C:\\App");
  EXPECT_EQ(resolve(L"$(AppPath)\\x", L""), L"\\x");
  expect_no_error();
}

TEST_F(PathMacros, of_common_files_come_from_the_registry) {
  const RegistryValue folder(HKEY_LOCAL_MACHINE, kCurrentVersion, L"CommonFilesDir");
  folder.set(L"D:\\Comuni");
  EXPECT_EQ(resolve(L"$(CommonFiles)\\x"), L"D:\\Comuni\\x");
  EXPECT_EQ(resolve(L"$(CommonFilesSys)\\x"), L"D:\\Comuni\\System\\x");
  folder.set(L"D:\\Comuni\\");
  EXPECT_EQ(resolve(L"$(CommonFilesSys)"), L"D:\\Comuni\\System");
  expect_no_error();
}

TEST_F(PathMacros, of_common_files_lie_below_the_programs_where_the_registry_has_none) {
  const RegistryValue folder(HKEY_LOCAL_MACHINE, kCurrentVersion, L"CommonFilesDir");
  const RegistryValue programs(HKEY_LOCAL_MACHINE, kCurrentVersion, L"ProgramFilesDir");
  folder.remove();
  programs.set(L"D:\\Programmi");
  EXPECT_EQ(resolve(L"$(CommonFiles)"), L"D:\\Programmi\\Common Files");
  expect_error(20000, L"KwRtLibMod.RegistryRead");
  EXPECT_EQ(resolve(L"$(CommonFilesSys)"), L"D:\\Programmi\\Common Files\\System");
  programs.remove();
  EXPECT_EQ(resolve(L"$(CommonFiles)"), L"Common Files");
  EXPECT_EQ(resolve(L"$(ProgramFiles)\\x"), L"\\x");
  expect_error(20000, L"KwRtLibMod.RegistryRead");
}

TEST_F(PathMacros, of_the_data_access_library_come_from_the_registry) {
  EXPECT_EQ(resolve(L"$(MSDAOPath)\\x"), L"C:\\Shared\\DAO\\x");
  data_access_.set(L"dao360.dll");
  EXPECT_EQ(resolve(L"$(MSDAOPath)"), L"dao360.dll");
  data_access_.set(L"D:\\dao360.dll");
  EXPECT_EQ(resolve(L"$(MSDAOPath)\\x"), L"D:\\x");
  expect_no_error();
}

TEST_F(PathMacros, of_a_data_access_library_that_is_not_there_leave_an_entry) {
  const RegistryValue folder(HKEY_LOCAL_MACHINE, kCurrentVersion, L"CommonFilesDir");
  folder.set(L"D:\\Comuni");
  data_access_.remove();
  EXPECT_EQ(resolve(L"$(MSDAOPath)"), L"D:\\Comuni\\Microsoft Shared\\DAO");
  expect_error(20000, L"KwRtLibMod.RegistryRead");
  // The registry is read for every name.
  EXPECT_EQ(resolve(L"x"), L"x");
  expect_error(20000, L"KwRtLibMod.RegistryRead");
}

TEST_F(PathMacros, meet_a_backslash_of_the_name_in_one) {
  const auto windows = text(&_KwRtLib::Get_WinPath);
  ASSERT_EQ(windows.back(), L'\\');
  EXPECT_EQ(resolve(L"$(WinPath)\\X.DLL"), windows + L"X.DLL");
  EXPECT_EQ(resolve(L"$(WinPath)X.DLL"), windows + L"X.DLL");
  EXPECT_EQ(resolve(L"$(WinPath)\\\\X.DLL"), windows + L"\\X.DLL");
  EXPECT_EQ(resolve(L"a\\$(AppPath)", L"\\b"), L"a\\b");
  EXPECT_EQ(resolve(L"\\\\server\\a"), L"\\\\server\\a");
}

TEST_F(PathMacros, that_meet_keep_what_they_bring) {
  const auto windows = text(&_KwRtLib::Get_WinPath);
  EXPECT_EQ(resolve(L"$(WinPath)$(AppPath)", L"\\b"), windows + L"\\b");
  EXPECT_EQ(resolve(L"$(AppPath)$(AppPath)", L"\\b\\"), L"\\b\\\\b\\");
}

TEST_F(PathMacros, are_found_in_any_case_and_everywhere) {
  const auto system = text(&_KwRtLib::Get_SysPath);
  EXPECT_EQ(resolve(L"$(winsyspath)a;$(WINSYSPATH)\\b;$(WinSysPath)c"),
            system + L"a;" + system + L"b;" + system + L"c");
  EXPECT_EQ(resolve(L"$(apppath)\\x"), L"C:\\App\\x");
}

TEST_F(PathMacros, that_are_unknown_stay) {
  for (const auto* name : {L"$(NoSuchMacro)\\a", L"$(WinPath", L"(WinPath)", L"$()", L"$",
                           L"$(SetupPath)", L"$( WinPath)"}) {
    EXPECT_EQ(resolve(name), name);
  }
  expect_no_error();
}

TEST_F(PathMacros, in_the_value_of_another_are_replaced_where_they_come_later) {
  const RegistryValue programs(HKEY_LOCAL_MACHINE, kCurrentVersion, L"ProgramFilesDir");
  programs.set(L"$(AppPath)\\$(WinPath)");
  EXPECT_EQ(resolve(L"$(Programs)\\x"), L"C:\\App\\$(WinPath)\\x");
}

TEST_F(PathMacros, of_the_application_take_its_own_folder_for_Chr_0) {
  String file(L"$(AppPath)\\x");
  String folder(std::wstring_view(L"\0", 1));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(folder.view(), folder_of_program());
  EXPECT_EQ(file.view(), folder_of_program() + L"\\x");
}

TEST_F(PathMacros, tell_the_application_s_folder_to_a_name_without_macros_too) {
  String file(L"x");
  String folder(std::wstring_view(L"\0", 1));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
  EXPECT_EQ(folder.view(), folder_of_program());
}

TEST_F(PathMacros, of_the_application_take_its_own_folder_where_none_is_given) {
  String file(L"$(AppPath)\\x");
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->ResolveFileName(&file, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(file.view(), folder_of_program() + L"\\x");
}

TEST_F(PathMacros, leave_a_folder_of_two_characters_0_alone) {
  String file(L"a");
  String folder(std::wstring_view(L"\0\0", 2));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->ResolveFileName(&file, &folder, &failed), S_OK);
  EXPECT_EQ(folder.view(), std::wstring_view(L"\0\0", 2));
}

TEST_F(PathMacros, of_a_program_are_the_folder_before_its_path_s_last_backslash) {
  const RegistryValue path(HKEY_LOCAL_MACHINE, program_key(L"qvrt a.exe"), L"Path");
  path.set(L"C:\\Prova\\");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe)\\x"), L"C:\\Prova\\x");
  EXPECT_EQ(resolve(L"$(setuppath:QVRT A.EXE)"), L"C:\\Prova");
  path.set(L"C:\\Prova\\a.exe");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe)\\x"), L"C:\\Prova\\x");
  path.set(L"C:\\Prova\\;D:\\altro");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe)"), L"C:\\Prova\\;D:");
  path.set(L"Prova");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe)"), L"Prova");
  expect_no_error();
}

TEST_F(PathMacros, of_programs_are_replaced_one_after_the_other) {
  const RegistryValue a(HKEY_LOCAL_MACHINE, program_key(L"qvrt a.exe"), L"Path");
  const RegistryValue b(HKEY_LOCAL_MACHINE, program_key(L"qvrt b.exe"), L"Path");
  a.set(L"C:\\a\\");
  b.set(L"$(SetupPath:qvrt a.exe)\\b\\");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe);$(SetupPath:qvrt b.exe);$(SETUPPATH:qvrt a.exe)"),
            L"C:\\a;C:\\a\\b;C:\\a");
}

TEST_F(PathMacros, of_a_program_that_is_not_registered_fail_half_way) {
  EXPECT_EQ(fail(L"$(AppPath)\\$(SetupPath:no such.exe)\\x"),
            L"C:\\App\x1B\x0B$(SetupPath:no such.exe)\x1B\x0Bx");
  expect_error(20000, L"KwRtLibMod.RegistryRead < KwRtLibMod.ResolveFileName");
}

TEST_F(PathMacros, of_a_program_without_a_bracket_fail) {
  EXPECT_EQ(fail(L"a\\$(SetupPath:b"), L"a\x1B\x0B$(SetupPath:b");
  expect_error(5, L"KwRtLibMod.ResolveFileName");
}

TEST_F(PathMacros, of_programs_whose_paths_lead_back_to_themselves_fail) {
  const RegistryValue a(HKEY_LOCAL_MACHINE, program_key(L"qvrt a.exe"), L"Path");
  const RegistryValue b(HKEY_LOCAL_MACHINE, program_key(L"qvrt b.exe"), L"Path");
  a.set(L"$(SetupPath:qvrt b.exe)\\a\\");
  b.set(L"$(SetupPath:qvrt a.exe)\\b\\");
  const auto left = fail(L"$(SetupPath:qvrt a.exe)");
  EXPECT_TRUE(left.starts_with(L"$(SetupPath:qvrt a.exe)\\b\\a\\b\\a"));
  expect_error(5, L"KwRtLibMod.ResolveFileName");
  a.set(L"$(SetupPath:qvrt a.exe)$(SetupPath:qvrt a.exe)\\");
  fail(L"$(SetupPath:qvrt a.exe)");
  expect_error(5, L"KwRtLibMod.ResolveFileName");
}

TEST_F(PathMacros, stand_in_names_that_are_relative_to_the_application) {
  EXPECT_EQ(resolve(L".\\x"), L"C:\\App\\x");
  EXPECT_EQ(resolve(L".\\x", L"C:\\App\\"), L"C:\\App\\x");
  EXPECT_EQ(resolve(L".\\x", L""), L"x");
  EXPECT_EQ(resolve(L"..\\..\\x", L"C:\\a\\b\\c"), L"C:\\a\\x");
  EXPECT_EQ(resolve(L"..\\x", L"C:\\a\\"), L"C:\\a\\x");
  EXPECT_EQ(resolve(L"..\\..\\..\\x", L"C:\\a"), L"C:\\x");
  EXPECT_EQ(resolve(L".\\..\\x"), L"C:\\App\\..\\x");
  EXPECT_EQ(resolve(L"./x"), L"./x");
  EXPECT_EQ(resolve(L"x\\..\\y"), L"x\\..\\y");
}

TEST_F(PathMacros, may_bring_a_relative_name) {
  const RegistryValue path(HKEY_LOCAL_MACHINE, program_key(L"qvrt a.exe"), L"Path");
  path.set(L"..\\vicino\\");
  EXPECT_EQ(resolve(L"$(SetupPath:qvrt a.exe)\\x"), L"C:\\vicino\\x");
}

TEST_F(PathMacros, keep_letters_of_any_script_and_characters_0) {
  EXPECT_EQ(resolve(L"$(AppPath)\\\x4E2D\x20AC\0z"s, L"C:\\\x00E8"),
            L"C:\\\x00E8\\\x4E2D\x20AC\0z"s);
}

}  // namespace
}  // namespace qv::tests
