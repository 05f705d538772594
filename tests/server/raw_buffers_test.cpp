// Raw buffers through the typed interface.
#include "server/client.h"

#include <cstring>
#include <limits>
#include <utility>

namespace qv::tests {
namespace {

using std::wstring;

constexpr std::size_t kStep = 16384;
constexpr const wchar_t* kPut = L"KwRtLibMod.Buffer_Put";
constexpr const wchar_t* kGet = L"KwRtLibMod.Buffer_Get";

// Values of types that the client's Value has no constructor for.
Value of_type(VARTYPE type) {
  Value value;
  value.vt = type;
  return value;
}
Value currency(LONGLONG ten_thousandths) {
  Value value = of_type(VT_CY);
  value.cyVal.int64 = ten_thousandths;
  return value;
}
Value date(DATE days) {
  Value value = of_type(VT_DATE);
  value.date = days;
  return value;
}

class RawBuffers : public testing::Test {
 protected:
  RawBuffers() { global->Reset_Error(); }

  bool put(Value value, bool prefix = false) { return put_reference(&value, prefix); }
  bool put_reference(VARIANT* value, bool prefix = false) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    VARIANT_BOOL string_prefix = prefix ? VARIANT_TRUE : VARIANT_FALSE;
    EXPECT_EQ(global->Buffer_Put(&buffer, &offset, value, &string_prefix, &failed), S_OK);
    EXPECT_TRUE(failed == VARIANT_FALSE || failed == VARIANT_TRUE);
    return failed == VARIANT_FALSE;
  }
  bool get(Value& value, bool prefix = false) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    VARIANT_BOOL string_prefix = prefix ? VARIANT_TRUE : VARIANT_FALSE;
    EXPECT_EQ(global->Buffer_Get(&buffer, &offset, &value, &string_prefix, &failed), S_OK);
    EXPECT_TRUE(failed == VARIANT_FALSE || failed == VARIANT_TRUE);
    return failed == VARIANT_FALSE;
  }
  void set(const wstring& content, LONG at) {
    SysReAllocStringLen(&buffer, content.data(), static_cast<UINT>(content.size()));
    offset = at;
  }
  wstring content() const {
    return wstring(buffer.view().substr(0, static_cast<std::size_t>(offset - 1)));
  }
  void expect_failure(LONG number, const wchar_t* source) {
    LONG recorded = 0;
    String recorded_source;
    EXPECT_EQ(global->Error_Number(&recorded), S_OK);
    EXPECT_EQ(global->Error_Source(&recorded_source), S_OK);
    EXPECT_EQ(recorded, number);
    EXPECT_EQ(recorded_source, source);
    global->Reset_Error();
  }
  void complete() { EXPECT_EQ(global->Buffer_Complete(&buffer, &offset), S_OK); }
  HRESULT right(LONG chars, wstring& result) {
    String text;
    const HRESULT status = global->Buffer_Right(&buffer, &offset, &chars, &text);
    result = text.view();
    return status;
  }
  void truncate(const wchar_t* last) {
    String text(last);
    VARIANT_BOOL result = VARIANT_TRUE;
    EXPECT_EQ(global->Buffer_TruncIfLast(&buffer, &offset, &text, &result), S_OK);
    EXPECT_EQ(result, VARIANT_FALSE);
  }

  Pointer<_KwRtLib> global = create_global();
  String buffer;
  LONG offset = 1;
};

using BufferPut = RawBuffers;
using BufferGet = RawBuffers;
using BufferEnds = RawBuffers;

