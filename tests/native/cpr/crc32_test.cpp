#include "native/cpr/crc32.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>
#include <vector>

namespace qv::native::cpr {
namespace {

std::span<const std::uint8_t> bytes_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::uint32_t bit_by_bit(std::uint32_t crc, std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) ? 0xEDB88320u : 0u);
  }
  return crc;
}

std::vector<std::uint8_t> random_bytes(std::size_t count) {
  std::mt19937 random(static_cast<unsigned>(count) + 1);
  std::vector<std::uint8_t> bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

TEST(Crc32, complement_of_check_text_is_customary_value) {
  EXPECT_EQ(~crc32_update(0xFFFFFFFF, bytes_of("123456789")), 0xCBF43926u);
}

TEST(Crc32, of_nothing_is_register_unchanged) {
  EXPECT_EQ(crc32_update(0x12345678, {}), 0x12345678u);
  EXPECT_EQ(crc32_update(0xFFFFFFFF, {}), 0xFFFFFFFFu);
}

TEST(Crc32, register_zero_over_zero_bytes_stays_zero) {
  EXPECT_EQ(crc32_update(0, std::vector<std::uint8_t>(5000)), 0u);
}

TEST(Crc32, agrees_with_bit_by_bit_at_every_length_and_alignment) {
  const auto bytes = random_bytes(1200);
  for (std::size_t length = 0; length <= 1100; ++length) {
    const auto part = std::span(bytes).subspan(length % 67, length);
    const std::uint32_t expected = bit_by_bit(0xDEADBEEF, part);
    ASSERT_EQ(crc32_update(0xDEADBEEF, part), expected) << length;
    ASSERT_EQ(crc32_update_by_tables(0xDEADBEEF, part), expected) << length;
  }
}

TEST(Crc32, agrees_with_tables_over_long_buffers) {
  const auto bytes = random_bytes(1 << 20);
  for (const std::size_t length : {32767u, 32768u, 65537u, 1u << 20}) {
    const auto part = std::span(bytes).first(length);
    EXPECT_EQ(crc32_update(0xFFFFFFFF, part), crc32_update_by_tables(0xFFFFFFFF, part)) << length;
  }
}

TEST(Crc32, chains_over_any_division) {
  const auto bytes = random_bytes(3000);
  const std::uint32_t whole = crc32_update(0xFFFFFFFF, bytes);
  for (std::size_t cut = 0; cut <= bytes.size(); cut += 7) {
    const std::uint32_t first = crc32_update(0xFFFFFFFF, std::span(bytes).first(cut));
    ASSERT_EQ(crc32_update(first, std::span(bytes).subspan(cut)), whole) << cut;
  }
}

}  // namespace
}  // namespace qv::native::cpr
