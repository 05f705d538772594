#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

#include "server/client.h"

namespace qv::tests {
namespace {

using namespace std::literals;

// The working folder is the repository's. What stands between the first "```hex" and the next "```"
// of a page of docs/formats.
std::wstring example_of(const char* page) {
  std::ifstream file(std::string("docs/formats/") + page);
  EXPECT_TRUE(file.is_open()) << page;
  std::wstring text;
  bool inside = false;
  for (std::string line; std::getline(file, line) && !(inside && line.starts_with("```"));) {
    if (inside) {
      std::istringstream numbers(line);
      for (unsigned number; numbers >> std::hex >> number;) text += static_cast<wchar_t>(number);
    }
    inside = inside || line.starts_with("```hex");
  }
  return text;
}

std::wstring long_bytes(LONG number) {
  std::wstring text;
  for (int shift = 0; shift < 32; shift += 8) {
    text += static_cast<wchar_t>(static_cast<ULONG>(number) >> shift & 0xFF);
  }
  return text;
}

std::wstring entry(std::wstring_view name, LONG position) {
  return L"\0"s.append(name) + L'\1' + long_bytes(position) + L'\0';
}

std::wstring bag_2(LONG version, const std::wstring& directory, const std::wstring& values) {
  return L"PB2" + long_bytes(version) + long_bytes(static_cast<LONG>(directory.size())) +
         directory + values;
}

std::wstring long_value(LONG number) { return L'\3' + long_bytes(number); }

class PropertyBags : public testing::Test {
 protected:
  ~PropertyBags() override { global->Reset_Error(); }