TEST_F(BufferPut, each_type_has_its_image) {
  const std::pair<Value, wstring> rows[] = {
      {BYTE{0x41}, L"A"},
      {BYTE{0}, {L"\0", 1}},
      {BYTE{0x80}, L"\x20AC"},  // the character of that code in code page 1252
      {SHORT{0x1234}, L"\x34\x12"},
      {SHORT{-1}, L"\xFF\xFF"},
      {true, L"\xFF\xFF"},
      {false, {L"\0\0", 2}},
      {0x12345678, L"\x78\x56\x34\x12"},
      {-1, L"\xFF\xFF\xFF\xFF"},
      {1.0F, {L"\1\0\0\0", 4}},
      {1.0, {L"\0\0\0\0\0\0\xF0\x3F", 8}},
      {currency(10000), {L"\0\0\0\0\0\0\xF0\x3F", 8}},  // 1 as a Double
      {date(1.0), {L"\0\0\0\0\0\0\xF0\x3F", 8}},
      {L"text", L"text"},
      {L"", L""},
      {std::wstring_view(L"a\0b\x4E2D", 4), {L"a\0b\x4E2D", 4}}};
  for (const auto& [value, image] : rows) {
    set(L"", 1);
    EXPECT_TRUE(put(value)) << value.vt;
    EXPECT_EQ(offset, static_cast<LONG>(image.size()) + 1) << value.vt;
    EXPECT_EQ(content(), image) << value.vt;
  }
}

TEST_F(BufferPut, a_Single_is_stored_as_a_Long_rounded_to_even) {
  const std::pair<float, wchar_t> rows[] = {
      {0.5F, L'\0'}, {1.5F, L'\2'}, {2.5F, L'\2'}, {3.5F, L'\4'}};
  for (const auto& [value, low] : rows) {
    set(L"", 1);
    EXPECT_TRUE(put(value));
    EXPECT_EQ(content(), wstring({low, L'\0', L'\0', L'\0'})) << value;
  }
}

TEST_F(BufferPut, a_Single_beyond_the_Longs_is_error_6) {
  EXPECT_FALSE(put(3E9F));
  EXPECT_EQ(offset, 1);
  expect_failure(6, kPut);
}

TEST_F(BufferPut, a_text_with_prefix_stands_behind_its_length) {
  EXPECT_TRUE(put(L"abc", true));
  EXPECT_EQ(offset, 8);
  EXPECT_EQ(content(), wstring(L"\3\0\0\0abc", 7));
  EXPECT_TRUE(put(L"", true));
  EXPECT_EQ(content(), wstring(L"\3\0\0\0abc\0\0\0\0", 11));
}

TEST_F(BufferPut, the_prefix_concerns_texts_only) {
  EXPECT_TRUE(put(SHORT{7}, true));
  EXPECT_EQ(offset, 3);
  EXPECT_EQ(content(), wstring(L"\7\0", 2));
}

TEST_F(BufferPut, StringPrefix_left_out_is_False) {
  Value text(L"abc");
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &text, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(content(), L"abc");
}

TEST_F(BufferPut, other_types_are_error_13_and_change_nothing) {
  SAFEARRAYBOUND bound{2, 0};
  Value array = of_type(VT_ARRAY | VT_UI1);
  array.parray = SafeArrayCreate(VT_UI1, 1, &bound);
  Value object = of_type(VT_DISPATCH);
  object.pdispVal = global.get();
  object.pdispVal->AddRef();
  const Value rows[] = {of_type(VT_EMPTY),
                        of_type(VT_NULL),
                        of_type(VT_ERROR),
                        Value::missing(),
                        of_type(VT_DECIMAL),
                        of_type(VT_I8),
                        of_type(VT_UI4),
                        of_type(VT_I1),
                        of_type(VT_DISPATCH),
                        object,
                        array};
  for (const Value& value : rows) {
    EXPECT_FALSE(put(value)) << value.vt;
    EXPECT_EQ(offset, 1) << value.vt;
    EXPECT_EQ(buffer.length(), 0U) << value.vt;
    String description;
    global->Error_Description(&description);
    EXPECT_EQ(description, L"Type mismatch");
    expect_failure(13, kPut);
  }
}

TEST_F(BufferPut, typed_variables_by_reference_count_as_their_type) {
  BYTE byte = 65;
  SHORT integer = 1;
  LONG number = 2;
  VARIANT_BOOL truth = VARIANT_TRUE;
  FLOAT single = 1.5F;
  DOUBLE real = 1;
  BSTR text = SysAllocString(L"xy");
  const auto put_typed = [this](VARTYPE type, void* variable) {
    VARIANT reference;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    EXPECT_TRUE(put_reference(&reference)) << type;
  };
  put_typed(VT_UI1, &byte);
  put_typed(VT_I2, &integer);
  put_typed(VT_I4, &number);
  put_typed(VT_BOOL, &truth);
  put_typed(VT_R4, &single);
  put_typed(VT_R8, &real);
  put_typed(VT_BSTR, &text);
  Value inner(SHORT{3});
  put_typed(VT_VARIANT, &inner);
  SysFreeString(text);
  EXPECT_EQ(content(), wstring(L"A\1\0\2\0\0\0\xFF\xFF\2\0\0\0\0\0\0\0\0\0\xF0\x3Fxy\3\0", 25));
}

