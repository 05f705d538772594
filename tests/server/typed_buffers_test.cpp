#include <array>
#include <limits>
#include <vector>

#include "server/client.h"
#include "server/format_page.h"

namespace qv::tests {
namespace {

constexpr LONG kMin = std::numeric_limits<LONG>::min();

Value date(double days) {
  Value value(days);
  value.vt = VT_DATE;
  return value;
}

Value currency(LONGLONG ten_thousandths) {
  Value value;
  value.vt = VT_CY;
  value.cyVal.int64 = ten_thousandths;
  return value;
}

struct Bound {
  LONG lower;
  LONG upper;
};

// An array of that type and shape; its bytes count up from 1.
Value array(VARTYPE element, const std::vector<Bound>& shape) {
  std::vector<SAFEARRAYBOUND> bounds;
  std::size_t count = 1;
  for (const Bound& bound : shape) {
    bounds.push_back({static_cast<ULONG>(bound.upper - bound.lower + 1), bound.lower});
    count *= bounds.back().cElements;
  }
  Value value;
  value.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  value.parray = SafeArrayCreate(element, static_cast<UINT>(bounds.size()), bounds.data());
  if (element == VT_BSTR || element == VT_VARIANT) return value;
  count *= SafeArrayGetElemsize(value.parray);
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<BYTE*>(value.parray->pvData)[i] = static_cast<BYTE>(i + 1);
  }
  return value;
}

// Text of byte values, as a string literal that may hold 0.
template <std::size_t size>
std::wstring bytes(const wchar_t (&literal)[size]) {
  return std::wstring(literal, size - 1);
}

std::wstring long_bytes(LONG number) {
  std::wstring text;
  for (int shift = 0; shift < 32; shift += 8) {
    text += static_cast<wchar_t>(static_cast<ULONG>(number) >> shift & 0xFF);
  }
  return text;
}

std::wstring array_head(wchar_t element, const std::vector<Bound>& shape, LONG data_bytes) {
  std::wstring head{32, element, static_cast<wchar_t>(shape.size()), 0};
  for (const Bound& bound : shape) head += long_bytes(bound.lower) + long_bytes(bound.upper);
  return head + long_bytes(data_bytes);
}

class TypedBuffers : public testing::Test {
 protected:
  SHORT put(Value value) {
    SHORT result = 7;
    EXPECT_EQ(global->BufferTyped_Put(&buffer, &value, &result), S_OK);
    return result;
  }
  // What a put of the value appends.
  std::wstring put_bytes_of(Value value) {
    SysReAllocStringLen(&buffer, L"", 0);
    EXPECT_EQ(put(value), 0);
    return std::wstring(buffer.view());
  }
  HRESULT get(std::wstring_view text, LONG at, Value& value) {
    SysReAllocStringLen(&buffer, text.data(), static_cast<UINT>(text.size()));
    offset = at;
    VariantClear(&value);
    return global->BufferTyped_Get(&buffer, &offset, &value);
  }
  LONG recorded() {
    LONG number = -1;
    global->Error_Number(&number);
    return number;
  }
  std::wstring recorded_source() {
    String source;
    global->Error_Source(&source);
    return std::wstring(source.view());
  }

