// Roman numerals, hexadecimal text and dumps, called early-bound.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class Numerals : public testing::Test {
 protected:
  std::wstring roman(Value number) {
    String result;
    EXPECT_EQ(global_->Num_2_Roman(number, &result), S_OK);
    return std::wstring(result.view());
  }

  LONG number(std::wstring_view roman) {
    String text(roman);
    LONG result = -1;
    EXPECT_EQ(global_->Roman_2_Num(&text, &result), S_OK);
    return result;
  }

  std::wstring hex(std::wstring_view bytes) {
    String buffer(bytes), result;
    EXPECT_EQ(global_->BinToHex(&buffer, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring bytes(std::wstring_view digits) {
    String buffer(digits), result;
    EXPECT_EQ(global_->HexToBin(&buffer, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring dump(std::wstring_view data, LONG width, std::wstring_view line_end) {
    String data_text(data), result, line_text(line_end);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->Hex_Dump(&data_text, &result, &width, &line_text, nullptr, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(data_text.view(), data);
    return std::wstring(result.view());
  }

  std::wstring error_source() {
    String source;
    EXPECT_EQ(global_->Error_Source(&source), S_OK);
    return std::wstring(source.view());
  }

  LONG error_number() {
    LONG number = -1;
    EXPECT_EQ(global_->Error_Number(&number), S_OK);
    return number;
  }

  void SetUp() override { global_->Reset_Error(); }
  void TearDown() override { global_->Reset_Error(); }

  Pointer<_KwRtLib> global_ = create_global();
};

Value byte_array(LONG lower_bound, std::initializer_list<BYTE> bytes) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lower_bound};
  Value array;
  array.vt = VT_ARRAY | VT_UI1;
  array.parray = SafeArrayCreate(VT_UI1, 1, &bound);
  std::copy(bytes.begin(), bytes.end(), static_cast<BYTE*>(array.parray->pvData));
  return array;
}

TEST_F(Numerals, Num_2_Roman_covers_1_to_4999) {
  EXPECT_EQ(roman(1), L"I");
  EXPECT_EQ(roman(4), L"IV");
  EXPECT_EQ(roman(1994), L"MCMXCIV");
  EXPECT_EQ(roman(4000), L"MMMM");
  EXPECT_EQ(roman(4999), L"MMMMCMXCIX");
}

TEST_F(Numerals, numbers_without_a_numeral_give_an_empty_text) {
  EXPECT_EQ(roman(0), L"");
  EXPECT_EQ(roman(-1), L"");
  EXPECT_EQ(roman(5000), L"");
}

TEST_F(Numerals, Num_2_Roman_converts_to_Long_first) {
  EXPECT_EQ(roman(L"12"), L"XII");
  EXPECT_EQ(roman(2.5), L"II") << "ties to even";
  EXPECT_EQ(roman(3.5), L"IV");
  String result;
  EXPECT_EQ(global_->Num_2_Roman(Value(L"abc"), &result), error_result(13));
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  EXPECT_EQ(global_->Num_2_Roman(nothing, &result), error_result(91));
  EXPECT_EQ(global_->Num_2_Roman(Value(1e10), &result), error_result(6));
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(global_->Num_2_Roman(null, &result), error_result(94));
}

TEST_F(Numerals, every_numeral_reads_back) {
  for (int value = 1; value <= 4999; value += 7) ASSERT_EQ(number(roman(value)), value);
  EXPECT_EQ(number(roman(4999)), 4999);
}

TEST_F(Numerals, Roman_2_Num_takes_letters_of_either_case) {
  EXPECT_EQ(number(L"mcmxciv"), 1994);
  EXPECT_EQ(number(L"McMxCiV"), 1994);
}

TEST_F(Numerals, Roman_2_Num_reads_in_the_fixed_order_alone) {
  EXPECT_EQ(number(L""), 0);
  EXPECT_EQ(number(L"hello"), 0);
  EXPECT_EQ(number(L"IXX"), 9) << "X is out of the order";
  EXPECT_EQ(number(L"VX"), 5);
  EXPECT_EQ(number(L" X"), 0);
}

TEST_F(Numerals, Roman_2_Num_lets_M_C_X_and_I_repeat_alone) {
  EXPECT_EQ(number(L"MMMMM"), 5000);
  EXPECT_EQ(number(L"CCCC"), 400);
  EXPECT_EQ(number(L"XXXX"), 40);
  EXPECT_EQ(number(L"IIII"), 4);
  EXPECT_EQ(number(L"VV"), 5);
  EXPECT_EQ(number(L"DD"), 500);
  EXPECT_EQ(number(L"LL"), 50);
}

TEST_F(Numerals, BinToHex_writes_two_upper_case_digits_a_byte) {
  EXPECT_EQ(hex(L""), L"");
  EXPECT_EQ(hex(std::wstring_view(L"\0\x01\x0Fz", 4)), L"00010F7A");
  EXPECT_EQ(hex(L"\u00FF\u20AC"), L"FF80") << "the euro sign is byte 80 of code page 1252";
}

TEST_F(Numerals, HexToBin_reads_pairs_of_digits_of_either_case) {
  EXPECT_EQ(bytes(L""), L"");
  EXPECT_EQ(bytes(L"00417a7A"), std::wstring_view(L"\0Azz", 4));
  EXPECT_EQ(bytes(L"80"), L"\u20AC");
}

TEST_F(Numerals, HexToBin_takes_a_last_digit_alone_as_a_byte) {
  EXPECT_EQ(bytes(L"41F"), L"A\x0F");
  EXPECT_EQ(bytes(L"7"), L"\x07");
}

TEST_F(Numerals, HexToBin_of_what_is_no_digit_raises_13) {
  String buffer(L"4G"), result;
  EXPECT_EQ(global_->HexToBin(&buffer, &result), error_result(13));
  EXPECT_EQ(error_description(), L"Type mismatch");
  EXPECT_EQ(error_number(), 0) << "the record is not touched";
}

TEST_F(Numerals, every_byte_string_survives_the_way_to_hexadecimal_text_and_back) {
  std::wstring all;
  for (int code = 0; code < 256; ++code) {
    std::array<wchar_t, 2> digits;
    for (int i = 0; i < 2; ++i) {
      digits[static_cast<std::size_t>(i)] = L"0123456789ABCDEF"[code >> (4 * (1 - i)) & 15];
    }
    all.append(digits.data(), 2);
  }
  EXPECT_EQ(hex(bytes(all)), all);
}

TEST_F(Numerals, HexToByte_makes_a_Byte_array_from_index_0) {
  String digits(L"00FF7a");
  Value array;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->HexToByte(&digits, &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  ASSERT_EQ(array.vt, VT_ARRAY | VT_UI1);
  EXPECT_EQ(array.parray->rgsabound[0].lLbound, 0);
  ASSERT_EQ(array.parray->rgsabound[0].cElements, 3U);
  const auto* bytes = static_cast<const BYTE*>(array.parray->pvData);
  EXPECT_EQ(bytes[0], 0);
  EXPECT_EQ(bytes[1], 255);
  EXPECT_EQ(bytes[2], 0x7A);
}

TEST_F(Numerals, HexToByte_of_an_empty_text_makes_an_array_without_elements) {
  String digits;
  Value array;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->HexToByte(&digits, &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  ASSERT_EQ(array.vt, VT_ARRAY | VT_UI1);
  LONG upper = 7;
  ASSERT_EQ(SafeArrayGetUBound(array.parray, 1, &upper), S_OK);
  EXPECT_EQ(upper, -1);
}

TEST_F(Numerals, HexToByte_of_what_is_no_digit_adds_its_Source_to_the_chain) {
  String digits(L"0x");
  Value array(5);
  VARIANT_BOOL failed = VARIANT_FALSE;
  ASSERT_EQ(global_->HexToByte(&digits, &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_source(), L" < QvRtLibOle.KwRtLibMod.HexToByte");
  EXPECT_EQ(error_number(), 0) << "a chain has no number of its own";
  EXPECT_EQ(array.vt, VT_I4) << "the variable keeps its value";
}

TEST_F(Numerals, ByteToHex_reads_an_array_with_any_lower_bound) {
  Value array = byte_array(5, {0, 255, 0x7A});
  String digits;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->ByteToHex(&array, &digits, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(digits.view(), L"00FF7A");
}

TEST_F(Numerals, ByteToHex_of_an_array_without_elements_gives_an_empty_text) {
  Value array = byte_array(0, {});
  String digits(L"old");
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->ByteToHex(&array, &digits, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(digits.view(), L"");
}

TEST_F(Numerals, ByteToHex_of_a_reference_to_an_array_variable_works) {
  Value array = byte_array(0, {1, 2});
  VARIANT reference;
  reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
  reference.pparray = &array.parray;
  String digits;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->ByteToHex(&reference, &digits, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(digits.view(), L"0102");
}

TEST_F(Numerals, ByteToHex_of_what_is_no_array_adds_its_Source_to_the_chain) {
  Value number(5);
  String digits(L"old");
  VARIANT_BOOL failed = VARIANT_FALSE;
  ASSERT_EQ(global_->ByteToHex(&number, &digits, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_source(), L" < QvRtLibOle.KwRtLibMod.ByteToHex");
  EXPECT_EQ(digits.view(), L"old");

  Value unallocated;
  unallocated.vt = VT_ARRAY | VT_UI1;
  unallocated.parray = nullptr;
  ASSERT_EQ(global_->ByteToHex(&unallocated, &digits, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
}

TEST_F(Numerals, Hex_Dump_writes_a_blank_and_two_digits_a_byte) {
  EXPECT_EQ(dump(L"\x01\u00FF", 0, L""), L" 01 FF");
  EXPECT_EQ(dump(L"", 0, L"\r\n"), L"");
}

TEST_F(Numerals, Hex_Dump_ends_a_line_that_is_full) {
  EXPECT_EQ(dump(L"abcde", 6, L"\r\n"), L" 61 62\r\n 63 64\r\n 65");
  EXPECT_EQ(dump(L"abcd", 6, L"|"), L" 61 62| 63 64") << "the last line gets no end";
  EXPECT_EQ(dump(L"abc", 8, L"|"), L" 61 62| 63") << "a line is never wider than Width";
  EXPECT_EQ(dump(L"abc", -1, L"|"), L" 61 62 63");
}

TEST_F(Numerals, Hex_Dump_narrower_than_a_byte_ends_a_line_before_each) {
  EXPECT_EQ(dump(L"ab", 2, L"|"), L"| 61| 62");
}

TEST_F(Numerals, Hex_Dump_with_Retain_appends) {
  String data(L"b"), buffer(L" 61"), line_end;
  LONG width = 0;
  VARIANT_BOOL retain = VARIANT_TRUE;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->Hex_Dump(&data, &buffer, &width, &line_end, &retain, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(buffer.view(), L" 61 62");
  ASSERT_EQ(global_->Hex_Dump(&data, &buffer, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(buffer.view(), L" 62") << "left out, Retain is False";
}

TEST_F(Numerals, Hex_Dump_takes_one_variable_for_data_and_dump) {
  String buffer(L"ab"), line_end;
  LONG width = 0;
  VARIANT_BOOL retain = VARIANT_TRUE;
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->Hex_Dump(&buffer, &buffer, &width, &line_end, &retain, &failed), S_OK);
  EXPECT_EQ(buffer.view(), L"ab 61 62");
}

TEST_F(Numerals, Hex_Dump_past_the_longest_text_fails) {
  String data(std::wstring(100000, L'a')), line_end(std::wstring(100000, L'-')), buffer;
  LONG width = 1;
  VARIANT_BOOL failed = VARIANT_FALSE;
  ASSERT_EQ(global_->Hex_Dump(&data, &buffer, &width, &line_end, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_number(), 14);
  EXPECT_EQ(error_source(), L"KwRtLibMod.Hex_Dump");
}

}  // namespace
}  // namespace qv::tests
