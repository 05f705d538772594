// Path names as text.
#include <set>
#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class PathText : public testing::Test {
 protected:
  using OneToOne = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(BSTR*, BSTR*);

  PathText() { global_->Reset_Error(); }

  std::wstring call(OneToOne member, const wchar_t* text) {
    String argument(text);
    String result;
    EXPECT_EQ((global_.get()->*member)(&argument, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring compact(const std::wstring& path, LONG limit) {
    String argument(path);
    String result;
    EXPECT_EQ(global_->CompactPath(&argument, &limit, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring made(const wchar_t* drive, const wchar_t* dir, const wchar_t* name,
                    const wchar_t* ext) {
    String path;
    String parts[] = {drive, dir, name, ext};
    EXPECT_EQ(global_->MakePath(&path, &parts[0], &parts[1], &parts[2], &parts[3]), S_OK);
    return std::wstring(path.view());
  }
  std::wstring temp_file(const Value& path, const wchar_t* extension) {
    String ext(extension);
    String result;
    EXPECT_EQ(global_->Get_TempFile(path, &ext, &result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring temp_path() {
    String result;
    EXPECT_EQ(global_->Get_TempPath(&result), S_OK);
    return std::wstring(result.view());
  }
  bool record_is_empty() {
    VARIANT_BOOL filled = VARIANT_TRUE;
    EXPECT_EQ(global_->Check_Error(&filled), S_OK);
    return filled == VARIANT_FALSE;
  }

  Pointer<_KwRtLib> global_ = create_global();
};

Value null() {
  Value value;
  value.vt = VT_NULL;
  return value;
}

TEST_F(PathText, Full_Path_adds_the_backslash_that_is_missing) {
  EXPECT_EQ(call(&_KwRtLib::Full_Path, L""), L"");
  EXPECT_EQ(call(&_KwRtLib::Full_Path, L"C:\\"), L"C:\\");
  EXPECT_EQ(call(&_KwRtLib::Full_Path, L"C:\\a"), L"C:\\a\\");
}

TEST_F(PathText, Full_Path_takes_a_slash_for_no_separator) {
  EXPECT_EQ(call(&_KwRtLib::Full_Path, L"C:/a/"), L"C:/a/\\");
}

TEST_F(PathText, components_come_out_one_by_one) {
  EXPECT_EQ(call(&_KwRtLib::Get_Path, L"C:\\a\\b.txt"), L"\\a\\");
  EXPECT_EQ(call(&_KwRtLib::Get_FileName, L"C:\\a\\b.txt"), L"b.txt");
  EXPECT_EQ(call(&_KwRtLib::Get_FileNameNoExt, L"C:\\a\\b.txt"), L"b");
  EXPECT_EQ(call(&_KwRtLib::Get_FileExt, L"C:\\a\\b.txt"), L".txt");
  EXPECT_EQ(call(&_KwRtLib::Get_Drive, L"C:\\a\\b.txt"), L"C:");
}

TEST_F(PathText, components_that_a_path_lacks_are_empty) {
  EXPECT_EQ(call(&_KwRtLib::Get_Path, L"b.txt"), L"");
  EXPECT_EQ(call(&_KwRtLib::Get_Drive, L"\\a\\b"), L"");
  EXPECT_EQ(call(&_KwRtLib::Get_FileExt, L"C:\\a.b\\c"), L"");
  EXPECT_EQ(call(&_KwRtLib::Get_FileName, L"C:\\a\\"), L"");
  EXPECT_EQ(call(&_KwRtLib::Get_FileName, L""), L"");
}

TEST_F(PathText, slashes_servers_and_several_dots_split_as_in_the_C_run_time) {
  EXPECT_EQ(call(&_KwRtLib::Get_Path, L"C:/a/b.txt"), L"/a/");
  EXPECT_EQ(call(&_KwRtLib::Get_Path, L"\\\\server\\share\\b.txt"), L"\\\\server\\share\\");
  EXPECT_EQ(call(&_KwRtLib::Get_Drive, L"\\\\server\\share\\b.txt"), L"");
  EXPECT_EQ(call(&_KwRtLib::Get_FileNameNoExt, L"a.b.c"), L"a.b");
  EXPECT_EQ(call(&_KwRtLib::Get_FileExt, L"a.b.c"), L".c");
}

TEST_F(PathText, names_outside_the_code_page_survive) {
  EXPECT_EQ(call(&_KwRtLib::Get_FileNameNoExt, L"C:\\\x4E2D\\\x0416\x03A9.txt"), L"\x0416\x03A9");
  EXPECT_EQ(call(&_KwRtLib::Get_Path, L"C:\\\x4E2D\\\x0416.txt"), L"\\\x4E2D\\");
  EXPECT_EQ(call(&_KwRtLib::Full_Path, L"C:\\\x4E2D"), L"C:\\\x4E2D\\");
}

TEST_F(PathText, a_path_ends_at_its_first_character_0) {
  String path(std::wstring_view(L"C:\\a\\b\0c.txt", 12));
  String result;
  EXPECT_EQ(global_->Get_FileName(&path, &result), S_OK);
  EXPECT_EQ(result.view(), L"b");
}

TEST_F(PathText, a_component_is_cut_at_its_limit) {
  const std::wstring folder = L"\\" + std::wstring(300, L'd') + L"\\";
  const std::wstring path =
      L"C:" + folder + std::wstring(300, L'n') + L"." + std::wstring(300, L'e');
  EXPECT_EQ(call(&_KwRtLib::Get_Path, path.c_str()), folder.substr(0, 255));
  EXPECT_EQ(call(&_KwRtLib::Get_FileNameNoExt, path.c_str()), std::wstring(255, L'n'));
  EXPECT_EQ(call(&_KwRtLib::Get_FileExt, path.c_str()), L"." + std::wstring(254, L'e'));
  EXPECT_EQ(call(&_KwRtLib::Get_Drive, path.c_str()), L"C:");
}

TEST_F(PathText, Split_Path_fills_the_variables_given) {
  Value drive;
  Value dir;
  Value name;
  Value ext;
  EXPECT_EQ(global_->Split_Path(String(L"C:\\APP\\DATA\\SETUP.INI"), &drive, &dir, &name, &ext),
            S_OK);
  EXPECT_EQ(drive.text(), L"C:");
  EXPECT_EQ(dir.text(), L"\\APP\\DATA\\");
  EXPECT_EQ(name.text(), L"SETUP");
  EXPECT_EQ(ext.text(), L".INI");
}

TEST_F(PathText, Split_Path_leaves_left_out_variables_alone) {
  Value missing = Value::missing();
  Value ext;
  EXPECT_EQ(global_->Split_Path(String(L"C:\\a\\b.txt"), nullptr, &missing, nullptr, &ext), S_OK);
  EXPECT_EQ(missing.vt, VT_ERROR);
  EXPECT_EQ(ext.text(), L".txt");
}

TEST_F(PathText, Split_Path_of_nothing_empties_all_and_skips_errors) {
  LONG number = 7;
  Value by_reference;
  by_reference.vt = VT_BYREF | VT_I4;
  by_reference.plVal = &number;
  Value dir(3);
  Value name(L"old");
  Value ext;
  EXPECT_EQ(global_->Split_Path(String(L""), &by_reference, &dir, &name, &ext), S_OK);
  EXPECT_EQ(number, 7);
  EXPECT_EQ(dir.vt, VT_BSTR);
  EXPECT_EQ(dir.text(), L"");
  EXPECT_EQ(name.text(), L"");
  EXPECT_EQ(ext.text(), L"");
  // Nor is what was skipped pending for the next record.
  Value other_number(5);
  Value description(L"own");
  EXPECT_EQ(
      global_->Error_Set(&other_number, nullptr, &description, nullptr, nullptr, nullptr, nullptr),
      S_OK);
  String recorded;
  EXPECT_EQ(global_->Error_Description(&recorded), S_OK);
  EXPECT_EQ(recorded.view(), L"own");
  EXPECT_EQ(global_->Reset_Error(), S_OK);
}

TEST_F(PathText, Split_Path_into_a_variable_that_takes_no_text_raises_13) {
  LONG number = 7;
  Value by_reference;
  by_reference.vt = VT_BYREF | VT_I4;
  by_reference.plVal = &number;
  EXPECT_EQ(global_->Split_Path(String(L"C:\\a"), &by_reference, nullptr, nullptr, nullptr),
            error_result(13));
}

TEST_F(PathText, SplitPath_gives_components_to_the_variable_that_held_the_path) {
  String path(L"C:\\a\\b.txt");
  Value same;
  same.vt = VT_BYREF | VT_BSTR;
  same.pbstrVal = &path;
  Value ext;
  EXPECT_EQ(global_->SplitPath(&path, nullptr, &same, nullptr, &ext), S_OK);
  EXPECT_EQ(path.view(), L"\\a\\");
  EXPECT_EQ(ext.text(), L".txt");
}

TEST_F(PathText, SplitPath_of_nothing_gives_empty_texts_to_what_is_given) {
  String path;
  Value drive(5);
  EXPECT_EQ(global_->SplitPath(&path, &drive, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(drive.text(), L"");
}

TEST_F(PathText, MakePath_supplies_colon_backslash_and_dot) {
  EXPECT_EQ(made(L"C", L"\\a", L"b", L"txt"), L"C:\\a\\b.txt");
  EXPECT_EQ(made(L"C:", L"\\a\\", L"b", L".txt"), L"C:\\a\\b.txt");
  EXPECT_EQ(made(L"", L"", L"b", L""), L"b");
  EXPECT_EQ(made(L"", L"", L"", L""), L"");
}

TEST_F(PathText, MakePath_arguments_may_be_left_out) {
  String path(L"old");
  String name(L"b");
  EXPECT_EQ(global_->MakePath(&path, nullptr, nullptr, &name, nullptr), S_OK);
  EXPECT_EQ(path.view(), L"b");
}

TEST_F(PathText, MakePath_is_cut_at_260_characters) {
  EXPECT_EQ(
      made(L"C", std::wstring(250, L'd').c_str(), std::wstring(250, L'n').c_str(), L"").size(),
      260U);
}

TEST_F(PathText, FullPath_completes_from_the_current_folder_of_the_drive) {
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  SetCurrentDirectoryW(L"C:\\windows\\system32");
  String buffer;
  String path(L"..\\fonts\\a.ttf");
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->FullPath(&buffer, &path, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(buffer.view(), L"C:\\windows\\fonts\\a.ttf");
  String on_drive(L"c:x");
  EXPECT_EQ(global_->FullPath(&buffer, &on_drive, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(_wcsicmp(buffer, L"C:\\windows\\system32\\x"), 0);
  String nothing;
  EXPECT_EQ(global_->FullPath(&buffer, &nothing, &failed), S_OK);
  EXPECT_EQ(buffer.view(), L"C:\\windows\\system32");
  SetCurrentDirectoryW(current);
}

TEST_F(PathText, FullPath_of_more_than_260_characters_fails_and_leaves_blanks) {
  String buffer;
  String path(L"C:\\" + std::wstring(257, L'a'));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->FullPath(&buffer, &path, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(buffer.length(), 260U);
  String longer(L"C:\\" + std::wstring(258, L'a'));
  EXPECT_EQ(global_->FullPath(&buffer, &longer, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(buffer.view(), std::wstring(261, L' '));
  EXPECT_TRUE(record_is_empty());
}

TEST_F(PathText, CurDrive_is_letter_and_colon) {
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  SetCurrentDirectoryW(L"C:\\windows");
  String result;
  EXPECT_EQ(global_->CurDrive(&result), S_OK);
  EXPECT_EQ(result.view(), L"C:");
  SetCurrentDirectoryW(current);
}

TEST_F(PathText, Get_TempPath_is_what_the_system_gives) {
  wchar_t expected[MAX_PATH + 1];
  GetTempPathW(MAX_PATH + 1, expected);
  EXPECT_EQ(temp_path(), expected);
  EXPECT_EQ(temp_path().back(), L'\\');
}

TEST_F(PathText, Get_TempFile_puts_a_hexadecimal_name_behind_the_path) {
  const auto name = temp_file(temp_path().c_str(), L"txt");
  ASSERT_EQ(name.substr(0, temp_path().size()), temp_path());
  const auto bare = name.substr(temp_path().size());
  ASSERT_EQ(bare.substr(bare.size() - 4), L".txt");
  const auto digits = bare.substr(0, bare.size() - 4);
  EXPECT_EQ(digits.find_first_not_of(L"0123456789ABCDEF"), std::wstring::npos);
  EXPECT_NE(digits[0], L'0');
  EXPECT_EQ(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(PathText, Get_TempFile_takes_an_extension_with_and_without_its_dot) {
  const auto with = temp_file(temp_path().c_str(), L".txt");
  const auto without = temp_file(temp_path().c_str(), L"txt");
  EXPECT_EQ(with.substr(with.size() - 4), L".txt");
  EXPECT_EQ(without.substr(without.size() - 4), L".txt");
  EXPECT_NE(without[without.size() - 5], L'.');
  EXPECT_NE(with[with.size() - 5], L'.');
  EXPECT_EQ(temp_file(L"", L"").find(L'.'), std::wstring::npos);
}

TEST_F(PathText, Get_TempFile_of_Null_lies_in_the_temporary_folder) {
  const auto name = temp_file(null(), L"tmp");
  EXPECT_EQ(name.substr(0, temp_path().size()), temp_path());
}

TEST_F(PathText, Get_TempFile_adds_no_backslash) {
  const auto name = temp_file((temp_path() + L"prefix").c_str(), L"");
  EXPECT_EQ(name.substr(0, temp_path().size() + 6), temp_path() + L"prefix");
  EXPECT_NE(name[temp_path().size() + 6], L'\\');
}

TEST_F(PathText, Get_TempFile_gives_a_new_name_each_time) {
  std::set<std::wstring> names;
  for (int i = 0; i < 5; ++i) names.insert(temp_file(null(), L""));
  EXPECT_EQ(names.size(), 5U);
}

TEST_F(PathText, Get_TempFile_fails_with_an_empty_text_and_no_record) {
  EXPECT_EQ(temp_file(L"C:\\no such folder\\", L""), L"");
  EXPECT_EQ(temp_file(L"Q:\\", L""), L"");
  EXPECT_EQ(temp_file(L"C:\\win*\\", L""), L"");
  EXPECT_EQ(temp_file(Value::missing(), L""), L"");
  EXPECT_TRUE(record_is_empty());
}

TEST_F(PathText, CompactPath_of_a_folder_that_fits_is_the_same_path) {
  EXPECT_EQ(compact(L"C:\\one\\two\\file.txt", 8), L"C:\\one\\two\\file.txt");
  EXPECT_EQ(compact(L"C:\\file.txt", 0), L"C:\\file.txt");
  EXPECT_EQ(compact(L"file.txt", 0), L"file.txt");
  EXPECT_EQ(compact(L"", 0), L"");
}

TEST_F(PathText, CompactPath_puts_dots_in_place_of_folders_from_the_left) {
  EXPECT_EQ(compact(L"C:\\one\\two\\three\\file.txt", 12), L"C:\\...\\...\\...\\file.txt");
  EXPECT_EQ(compact(L"C:\\first\\two\\three\\file.txt", 15), L"C:\\...\\two\\three\\file.txt");
}

TEST_F(PathText, CompactPath_joins_elided_folders_before_it_drops_backslashes) {
  EXPECT_EQ(compact(L"C:\\first\\second\\third\\file.txt", 11), L"C:...\\...\\...\\file.txt");
  EXPECT_EQ(compact(L"C:\\first\\second\\third\\file.txt", 7), L"C:...\\...\\file.txt");
}

TEST_F(PathText, CompactPath_to_0_leaves_only_dots) {
  EXPECT_EQ(compact(L"C:\\one\\two\\three\\file.txt", 0), L"C:......\\file.txt");
  EXPECT_EQ(compact(L"C:\\one\\two\\three\\file.txt", -5), L"C:......\\file.txt");
}

TEST_F(PathText, CompactPath_to_less_than_0_takes_the_root_folder_for_too_long) {
  EXPECT_EQ(compact(L"C:\\file.txt", -1), L"C:...\\file.txt");
  EXPECT_EQ(compact(L"file.txt", -1), L"...\\file.txt");
}

TEST_F(PathText, CompactPath_keeps_the_first_folder_of_a_relative_path) {
  EXPECT_EQ(compact(L"one\\two\\three\\f", 5), L"...one...\\f");
}

TEST_F(PathText, CompactPath_never_takes_a_folder_named_by_dots_for_an_elided_one) {
  EXPECT_EQ(compact(L"...\\two\\three\\f", 5), L".........\\f");
  EXPECT_EQ(compact(L"...\\two\\three\\f", 11), L"...\\...\\...\\f");
}

TEST_F(PathText, CompactPath_lets_a_short_folder_grow) {
  EXPECT_EQ(compact(L"C:\\a\\b\\longer\\f", 10), L"C:...\\...\\f");
  EXPECT_EQ(compact(L"C:\\a\\b\\longer folder\\f", 12), L"C:\\...\\...\\...\\f");
}

}  // namespace
}  // namespace qv::tests
