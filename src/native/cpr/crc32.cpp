#include "native/cpr/crc32.h"

#include <array>
#include <cstddef>

namespace qv::native::cpr {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::size_t kSlices = 16;

using SliceTable = std::array<std::array<std::uint32_t, 256>, kSlices>;

// tables[k][b] is what byte b leaves in the register when k further zero bytes have passed.
consteval SliceTable make_tables() {
  SliceTable tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) ? kPolynomial : 0);
    tables[0][byte] = value;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[slice - 1][byte];
      tables[slice][byte] = (before >> 8) ^ tables[0][before & 0xFF];
    }
  }
  return tables;
}

constexpr SliceTable kTables = make_tables();

}  // namespace

std::uint32_t crc32_update_by_tables(std::uint32_t register_value,
                                     std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = register_value;
  const std::uint8_t* at = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices) {
    std::uint32_t next =
        kTables[15][at[0] ^ (crc & 0xFF)] ^ kTables[14][at[1] ^ ((crc >> 8) & 0xFF)] ^
        kTables[13][at[2] ^ ((crc >> 16) & 0xFF)] ^ kTables[12][at[3] ^ (crc >> 24)];
    for (std::size_t i = 4; i < kSlices; ++i) next ^= kTables[15 - i][at[i]];
    crc = next;
  }
  for (; left > 0; --left, ++at) crc = (crc >> 8) ^ kTables[0][(crc ^ *at) & 0xFF];
  return crc;
}

std::uint32_t crc32_update(std::uint32_t register_value, std::span<const std::uint8_t> bytes) {
  return crc32_update_by_tables(register_value, bytes);
}

}  // namespace qv::native::cpr