TEST_F(BufferPut, the_first_put_makes_the_buffer_16384_characters_0) {
  EXPECT_TRUE(put(SHORT{7}));
  EXPECT_EQ(buffer.length(), kStep);
  EXPECT_EQ(offset, 3);
  EXPECT_EQ(wstring(buffer.view()), wstring(L"\7") + wstring(kStep - 1, L'\0'));
}

TEST_F(BufferPut, one_character_beyond_the_content_always_exists) {
  set(wstring(10, L'x'), 9);
  EXPECT_TRUE(put(BYTE{65}));  // 9 + 1 is not greater than 10
  EXPECT_EQ(buffer.length(), 10U);
  EXPECT_EQ(offset, 10);
  EXPECT_TRUE(put(BYTE{66}));  // 10 + 1 is
  EXPECT_EQ(buffer.length(), 10 + kStep);
  EXPECT_EQ(content(), L"xxxxxxxxAB");
}

TEST_F(BufferPut, grows_by_whole_steps) {
  const std::pair<std::size_t, std::size_t> rows[] = {
      {0, 1},         {kStep - 2, 1}, {kStep - 1, 1}, {kStep, 2}, {2 * kStep - 1, 2},
      {2 * kStep, 3}, {100000, 7}};
  for (const auto& [length, steps] : rows) {
    set(L"", 1);
    const wstring text(length, L'x');
    EXPECT_TRUE(put(std::wstring_view(text)));
    EXPECT_EQ(buffer.length(), steps * kStep) << length;
    EXPECT_EQ(content(), text);
  }
}

TEST_F(BufferPut, the_prefix_counts_for_growth) {
  const wstring text(kStep - 4, L'x');
  EXPECT_TRUE(put(std::wstring_view(text), true));  // 1 + 4 + 16380 is greater than 16384
  EXPECT_EQ(buffer.length(), 2 * kStep);
}

TEST_F(BufferPut, a_gap_before_Offset_is_of_characters_0) {
  set(L"ab", 5);
  EXPECT_TRUE(put(L"X"));
  EXPECT_EQ(content(), wstring(L"ab\0\0X", 5));
  EXPECT_EQ(buffer.length(), 2 + kStep);
}

TEST_F(BufferPut, overwrites_what_lies_there) {
  set(wstring(100, L'.'), 3);
  EXPECT_TRUE(put(L"abc"));
  EXPECT_EQ(wstring(buffer.view()), L"..abc" + wstring(95, L'.'));
}

TEST_F(BufferPut, an_Offset_below_1_is_error_5) {
  set(wstring(10, L'x'), 0);
  EXPECT_FALSE(put(SHORT{1}));
  expect_failure(5, kPut);
  set(wstring(10, L'x'), -3);
  EXPECT_FALSE(put(SHORT{1}));
  expect_failure(5, kPut);
  EXPECT_EQ(offset, -3);
  EXPECT_EQ(buffer, wstring(10, L'x'));
  set(L"", 0);
  EXPECT_FALSE(put(SHORT{1}));  // the growth comes before the writing
  EXPECT_EQ(buffer.length(), kStep);
  expect_failure(5, kPut);
}

TEST_F(BufferPut, an_Offset_beyond_what_a_text_can_hold_fails_and_changes_nothing) {
  set(L"abc", 2147483647);
  EXPECT_FALSE(put(SHORT{1}));
  expect_failure(6, kPut);
  EXPECT_EQ(buffer, L"abc");
  set(L"abc", 2147000000);
  EXPECT_FALSE(put(SHORT{1}));
  expect_failure(14, kPut);
  EXPECT_EQ(buffer, L"abc");
  EXPECT_EQ(offset, 2147000000);
}

