#include "native/rtlib/scramble.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace qv::native::rtlib {
namespace {

std::vector<std::uint8_t> scrambled(std::vector<std::uint8_t> bytes, std::int16_t code) {
  scramble(bytes, code);
  return bytes;
}

using Bytes = std::vector<std::uint8_t>;

TEST(Scramble, twice_with_any_code_restores_the_bytes) {
  std::mt19937 random(3);
  Bytes bytes(300);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  for (int code = -32768; code <= 32767; code += 13) {
    const auto as_integer = static_cast<std::int16_t>(code);
    ASSERT_EQ(scrambled(scrambled(bytes, as_integer), as_integer), bytes) << code;
  }
  EXPECT_EQ(scrambled(scrambled(bytes, 0), 0), bytes);
}

// Stored texts depend on these bytes.
TEST(Scramble, code_0_uses_bytes_of_the_place_that_never_change) {
  EXPECT_EQ(scrambled(Bytes(16, 0), 0), (Bytes{0x9E, 0x3C, 0xDA, 0x78, 0x17, 0xB5, 0x53, 0xF1, 0x8F,
                                               0x2E, 0xCC, 0x6A, 0x08, 0xA7, 0x45, 0xE3}));
}

TEST(Scramble, code_0_depends_on_the_place_alone) {
  const Bytes zeros = scrambled(Bytes(1000, 0), 0);
  Bytes text(1000, 'x');
  scramble(text, 0);
  for (std::size_t i = 0; i < text.size(); ++i) {
    ASSERT_EQ(text[i], zeros[i] ^ 'x');
    ASSERT_EQ(zeros[i], scramble_byte(static_cast<std::uint32_t>(i)));
  }
}

TEST(Scramble, a_code_below_256_is_xored_with_every_byte) {
  EXPECT_EQ(scrambled({0, 1, 2, 0xFF}, 1), (Bytes{1, 0, 3, 0xFE}));
  EXPECT_EQ(scrambled({0, 1, 2}, 255), (Bytes{0xFF, 0xFE, 0xFD}));
}

TEST(Scramble, a_greater_code_is_xored_low_and_high_byte_in_turn) {
  EXPECT_EQ(scrambled({0, 0, 0, 0, 0}, 256), (Bytes{0, 1, 0, 1, 0}));
  EXPECT_EQ(scrambled({0, 0, 0}, 0x1234), (Bytes{0x34, 0x12, 0x34}));
}

TEST(Scramble, a_negative_code_counts_as_its_16_bits) {
  EXPECT_EQ(scrambled({0, 0, 0}, -2), (Bytes{0xFE, 0xFF, 0xFE}));
}

TEST(Scramble, characters_0_are_data) {
  EXPECT_EQ(scrambled({'a', 0, 'b'}, 3), (Bytes{'a' ^ 3, 3, 'b' ^ 3}));
}

TEST(Scramble, nothing_stays_nothing) { EXPECT_TRUE(scrambled({}, 0).empty()); }

}  // namespace
}  // namespace qv::native::rtlib
