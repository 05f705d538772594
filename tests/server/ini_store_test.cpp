// Settings in INI files: values, lists of names, whole sections, what fails and how.
#include <vector>

#include "server/error_record_client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::wstring>;

constexpr std::size_t kBufferLength = 8192;

Value null() {
  Value value;
  value.vt = VT_NULL;
  return value;
}

class IniStore : public WithErrorRecord {
 protected:
  IniStore() { use(L"a.ini"); }

  void use(std::wstring_view name) {
    name_ = name;
    EXPECT_EQ(ini_->put_IniFile(String(folder_.file(name))), S_OK);
  }
  // A new file each time, since the platform remembers what it has read for a while.
  void hold(std::string_view content) {
    use(L"f" + std::to_wstring(++files_) + L".ini");
    folder_.write(name_, content);
  }
  std::string content() const { return folder_.read(name_); }

  Value get(const Value& section, const Value& key, const Value& fallback) {
    Value s(section);
    Value k(key);
    Value f(fallback);
    Value result;
    EXPECT_EQ(global_->Ini_Get(&s, &k, &f, ini_.variable(), &result), S_OK);
    return result;
  }
  std::wstring text(const Value& section, const Value& key, const Value& fallback = L"none") {
    return std::wstring(get(section, key, fallback).text());
  }
  HRESULT put(const wchar_t* section, const wchar_t* key, const Value& value) {
    String s(section);
    String k(key);
    Value v(value);
    return global_->Ini_Put(&s, &k, &v, ini_.variable());
  }
  Texts lines(const wchar_t* section) {
    String s(section);
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(global_->Ini_GetSect(&s, &array, ini_.variable()), S_OK);
    LONG first = -1;
    LONG last = -1;
    SafeArrayGetLBound(array, 1, &first);
    SafeArrayGetUBound(array, 1, &last);
    EXPECT_EQ(first, 0);
    Texts texts;
    for (LONG i = first; i <= last; ++i) {
      String line;
      EXPECT_EQ(SafeArrayGetElement(array, &i, &line), S_OK);
      texts.emplace_back(line.view());
    }
    SafeArrayDestroy(array);
    EXPECT_EQ(texts.at(0), L"");
    texts.erase(texts.begin());
    return texts;
  }
  bool put_lines(const wchar_t* section, LONG lower_bound, const Texts& texts) {
    SAFEARRAY* array =
        SafeArrayCreateVector(VT_BSTR, lower_bound, static_cast<ULONG>(texts.size()));
    for (LONG i = lower_bound; const auto& line : texts) {
      SafeArrayPutElement(array, &i, static_cast<BSTR>(String(line)));
      ++i;
    }
    const bool done = put_array(section, array);
    SafeArrayDestroy(array);
    return done;
  }
  bool put_array(const wchar_t* section, SAFEARRAY* array) {
    String s(section);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->Ini_PutSect(&s, &array, ini_.variable(), &failed), S_OK);
    return failed == VARIANT_FALSE;
  }
  void remove_section(const wchar_t* section) {
    String s(section);
    EXPECT_EQ(global_->Ini_DeleteSection(&s, ini_.variable()), S_OK);
  }
  void remove_key(const wchar_t* section, const wchar_t* key) {
    String s(section);
    String k(key);
    EXPECT_EQ(global_->Ini_DeletePar(&s, &k, ini_.variable()), S_OK);
  }

  TempFolder folder_;
  Pointer<_QVtIniStruct> ini_ = create<_QVtIniStruct>(CLSID_QVtIniStruct);

 private:
  std::wstring name_;
  int files_ = 0;
};

