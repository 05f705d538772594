#include "native/rtlib/crc16.h"

#include <immintrin.h>

#include <array>
#include <cstddef>

namespace qv::native::rtlib {
namespace {

constexpr std::uint16_t kPolynomial = 0x1021;

constexpr std::uint16_t times_x(std::uint16_t remainder) {
  const unsigned doubled = static_cast<unsigned>(remainder) << 1;
  return static_cast<std::uint16_t>((remainder & 0x8000) != 0 ? doubled ^ kPolynomial : doubled);
}

// x to the given power, modulo the polynomial: what folding over that many bits multiplies by.
constexpr std::int64_t power_of_x(int power) {
  std::uint16_t remainder = 1;
  for (int i = 0; i < power; ++i) remainder = times_x(remainder);
  return remainder;
}

// kSlices[k][b]: what byte b adds to the register when k more bytes follow it.
constexpr std::size_t kSliceCount = 16;
constexpr auto kSlices = [] {
  std::array<std::array<std::uint16_t, 256>, kSliceCount> slices{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    auto remainder = static_cast<std::uint16_t>(byte << 8);
    for (auto& slice : slices) {
      for (int bit = 0; bit < 8; ++bit) remainder = times_x(remainder);
      slice[byte] = remainder;
    }
  }
  return slices;
}();

std::uint16_t crc16_sliced(const std::uint8_t* next, std::size_t left, std::uint16_t crc) {
  for (; left >= kSliceCount; left -= kSliceCount, next += kSliceCount) {
    unsigned sum = kSlices[15][next[0] ^ (crc >> 8)] ^ kSlices[14][next[1] ^ (crc & 0xFF)];
    for (std::size_t i = 2; i < kSliceCount; ++i) sum ^= kSlices[kSliceCount - 1 - i][next[i]];
    crc = static_cast<std::uint16_t>(sum);
  }
  for (; left > 0; --left, ++next) {
    crc = static_cast<std::uint16_t>((crc << 8) ^ kSlices[0][*next ^ (crc >> 8)]);
  }
  return crc;
}

// A block of 16 bytes is a polynomial whose first bit has the highest power, so its bytes are
// turned round in the register. Folding over n bits multiplies the block's upper half by x^(n+64)
// and its lower half by x^n.
#define QV_CLMUL __attribute__((target("avx2,pclmul")))
#define QV_VCLMUL __attribute__((target("avx2,pclmul,avx512f,avx512bw,avx512vl,vpclmulqdq")))

QV_CLMUL inline __m128i turned_block(const std::uint8_t* at) {
  const __m128i turn = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), turn);
}

QV_CLMUL inline __m128i fold(__m128i block, __m128i powers) {
  return _mm_xor_si128(_mm_clmulepi64_si128(block, powers, 0x11),
                       _mm_clmulepi64_si128(block, powers, 0x00));
}

QV_CLMUL inline __m128i powers_over(std::int64_t upper, std::int64_t lower) {
  return _mm_set_epi64x(upper, lower);
}

constexpr std::int64_t kOver128Upper = power_of_x(128 + 64);
constexpr std::int64_t kOver128Lower = power_of_x(128);
constexpr std::int64_t kOver512Upper = power_of_x(512 + 64);
constexpr std::int64_t kOver512Lower = power_of_x(512);
constexpr std::int64_t kOver2048Upper = power_of_x(2048 + 64);
constexpr std::int64_t kOver2048Lower = power_of_x(2048);

// Takes the folded block and what is left of the data behind it.
QV_CLMUL std::uint16_t finish(__m128i folded, const std::uint8_t* next, std::size_t left) {
  const __m128i over128 = powers_over(kOver128Upper, kOver128Lower);
  for (; left >= 16; left -= 16, next += 16) {
    folded = _mm_xor_si128(fold(folded, over128), turned_block(next));
  }
  std::array<std::uint8_t, 16> block;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(block.data()), folded);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(block.data()), turned_block(block.data()));
  return crc16_sliced(next, left, crc16_sliced(block.data(), block.size(), 0));
}

constexpr std::size_t kClmulMinimum = 64;