  bool write(const wchar_t* name, Value value, Value default_value = Value::missing()) {
    return write(std::wstring_view(name), value, default_value);
  }
  bool write(std::wstring_view name, Value value, Value default_value = Value::missing()) {
    String text(name);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->WriteProperty(&value, &text, &default_value, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  bool replace(const wchar_t* name, Value value, Value default_value = Value::missing()) {
    String text(name);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->PropertyReplace(&value, &text, &default_value, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  bool remove(const wchar_t* name) {
    String text(name);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->DeleteProperty(&text, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  bool exists(std::wstring_view name) {
    String text(name);
    VARIANT_BOOL found = 7;
    EXPECT_EQ(bag->PropertyExists(&text, &found), S_OK);
    return found == VARIANT_TRUE;
  }
  bool load(std::wstring_view buffer) {
    String text(buffer);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->Load(&text, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  HRESULT read(std::wstring_view name, Value& value, Value default_value = Value(L"absent")) {
    String text(name);
    return bag->ReadProperty(&text, &default_value, &value);
  }
  std::wstring read_text(std::wstring_view name) {
    Value value;
    EXPECT_EQ(read(name, value), S_OK);
    return std::wstring(value.text());
  }
  LONG read_long(std::wstring_view name) {
    Value value;
    EXPECT_EQ(read(name, value), S_OK);
    EXPECT_EQ(value.vt, VT_I4);
    return value.lVal;
  }
  std::wstring flushed() {
    String text;
    EXPECT_EQ(bag->get_Flush(&text), S_OK);
    return std::wstring(text.view());
  }
  std::wstring names() {
    String text;
    EXPECT_EQ(bag->EnumProperties(&text), S_OK);
    return std::wstring(text.view());
  }
  LONG version() {
    LONG number = -1;
    EXPECT_EQ(bag->get_Version(&number), S_OK);
    return number;
  }
  // The record; clears it.
  void expect_record(LONG number, const wchar_t* source) {
    LONG recorded = -1;
    String text;
    global->Error_Number(&recorded);
    global->Error_Source(&text);
    EXPECT_EQ(recorded, number);
    EXPECT_EQ(text, source);
    global->Reset_Error();
  }
  std::wstring recorded_description() {
    String text;
    global->Error_Description(&text);
    return std::wstring(text.view());
  }

  Pointer<_KwRtLib> global = create_global();
  Pointer<_QvtPropertyBag2> bag = create<_QvtPropertyBag2>(CLSID_QvtPropertyBag2);
};

TEST_F(PropertyBags, a_new_bag_is_empty) {
  EXPECT_EQ(version(), 0);
  EXPECT_EQ(names(), L"");
  EXPECT_EQ(flushed(), L"PB2\0\0\0\0\0\0\0\0"s);
}

TEST_F(PropertyBags, the_example_of_the_format_page_is_what_is_written_and_read) {
  const std::wstring page = example_of("property-bag-2.md");
  bag->put_Version(5);
  EXPECT_FALSE(write(L"One", Value(7)));
  EXPECT_FALSE(write(L"Two", Value(L"x")));
  EXPECT_EQ(flushed(), page);

  bag = create<_QvtPropertyBag2>(CLSID_QvtPropertyBag2);
  EXPECT_FALSE(load(page));
  EXPECT_EQ(version(), 5);
  EXPECT_EQ(read_long(L"one"), 7);
  EXPECT_EQ(read_text(L"TWO"), L"x");
  EXPECT_EQ(names(), L"ONE\0TWO\0"s);
  EXPECT_EQ(flushed(), page);
}

TEST_F(PropertyBags, values_come_back_in_the_type_they_were_written_with) {
  Value currency;
  currency.vt = VT_CY;
  currency.cyVal.int64 = 12345;
  Value date(2.5);
  date.vt = VT_DATE;
  const std::vector<Value> values = {Value(SHORT{3}), Value(4), Value(1.5F), Value(2.5),
                                     currency,        date,     Value(true), Value(L"text")};
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_FALSE(write(std::to_wstring(i), values[i]));
  }
  EXPECT_FALSE(load(flushed()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    Value value;
    EXPECT_EQ(read(std::to_wstring(i), value), S_OK);
    EXPECT_EQ(value.vt, values[i].vt);
    if (value.vt == VT_BSTR) {
      EXPECT_EQ(value.text(), L"text");
    } else {
      EXPECT_EQ(VarCmp(&value, const_cast<Value*>(&values[i]), 0, 0),
                static_cast<HRESULT>(VARCMP_EQ));
    }
  }
}

TEST_F(PropertyBags, a_byte_comes_back_as_an_integer) {
  EXPECT_FALSE(write(L"b", Value(BYTE{200})));
  Value value;
  EXPECT_EQ(read(L"b", value), S_OK);
  EXPECT_EQ(value.vt, VT_I2);
  EXPECT_EQ(value.iVal, 200);
}

TEST_F(PropertyBags, a_value_equal_to_its_default_is_not_stored) {
  EXPECT_FALSE(write(L"a", Value(5), Value(5)));
  EXPECT_FALSE(write(L"b", Value(0)));
  EXPECT_FALSE(write(L"c", Value(L"")));
  EXPECT_FALSE(write(L"d", Value(false)));
  EXPECT_FALSE(write(L"e", Value()));
  EXPECT_FALSE(write(L"f", Value(5), Value(5.0)));
  EXPECT_EQ(names(), L"");
  EXPECT_FALSE(exists(L"a"));
  Value value;
  EXPECT_EQ(read(L"a", value, Value(5)), S_OK);
  EXPECT_EQ(value.vt, VT_I4);
  EXPECT_EQ(value.lVal, 5);
}

TEST_F(PropertyBags, a_number_and_the_same_text_are_not_equal) {
  EXPECT_FALSE(write(L"a", Value(5), Value(L"5")));
  EXPECT_TRUE(exists(L"a"));
}

TEST_F(PropertyBags, a_missing_default_variable_receives_the_zero_of_the_type) {
  Value value(L"x");
  String name(L"a");
  Value default_value = Value::missing();
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(bag->WriteProperty(&value, &name, &default_value, &failed), S_OK);
  EXPECT_EQ(default_value.text(), L"");
}

TEST_F(PropertyBags, a_stored_value_is_returned_whatever_the_default) {
  write(L"a", Value(5), Value(1));
  Value value;
  EXPECT_EQ(read(L"a", value, Value(5)), S_OK);
  EXPECT_EQ(value.lVal, 5);
  EXPECT_EQ(read(L"a", value, Value::missing()), S_OK);
  EXPECT_EQ(value.lVal, 5);
}

TEST_F(PropertyBags, an_absent_value_is_a_copy_of_the_default) {
  Value value;
  EXPECT_EQ(read(L"a", value, Value(L"d")), S_OK);
  EXPECT_EQ(value.text(), L"d");
  Value number;
  EXPECT_EQ(read(L"", number, Value(3)), S_OK);
  EXPECT_EQ(number.lVal, 3);
}

TEST_F(PropertyBags, names_that_differ_in_case_are_one) {
  EXPECT_FALSE(write(L"x", Value(L"a")));
  EXPECT_TRUE(write(L"X", Value(L"A")));
  EXPECT_EQ(recorded_description(), L"La propriet\xE0 X \xE8 gi\xE0 stata inserita.");
  expect_record(20000, L"QvPropertyBag.DirectoryAdd");
  EXPECT_EQ(flushed(), bag_2(0, entry(L"X", 1), L"\xFF\1\0\0\0a"s));
  EXPECT_FALSE(write(L"\xE8", Value(1)));
  EXPECT_TRUE(exists(L"\xC8"));
}

TEST_F(PropertyBags, a_name_that_is_part_of_another_is_another) {
  write(L"ab", Value(1));
  EXPECT_FALSE(exists(L"a"));
  EXPECT_FALSE(exists(L"b"));
  EXPECT_FALSE(write(L"b", Value(2)));
  EXPECT_EQ(read_long(L"ab"), 1);
  EXPECT_EQ(read_long(L"b"), 2);
}

TEST_F(PropertyBags, an_empty_name_is_a_name) {
  EXPECT_FALSE(write(L"", Value(1)));
  EXPECT_EQ(read_long(L""), 1);
  EXPECT_TRUE(write(L"", Value(2)));
  expect_record(20000, L"QvPropertyBag.DirectoryAdd");
  EXPECT_EQ(names(), L"\0"s);
}

TEST_F(PropertyBags, names_outside_the_code_page_stay_apart_here) {
  EXPECT_FALSE(write(L"\x0416", Value(1)));
  EXPECT_FALSE(write(L"\x0418", Value(2)));
  EXPECT_EQ(read_long(L"\x0436"), 1);
  EXPECT_EQ(read_long(L"\x0438"), 2);
}

TEST_F(PropertyBags, values_that_do_not_compare_are_recorded) {
  Value null;
  null.vt = VT_NULL;
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  Value array;
  array.vt = VT_ARRAY | VT_UI1;
  array.parray = SafeArrayCreateVector(VT_UI1, 0, 1);
  for (const auto& [value, number] :
       std::vector<std::pair<Value, LONG>>{{null, 94}, {nothing, 91}, {array, 13}}) {
    EXPECT_TRUE(write(L"a", value));
    expect_record(number, L"QvPropertyBag.WriteProperty");
  }
  EXPECT_EQ(names(), L"");
}

TEST_F(PropertyBags, a_value_without_a_form_leaves_its_name_behind) {
  Value decimal;
  VarDecFromI4(5, &decimal.decVal);
  decimal.vt = VT_DECIMAL;
  EXPECT_TRUE(write(L"a", decimal));
  expect_record(13, L"KwRtLibMod.BufferTyped_Put");
  EXPECT_TRUE(exists(L"a"));
  Value value;
  EXPECT_EQ(read(L"a", value), error_result(9));
  EXPECT_EQ(flushed(), bag_2(0, entry(L"A", 1), L""));
}

TEST_F(PropertyBags, defaults_go_by_the_type) {
  Value currency;
  currency.vt = VT_CY;
  currency.cyVal.int64 = 5;
  Value date(5.0);
  date.vt = VT_DATE;
  Value decimal;
  VarDecFromI4(5, &decimal.decVal);
  decimal.vt = VT_DECIMAL;
  Value null;
  null.vt = VT_NULL;
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = nullptr;
  Value array;
  array.vt = VT_ARRAY | VT_UI1;
  array.parray = SafeArrayCreateVector(VT_UI1, 0, 1);
  for (const auto& [given, type] :
       std::vector<std::pair<Value, VARTYPE>>{{Value(5), VT_I4},
                                              {Value(5.0F), VT_R4},
                                              {currency, VT_CY},
                                              {date, VT_DATE},
                                              {Value(L"x"), VT_BSTR},
                                              {object, VT_DISPATCH},
                                              {Value(true), VT_BOOL},
                                              {decimal, VT_DECIMAL},
                                              {Value(BYTE{5}), VT_UI1},
                                              {Value(SHORT{5}), VT_I2},
                                              {Value(5.0), VT_I2},
                                              {Value(), VT_I2},
                                              {null, VT_I2},
                                              {array, VT_I2},
                                              {Value::missing(), VT_I2}}) {
    Value zero;
    EXPECT_EQ(bag->DefaultOf(const_cast<Value*>(&given), &zero), S_OK);
    EXPECT_EQ(zero.vt, type);
    if (type == VT_DECIMAL) {
      EXPECT_EQ(zero.decVal.Lo64, 0U);
    } else if (type == VT_BSTR) {
      EXPECT_EQ(zero.text(), L"");
    } else if (type == VT_I2 || type == VT_BOOL) {
      EXPECT_EQ(zero.iVal, 0);
    } else {
      EXPECT_EQ(zero.llVal, 0);
    }
  }
}

TEST_F(PropertyBags, deleting_the_first_keeps_all_others) {
  for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) write(name, Value(name));
  EXPECT_FALSE(remove(L"A"));
  EXPECT_EQ(names(), L"B\0C\0D\0"s);
  for (const wchar_t* name : {L"b", L"c", L"d"}) EXPECT_EQ(read_text(name), name);
  EXPECT_FALSE(remove(L"b"));
  EXPECT_FALSE(remove(L"c"));
  EXPECT_EQ(read_text(L"d"), L"d");
  EXPECT_FALSE(remove(L"d"));
  EXPECT_EQ(flushed(), L"PB2\0\0\0\0\0\0\0\0"s);
}

TEST_F(PropertyBags, deleting_the_last_one_keeps_the_others) {
  write(L"a", Value(1));
  write(L"b", Value(2));
  EXPECT_FALSE(remove(L"b"));
  EXPECT_EQ(read_long(L"a"), 1);
  EXPECT_EQ(flushed(), bag_2(0, entry(L"A", 1), long_value(1)));
}

// The correction begins at position 6 of the directory, within the first entry but behind its
// character 1, so that the first entry stays and the third is corrected.
TEST_F(PropertyBags, deleting_a_later_one_may_correct_rightly) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) write(name, Value(7));
  EXPECT_FALSE(remove(L"b"));
  EXPECT_EQ(flushed(), bag_2(0, entry(L"A", 1) + entry(L"C", 6), long_value(7) + long_value(7)));
}

// Correcting begins at position 16, behind all that is left of the directory.
TEST_F(PropertyBags, deleting_a_later_one_may_leave_wrong_positions_behind) {
  write(L"a", Value(L"0123456789"));
  write(L"b", Value(1));
  write(L"c", Value(2));
  EXPECT_FALSE(remove(L"b"));
  EXPECT_EQ(flushed(), bag_2(0, entry(L"A", 1) + entry(L"C", 21),
                             L"\xFF\x0A\0\0\0"s + L"0123456789" + long_value(2)));
  Value value;
  EXPECT_EQ(read(L"c", value), error_result(9));
}

// Correcting begins at position 6, before the character 1 that ends so long a name: the entry
// before the cut loses what it should keep.
TEST_F(PropertyBags, deleting_a_later_one_may_correct_an_entry_before_the_cut) {
  write(L"a-long-name", Value(1));
  write(L"b", Value(2));
  EXPECT_FALSE(remove(L"b"));
  EXPECT_EQ(flushed(), bag_2(0, entry(L"A-LONG-NAME", -4), long_value(1)));
  EXPECT_FALSE(exists(L"a-long-name"));
}

TEST_F(PropertyBags, deleting_an_absent_name_succeeds) {
  write(L"a", Value(1));
  const std::wstring before = flushed();
  EXPECT_FALSE(remove(L"b"));
  EXPECT_EQ(flushed(), before);
}

TEST_F(PropertyBags, bytes_of_a_position_are_not_taken_for_marks) {
  // 257 is 01 01 00 00.
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 1) + entry(L"B", 257),
                          long_value(7) + std::wstring(251, L'x') + long_value(8))));
  EXPECT_EQ(read_long(L"b"), 8);
  EXPECT_FALSE(remove(L"a"));
  EXPECT_TRUE(flushed().starts_with(bag_2(0, entry(L"B", 252), L"xxx")));
}

TEST_F(PropertyBags, replacing_adds_replaces_or_leaves_alone) {
  EXPECT_FALSE(replace(L"a", Value(L"one")));
  EXPECT_EQ(read_text(L"a"), L"one");
  EXPECT_FALSE(replace(L"a", Value(L"two")));
  EXPECT_EQ(read_text(L"a"), L"two");
  const std::wstring before = flushed();
  EXPECT_FALSE(replace(L"A", Value(L"two")));
  EXPECT_EQ(flushed(), before);
}

TEST_F(PropertyBags, replacing_by_the_default_deletes) {
  write(L"a", Value(L"one"));
  EXPECT_FALSE(replace(L"a", Value(L"d"), Value(L"d")));
  EXPECT_FALSE(exists(L"a"));
  EXPECT_EQ(flushed(), L"PB2\0\0\0\0\0\0\0\0"s);
}

TEST_F(PropertyBags, replacing_by_another_type_of_the_same_value_leaves_alone) {
  write(L"a", Value(5));
  const std::wstring before = flushed();
  EXPECT_FALSE(replace(L"a", Value(5.0)));
  EXPECT_EQ(flushed(), before);
}

TEST_F(PropertyBags, a_failed_write_does_not_show_when_replacing) {
  Value decimal;
  VarDecFromI4(5, &decimal.decVal);
  decimal.vt = VT_DECIMAL;
  EXPECT_FALSE(replace(L"a", decimal));
  expect_record(13, L"KwRtLibMod.BufferTyped_Put");
}

TEST_F(PropertyBags, replacing_by_what_does_not_compare_is_recorded) {
  write(L"a", Value(5));
  Value null;
  null.vt = VT_NULL;
  EXPECT_TRUE(replace(L"a", null));
  expect_record(94, L"QvPropertyBag.PropertyReplace");
  EXPECT_EQ(read_long(L"a"), 5);
  // An absent one is only written, and that fails without showing.
  EXPECT_FALSE(replace(L"b", null));
  expect_record(94, L"QvPropertyBag.WriteProperty");
}

TEST_F(PropertyBags, an_empty_buffer_has_version_512) {
  bag->put_Version(3);
  write(L"a", Value(1));
  EXPECT_FALSE(load(L""));
  EXPECT_EQ(version(), 512);
  EXPECT_EQ(names(), L"");
}

TEST_F(PropertyBags, loading_begins_anew) {
  write(L"a", Value(1));
  EXPECT_FALSE(load(bag_2(7, entry(L"B", 1), long_value(2))));
  EXPECT_EQ(version(), 7);
  EXPECT_EQ(names(), L"B\0"s);
  EXPECT_EQ(read_long(L"b"), 2);
}

TEST_F(PropertyBags, anything_without_the_magic_is_refused) {
  for (const wchar_t* buffer : {L"x", L"PB", L"PB1\1\1\1\1\1\1\1\1", L"pb2\1\1\1\1\1\1\1\1"}) {
    bag->put_Version(3);
    write(L"a", Value(1));
    EXPECT_TRUE(load(buffer));
    EXPECT_EQ(recorded_description(), L"Il buffer non contiene dati di PropertyBag2.");
    expect_record(20000, L"QvPropertyBag.Load");
    EXPECT_EQ(flushed(), L"PB2\0\0\0\0\0\0\0\0"s);
  }
}

TEST_F(PropertyBags, a_buffer_cut_at_any_byte_loads_what_is_left) {
  const std::wstring whole = example_of("property-bag-2.md");
  for (std::size_t length = 3; length < whole.size(); ++length) {
    EXPECT_FALSE(load(whole.substr(0, length)));
    EXPECT_EQ(version(), length < 7 ? 0 : 5);
    Value value;
    const HRESULT one = read(L"one", value);
    // Entry cut: absent. Directory whole and value cut: error.
    EXPECT_EQ(one, length < 20 || length >= 36 ? S_OK : error_result(9)) << length;
    names();
    remove(L"one");
    remove(L"two");
    global->Reset_Error();
  }
}

TEST_F(PropertyBags, sizes_of_no_directory_are_recorded) {
  EXPECT_TRUE(load(L"PB2\1\0\0\0\xFF\xFF\xFF\xFFxy"s));
  expect_record(5, L"QvPropertyBag.Load");
  EXPECT_EQ(version(), 1);
  EXPECT_EQ(names(), L"");
  EXPECT_TRUE(load(L"PB2\1\0\0\0\xFF\xFF\xFF\x7Fxy"s));
  expect_record(6, L"QvPropertyBag.Load");
  EXPECT_FALSE(load(L"PB2\1\0\0\0\xFF\xFF\0\0xy"s));
  EXPECT_EQ(flushed(), bag_2(1, L"xy", L""));
}

TEST_F(PropertyBags, wrong_positions_show_when_a_value_is_read) {
  Value value;
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 6) + entry(L"B", 1000) + entry(L"C", 2), long_value(1))));
  EXPECT_EQ(read(L"a", value), error_result(9));
  EXPECT_EQ(read(L"b", value), error_result(9));
  EXPECT_EQ(read(L"c", value), error_result(13));
  EXPECT_TRUE(remove(L"a"));
  expect_record(9, L"QvPropertyBag.DeleteProperty");
  // The name is gone all the same.
  EXPECT_FALSE(exists(L"a"));
  EXPECT_TRUE(remove(L"b"));
  EXPECT_TRUE(remove(L"c"));
  expect_record(13, L"QvPropertyBag.DeleteProperty");
  EXPECT_EQ(names(), L"");
}

