#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace qv::native::cpr {

// Words of the formats, which are little-endian on every machine; no alignment is asked for.
inline std::uint32_t swapped_unless_little(std::uint32_t word) {
  return std::endian::native == std::endian::little ? word : __builtin_bswap32(word);
}
inline std::uint64_t swapped_unless_little(std::uint64_t word) {
  return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

template <typename Word>
Word load_little_endian(const std::uint8_t* from) {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return swapped_unless_little(word);
}

template <typename Word>
void store_little_endian(std::uint8_t* to, Word word) {
  word = swapped_unless_little(word);
  std::memcpy(to, &word, sizeof word);
}

}  // namespace qv::native::cpr