TEST_F(IniStore, CopyTo_copies_the_five_texts) {
  EXPECT_EQ(ini_->put_IniFile(String(L"i")), S_OK);
  EXPECT_EQ(ini_->put_WinPath(String(L"w")), S_OK);
  EXPECT_EQ(ini_->put_SysPath(String(L"s")), S_OK);
  EXPECT_EQ(ini_->put_ExePath(String(std::wstring_view(L"e\0x", 3))), S_OK);
  EXPECT_EQ(ini_->put_TmpPath(String(L"t")), S_OK);
  auto copy = create<_QVtIniStruct>(CLSID_QVtIniStruct);
  const auto text = [&](decltype(&_QVtIniStruct::get_IniFile) getter) {
    String value;
    EXPECT_EQ((copy.get()->*getter)(&value), S_OK);
    return std::wstring(value.view());
  };
  EXPECT_EQ(text(&_QVtIniStruct::get_WinPath), L"");
  EXPECT_EQ(ini_->CopyTo(copy.variable()), S_OK);
  EXPECT_EQ(text(&_QVtIniStruct::get_IniFile), L"i");
  EXPECT_EQ(text(&_QVtIniStruct::get_WinPath), L"w");
  EXPECT_EQ(text(&_QVtIniStruct::get_SysPath), L"s");
  EXPECT_EQ(text(&_QVtIniStruct::get_ExePath), L"e\0x"s);
  EXPECT_EQ(text(&_QVtIniStruct::get_TmpPath), L"t");
  EXPECT_EQ(copy->CopyTo(copy.variable()), S_OK);
  EXPECT_EQ(text(&_QVtIniStruct::get_IniFile), L"i");
}

TEST_F(IniStore, CopyTo_to_Nothing_is_error_91) {
  Pointer<_QVtIniStruct> nothing;
  EXPECT_EQ(ini_->CopyTo(nothing.variable()), error_result(91));
}

TEST_F(IniStore, a_value_that_was_put_is_read_back) {
  EXPECT_EQ(put(L"one", L"key", L"a value"), S_OK);
  EXPECT_EQ(put(L"one", L"other", L""), S_OK);
  EXPECT_EQ(put(L"two", L"key", 12.5), S_OK);
  EXPECT_EQ(text(L"one", L"key"), L"a value");
  EXPECT_EQ(text(L"one", L"other"), L"");
  EXPECT_EQ(text(L"two", L"key"), L"12.5");
  EXPECT_EQ(text(L"ONE", L"KEY"), L"a value");
  EXPECT_EQ(put(L"one", L"KEY", -7), S_OK);
  EXPECT_EQ(text(L"one", L"key"), L"-7");
  expect_no_error();
}

TEST_F(IniStore, what_is_missing_gives_the_default_as_text) {
  EXPECT_EQ(text(L"s", L"k"), L"none");
  EXPECT_EQ(text(L"s", L"k", SHORT{5}), L"5");
  EXPECT_EQ(text(L"s", L"k", 5), L"5");
  EXPECT_EQ(text(L"s", L"k", 2.5), L"2.5");
  EXPECT_EQ(text(L"s", L"k", L""), L"");
  EXPECT_EQ(text(L"s", L"k", true), L"True");
  EXPECT_EQ(text(L"s", L"k", false), L"False");
  Value empty;
  EXPECT_EQ(text(L"s", L"k", empty), L"");
  EXPECT_EQ(content(), "(no such file)");
  expect_no_error();
}

TEST_F(IniStore, a_Boolean_is_stored_in_English) {
  EXPECT_EQ(put(L"s", L"yes", true), S_OK);
  EXPECT_EQ(put(L"s", L"no", false), S_OK);
  EXPECT_EQ(lines(L"s"), (Texts{L"yes=True", L"no=False"}));
  EXPECT_EQ(text(L"s", L"yes", false), L"True");
  EXPECT_EQ(text(L"s", L"no", true), L"False");
}

TEST_F(IniStore, a_Boolean_default_reads_the_two_Italian_words_and_no_others) {
  hold("[s]\r\na=VERO\r\nb=Falso\r\nc=Si\r\nd=vero!\r\ne=true\r\nf=1\r\n");
  EXPECT_EQ(text(L"s", L"a", false), L"True");
  EXPECT_EQ(text(L"s", L"b", true), L"False");
  EXPECT_EQ(text(L"s", L"c", false), L"Si");
  EXPECT_EQ(text(L"s", L"d", false), L"vero!");
  EXPECT_EQ(text(L"s", L"e", false), L"true");
  EXPECT_EQ(text(L"s", L"f", false), L"1");
  EXPECT_EQ(text(L"s", L"a"), L"VERO");
  EXPECT_EQ(text(L"s", L"a", 0), L"VERO");
}

