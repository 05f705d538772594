#include "native/rtlib/roman.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

namespace qv::native::rtlib {
namespace {

TEST(Roman, numerals_are_written_by_groups) {
  EXPECT_EQ(roman_from_number(4999), u"MMMMCMXCIX");
  EXPECT_EQ(roman_from_number(1), u"I");
  EXPECT_EQ(roman_from_number(1994), u"MCMXCIV");
  EXPECT_EQ(roman_from_number(3888), u"MMMDCCCLXXXVIII");
  EXPECT_EQ(roman_from_number(444), u"CDXLIV");
}

// Thousands, hundreds, tens and units, each with its own group.
std::u16string by_digits(int number) {
  const std::u16string hundreds[] = {u"",  u"C",  u"CC",  u"CCC",  u"CD",
                                     u"D", u"DC", u"DCC", u"DCCC", u"CM"};
  const std::u16string tens[] = {u"",  u"X",  u"XX",  u"XXX",  u"XL",
                                 u"L", u"LX", u"LXX", u"LXXX", u"XC"};
  const std::u16string units[] = {u"",  u"I",  u"II",  u"III",  u"IV",
                                  u"V", u"VI", u"VII", u"VIII", u"IX"};
  return std::u16string(static_cast<std::size_t>(number / 1000), u'M') +
         hundreds[number / 100 % 10] + tens[number / 10 % 10] + units[number % 10];
}

TEST(Roman, every_number_from_1_to_4999_goes_there_and_back) {
  for (int number = 1; number <= 4999; ++number) {
    const std::u16string roman = roman_from_number(number);
    ASSERT_EQ(roman, by_digits(number));
    ASSERT_EQ(number_from_roman(roman), number);
  }
}

TEST(Roman, other_numbers_have_no_numeral) {
  for (const int number : {0, -1, 5000, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(roman_from_number(number), u"") << number;
  }
}

TEST(Roman, small_letters_are_read) { EXPECT_EQ(number_from_roman(u"mcmxciv"), 1994); }

TEST(Roman, reading_ends_at_what_stands_out_of_order) {
  EXPECT_EQ(number_from_roman(u"IXX"), 9);
  EXPECT_EQ(number_from_roman(u"IM"), 1);
  EXPECT_EQ(number_from_roman(u"X V"), 10);
  EXPECT_EQ(number_from_roman(u" X"), 0);
  EXPECT_EQ(number_from_roman(u"abc"), 0);
  EXPECT_EQ(number_from_roman(u""), 0);
}

TEST(Roman, only_the_powers_of_ten_repeat) {
  EXPECT_EQ(number_from_roman(u"IIII"), 4);
  EXPECT_EQ(number_from_roman(u"XXXXX"), 50);
  EXPECT_EQ(number_from_roman(u"MMMMMM"), 6000);
  EXPECT_EQ(number_from_roman(u"DD"), 500);
  EXPECT_EQ(number_from_roman(u"VV"), 5);
  EXPECT_EQ(number_from_roman(u"LL"), 50);
  EXPECT_EQ(number_from_roman(u"CMCM"), 1000) << "C may follow CM, M may not";
  EXPECT_EQ(number_from_roman(u"CMC"), 1000) << "the order reads C behind CM";
}

TEST(Roman, a_sum_past_32_bits_is_none) {
  EXPECT_EQ(number_from_roman(std::u16string(2147483, u'M') + u"DCXLVII"), 2147483647);
  EXPECT_EQ(number_from_roman(std::u16string(2147483, u'M') + u"DCXLVIII"), std::nullopt);
}

}  // namespace
}  // namespace qv::native::rtlib