TEST_F(PropertyBags, a_position_of_0_is_an_absent_name) {
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 0), long_value(1))));
  EXPECT_FALSE(exists(L"a"));
  EXPECT_EQ(read_text(L"a"), L"absent");
  EXPECT_FALSE(remove(L"a"));
  EXPECT_EQ(names(), L"A\0"s);
}

TEST_F(PropertyBags, a_negative_position_is_a_failure_with_what_the_record_holds) {
  EXPECT_FALSE(load(bag_2(0, entry(L"A", -1), long_value(1))));
  EXPECT_FALSE(exists(L"a"));
  EXPECT_TRUE(write(L"a", Value(1)));
  Value number(20007);
  Value source(L"S");
  Value description(L"D");
  global->Error_Set(&number, &source, &description, nullptr, nullptr, nullptr, nullptr);
  Value value;
  EXPECT_EQ(read(L"a", value), error_result(20007));
  EXPECT_EQ(error_description(), L"D");
  EXPECT_TRUE(remove(L"a"));
  expect_record(20007, L"S < QvPropertyBag.DeleteProperty");
  EXPECT_FALSE(replace(L"b", Value(1)));
  EXPECT_TRUE(replace(L"a", Value(1)));
  expect_record(0, L" < QvPropertyBag.DeleteProperty < QvPropertyBag.PropertyReplace");
}