TEST_F(BufferPut, a_buffer_may_be_put_into_itself) {
  set(L"abc", 2);
  VARIANT itself;
  itself.vt = VT_BYREF | VT_BSTR;
  itself.pbstrVal = &buffer;
  EXPECT_TRUE(put_reference(&itself));
  EXPECT_EQ(content(), L"aabc");
  set(L"abc", 1);
  EXPECT_TRUE(put_reference(&itself, true));
  EXPECT_EQ(content(), wstring(L"\3\0\0\0abc", 7));
}

TEST_F(BufferPut, writes_in_place_while_there_is_room) {
  put(L"first");
  BSTR before = buffer;
  for (int i = 0; i < 1000; ++i) put(Value(i));
  EXPECT_EQ(static_cast<BSTR>(buffer), before);
}

TEST_F(BufferGet, the_type_of_the_variable_tells_what_is_read) {
  const wstring bytes = L"\x34\x12\x78\x56\x34\x12\xF0\x3F";
  const std::pair<Value, LONG> rows[] = {{SHORT{0}, 2},    {0, 4},       {0.0F, 4},  {0.0, 8},
                                         {currency(0), 8}, {date(0), 8}, {L"...", 3}};
  for (const auto& [variable, width] : rows) {
    set(bytes, 1);
    Value value(variable);
    EXPECT_TRUE(get(value)) << variable.vt;
    EXPECT_EQ(value.vt, variable.vt);
    EXPECT_EQ(offset, width + 1) << variable.vt;
    switch (value.vt) {
      case VT_I2:
        EXPECT_EQ(value.iVal, 0x1234);
        break;
      case VT_BSTR:
        EXPECT_EQ(value.text(), bytes.substr(0, 3));
        break;
      default: {
        unsigned char expected[8];
        for (std::size_t i = 0; i < 8; ++i) expected[i] = static_cast<unsigned char>(bytes[i]);
        EXPECT_EQ(std::memcmp(&value.llVal, expected, static_cast<std::size_t>(width)), 0);
        break;
      }
    }
  }
}

TEST_F(BufferGet, a_Boolean_variable_holds_an_Integer_afterwards) {
  set(L"\xFF\xFF\1", 1);
  Value value(true);
  EXPECT_TRUE(get(value));
  EXPECT_EQ(value.vt, VT_I2);
  EXPECT_EQ(value.iVal, -1);
}

TEST_F(BufferGet, a_Byte_is_read_as_the_text_of_a_number) {
  for (int code = 0; code < 256; ++code) {
    const char narrow = static_cast<char>(code);
    wchar_t unit = 0;
    MultiByteToWideChar(1252, 0, &narrow, 1, &unit, 1);
    set(wstring(2, unit), 1);
    Value value(BYTE{77});
    const bool digit = code >= '0' && code <= '9';
    EXPECT_EQ(get(value), digit) << code;
    EXPECT_EQ(offset, 2) << code;
    EXPECT_EQ(value.vt, VT_UI1);
    EXPECT_EQ(value.bVal, digit ? code - '0' : 77);
    if (!digit) expect_failure(13, kGet);
  }
}

TEST_F(BufferGet, what_was_put_comes_back_for_Integer_Long_Double_Date_and_String) {
  put(SHORT{-2});
  put(-3);
  put(0.1);
  put(date(36526.75));
  put(L"text");
  put(std::wstring_view(L"\0\xE8", 2), true);
  complete();
  offset = 1;
  Value integer(SHORT{0});
  Value number(0);
  Value real(0.0);
  Value day = date(0);
  Value text(L"....");
  Value prefixed(L"");
  EXPECT_TRUE(get(integer) && get(number) && get(real) && get(day) && get(text) &&
              get(prefixed, true));
  EXPECT_EQ(integer.iVal, -2);
  EXPECT_EQ(number.lVal, -3);
  EXPECT_EQ(real.dblVal, 0.1);
  EXPECT_EQ(day.vt, VT_DATE);
  EXPECT_EQ(day.date, 36526.75);
  EXPECT_EQ(text.text(), L"text");
  EXPECT_EQ(prefixed.text(), std::wstring_view(L"\0\xE8", 2));
  EXPECT_EQ(offset, static_cast<LONG>(buffer.length()) + 1);
}

