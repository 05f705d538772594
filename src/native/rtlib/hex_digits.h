#pragma once

#include <immintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace qv::native::rtlib {

constexpr char16_t kHexDigits[] = u"0123456789ABCDEF";

// The two digits of every byte.
inline constexpr auto kHexPairs = [] {
  std::array<std::array<char16_t, 2>, 256> pairs{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    pairs[byte] = {kHexDigits[byte >> 4], kHexDigits[byte & 15]};
  }
  return pairs;
}();

// The 32 digits of 16 bytes, one byte a digit, in their order.
__attribute__((target("avx2"), always_inline)) inline __m256i hex_digits_of(
    const std::uint8_t* bytes) {
  const __m256i digits = _mm256_broadcastsi128_si256(_mm_setr_epi8(
      '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'));
  const __m256i wide =
      _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
  const __m256i nibbles = _mm256_or_si256(_mm256_srli_epi16(wide, 4), _mm256_slli_epi16(wide, 8));
  return _mm256_shuffle_epi8(digits, _mm256_and_si256(nibbles, _mm256_set1_epi8(15)));
}

}  // namespace qv::native::rtlib
