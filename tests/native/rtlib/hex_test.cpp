#include "native/rtlib/hex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/native/rtlib/simd_levels.h"

namespace qv::native::rtlib {
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::string_view_literals;

std::u16string encoded(const Bytes& bytes, SimdLevel level = simd_level()) {
  std::u16string text(2 * bytes.size(), u'#');
  hex_encode(bytes, text.data(), level);
  return text;
}

std::optional<Bytes> decoded(std::u16string_view text, SimdLevel level = simd_level()) {
  Bytes bytes(hex_decoded_size(text.size()));
  const auto size = hex_decode(text, bytes.data(), level);
  if (!size) return std::nullopt;
  EXPECT_EQ(*size, bytes.size());
  return bytes;
}

Bytes random_bytes(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

std::u16string naive_hex(const Bytes& bytes) {
  std::u16string text;
  for (const std::uint8_t byte : bytes) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02X", byte);
    text += static_cast<char16_t>(pair[0]);
    text += static_cast<char16_t>(pair[1]);
  }
  return text;
}

TEST(Hex, two_upper_case_digits_a_byte) {
  EXPECT_EQ(encoded({0, 1, 0x9A, 0xFF}), u"00019AFF");
  EXPECT_EQ(encoded({}), u"");
}

TEST(Hex, every_length_agrees_with_formatted_printing_at_every_level) {
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t length = 0; length < 200; ++length) {
      const Bytes bytes = random_bytes(length, static_cast<unsigned>(length));
      const std::u16string text = encoded(bytes, level);
      ASSERT_EQ(text, naive_hex(bytes));
      ASSERT_EQ(decoded(text, level), bytes);
    }
  }
}

TEST(Hex, digits_of_either_case_are_read) {
  for (const SimdLevel level : simd_levels()) {
    const Bytes expected{0xAB, 0xCD, 0xEF, 0xab, 0xcd, 0xef, 0x01, 0x23, 0x45,
                         0x67, 0x89, 0xFf, 0x00, 0xa0, 0x0B, 0x5e, 0xaB};
    EXPECT_EQ(decoded(u"ABCDEFabcdef0123456789Ff00a00B5eaB", level), expected);
  }
}

TEST(Hex, a_last_digit_alone_is_a_byte_of_its_own) {
  EXPECT_EQ(decoded(u"12F"), (Bytes{0x12, 0x0F}));
  EXPECT_EQ(decoded(u"a"), (Bytes{0x0A}));
  EXPECT_EQ(decoded(u"12G"), std::nullopt);
}

TEST(Hex, anything_else_than_a_digit_is_refused_wherever_it_stands) {
  const std::u16string good(70, u'7');
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t at = 0; at < good.size(); ++at) {
      for (const char16_t bad : u"/:@G`g -\u0130\u0430\uFF11\u8041\u0141\uFFFF"sv) {
        std::u16string text = good;
        text[at] = bad;
        ASSERT_EQ(decoded(text, level), std::nullopt) << at << " " << static_cast<int>(bad);
      }
      std::u16string text = good;
      text[at] = 0;
      ASSERT_EQ(decoded(text, level), std::nullopt) << at;
    }
  }
}

TEST(Hex, exactly_22_characters_are_digits) {
  for (const SimdLevel level : simd_levels()) {
    int digits = 0;
    for (unsigned code = 0; code < 65536; ++code) {
      if (decoded(std::u16string(32, static_cast<char16_t>(code)), level)) ++digits;
    }
    EXPECT_EQ(digits, 22);
  }
}

// The text after its definition: a blank and two digits a byte, a line ended as soon as the next
// byte would exceed the width.
std::u16string naive_dump(const Bytes& bytes, std::int32_t width, std::u16string_view line_end) {
  const std::int64_t limit = width > 0 ? width : 2147483647;
  std::u16string dump;
  std::u16string line;
  std::int64_t line_width = 0;
  for (const std::uint8_t byte : bytes) {
    line_width += 3;
    if (line_width > limit) {
      dump += line;
      dump += line_end;
      line.clear();
      line_width = 3;
    }
    line += u' ' + naive_hex({byte});
  }
  return dump + line;
}

std::u16string dumped(const Bytes& bytes, std::int32_t width, std::u16string_view line_end,
                      SimdLevel level = simd_level()) {
  std::u16string text(hex_dump_layout(bytes.size(), width, line_end.size()).characters, u'#');
  hex_dump(bytes, width, line_end, text.data(), level);
  return text;
}

TEST(HexDump, of_two_bytes) {
  EXPECT_EQ(dumped({1, 255}, 0, u""), u" 01 FF");
  EXPECT_EQ(dumped({}, 0, u"\r\n"), u"");
}

TEST(HexDump, line_ends_stand_between_lines_only) {
  EXPECT_EQ(dumped({1, 2, 3, 4}, 6, u"\r\n"), u" 01 02\r\n 03 04");
  EXPECT_EQ(dumped({1, 2, 3}, 8, u"|"), u" 01 02| 03");
  EXPECT_EQ(dumped({1, 2}, 0, u"|"), u" 01 02");
  EXPECT_EQ(dumped({1, 2}, -5, u"|"), u" 01 02");
}

TEST(HexDump, a_width_below_3_puts_a_line_end_before_every_byte) {
  EXPECT_EQ(dumped({1, 2}, 2, u"|"), u"| 01| 02");
  EXPECT_EQ(dumped({1, 2}, 1, u"|"), u"| 01| 02");
  EXPECT_EQ(dumped({1, 2}, 3, u"|"), u" 01| 02");
}

TEST(HexDump, every_width_and_length_agrees_with_the_definition_at_every_level) {
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t length = 0; length < 120; length += 1 + length / 40) {
      const Bytes bytes = random_bytes(length, static_cast<unsigned>(length));
      for (std::int32_t width = -1; width < 130; ++width) {
        ASSERT_EQ(dumped(bytes, width, u"\r\n", level), naive_dump(bytes, width, u"\r\n"))
            << length << " " << width;
        ASSERT_EQ(dumped(bytes, width, u"", level), naive_dump(bytes, width, u""));
      }
    }
  }
}

}  // namespace
}  // namespace qv::native::rtlib