TEST_F(PropertyBags, an_array_among_the_values_is_never_read) {
  const std::wstring array = L"\x20\x11\1\0\0\0\0\0\1\0\0\0\2\0\0\0\5\6"s;
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 1) + entry(L"B", 19), array + long_value(1))));
  Value value;
  EXPECT_EQ(read(L"a", value), error_result(9));
  EXPECT_EQ(read_long(L"b"), 1);
  EXPECT_TRUE(remove(L"a"));
  expect_record(9, L"QvPropertyBag.DeleteProperty");
  EXPECT_EQ(read_long(L"b"), 1);
}

TEST_F(PropertyBags, correcting_a_directory_that_is_cut_ends_in_an_error) {
  // The last entry ends with its character 1.
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 1) + L"\0B\1"s, long_value(1))));
  EXPECT_TRUE(remove(L"a"));
  expect_record(5, L"QvPropertyBag.DeleteProperty");
  // Two of four bytes of the position are there, and two are written.
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 1) + L"\0B\1\7\0"s, long_value(1))));
  EXPECT_FALSE(remove(L"a"));
  EXPECT_EQ(flushed(), bag_2(0, L"\0B\1\xFB\xFF"s, L""));
  // A position that can't be made smaller; byte 80 hexadecimal is the euro sign.
  EXPECT_FALSE(load(bag_2(0, entry(L"A", 1) + L"\0B\1\0\0\0\x20AC"s + L"\0"s, long_value(1))));
  EXPECT_TRUE(remove(L"a"));
  expect_record(6, L"QvPropertyBag.DeleteProperty");
}

