#include "native/zstr/sort_key.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "native/zstr/latin_fold.h"
#include "native/zstr/mask.h"

namespace qv::native::zstr {
namespace {

using namespace std::string_literals;

std::span<std::uint8_t> bytes_of(std::string& text) {
  return {reinterpret_cast<std::uint8_t*>(text.data()), text.size()};
}

std::span<const std::uint8_t> bytes_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string sorted(std::string key, std::int32_t flags, std::string_view table = {}) {
  key.resize(Key_Sort(bytes_of(key), flags, bytes_of(table), kWindows1252Folding));
  return key;
}

std::string weighed(std::string text, std::string_view table) {
  XLate(bytes_of(text), bytes_of(table));
  return text;
}

// A table that turns the digits and letters round, as long as it is told.
std::string turning_table(std::size_t length) {
  std::string table(length, 0);
  for (std::size_t i = 0; i < length; ++i) table[i] = static_cast<char>(255 - i);
  return table;
}

TEST(KeySort, without_a_flag_the_key_stays) {
  EXPECT_EQ(sorted("<La> \"x\" @1@ \xE0", 0, turning_table(256)), "<La> \"x\" @1@ \xE0");
  EXPECT_EQ(sorted("", -1, turning_table(256)), "");
}

TEST(KeySort, folds_to_upper_case_with_accented_letters) {
  EXPECT_EQ(sorted("citt\xE0 \x9A\xFF", kSortUcase), "CITT\xC0 \x8A\x9F");
}

TEST(KeySort, takes_accents_off_and_keeps_the_case) {
  EXPECT_EQ(sorted("Citt\xE0 \xC8", kSortPrimary), "Citta E");
  EXPECT_EQ(sorted("Citt\xE0", kSortPrimary | kSortUcase), "CITTA");
}

TEST(KeySort, drops_blanks_and_digits) {
  EXPECT_EQ(sorted(" a 1 b 2\t", kSortNoSpaces), "a1b2\t");
  EXPECT_EQ(sorted("a1b22", kSortNoNum), "ab");
  EXPECT_EQ(sorted(" 1 2 ", kSortNoSpaces | kSortNoNum), "");
}

TEST(KeySort, masks_need_the_flag_and_not_its_opposite) {
  EXPECT_EQ(sorted("<La >Bibbia@2@", kSortMask), "Bibbia2");
  EXPECT_EQ(sorted("<La >Bibbia@2@", kSortMask | kSortNoMask), "<La >Bibbia@2@");
  EXPECT_EQ(sorted("<La >Bibbia@2@", kSortNoMask), "<La >Bibbia@2@");
}

TEST(KeySort, weighs_with_the_table_flag_and_not_its_opposite) {
  const std::string table = turning_table(256);
  EXPECT_EQ(sorted("AB", kSortTable, table), "\xBE\xBD");
  EXPECT_EQ(sorted("AB", kSortTable | kSortNoTable, table), "AB");
  EXPECT_EQ(sorted("AB", kSortTable), "AB") << "an empty table is no table";
}

TEST(KeySort, the_order_is_masks_blanks_digits_accents_case_table) {
  std::string table = turning_table(256);
  table['A'] = '1';
  table['B'] = ' ';
  table['C'] = '<';
  EXPECT_EQ(sorted("<x> \xE0 1b c",
                   kSortMask | kSortNoSpaces | kSortNoNum | kSortPrimary | kSortUcase | kSortTable,
                   table),
            "1 <");
}

TEST(KeySort, flags_that_mark_an_index_change_no_key) {
  EXPECT_EQ(sorted("a  1\xE0<b>", 256 | 512 | 1024 | 2048 | 4096), "a  1\xE0<b>");
}

TEST(KeySort, a_widened_16_bit_flag_drops_no_blanks) {
  EXPECT_EQ(sorted("a b", -32768), "a b");
  EXPECT_EQ(sorted("a b", std::int16_t{-32768} | kSortUcase), "A B");
}

TEST(KeySort, characters_0_are_data) {
  EXPECT_EQ(sorted("a\0 b"s, kSortUcase | kSortNoSpaces), "A\0B"s);
}

TEST(XLate, a_character_becomes_its_place_in_the_table) {
  EXPECT_EQ(weighed("\x01\x02", "abc"), "bc");
  EXPECT_EQ(weighed("\0\x02"s, "abc"), "ac");
}

TEST(XLate, characters_past_the_table_stay) {
  EXPECT_EQ(weighed("\x02\x03\xFF", "abc"), "c\x03\xFF");
  EXPECT_EQ(weighed("abc", ""), "abc");
}

TEST(XLate, a_table_longer_than_256_is_read_as_far_as_a_character_reaches) {
  EXPECT_EQ(weighed("\xFF", std::string(255, 'x') + "yz"), "y");
}

TEST(KeySort, random_keys_agree_with_one_step_after_the_other) {
  std::mt19937 random(21);
  for (int round = 0; round < 30000; ++round) {
    std::string key(random() % 20, ' ');
    for (char& c : key)
      c = static_cast<char>(random() % 3 == 0 ? "<>@\" 12"[random() % 7] : random());
    const auto flags = static_cast<std::int32_t>(random() & 0x1FFFF);
    const std::string table = turning_table(random() % 300);
    std::string expected = key;
    if ((flags & 32) != 0 && (flags & 8192) == 0) {
      expected.resize(Mask_Sort(bytes_of(expected)));
    }
    std::string kept;
    for (const char c : expected) {
      if ((flags & 65536) != 0 && c == ' ') continue;
      if ((flags & 64) != 0 && c >= '0' && c <= '9') continue;
      auto code = static_cast<unsigned char>(c);
      if ((flags & 128) != 0) code = kWindows1252Folding.without_accent[code];
      if ((flags & 1) != 0) code = kWindows1252Folding.upper_case[code];
      if ((flags & 4) != 0 && (flags & 16384) == 0 && code < table.size()) {
        code = static_cast<unsigned char>(table[code]);
      }
      kept += static_cast<char>(code);
    }
    ASSERT_EQ(sorted(key, flags, table), kept);
  }
}

}  // namespace
}  // namespace qv::native::zstr