QV_CLMUL std::uint16_t crc16_clmul(const std::uint8_t* next, std::size_t left, std::uint16_t crc) {
  const __m128i over512 = powers_over(kOver512Upper, kOver512Lower);
  const __m128i over128 = powers_over(kOver128Upper, kOver128Lower);
  __m128i a = _mm_xor_si128(turned_block(next), _mm_insert_epi16(_mm_setzero_si128(), crc, 7));
  __m128i b = turned_block(next + 16);
  __m128i c = turned_block(next + 32);
  __m128i d = turned_block(next + 48);
  for (next += 64, left -= 64; left >= 64; next += 64, left -= 64) {
    a = _mm_xor_si128(fold(a, over512), turned_block(next));
    b = _mm_xor_si128(fold(b, over512), turned_block(next + 16));
    c = _mm_xor_si128(fold(c, over512), turned_block(next + 32));
    d = _mm_xor_si128(fold(d, over512), turned_block(next + 48));
  }
  b = _mm_xor_si128(fold(a, over128), b);
  c = _mm_xor_si128(fold(b, over128), c);
  d = _mm_xor_si128(fold(c, over128), d);
  return finish(d, next, left);
}

QV_VCLMUL inline __m512i turned_blocks(const std::uint8_t* at, __m512i turn) {
  return _mm512_shuffle_epi8(_mm512_loadu_si512(at), turn);
}

QV_VCLMUL inline __m512i fold_onto(__m512i blocks, __m512i powers, __m512i next) {
  return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(blocks, powers, 0x11),
                                   _mm512_clmulepi64_epi128(blocks, powers, 0x00), next, 0x96);
}

// GCC 12 warns of its own header where the forms without a mask are used.
constexpr __mmask16 kAllOf512 = 0xFFFF;
constexpr __mmask8 kAllOf128 = 0x0F;

constexpr std::size_t kVclmulMinimum = 512;

QV_VCLMUL std::uint16_t crc16_vclmul(const std::uint8_t* next, std::size_t left,
                                     std::uint16_t crc) {
  const __m512i turn = _mm512_maskz_broadcast_i32x4(
      kAllOf512, _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
  const __m512i over2048 =
      _mm512_maskz_broadcast_i32x4(kAllOf512, powers_over(kOver2048Upper, kOver2048Lower));
  const __m512i over512 =
      _mm512_maskz_broadcast_i32x4(kAllOf512, powers_over(kOver512Upper, kOver512Lower));
  const __m128i over128 = powers_over(kOver128Upper, kOver128Lower);
  const __m512i start = _mm512_zextsi128_si512(_mm_insert_epi16(_mm_setzero_si128(), crc, 7));
  __m512i a = _mm512_xor_si512(turned_blocks(next, turn), start);
  __m512i b = turned_blocks(next + 64, turn);
  __m512i c = turned_blocks(next + 128, turn);
  __m512i d = turned_blocks(next + 192, turn);
  for (next += 256, left -= 256; left >= 256; next += 256, left -= 256) {
    a = fold_onto(a, over2048, turned_blocks(next, turn));
    b = fold_onto(b, over2048, turned_blocks(next + 64, turn));
    c = fold_onto(c, over2048, turned_blocks(next + 128, turn));
    d = fold_onto(d, over2048, turned_blocks(next + 192, turn));
  }
  b = fold_onto(a, over512, b);
  c = fold_onto(b, over512, c);
  d = fold_onto(c, over512, d);
  __m128i folded = _mm512_maskz_extracti32x4_epi32(kAllOf128, d, 0);
  folded = _mm_xor_si128(fold(folded, over128), _mm512_maskz_extracti32x4_epi32(kAllOf128, d, 1));
  folded = _mm_xor_si128(fold(folded, over128), _mm512_maskz_extracti32x4_epi32(kAllOf128, d, 2));
  folded = _mm_xor_si128(fold(folded, over128), _mm512_maskz_extracti32x4_epi32(kAllOf128, d, 3));
  return finish(folded, next, left);
}

#undef QV_CLMUL
#undef QV_VCLMUL

}  // namespace

std::uint16_t crc16(std::span<const std::uint8_t> bytes, std::uint16_t start, SimdLevel level) {
  if (level == SimdLevel::kAvx512 && bytes.size() >= kVclmulMinimum) {
    return crc16_vclmul(bytes.data(), bytes.size(), start);
  }
  if (level != SimdLevel::kPortable && bytes.size() >= kClmulMinimum) {
    return crc16_clmul(bytes.data(), bytes.size(), start);
  }
  return crc16_sliced(bytes.data(), bytes.size(), start);
}

}  // namespace qv::native::rtlib