TEST_F(IniStore, no_section_asks_for_the_names_of_all_sections) {
  hold("[one]\r\nk=1\r\n[two]\r\nk=2\r\n");
  for (const Value& section : {Value(L""), null(), Value()}) {
    EXPECT_EQ(text(section, L"k"), L"one\0two\0"s);
    EXPECT_EQ(text(section, null()), L"one\0two\0"s);
  }
  // The key is not even looked at.
  Value array;
  array.vt = VT_ARRAY | VT_BSTR;
  array.parray = SafeArrayCreateVector(VT_BSTR, 0, 1);
  EXPECT_EQ(text(L"", array), L"one\0two\0"s);
}

TEST_F(IniStore, no_key_asks_for_the_names_of_all_keys) {
  hold("[s]\r\na=1\r\nb=2\r\n[t]\r\n");
  for (const Value& key : {Value(L""), null(), Value()}) {
    EXPECT_EQ(text(L"s", key), L"a\0b\0"s);
    EXPECT_EQ(text(L"t", key, L""), L"");
  }
}

TEST_F(IniStore, numbers_may_name_sections_and_keys) {
  EXPECT_EQ(put(L"7", L"12", L"x"), S_OK);
  EXPECT_EQ(text(7, SHORT{12}), L"x");
  EXPECT_EQ(text(0, 0), L"none");
}

TEST_F(IniStore, a_value_of_8191_characters_comes_whole_and_a_longer_one_is_cut) {
  hold("[s]\r\na=" + std::string(8191, 'a') + "\r\nb=" + std::string(9000, 'b') + "\r\n");
  EXPECT_EQ(text(L"s", L"a"), std::wstring(8191, L'a'));
  EXPECT_EQ(text(L"s", L"b"), std::wstring(8191, L'b'));
  expect_no_error();
}

TEST_F(IniStore, a_list_of_names_that_is_too_long_is_cut) {
  std::string content = "[s]\r\n";
  for (int i = 1000; i < 2000; ++i) content += "key_" + std::to_string(i) + "=\r\n";
  hold(content);
  const std::wstring names = text(L"s", null());
  EXPECT_EQ(names.size(), kBufferLength - 2);
  EXPECT_TRUE(names.starts_with(L"key_1000\0key_1001\0"s));
}

std::size_t files_in_current_folder() {
  std::size_t count = 0;
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW(L"*", &found);
  if (search == INVALID_HANDLE_VALUE) return count;
  do ++count;
  while (FindNextFileW(search, &found) != FALSE);
  FindClose(search);
  return count;
}

TEST_F(IniStore, a_file_of_a_name_past_the_common_limit_is_written_and_read) {
  std::wstring folder;
  for (int i = 0; i < 6; ++i) {
    folder += std::wstring(50, L'a') + L"\\";
    CreateDirectoryW((L"\\\\?\\" + folder_.file(folder)).c_str(), nullptr);
  }
  const std::size_t files = files_in_current_folder();
  use(folder + L"a.ini");
  EXPECT_EQ(text(L"s", L"k"), L"none");
  EXPECT_EQ(put(L"s", L"k", L"first"), S_OK);
  EXPECT_EQ(put(L"s", L"k", L"second"), S_OK);
  EXPECT_EQ(text(L"s", L"k"), L"second");
  EXPECT_EQ(lines(L"s"), Texts{L"k=second"});
  const std::wstring whole = L"\\\\?\\" + folder_.file(folder) + L"a.ini";
  EXPECT_NE(GetFileAttributesW(whole.c_str()), INVALID_FILE_ATTRIBUTES);
  use(folder + L"no folder\\a.ini");
  EXPECT_EQ(put(L"s", L"k", L"x"), S_OK);
  EXPECT_EQ(text(L"s", L"k"), L"none");
  EXPECT_EQ(lines(L"s"), Texts{});
  // Long as it is given and short as it is meant.
  std::wstring detour;
  for (int i = 0; i < 100; ++i) detour += L".\\";
  use(detour + L"b.ini");
  EXPECT_EQ(put(L"s", L"k", L"x"), S_OK);
  EXPECT_EQ(text(L"s", L"k"), L"x");
  EXPECT_TRUE(folder_.exists(L"b.ini"));
  EXPECT_EQ(files_in_current_folder(), files);
  expect_no_error();
}