  Pointer<_KwRtLib> global = create_global();
  String buffer;
  LONG offset = 1;
};

TEST_F(TypedBuffers, every_type_has_its_bytes) {
  EXPECT_EQ(put_bytes_of(Value(SHORT{-2})), bytes(L"\x02\xFE\xFF"));
  EXPECT_EQ(put_bytes_of(Value(1)), bytes(L"\x03\x01\0\0\0"));
  EXPECT_EQ(put_bytes_of(Value(kMin)), bytes(L"\x03\0\0\0\x20AC"));
  EXPECT_EQ(put_bytes_of(Value(1.5F)), bytes(L"\x04\0\0\xC0\x3F"));
  EXPECT_EQ(put_bytes_of(Value(-2.0)), bytes(L"\x05\0\0\0\0\0\0\0\xC0"));
  EXPECT_EQ(put_bytes_of(currency(12500)), bytes(L"\x06\xD4\x30\0\0\0\0\0\0"));
  EXPECT_EQ(put_bytes_of(date(2.5)), bytes(L"\x07\0\0\0\0\0\0\x04\x40"));
  EXPECT_EQ(put_bytes_of(Value(true)), bytes(L"\x0B\xFF\xFF"));
  EXPECT_EQ(put_bytes_of(Value(false)), bytes(L"\x0B\0\0"));
  EXPECT_EQ(put_bytes_of(Value(BYTE{200})), bytes(L"\x11\xC8"));
  EXPECT_EQ(put_bytes_of(Value(L"ab")), bytes(L"\xFF\x02\0\0\0\x61\x62"));
  EXPECT_EQ(put_bytes_of(Value(L"")), bytes(L"\xFF\0\0\0\0"));
}

TEST_F(TypedBuffers, bytes_above_127_are_characters_of_the_code_page) {
  // Byte 80 hexadecimal is the euro sign in code page 1252.
  EXPECT_EQ(put_bytes_of(Value(BYTE{0x80})), bytes(L"\x11\x20AC"));
  Value value;
  EXPECT_EQ(get(bytes(L"\x02\x20AC\x178"), 1, value), S_OK);
  EXPECT_EQ(value.iVal, static_cast<SHORT>(0x9F80));
}

TEST_F(TypedBuffers, values_are_appended_one_after_the_other) {
  put(Value(1));
  put(Value(L"ab"));
  put(Value(BYTE{7}));
  EXPECT_EQ(buffer.view(), bytes(L"\x03\x01\0\0\0\xFF\x02\0\0\0\x61\x62\x11\x07"));
}

TEST_F(TypedBuffers, the_buffer_itself_can_be_put) {
  put(Value(L"ab"));
  Value itself;
  itself.vt = VT_BYREF | VT_BSTR;
  itself.pbstrVal = &buffer;
  SHORT result = 7;
  EXPECT_EQ(global->BufferTyped_Put(&buffer, &itself, &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(buffer.view(), bytes(L"\xFF\x02\0\0\0\x61\x62\xFF\x07\0\0\0\xFF\x02\0\0\0\x61\x62"));
  itself.vt = VT_EMPTY;
}

TEST_F(TypedBuffers, a_text_keeps_characters_0_and_those_outside_the_code_page) {
  EXPECT_EQ(put_bytes_of(Value(std::wstring_view(L"a\0\x4E2D", 3))),
            bytes(L"\xFF\x03\0\0\0\x61\0\x4E2D"));
}

TEST_F(TypedBuffers, arrays_have_their_bytes) {
  Value longs = array(VT_I4, {{1, 2}});
  LONG* elements = static_cast<LONG*>(longs.parray->pvData);
  elements[0] = 5;
  elements[1] = 6;
  EXPECT_EQ(put_bytes_of(longs),
            bytes(L"\x20\x03\x01\0\x01\0\0\0\x02\0\0\0\x08\0\0\0\x05\0\0\0\x06\0\0\0"));
  EXPECT_EQ(put_bytes_of(array(VT_UI1, {{0, 2}})),
            array_head(17, {{0, 2}}, 3) + bytes(L"\x01\x02\x03"));
  EXPECT_EQ(put_bytes_of(array(VT_I2, {{-1, 0}, {3, 3}})),
            array_head(2, {{-1, 0}, {3, 3}}, 4) + bytes(L"\x01\x02\x03\x04"));
}

TEST_F(TypedBuffers, every_element_type_of_fixed_width_has_a_form) {
  for (const auto& [type, width] : std::vector<std::pair<VARTYPE, LONG>>{{VT_I2, 2},
                                                                         {VT_I4, 4},
                                                                         {VT_R4, 4},
                                                                         {VT_R8, 8},
                                                                         {VT_CY, 8},
                                                                         {VT_DATE, 8},
                                                                         {VT_BOOL, 2},
                                                                         {VT_UI1, 1}}) {
    const std::wstring put = put_bytes_of(array(type, {{1, 3}}));
    EXPECT_TRUE(put.starts_with(array_head(static_cast<wchar_t>(type), {{1, 3}}, 3 * width)));
    EXPECT_EQ(put.size(), 16U + static_cast<std::size_t>(3 * width));
  }
}

TEST_F(TypedBuffers, the_first_dimension_varies_fastest) {
  Value matrix = array(VT_UI1, {{0, 1}, {0, 2}});
  BYTE next = 1;
  for (LONG second = 0; second < 3; ++second) {
    for (LONG first = 0; first < 2; ++first, ++next) {
      LONG place[] = {first, second};
      SafeArrayPutElement(matrix.parray, place, &next);
    }
  }
  EXPECT_EQ(put_bytes_of(matrix),
            array_head(17, {{0, 1}, {0, 2}}, 6) + bytes(L"\x01\x02\x03\x04\x05\x06"));
}

TEST_F(TypedBuffers, sixty_dimensions_are_kept) {
  const std::vector<Bound> shape(60, {7, 7});
  EXPECT_EQ(put_bytes_of(array(VT_UI1, shape)), array_head(17, shape, 1) + L'\x01');
}

TEST_F(TypedBuffers, an_array_variable_can_be_put_by_reference) {
  Value owner = array(VT_UI1, {{0, 1}});
  Value reference;
  reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
  reference.pparray = &owner.parray;
  SHORT result = 7;
  EXPECT_EQ(global->BufferTyped_Put(&buffer, &reference, &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(buffer.view(), array_head(17, {{0, 1}}, 2) + bytes(L"\x01\x02"));
  reference.vt = VT_EMPTY;
}

TEST_F(TypedBuffers, an_unallocated_array_fails_without_a_word) {
  Value nothing;
  nothing.vt = VT_ARRAY | VT_I4;
  nothing.parray = nullptr;
  EXPECT_EQ(put(nothing), -1);
  EXPECT_EQ(buffer.length(), 0U);
  EXPECT_EQ(recorded(), 0);
}

TEST_F(TypedBuffers, types_without_a_form_are_error_13) {
  Value null;
  null.vt = VT_NULL;
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = nullptr;
  Value decimal;
  decimal.vt = VT_DECIMAL;
  for (const Value& value : {Value(), null, object, decimal, Value::missing(),
                             array(VT_BSTR, {{0, 1}}), array(VT_VARIANT, {{0, 1}})}) {
    EXPECT_EQ(put(value), -1);
    EXPECT_EQ(buffer.length(), 0U);
    EXPECT_EQ(recorded(), 13);
    EXPECT_EQ(recorded_source(), L"KwRtLibMod.BufferTyped_Put");
    global->Reset_Error();
  }
}

// A descriptor alone, as a caller's foreign code may make one.
TEST_F(TypedBuffers, an_array_too_large_is_error_6_and_leaves_its_head) {
  Value huge;
  SafeArrayAllocDescriptor(2, &huge.parray);
  huge.vt = VT_ARRAY | VT_I4;
  huge.parray->cbElements = 4;
  huge.parray->rgsabound[1] = {65536, 0};
  huge.parray->rgsabound[0] = {65536, 0};
  SHORT result = 7;
  EXPECT_EQ(global->BufferTyped_Put(&buffer, &huge, &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(recorded(), 6);
  EXPECT_EQ(buffer.length(), 4U + 2 * 8);
  SafeArrayDestroyDescriptor(huge.parray);
  huge.vt = VT_EMPTY;
  global->Reset_Error();
}

TEST_F(TypedBuffers, the_example_of_the_format_page_reads) {
  const std::wstring page = bytes_of_page("typed-buffer.md");
  const std::vector<Value> expected = {
      Value(SHORT{-2}), Value(1),    Value(1.5F),       Value(-2.0),  currency(12500),
      date(2.5),        Value(true), Value(SHORT{200}), Value(L"ab"), Value(L"ab")};
  // Bytes above 127 that code page 1252 has elsewhere do not occur in the page.
  LONG at = 1;
  for (const Value& wanted : expected) {
    Value value;
    ASSERT_EQ(get(page, at, value), S_OK);
    EXPECT_EQ(value.vt, wanted.vt);
    if (wanted.vt == VT_BSTR) {
      EXPECT_EQ(value.text(), wanted.text());
    } else {
      EXPECT_EQ(VarCmp(&value, const_cast<Value*>(&wanted), 0, 0), static_cast<HRESULT>(VARCMP_EQ));
    }
    at = offset;
  }
  Value value;
  EXPECT_EQ(get(page, at, value), error_result(9));
  EXPECT_EQ(offset, static_cast<LONG>(page.size()) + 1);
}

TEST_F(TypedBuffers, a_byte_comes_back_as_an_integer) {
  Value value;
  EXPECT_EQ(get(bytes(L"\x11\xC8"), 1, value), S_OK);
  EXPECT_EQ(value.vt, VT_I2);
  EXPECT_EQ(value.iVal, 200);
  EXPECT_EQ(offset, 3);
}

TEST_F(TypedBuffers, any_integer_but_0_is_true) {
  Value value;
  EXPECT_EQ(get(bytes(L"\x0B\x01\0"), 1, value), S_OK);
  EXPECT_EQ(value.vt, VT_BOOL);
  EXPECT_EQ(value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(get(bytes(L"\x0B\0\0"), 1, value), S_OK);
  EXPECT_EQ(value.boolVal, VARIANT_FALSE);
}

TEST_F(TypedBuffers, texts_of_both_forms_read) {
  Value value;
  EXPECT_EQ(get(bytes(L"\x08\x02\0\x61\x62"), 1, value), S_OK);
  EXPECT_EQ(value.text(), L"ab");
  EXPECT_EQ(offset, 6);
  EXPECT_EQ(get(bytes(L"\xFF\0\0\0\0"), 1, value), S_OK);
  EXPECT_EQ(value.text(), L"");
  EXPECT_EQ(offset, 6);
}

TEST_F(TypedBuffers, unknown_tags_are_error_13_behind_the_tag) {
  for (const int tag : {0, 1, 9, 10, 12, 16, 18, 254}) {
    Value value;
    EXPECT_EQ(get(std::wstring(1, static_cast<wchar_t>(tag)) + std::wstring(8, L'\0'), 1, value),
              error_result(13));
    EXPECT_EQ(offset, 2);
  }
}

TEST_F(TypedBuffers, an_offset_that_meets_no_value_is_an_error) {
  const std::wstring text = put_bytes_of(Value(1));
  Value value;
  for (const auto& [at, number] :
       std::vector<std::pair<LONG, int>>{{0, 9}, {6, 9}, {100, 9}, {-1, 5}, {kMin, 5}}) {
    EXPECT_EQ(get(text, at, value), error_result(number));
    EXPECT_EQ(offset, at);
  }
  EXPECT_EQ(get(L"", 1, value), error_result(9));
}

TEST_F(TypedBuffers, failures_of_reading_are_raised_and_not_recorded) {
  Value value;
  EXPECT_EQ(get(L"\x03", 1, value), error_result(9));
  EXPECT_EQ(error_description(), L"Subscript out of range");
  EXPECT_EQ(recorded(), 0);
}

TEST_F(TypedBuffers, a_buffer_cut_at_any_byte_is_error_9) {
  const std::wstring page = bytes_of_page("typed-buffer.md");
  Value value;
  for (LONG at = 1; at <= static_cast<LONG>(page.size());) {
    get(page, at, value);
    const LONG end = offset;
    for (LONG length = at; length < end - 1; ++length) {
      EXPECT_EQ(get(page.substr(0, static_cast<std::size_t>(length)), at, value), error_result(9));
      EXPECT_GT(offset, at);
      EXPECT_LE(offset, length + 1);
    }
    at = end;
  }
}

TEST_F(TypedBuffers, a_negative_length_is_error_5) {
  Value value;
  EXPECT_EQ(get(bytes(L"\xFF\xFF\xFF\xFF\xFF\x61"), 1, value), error_result(5));
  EXPECT_EQ(get(bytes(L"\x08\xFF\xFF\x61"), 1, value), error_result(5));
  EXPECT_EQ(get(array_head(3, {{1, 1}}, -1), 1, value), error_result(5));
}

TEST_F(TypedBuffers, an_array_is_passed_over_with_error_9) {
  const std::wstring text = put_bytes_of(array(VT_I4, {{-3, 3}, {0, 1}})) + bytes(L"\x11\x05");
  Value value;
  EXPECT_EQ(get(text, 1, value), error_result(9));
  EXPECT_EQ(offset, static_cast<LONG>(text.size()) - 1);
  EXPECT_EQ(get(text, offset, value), S_OK);
  EXPECT_EQ(value.iVal, 5);
}

// Text, Decimal and Variant have no form here, but arrays of them exist.
TEST_F(TypedBuffers, an_array_of_elements_without_a_form_is_passed_over_too) {
  for (const wchar_t element : {L'\x08', L'\x0C', L'\x0E'}) {
    const std::wstring head = array_head(element, {{1, 1}}, 4);
    Value value;
    EXPECT_EQ(get(head + L"abcd", 1, value), error_result(9));
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(offset, static_cast<LONG>(head.size()) + 5);
  }
}

TEST_F(TypedBuffers, descriptors_that_no_array_has_give_empty) {
  constexpr LONG kMax = 2147483647;
  const std::vector<std::wstring> heads = {
      array_head(3, {{kMin, kMax}}, 4), array_head(17, {{0, kMax}}, 4),
      array_head(3, {{5, 1}}, 4),       array_head(255, {{1, 1}}, 4),
      array_head(0, {{1, 1}}, 4),       array_head(5, {{1, 65536}, {1, 65536}}, 4)};
  for (const std::wstring& head : heads) {
    Value value;
    EXPECT_EQ(get(head + L"abcd", 1, value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(offset, static_cast<LONG>(head.size()) + 1);
  }
}

TEST_F(TypedBuffers, descriptors_without_dimensions_or_with_too_many_are_error_9) {
  Value value;
  EXPECT_EQ(get(bytes(L"\x20\x03\0\0\0\0\0\0"), 1, value), error_result(9));
  EXPECT_EQ(get(bytes(L"\x20\x03\xFF\xFF\0\0\0\0"), 1, value), error_result(9));
  EXPECT_EQ(get(bytes(L"\x20\x03\xFF\x7F\0\0\0\0\0\0\0\0\0\0\0\0"), 1, value), error_result(9));
}

TEST_F(TypedBuffers, a_million_values_are_written_and_read) {
  Value value(7);
  SHORT result = 0;
  for (int i = 0; i < 1000000; ++i) global->BufferTyped_Put(&buffer, &value, &result);
  ASSERT_EQ(buffer.length(), 5000000U);
  Value read;
  for (int i = 0; i < 1000000; ++i) global->BufferTyped_Get(&buffer, &offset, &read);
  EXPECT_EQ(offset, 5000001);
  EXPECT_EQ(read.lVal, 7);
}

}  // namespace
}  // namespace qv::tests
