#include "native/rtlib/char_class.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace qv::native::rtlib {
namespace {

struct Model {
  CharClass char_class;
  bool (*holds)(int);
};

bool within(int code, int first, int last) { return code >= first && code <= last; }
bool is_letter(int c) { return within(c, 'A', 'Z') || within(c, 'a', 'z'); }
bool is_digit(int c) { return within(c, '0', '9'); }

const Model kModels[] = {
    {CharClass::kAlnum, [](int c) { return is_letter(c) || is_digit(c); }},
    {CharClass::kAlpha, is_letter},
    {CharClass::kAscii, [](int c) { return within(c, 0, 0x7F); }},
    {CharClass::kCntrl, [](int c) { return within(c, 0, 0x1F) || c == 0x7F; }},
    {CharClass::kCsym, [](int c) { return is_letter(c) || is_digit(c) || c == '_'; }},
    {CharClass::kCsymf, [](int c) { return is_letter(c) || c == '_'; }},
    {CharClass::kDigit, is_digit},
    {CharClass::kGraph, [](int c) { return within(c, 0x21, 0x7E); }},
    {CharClass::kLower, [](int c) { return within(c, 'a', 'z'); }},
    {CharClass::kPrint, [](int c) { return within(c, 0x20, 0x7E); }},
    {CharClass::kPunct,
     [](int c) { return within(c, 0x21, 0x7E) && !is_letter(c) && !is_digit(c); }},
    {CharClass::kSpace, [](int c) { return within(c, 9, 13) || c == 0x20; }},
    {CharClass::kUpper, [](int c) { return within(c, 'A', 'Z'); }},
    {CharClass::kXdigit,
     [](int c) { return is_digit(c) || within(c, 'A', 'F') || within(c, 'a', 'f'); }},
};

TEST(CharClass, each_class_holds_exactly_its_codes_among_all_16_bit_ones) {
  for (const Model& model : kModels) {
    for (int code = -32768; code <= 32767; ++code) {
      ASSERT_EQ(is_class(code, model.char_class), model.holds(code))
          << "class " << static_cast<int>(model.char_class) << " code " << code;
    }
  }
}

TEST(CharClass, an_accented_letter_is_no_letter) { EXPECT_FALSE(is_class(224, CharClass::kAlpha)); }

std::vector<std::uint8_t> bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

TEST(CharClass, letters_of_the_table_count_unless_strict) {
  LetterTable letters{};
  for (int c = 0; c < 256; ++c) letters[static_cast<std::size_t>(c)] = is_letter(c) || c == 0xE0;
  EXPECT_TRUE(all_letters(bytes_of("abc\xE0"), letters, DigitRule::kRefused));
  EXPECT_FALSE(all_ascii_letters(bytes_of("abc\xE0"), DigitRule::kRefused));
  EXPECT_TRUE(all_ascii_letters(bytes_of("abC"), DigitRule::kRefused));
  EXPECT_FALSE(all_letters(bytes_of("a b"), letters, DigitRule::kAllowed));
}

TEST(CharClass, digits_count_only_where_allowed) {
  const LetterTable none{};
  EXPECT_TRUE(all_letters(bytes_of("09"), none, DigitRule::kAllowed));
  EXPECT_FALSE(all_letters(bytes_of("09"), none, DigitRule::kRefused));
  EXPECT_TRUE(all_ascii_letters(bytes_of("a9"), DigitRule::kAllowed));
  EXPECT_FALSE(all_ascii_letters(bytes_of("a9"), DigitRule::kRefused));
}

TEST(CharClass, no_bytes_at_all_hold_nothing_else_than_letters) {
  EXPECT_TRUE(all_letters({}, LetterTable{}, DigitRule::kRefused));
  EXPECT_TRUE(all_ascii_letters({}, DigitRule::kRefused));
}

}  // namespace
}  // namespace qv::native::rtlib