TEST_F(PropertyBags, a_name_with_character_0_or_1_confuses_the_directory) {
  EXPECT_FALSE(write(L"A\1B"sv, Value(7)));
  EXPECT_EQ(read_long(L"A\1B"sv), 7);
  // Its beginning passes for a name of its own, at a position made of what follows.
  EXPECT_EQ(names(), L"A\0"s);
  Value value;
  EXPECT_EQ(read(L"A", value), error_result(9));
  EXPECT_FALSE(write(L"C\0D"sv, Value(8)));
  EXPECT_EQ(read_long(L"C\0D"sv), 8);
  EXPECT_EQ(read_long(L"D"), 8);
}

TEST_F(PropertyBags, ten_thousand_names_are_kept) {
  for (LONG i = 1; i <= 10000; ++i) {
    ASSERT_FALSE(write(L"name " + std::to_wstring(i), Value(i)));
  }
  EXPECT_FALSE(load(flushed()));
  EXPECT_EQ(read_long(L"name 1"), 1);
  EXPECT_EQ(read_long(L"NAME 10000"), 10000);
  EXPECT_FALSE(exists(L"name 10001"));
}

class FirstPropertyBags : public testing::Test {
 protected:
  ~FirstPropertyBags() override { global->Reset_Error(); }
  bool write(const wchar_t* name, Value value) {
    String text(name);
    Value default_value = Value::missing();
    VARIANT_BOOL v2 = VARIANT_TRUE;
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->WriteProperty(&value, &text, &default_value, &v2, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  bool load(std::wstring_view buffer) {
    String text(buffer);
    VARIANT_BOOL v2 = VARIANT_FALSE;
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(bag->Load(&text, &v2, &failed), S_OK);
    return failed == VARIANT_TRUE;
  }
  std::wstring flushed() {
    String text;
    EXPECT_EQ(bag->get_Flush(&text), S_OK);
    return std::wstring(text.view());
  }
  void expect_record(LONG number, const wchar_t* source) {
    LONG recorded = -1;
    String text;
    global->Error_Number(&recorded);
    global->Error_Source(&text);
    EXPECT_EQ(recorded, number);
    EXPECT_EQ(text, source);
    global->Reset_Error();
  }

  Pointer<_KwRtLib> global = create_global();
  Pointer<_QvtPropertyBag> bag = create<_QvtPropertyBag>(CLSID_QvtPropertyBag);
};

TEST_F(FirstPropertyBags, the_example_of_the_format_page_is_what_is_written) {
  bag->put_Version(5);
  EXPECT_FALSE(write(L"One", Value(7)));
  EXPECT_EQ(flushed(), example_of("property-bag-1.md"));
  EXPECT_EQ(flushed(), example_of("property-bag-1.md"));
}

TEST_F(FirstPropertyBags, a_new_bag_has_version_and_size_0) {
  EXPECT_EQ(flushed(), L"\3\0\0\0\0\0\0\0\0"s);
}

TEST_F(FirstPropertyBags, loading_what_was_flushed_fails_and_empties) {
  bag->put_Version(5);
  write(L"One", Value(7));
  for (const std::wstring& buffer : {flushed(), L""s, L"PB2"s}) {
    EXPECT_TRUE(load(buffer));
    expect_record(9, L"QvPropertyBag.Load");
    LONG version = -1;
    bag->get_Version(&version);
    EXPECT_EQ(version, 0);
    EXPECT_EQ(flushed(), L"\3\0\0\0\0\0\0\0\0"s);
  }
}

TEST_F(FirstPropertyBags, reading_tells_where_the_next_value_stands) {
  write(L"One", Value(7));
  write(L"Two", Value(L"x"));
  String name(L"one");
  Value default_value(L"d");
  LONG offset = 99;
  Value value;
  EXPECT_EQ(bag->ReadProperty(&name, &default_value, &offset, &value), S_OK);
  EXPECT_EQ(value.vt, VT_I4);
  EXPECT_EQ(value.lVal, 7);
  EXPECT_EQ(offset, 6);
  String absent(L"three");
  VariantClear(&value);
  EXPECT_EQ(bag->ReadProperty(&absent, &default_value, &offset, &value), S_OK);
  EXPECT_EQ(value.text(), L"d");
  EXPECT_EQ(offset, 0);
}

TEST_F(FirstPropertyBags, arguments_may_be_left_out) {
  Value value(7);
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(bag->WriteProperty(&value, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  Value read;
  EXPECT_EQ(bag->ReadProperty(nullptr, nullptr, nullptr, &read), S_OK);
  EXPECT_EQ(read.lVal, 7);
  EXPECT_EQ(bag->WriteProperty(&value, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(20000, L"QvPropertyBag.DirectoryAdd");
}

TEST_F(FirstPropertyBags, an_empty_name_that_was_never_written_gives_the_default) {
  write(L"One", Value(7));
  String name;
  Value default_value(3);
  LONG offset = 5;
  Value value;
  EXPECT_EQ(bag->ReadProperty(&name, &default_value, &offset, &value), S_OK);
  EXPECT_EQ(value.lVal, 3);
  EXPECT_EQ(offset, 0);
}

TEST_F(FirstPropertyBags, defaults_go_by_the_type) {
  Value text(L"x");
  Value zero;
  EXPECT_EQ(bag->DefaultOf(&text, &zero), S_OK);
  EXPECT_EQ(zero.text(), L"");
}

}  // namespace
}  // namespace qv::tests
