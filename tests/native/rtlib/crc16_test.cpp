#include "native/rtlib/crc16.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

#include "tests/native/rtlib/simd_levels.h"

namespace qv::native::rtlib {
namespace {

std::uint16_t naive_crc16(std::span<const std::uint8_t> bytes, std::uint16_t crc) {
  for (const std::uint8_t byte : bytes) {
    for (int bit = 7; bit >= 0; --bit) {
      const bool carry = ((crc >> 15) ^ (byte >> bit)) & 1;
      crc = static_cast<std::uint16_t>((crc << 1) ^ (carry ? 0x1021 : 0));
    }
  }
  return crc;
}

std::vector<std::uint8_t> bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

std::vector<std::uint8_t> random_bytes(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

TEST(Crc16, published_check_values) {
  EXPECT_EQ(crc16(bytes_of("123456789"), 0xFFFF), 0x29B1);
  EXPECT_EQ(crc16(bytes_of("123456789"), 0), 0x31C3);
}

TEST(Crc16, of_nothing_is_the_start) {
  EXPECT_EQ(crc16({}, 0xFFFF), 0xFFFF);
  EXPECT_EQ(crc16({}, 0x1234), 0x1234);
}

TEST(Crc16, every_length_agrees_with_one_bit_at_a_time_at_every_level) {
  const auto bytes = random_bytes(1500, 7);
  for (const SimdLevel level : simd_levels()) {
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
      const auto part = std::span(bytes).last(length);
      const auto start = static_cast<std::uint16_t>(length * 40503);
      ASSERT_EQ(crc16(part, start, level), naive_crc16(part, start))
          << "length " << length << " level " << static_cast<int>(level);
    }
  }
}

TEST(Crc16, a_long_buffer_agrees_at_every_level) {
  const auto bytes = random_bytes(100003, 8);
  const std::uint16_t expected = naive_crc16(bytes, 0xFFFF);
  for (const SimdLevel level : simd_levels()) EXPECT_EQ(crc16(bytes, 0xFFFF, level), expected);
}

TEST(Crc16, chains_over_pieces) {
  const auto bytes = random_bytes(5000, 9);
  const std::uint16_t whole = crc16(bytes, 0xFFFF);
  for (const std::size_t cut : {0, 1, 63, 64, 511, 512, 4999, 5000}) {
    const std::uint16_t first = crc16(std::span(bytes).first(cut), 0xFFFF);
    EXPECT_EQ(crc16(std::span(bytes).subspan(cut), first), whole) << cut;
  }
}

}  // namespace
}  // namespace qv::native::rtlib