TEST_F(BufferGet, a_Single_and_a_Currency_put_are_read_back_wrongly) {
  put(1.5F);
  put(currency(10000));
  offset = 1;
  Value single(0.0F);
  Value money = currency(0);
  EXPECT_TRUE(get(single) && get(money));
  EXPECT_EQ(single.vt, VT_R4);
  LONG image = 0;
  std::memcpy(&image, &single.fltVal, sizeof image);
  EXPECT_EQ(image, 2);  // the Long 2, taken for a Single
  EXPECT_EQ(money.vt, VT_CY);
  EXPECT_EQ(money.cyVal.int64, 0x3FF0000000000000);  // the Double 1, taken for a Currency
}

TEST_F(BufferGet, the_end_of_the_buffer_is_checked) {
  set(L"abcd", 1);
  Value number(7);
  EXPECT_TRUE(get(number));  // up to the last character
  EXPECT_EQ(offset, 5);
  for (const LONG at : {2, 4, 5, 6, 100, 2147483647}) {
    offset = at;
    Value unread(7);
    EXPECT_FALSE(get(unread)) << at;
    EXPECT_EQ(offset, at);
    EXPECT_EQ(unread.lVal, 7);
    String description;
    global->Error_Description(&description);
    EXPECT_EQ(description, L"Subscript out of range");
    expect_failure(9, kGet);
  }
}

TEST_F(BufferGet, an_empty_text_can_be_read_behind_the_last_character_but_not_further) {
  set(L"abcd", 5);
  Value text(L"");
  EXPECT_TRUE(get(text));
  EXPECT_EQ(text.text(), L"");
  EXPECT_EQ(offset, 5);
  offset = 6;
  EXPECT_FALSE(get(text));
  expect_failure(9, kGet);
}

TEST_F(BufferGet, Offset_0_is_error_9_and_a_negative_one_error_5) {
  set(L"abcdefgh", 0);
  Value number(7);
  EXPECT_FALSE(get(number));
  expect_failure(9, kGet);
  offset = -1;
  EXPECT_FALSE(get(number));
  expect_failure(5, kGet);
  offset = -2147483647 - 1;
  EXPECT_FALSE(get(number));
  expect_failure(5, kGet);
  EXPECT_EQ(number.lVal, 7);
}

TEST_F(BufferGet, a_variable_of_another_type_is_error_13) {
  SAFEARRAYBOUND bound{2, 0};
  Value array = of_type(VT_ARRAY | VT_UI1);
  array.parray = SafeArrayCreate(VT_UI1, 1, &bound);
  const Value rows[] = {
      of_type(VT_EMPTY),    of_type(VT_NULL),    of_type(VT_ERROR), Value::missing(),
      of_type(VT_DISPATCH), of_type(VT_DECIMAL), of_type(VT_I8),    array};
  for (const Value& row : rows) {
    set(L"abcdefgh", 0);  // the type is looked at before the Offset
    Value value(row);
    EXPECT_FALSE(get(value)) << row.vt;
    EXPECT_EQ(value.vt, row.vt);
    EXPECT_EQ(offset, 0);
    expect_failure(13, kGet);
  }
}

TEST_F(BufferGet, typed_variables_by_reference_are_filled) {
  set(L"\x34\x12\xFF\xFF"
      L"abc7\7",
      1);
  SHORT integer = 0;
  VARIANT_BOOL truth = VARIANT_FALSE;
  BSTR text = SysAllocString(L"...");
  BYTE byte = 0;
  const auto get_typed = [this](VARTYPE type, void* variable) {
    Value reference;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    EXPECT_TRUE(get(reference)) << type;
    EXPECT_EQ(reference.vt, VT_BYREF | type);
  };
  get_typed(VT_I2, &integer);
  get_typed(VT_BOOL, &truth);
  get_typed(VT_BSTR, &text);
  get_typed(VT_UI1, &byte);
  EXPECT_EQ(integer, 0x1234);
  EXPECT_EQ(truth, VARIANT_TRUE);
  EXPECT_STREQ(text, L"abc");
  EXPECT_EQ(byte, 7);
  SysFreeString(text);
}

