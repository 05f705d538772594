#include "native/rtlib/code_page.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/native/rtlib/simd_levels.h"

namespace qv::native::rtlib {
namespace {

struct Tables {
  ForwardTable forward{};
  std::vector<std::uint8_t> reverse = std::vector<std::uint8_t>(65536);

  std::span<std::uint8_t, 65536> reverse_span() {
    return std::span<std::uint8_t, 65536>(reverse.data(), 65536);
  }
};

std::shared_ptr<Tables> windows_1252() {
  auto tables = std::make_shared<Tables>();
  tables->forward = kWindows1252;
  make_reverse(tables->forward, '?', tables->reverse_span());
  return tables;
}

std::shared_ptr<Tables> best_fit_1252() {
  auto tables = windows_1252();
  tables->reverse[0x0100] = 'A';
  tables->reverse[0x0080] = '?';
  tables->reverse[0x2032] = '\'';
  tables->reverse[0xFF01] = '!';
  return tables;
}

std::shared_ptr<Tables> cyrillic() {  // too many characters for the hash
  auto tables = std::make_shared<Tables>();
  for (std::size_t byte = 0; byte < 256; ++byte) {
    tables->forward[byte] = static_cast<char16_t>(byte < 0x80 ? byte : 0x400 + byte);
  }
  make_reverse(tables->forward, '?', tables->reverse_span());
  return tables;
}

std::shared_ptr<Tables> identity() {
  auto tables = std::make_shared<Tables>();
  for (std::size_t byte = 0; byte < 256; ++byte) {
    tables->forward[byte] = static_cast<char16_t>(byte);
  }
  make_reverse(tables->forward, 0, tables->reverse_span());
  return tables;
}

std::shared_ptr<Tables> ascii_moved() {  // nothing may lean on ASCII being itself
  auto tables = windows_1252();
  tables->forward[0] = 0x2400;
  tables->forward['\\'] = 0x00A5;
  tables->forward['A'] = 'B';
  make_reverse(tables->forward, '*', tables->reverse_span());
  return tables;
}

std::shared_ptr<Tables> random_tables() {
  auto tables = std::make_shared<Tables>();
  std::mt19937 random(11);
  for (auto& character : tables->forward) character = static_cast<char16_t>(random());
  for (auto& byte : tables->reverse) byte = static_cast<std::uint8_t>(random());
  return tables;
}

std::shared_ptr<Tables> reverse_of_other_make() {  // the directions need not agree
  auto tables = windows_1252();
  for (std::size_t i = 0; i < tables->reverse.size(); ++i) {
    tables->reverse[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
  }
  return tables;
}

using Maker = std::shared_ptr<Tables> (*)();

class AnyCodePage : public testing::TestWithParam<Maker> {
 protected:
  std::shared_ptr<Tables> tables_ = GetParam()();
  std::unique_ptr<CodePage> page_ =
      std::make_unique<CodePage>(tables_->forward, tables_->reverse_span());
};

INSTANTIATE_TEST_SUITE_P(CodePages, AnyCodePage,
                         testing::Values(windows_1252, best_fit_1252, cyrillic, identity,
                                         ascii_moved, random_tables, reverse_of_other_make));

TEST_P(AnyCodePage, bytes_go_through_the_table_at_every_length_and_level) {
  std::mt19937 random(12);
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t length = 0; length < 300; ++length) {
      std::vector<std::uint8_t> bytes(length);
      const unsigned range = length % 3 == 0 ? 128 : 256;
      for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() % range);
      std::u16string text(length + 1, u'#');
      page_->from_bytes(bytes, text.data(), level);
      for (std::size_t i = 0; i < length; ++i) {
        ASSERT_EQ(text[i], tables_->forward[bytes[i]]) << "length " << length << " at " << i;
      }
      ASSERT_EQ(text[length], u'#') << "wrote past the end";
    }
  }
}

