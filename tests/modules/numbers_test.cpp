#include "runtime/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace qv {
namespace {

Text shown(Variant number) { return number_text(number); }

template <class Body>
Long error_of(Body body) {
  try {
    body();
    return 0;
  } catch (const RunTimeError& error) {
    return error.number;
  }
}

Variant decimal_value(Text text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_DECIMAL;
  DECIMAL number;
  EXPECT_EQ(VarDecFromStr(text.data(), LOCALE_INVARIANT, 0, &number), S_OK);
  number.wReserved = VT_DECIMAL;
  value.decVal = number;
  return Variant::adopt(value);
}

TEST(NumberText, whole_numbers_have_no_blank_and_no_point) {
  EXPECT_EQ(shown(Integer{-12}), L"-12");
  EXPECT_EQ(shown(Long{0}), L"0");
  EXPECT_EQ(shown(std::numeric_limits<Long>::min()), L"-2147483648");
  EXPECT_EQ(shown(Byte{255}), L"255");
  EXPECT_EQ(shown(True), L"-1");
  EXPECT_EQ(shown(Variant()), L"0");
}

TEST(NumberText, a_Double_has_15_digits) {
  EXPECT_EQ(shown(0.0), L"0");
  EXPECT_EQ(shown(-0.0), L"0");
  EXPECT_EQ(shown(0.5), L".5");
  EXPECT_EQ(shown(-0.5), L"-.5");
  EXPECT_EQ(shown(1234.5), L"1234.5");
  EXPECT_EQ(shown(0.1), L".1");
  EXPECT_EQ(shown(1.0 / 3), L".333333333333333");
  EXPECT_EQ(shown(2.0 / 3), L".666666666666667");
  EXPECT_EQ(shown(123456789012345.0), L"123456789012345");
  EXPECT_EQ(shown(100.0), L"100");
}

TEST(NumberText, a_number_of_more_places_has_an_exponent) {
  EXPECT_EQ(shown(1e15), L"1E+15");
  EXPECT_EQ(shown(1.5e20), L"1.5E+20");
  EXPECT_EQ(shown(-1e100), L"-1E+100");
  EXPECT_EQ(shown(0.00001), L".00001");
  EXPECT_EQ(shown(1.0 / 30), L"3.33333333333333E-02");
  EXPECT_EQ(shown(1e-16), L"1E-16");
  EXPECT_EQ(shown(999999999999999.9), L"1E+15") << "rounded to 15 digits first";
}

TEST(NumberText, a_Single_has_7_digits) {
  EXPECT_EQ(shown(0.1F), L".1");
  EXPECT_EQ(shown(16777216.0F), L"1.677722E+07");
  EXPECT_EQ(shown(1.5F), L"1.5");
}

TEST(NumberText, a_Currency_has_up_to_4_places) {
  EXPECT_EQ(shown(Currency{12345}), L"1.2345");
  EXPECT_EQ(shown(Currency{-5000}), L"-.5");
  EXPECT_EQ(shown(Currency{10000}), L"1");
  EXPECT_EQ(shown(Currency{0}), L"0");
  EXPECT_EQ(shown(Currency{std::numeric_limits<std::int64_t>::min()}), L"-922337203685477.5808");
}

TEST(NumberText, a_Decimal_keeps_all_its_digits) {
  EXPECT_EQ(shown(decimal_value(L"-0.12345678901234567890")), L"-.1234567890123456789");
  EXPECT_EQ(shown(decimal_value(L"12345678901234567890.5")), L"12345678901234567890.5");
}

TEST(NumberText, a_Date_is_its_number_and_a_text_the_number_that_it_writes) {
  EXPECT_EQ(shown(Date{36526.5}), L"36526.5");
  EXPECT_EQ(shown(L"12"), L"12");
}

TEST(NumberText, what_is_no_number_raises) {
  EXPECT_EQ(error_of([] { shown(L"abc"); }), 13);
  EXPECT_EQ(error_of([] { shown(Variant::null()); }), 94);
  EXPECT_EQ(error_of([] { shown(std::numeric_limits<double>::infinity()); }), 6);
}

TEST(Hex, negative_numbers_have_the_width_of_their_type) {
  EXPECT_EQ(Hex(Integer{-1}), L"FFFF");
  EXPECT_EQ(Hex(Long{-1}), L"FFFFFFFF");
  EXPECT_EQ(Hex(True), L"FFFF");
  EXPECT_EQ(Hex(-1.0), L"FFFFFFFF");
  EXPECT_EQ(Hex(Integer{0xABC}), L"ABC");
  EXPECT_EQ(Hex(Byte{0}), L"0");
  EXPECT_EQ(Hex(Variant()), L"0");
}

TEST(Hex, fractions_are_rounded_with_ties_to_even) {
  EXPECT_EQ(Hex(10.5), L"A");
  EXPECT_EQ(Hex(11.5), L"C");
  EXPECT_EQ(error_of([] { Hex(2147483648.0); }), 6);
  EXPECT_EQ(error_of([] { Hex(L"x"); }), 13);
  EXPECT_EQ(error_of([] { Hex(Variant::null()); }), 94);
}

TEST(Val, reads_the_number_at_the_beginning) {
  EXPECT_EQ(Val(L"12abc"), 12);
  EXPECT_EQ(Val(L"-1.5"), -1.5);
  EXPECT_EQ(Val(L"+.5x"), 0.5);
  EXPECT_EQ(Val(L"1,5"), 1);
  EXPECT_EQ(Val(L"abc"), 0);
  EXPECT_EQ(Val(L""), 0);
  EXPECT_EQ(Val(L"1e3"), 1000);
  EXPECT_EQ(Val(L"1D2"), 100);
}

TEST(Val, passes_over_blanks_wherever_they_stand) {
  EXPECT_EQ(Val(L" 1 615\t198\n0th Street"), 16151980);
  EXPECT_EQ(Val(L"\r1"), 0) << "a carriage return is none";
}

TEST(Val, hexadecimal_and_octal_numbers_are_as_wide_as_they_are_written) {
  EXPECT_EQ(Val(L"&HFFFF"), -1);
  EXPECT_EQ(Val(L"&h8000"), -32768);
  EXPECT_EQ(Val(L"&HFFFF&"), 65535);
  EXPECT_EQ(Val(L"&H12345"), 0x12345);
  EXPECT_EQ(Val(L"&HFFFFFFFF"), -1);
  EXPECT_EQ(Val(L"&O17"), 15);
  EXPECT_EQ(Val(L"&Hxyz"), 0);
  EXPECT_EQ(Val(L"&7"), 0);
  EXPECT_EQ(Val(L"&"), 0);
}

TEST(Val, out_of_range_raises_6) {
  EXPECT_EQ(error_of([] { Val(L"1e999"); }), 6);
  EXPECT_EQ(error_of([] { Val(L"&H100000000"); }), 6);
}

}  // namespace
}  // namespace qv