TEST_F(BufferGet, a_prefix_that_can_not_be_read_fails_once_and_reads_nothing) {
  set(L"\3\0\0", 1);
  Value text(L"old");
  EXPECT_FALSE(get(text, true));
  EXPECT_EQ(offset, 1);
  EXPECT_EQ(text.text(), L"old");
  expect_failure(9, kGet);
}

TEST_F(BufferGet, a_prefix_longer_than_the_rest_is_error_9_behind_the_prefix) {
  set(wstring(L"\4\0\0\0abc", 7), 1);
  Value text(L"old");
  EXPECT_FALSE(get(text, true));
  EXPECT_EQ(offset, 5);
  EXPECT_EQ(text.text(), L"old");
  expect_failure(9, kGet);
  set(L"\xFF\xFF\xFF\x7F"
      L"abc",
      1);
  EXPECT_FALSE(get(text, true));
  expect_failure(9, kGet);
}

TEST_F(BufferGet, a_negative_length_in_a_prefix_is_error_5) {
  for (const wchar_t* prefix : {L"\xFF\xFF\xFF\xFF"
                                L"abc",
                                L"\1\1\1\x20AC"
                                L"abc"}) {
    set(prefix, 1);
    Value text(L"old");
    EXPECT_FALSE(get(text, true));
    EXPECT_EQ(offset, 5);
    EXPECT_EQ(text.text(), L"old");
    expect_failure(5, kGet);
  }
}

TEST_F(BufferGet, a_buffer_may_be_read_into_itself) {
  set(wstring(L"\2\0\0\0abc", 7), 1);
  Value itself;
  itself.vt = VT_BYREF | VT_BSTR;
  itself.pbstrVal = &buffer;
  EXPECT_TRUE(get(itself, true));
  EXPECT_EQ(buffer, L"ab");
}

TEST_F(BufferGet, characters_outside_the_code_page_are_texts_but_no_bytes) {
  set(L"\x4E2D\x0100", 1);
  Value integer(SHORT{0});
  EXPECT_TRUE(get(integer));
  EXPECT_EQ(integer.iVal, 0x413F);  // "?A"
  offset = 1;
  Value text(L"..");
  EXPECT_TRUE(get(text));
  EXPECT_EQ(text.text(), L"\x4E2D\x0100");
  EXPECT_EQ(buffer, L"\x4E2D\x0100");
}

TEST_F(BufferGet, bytes_of_every_value_come_back) {
  for (int byte = 0; byte < 256; ++byte) {
    set(L"", 1);
    const auto number = static_cast<LONG>(0x01010101U * static_cast<unsigned>(byte));
    put(Value(number));
    offset = 1;
    Value back(0);
    EXPECT_TRUE(get(back));
    EXPECT_EQ(back.lVal, number);
  }
}

TEST_F(BufferEnds, Complete_cuts_to_the_content_and_Offset_is_its_length) {
  put(L"abc");
  complete();
  EXPECT_EQ(buffer, L"abc");
  EXPECT_EQ(offset, 3);
}

TEST_F(BufferEnds, Complete_at_Offset_1_is_empty_with_Offset_0) {
  set(L"abc", 1);
  complete();
  EXPECT_EQ(buffer, L"");
  EXPECT_EQ(offset, 0);
}

TEST_F(BufferEnds, Complete_below_Offset_1_is_empty_and_leaves_Offset) {
  for (const LONG at : {0, -5}) {
    set(L"abc", at);
    complete();
    EXPECT_EQ(buffer, L"");
    EXPECT_EQ(offset, at);
  }
}

TEST_F(BufferEnds, Complete_beyond_the_end_keeps_the_whole_buffer) {
  set(L"abc", 10);
  complete();
  EXPECT_EQ(buffer, L"abc");
  EXPECT_EQ(offset, 9);
}