TEST_F(IniStore, Ini_Get_clears_the_error_state_first) {
  String name(L"Z:\\no such file");
  LONG number = 0;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->GetFileVersion(&name, &number, &number, &number, &number, &number, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_number(), 20000);
  text(L"s", L"k");
  expect_no_error();
}

TEST_F(IniStore, Ini_Get_records_a_run_time_error_and_gives_Empty) {
  Value array;
  array.vt = VT_ARRAY | VT_BSTR;
  array.parray = SafeArrayCreateVector(VT_BSTR, 0, 1);
  EXPECT_EQ(get(L"s", L"k", null()).vt, VT_EMPTY);
  EXPECT_EQ(recorded_description(), L"Invalid use of Null");
  expect_error(94, L"KwRtLibMod.Ini_Get");
  EXPECT_EQ(get(L"s", L"k", array).vt, VT_EMPTY);
  EXPECT_EQ(recorded_description(), L"Type mismatch");
  expect_error(13, L"KwRtLibMod.Ini_Get");
  EXPECT_EQ(get(array, L"k", L"").vt, VT_EMPTY);
  expect_error(13, L"KwRtLibMod.Ini_Get");
  EXPECT_EQ(get(L"s", array, L"").vt, VT_EMPTY);
  expect_error(13, L"KwRtLibMod.Ini_Get");
  ini_ = {};
  EXPECT_EQ(get(L"s", L"k", L"").vt, VT_EMPTY);
  EXPECT_EQ(recorded_description(), L"Object variable or With block variable not set");
  expect_error(91, L"KwRtLibMod.Ini_Get");
}

TEST_F(IniStore, a_run_time_error_of_an_operation_without_a_handler_goes_to_the_caller) {
  EXPECT_EQ(put(L"s", L"k", null()), error_result(94));
  EXPECT_EQ(error_description(), L"Invalid use of Null");
  Value array;
  array.vt = VT_ARRAY | VT_BSTR;
  array.parray = SafeArrayCreateVector(VT_BSTR, 0, 1);
  EXPECT_EQ(put(L"s", L"k", array), error_result(13));
  ini_ = {};
  EXPECT_EQ(put(L"s", L"k", null()), error_result(94));
  EXPECT_EQ(put(L"s", L"k", L"x"), error_result(91));
  String section(L"s");
  String key(L"k");
  EXPECT_EQ(global_->Ini_DeleteSection(&section, ini_.variable()), error_result(91));
  EXPECT_EQ(global_->Ini_DeletePar(&section, &key, ini_.variable()), error_result(91));
  SAFEARRAY* array_of_lines = SafeArrayCreateVector(VT_BSTR, 5, 3);
  EXPECT_EQ(global_->Ini_GetSect(&section, &array_of_lines, ini_.variable()), error_result(91));
  LONG last = -1;
  SafeArrayGetUBound(array_of_lines, 1, &last);
  EXPECT_EQ(last, 0);
  SafeArrayDestroy(array_of_lines);
  expect_no_error();
}

TEST_F(IniStore, a_file_that_can_not_be_written_is_not_reported) {
  EXPECT_EQ(ini_->put_IniFile(String(folder_.file(L"none\\a.ini"))), S_OK);
  EXPECT_EQ(put(L"s", L"k", L"x"), S_OK);
  EXPECT_TRUE(put_lines(L"s", 0, {L"", L"a=1"}));
  remove_section(L"s");
  remove_key(L"s", L"k");
  EXPECT_TRUE(lines(L"s").empty());
  EXPECT_EQ(text(L"s", L"k"), L"none");
  expect_no_error();
}

TEST_F(IniStore, a_section_is_read_as_lines_from_index_1) {
  hold("[s]\r\na=1\r\nb=two words\r\nc=\r\n[t]\r\nd=4\r\n");
  EXPECT_EQ(lines(L"s"), (Texts{L"a=1", L"b=two words", L"c="}));
  EXPECT_EQ(lines(L"t"), (Texts{L"d=4"}));
}

TEST_F(IniStore, a_missing_section_or_file_has_no_lines) {
  EXPECT_TRUE(lines(L"s").empty());
  hold("[t]\r\na=1\r\n");
  EXPECT_TRUE(lines(L"s").empty());
  expect_no_error();
}