TEST_P(AnyCodePage, characters_go_through_the_reverse_at_every_length_and_level) {
  std::mt19937 random(13);
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t length = 0; length < 300; ++length) {
      std::u16string text(length, 0);
      for (auto& character : text) {
        switch (length % 4) {
          case 0:
            character = static_cast<char16_t>(random() % 128);
            break;
          case 1:
            character = tables_->forward[random() % 256];
            break;
          case 2:
            character = static_cast<char16_t>(random() % 300);
            break;
          default:
            character = static_cast<char16_t>(random());
        }
      }
      std::vector<std::uint8_t> bytes(length + 1, '#');
      page_->to_bytes(text, bytes.data(), level);
      for (std::size_t i = 0; i < length; ++i) {
        ASSERT_EQ(bytes[i], tables_->reverse[text[i]]) << "length " << length << " at " << i;
      }
      ASSERT_EQ(bytes[length], '#') << "wrote past the end";
    }
  }
}

TEST_P(AnyCodePage, every_code_unit_and_every_byte_at_every_level) {
  std::u16string text(65536, 0);
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(i);
  std::vector<std::uint8_t> all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  for (const SimdLevel level : simd_levels()) {
    std::vector<std::uint8_t> bytes(text.size());
    page_->to_bytes(text, bytes.data(), level);
    ASSERT_EQ(bytes, tables_->reverse);
    ForwardTable characters{};
    page_->from_bytes(all, characters.data(), level);
    ASSERT_EQ(characters, tables_->forward);
  }
}

TEST(Windows1252, has_the_published_characters) {
  EXPECT_EQ(kWindows1252[0x80], 0x20AC);
  EXPECT_EQ(kWindows1252[0x99], 0x2122);
  EXPECT_EQ(kWindows1252[0x9F], 0x0178);
  EXPECT_EQ(kWindows1252[0x7F], 0x007F);
  EXPECT_EQ(kWindows1252[0xA0], 0x00A0);
  EXPECT_EQ(kWindows1252[0xE0], 0x00E0);
  EXPECT_EQ(std::set<char16_t>(kWindows1252.begin(), kWindows1252.end()).size(), 256u);
}

TEST(Windows1252, undefined_bytes_are_their_own_codes) {
  for (const std::size_t byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(kWindows1252[byte], byte);
  }
}

TEST(Windows1252, every_byte_survives_the_way_there_and_back) {
  const auto tables = windows_1252();
  const auto page = std::make_unique<CodePage>(tables->forward, tables->reverse_span());
  std::mt19937 random(14);
  std::vector<std::uint8_t> bytes(100000);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  for (const SimdLevel level : simd_levels()) {
    std::u16string text(bytes.size(), 0);
    std::vector<std::uint8_t> back(bytes.size());
    page->from_bytes(bytes, text.data(), level);
    page->to_bytes(text, back.data(), level);
    EXPECT_EQ(back, bytes);
  }
}

TEST(CodePageReverse, of_two_equal_characters_the_first_byte_counts) {
  Tables tables;
  tables.forward.fill(u'x');
  tables.forward[200] = u'y';
  make_reverse(tables.forward, '?', tables.reverse_span());
  EXPECT_EQ(tables.reverse['x'], 0);
  EXPECT_EQ(tables.reverse['y'], 200);
  EXPECT_EQ(tables.reverse['z'], '?');
}

TEST(CodePage, best_fits_come_from_the_reverse_table) {
  const auto tables = best_fit_1252();
  const auto page = std::make_unique<CodePage>(tables->forward, tables->reverse_span());
  const std::u16string text = u"\u0100\u20AC\u0080\uFF01\u0416\U0001F600";
  std::string bytes(text.size(), '#');
  page->to_bytes(text, reinterpret_cast<std::uint8_t*>(bytes.data()));
  EXPECT_EQ(bytes, "A\x80?!?\?\?");
}

}  // namespace
}  // namespace qv::native::rtlib