TEST_F(BufferEnds, LTrim_drops_leading_blanks_of_the_content) {
  struct Row {
    wstring buffer;
    LONG offset;
    wstring expected;
    LONG expected_offset;
  };
  const Row rows[] = {{L"  ab..", 5, L"ab..", 3},
                      {L"ab..", 3, L"ab..", 3},
                      {L"    ", 3, L"  ", 1},  // only blanks: it stops at Offset
                      {L"  ", 10, L"", 8},     // and at the end of the buffer
                      {L"  ab", 1, L"  ab", 1},
                      {L"  ab", 0, L"  ab", 0},
                      {L"  ab", -4, L"  ab", -4},
                      {L"", 1, L"", 1},
                      {{L" \0 ", 3}, 4, {L"\0 ", 2}, 3}};
  for (const Row& row : rows) {
    set(row.buffer, row.offset);
    EXPECT_EQ(global->Buffer_LTrim(&buffer, &offset), S_OK);
    EXPECT_EQ(buffer, row.expected) << row.offset;
    EXPECT_EQ(offset, row.expected_offset) << row.offset;
  }
}

TEST_F(BufferEnds, RTrim_moves_Offset_before_trailing_blanks_and_leaves_the_buffer) {
  struct Row {
    wstring buffer;
    LONG offset;
    LONG expected_offset;
  };
  const Row rows[] = {{L"ab  ", 5, 3}, {L"ab  ", 4, 3},    {L"ab  ", 3, 3}, {L"    ", 5, 1},
                      {L"  ", 1, 1},   {L"  ", 0, 0},      {L"  ", -2, -2}, {L"ab  ", 6, 6},
                      {L"", 5, 5},     {{L" \0", 2}, 3, 3}};
  for (const Row& row : rows) {
    set(row.buffer, row.offset);
    EXPECT_EQ(global->Buffer_RTrim(&buffer, &offset), S_OK);
    EXPECT_EQ(offset, row.expected_offset) << row.offset;
    EXPECT_EQ(buffer, row.buffer);
  }
}

TEST_F(BufferEnds, TruncIfLast_moves_Offset_back_over_the_text) {
  struct Row {
    wstring buffer;
    LONG offset;
    const wchar_t* last;
    LONG expected_offset;
  };
  const Row rows[] = {{L"ab, ", 5, L", ", 3},
                      {L"ab, ", 4, L", ", 4},
                      {L"ab", 3, L"", 3},
                      {L"ab", 3, L"ab", 1},
                      {L"ab", 2, L"ab", 2},
                      {L"ab", 3, L"AB", 3},
                      {L"ab", 4, L"b", 4},
                      {L"ab", 0, L"b", 0},
                      {L"ab", -2147483647 - 1, L"b", -2147483647 - 1},
                      {L"", 2, L"b", 2}};
  for (const Row& row : rows) {
    set(row.buffer, row.offset);
    truncate(row.last);
    EXPECT_EQ(offset, row.expected_offset) << row.last << row.offset;
    EXPECT_EQ(buffer, row.buffer);
  }
}

TEST_F(BufferEnds, Right_gives_the_characters_before_Offset) {
  struct Row {
    LONG offset, chars;
    const wchar_t* expected;
  };
  const Row rows[] = {{5, 2, L"cd"}, {5, 4, L"abcd"}, {5, 100, L"abcd"}, {3, 1, L"b"},
                      {5, 0, L""},   {1, 3, L""},     {0, 0, L""},       {-3, 0, L""},
                      {7, 2, L""},   {7, 3, L"d"},    {100, 2, L""},     {5, 2147483647, L"abcd"}};
  for (const Row& row : rows) {
    set(L"abcd", row.offset);
    wstring result;
    EXPECT_EQ(right(row.chars, result), S_OK);
    EXPECT_EQ(result, row.expected) << row.offset << ' ' << row.chars;
    EXPECT_EQ(offset, row.offset);
  }
}

TEST_F(BufferEnds, Right_of_less_than_0_characters_or_below_Offset_1_raises_5) {
  const std::pair<LONG, LONG> rows[] = {{5, -1}, {1, -1}, {0, 1}, {-3, 2}, {0, -1}};
  for (const auto& [at, chars] : rows) {
    set(L"abcd", at);
    wstring result;
    EXPECT_EQ(right(chars, result), error_result(5)) << at << ' ' << chars;
    EXPECT_EQ(error_description(), L"Invalid procedure call or argument");
  }
  VARIANT_BOOL recorded = VARIANT_TRUE;
  EXPECT_EQ(global->Check_Error(&recorded), S_OK);
  EXPECT_EQ(recorded, VARIANT_FALSE);  // raised, not recorded
}

}  // namespace
}  // namespace qv::tests