TEST_F(IniStore, a_section_longer_than_the_buffer_loses_its_end) {
  std::string content = "[s]\r\n";
  for (int i = 1000; i < 3000; ++i) content += "k" + std::to_string(i) + "=123456789\r\n";
  hold(content);
  const Texts found = lines(L"s");
  // 8192 characters with two closing characters 0: 511 whole lines of 15 and one character 0 each
  // are 8176, and 14 of the 16 left are the beginning of the next.
  ASSERT_EQ(found.size(), 512U);
  EXPECT_EQ(found[510], L"k1510=123456789");
  EXPECT_EQ(found[511], L"k1511=12345678");
}

TEST_F(IniStore, lines_that_were_read_can_be_put_back_as_they_stand) {
  EXPECT_TRUE(put_lines(L"s", 0, {L"left out", L"a=1", L"b=2"}));
  EXPECT_EQ(lines(L"s"), (Texts{L"a=1", L"b=2"}));
  Texts again = lines(L"s");
  again.insert(again.begin(), L"");
  EXPECT_TRUE(put_lines(L"t", 0, again));
  EXPECT_EQ(lines(L"t"), (Texts{L"a=1", L"b=2"}));
  EXPECT_EQ(text(L"t", L"b"), L"2");
  expect_no_error();
}

TEST_F(IniStore, Ini_PutSect_replaces_all_that_was_there) {
  EXPECT_EQ(put(L"s", L"old", L"x"), S_OK);
  EXPECT_EQ(put(L"t", L"old", L"x"), S_OK);
  EXPECT_TRUE(put_lines(L"s", 1, {L"a=1"}));
  EXPECT_EQ(lines(L"s"), (Texts{L"a=1"}));
  EXPECT_EQ(lines(L"t"), (Texts{L"old=x"}));
}

TEST_F(IniStore, Ini_PutSect_leaves_out_what_stands_below_index_1) {
  EXPECT_TRUE(put_lines(L"s", -2, {L"a=-2", L"b=-1", L"c=0", L"d=1", L"e=2"}));
  EXPECT_EQ(lines(L"s"), (Texts{L"d=1", L"e=2"}));
}

TEST_F(IniStore, Ini_PutSect_of_an_array_that_ends_at_0_writes_an_empty_section) {
  EXPECT_EQ(put(L"s", L"old", L"x"), S_OK);
  EXPECT_EQ(put(L"t", L"k", L"x"), S_OK);
  EXPECT_TRUE(put_lines(L"s", 0, {L"left out"}));
  EXPECT_TRUE(lines(L"s").empty());
  EXPECT_EQ(text(null(), null()), L"s\0t\0"s);
  EXPECT_TRUE(put_lines(L"t", 0, {}));
  EXPECT_TRUE(lines(L"t").empty());
}

TEST_F(IniStore, Ini_PutSect_records_a_run_time_error) {
  EXPECT_FALSE(put_array(L"s", nullptr));
  EXPECT_EQ(recorded_description(), L"Subscript out of range");
  expect_error(9, L"KwRtLibMod.Ini_PutSect");
  EXPECT_FALSE(put_lines(L"s", 3, {L"a=3"}));
  expect_error(9, L"KwRtLibMod.Ini_PutSect");
  ini_ = {};
  EXPECT_FALSE(put_lines(L"s", 1, {L"a=1"}));
  expect_error(91, L"KwRtLibMod.Ini_PutSect");
}

TEST_F(IniStore, sections_and_keys_are_deleted_alone) {
  EXPECT_EQ(put(L"s", L"a", L"1"), S_OK);
  EXPECT_EQ(put(L"s", L"b", L"2"), S_OK);
  EXPECT_EQ(put(L"t", L"c", L"3"), S_OK);
  remove_key(L"s", L"a");
  EXPECT_EQ(lines(L"s"), (Texts{L"b=2"}));
  remove_key(L"s", L"none");
  EXPECT_EQ(lines(L"s"), (Texts{L"b=2"}));
  remove_section(L"s");
  EXPECT_EQ(text(null(), null()), L"t\0"s);
  remove_section(L"none");
  EXPECT_EQ(lines(L"t"), (Texts{L"c=3"}));
  remove_key(L"t", L"c");
  EXPECT_TRUE(lines(L"t").empty());
  EXPECT_EQ(text(null(), null()), L"t\0"s);
  expect_no_error();
}

}  // namespace
}  // namespace qv::tests
