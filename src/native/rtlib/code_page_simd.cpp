#include <immintrin.h>

#include <bit>

#include "native/rtlib/code_page.h"

// Every walk is one by whole blocks, then one over a last block that ends where the data end and
// overlaps the one before: input and output are apart, so converting a few characters twice does no
// harm. No function here passes
// a vector to another one that is not inlined: mingw-w64's stack has no room aligned for it.
namespace qv::native::rtlib {
namespace {

#define QV_AVX2 __attribute__((target("avx2")))
#define QV_AVX512 __attribute__((target("avx2,avx512f,avx512bw,avx512vl,avx512vbmi")))

QV_AVX2 inline __m256i load_twice(const std::uint8_t* sixteen) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(sixteen)));
}

QV_AVX2 inline __m256i upper_nibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
}

}  // namespace

inline void CodePage::convert_marked(const char16_t* text, std::uint32_t marked,
                                     std::uint8_t* out) const {
  for (; marked != 0; marked &= marked - 1) {
    const int i = std::countr_zero(marked);
    out[i] = reverse_[text[i]];
  }
}

QV_AVX2 void CodePage::from_bytes_avx2(const std::uint8_t* bytes, std::size_t count,
                                       char16_t* out) const {
  constexpr std::size_t kBlock = 32;
  const __m256i odd_rows = load_twice(is_odd_row_.data());
  std::size_t at = 0;
  for (std::size_t end = count / kBlock * kBlock;; at = count - kBlock, end = count) {
    for (; at < end; at += kBlock) {
      const std::uint8_t* from = bytes + at;
      auto* to = reinterpret_cast<__m256i*>(out + at);
      const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
      const __m256i row_number = upper_nibbles(block);
      if (_mm256_movemask_epi8(_mm256_shuffle_epi8(odd_rows, row_number)) == 0) {
        const auto* halves = reinterpret_cast<const __m128i*>(from);
        _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(_mm_loadu_si128(halves)));
        _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(_mm_loadu_si128(halves + 1)));
        continue;
      }
      __m256i low = block;
      __m256i high = _mm256_setzero_si256();
      const __m256i column = _mm256_and_si256(block, _mm256_set1_epi8(15));
      for (std::size_t i = 0; i < odd_row_count_; ++i) {
        const Row& row = odd_rows_[i];
        const __m256i is_row =
            _mm256_cmpeq_epi8(row_number, _mm256_set1_epi8(static_cast<char>(row.number)));
        const __m256i row_low = _mm256_shuffle_epi8(load_twice(row.low.data()), column);
        const __m256i row_high = _mm256_shuffle_epi8(load_twice(row.high.data()), column);
        low = _mm256_blendv_epi8(low, row_low, is_row);
        high = _mm256_or_si256(high, _mm256_and_si256(row_high, is_row));
      }
      const __m256i pairs1 = _mm256_unpacklo_epi8(low, high);
      const __m256i pairs2 = _mm256_unpackhi_epi8(low, high);
      _mm256_storeu_si256(to, _mm256_permute2x128_si256(pairs1, pairs2, 0x20));
      _mm256_storeu_si256(to + 1, _mm256_permute2x128_si256(pairs1, pairs2, 0x31));
    }
    if (at == count) return;
  }
}

QV_AVX512 void CodePage::from_bytes_avx512(const std::uint8_t* bytes, std::size_t count,
                                           char16_t* out) const {
  constexpr std::size_t kBlock = 64;
  const __m512i low1 = _mm512_loadu_si512(forward_low_.data());
  const __m512i low2 = _mm512_loadu_si512(forward_low_.data() + 64);
  const __m512i low3 = _mm512_loadu_si512(forward_low_.data() + 128);
  const __m512i low4 = _mm512_loadu_si512(forward_low_.data() + 192);
  const __m512i high1 = _mm512_loadu_si512(forward_high_.data());
  const __m512i high2 = _mm512_loadu_si512(forward_high_.data() + 64);
  const __m512i high3 = _mm512_loadu_si512(forward_high_.data() + 128);
  const __m512i high4 = _mm512_loadu_si512(forward_high_.data() + 192);
  const __m512i first_half = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
  const __m512i second_half = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
  std::size_t at = 0;
  for (std::size_t end = count / kBlock * kBlock;; at = count - kBlock, end = count) {
    for (; at < end; at += kBlock) {
      const std::uint8_t* from = bytes + at;
      const __m512i block = _mm512_loadu_si512(from);
      char16_t* to = out + at;
      const __mmask64 is_upper = _mm512_movepi8_mask(block);
      if (forward_ascii_is_identity_ && is_upper == 0) {
        const __m256i half1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
        const __m256i half2 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + 32));
        _mm512_storeu_si512(to, _mm512_cvtepu8_epi16(half1));
        _mm512_storeu_si512(to + 32, _mm512_cvtepu8_epi16(half2));
        continue;
      }
      const __m512i low =
          _mm512_mask_blend_epi8(is_upper, _mm512_permutex2var_epi8(low1, block, low2),
                                 _mm512_permutex2var_epi8(low3, block, low4));
      const __m512i high =
          _mm512_mask_blend_epi8(is_upper, _mm512_permutex2var_epi8(high1, block, high2),
                                 _mm512_permutex2var_epi8(high3, block, high4));
      const __m512i pairs1 = _mm512_unpacklo_epi8(low, high);
      const __m512i pairs2 = _mm512_unpackhi_epi8(low, high);
      _mm512_storeu_si512(to, _mm512_permutex2var_epi64(pairs1, first_half, pairs2));
      _mm512_storeu_si512(to + 32, _mm512_permutex2var_epi64(pairs1, second_half, pairs2));
    }
    if (at == count) return;
  }
}

QV_AVX2 void CodePage::to_bytes_avx2(const char16_t* text, std::size_t count,
                                     std::uint8_t* out) const {
  constexpr std::size_t kBlock = 32;
  const __m256i byte_mask = _mm256_set1_epi16(0xFF);
  const __m256i beyond_ascii = _mm256_set1_epi16(static_cast<short>(0xFF80));
  const __m256i below_8 = load_twice(identity_of_rows_below_8_.data());
  const __m256i from_8 = load_twice(identity_of_rows_from_8_.data());
  const __m256i row_bits = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(1, 2, 4, 8, 16, 32, 64, -128, 1, 2, 4, 8, 16, 32, 64, -128));
  std::size_t at = 0;
  for (std::size_t end = count / kBlock * kBlock;; at = count - kBlock, end = count) {
    for (; at < end; at += kBlock) {
      const char16_t* from = text + at;
      std::uint8_t* to = out + at;
      const __m256i part1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
      const __m256i part2 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + 16));
      const __m256i low =
          _mm256_permute4x64_epi64(_mm256_packus_epi16(_mm256_and_si256(part1, byte_mask),
                                                       _mm256_and_si256(part2, byte_mask)),
                                   0xD8);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), low);
      if (reverse_ascii_is_identity_ &&
          _mm256_testz_si256(_mm256_or_si256(part1, part2), beyond_ascii) != 0) {
        continue;
      }
      const __m256i high = _mm256_permute4x64_epi64(
          _mm256_packus_epi16(_mm256_srli_epi16(part1, 8), _mm256_srli_epi16(part2, 8)), 0xD8);
      const __m256i column = _mm256_and_si256(low, _mm256_set1_epi8(15));
      const __m256i rows = _mm256_blendv_epi8(_mm256_shuffle_epi8(below_8, column),
                                              _mm256_shuffle_epi8(from_8, column), low);
      const __m256i row_bit = _mm256_shuffle_epi8(row_bits, upper_nibbles(low));
      const __m256i is_identity =
          _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_and_si256(rows, row_bit), row_bit),
                           _mm256_cmpeq_epi8(high, _mm256_setzero_si256()));
      convert_marked(from, ~static_cast<std::uint32_t>(_mm256_movemask_epi8(is_identity)), to);
    }
    if (at == count) return;
  }
}

QV_AVX512 void CodePage::to_bytes_avx512(const char16_t* text, std::size_t count,
                                         std::uint8_t* out) const {
  constexpr std::size_t kBlock = 32;
  const __m512i factor = _mm512_set1_epi16(static_cast<short>(hash_factor_));
  const __m512i keys1 = _mm512_loadu_si512(hash_keys_.data());
  const __m512i keys2 = _mm512_loadu_si512(hash_keys_.data() + 32);
  const __m512i bytes1 = _mm512_loadu_si512(hash_bytes_.data());
  const __m512i bytes2 = _mm512_loadu_si512(hash_bytes_.data() + 32);
  const __m512i identity = _mm512_loadu_si512(identity_.data());
  const __m512i beyond_ascii = _mm512_set1_epi16(static_cast<short>(0xFF80));
  const __m512i one = _mm512_set1_epi16(1);
  constexpr __mmask32 kAll = 0xFFFFFFFF;  // the unmasked form makes GCC 12 warn of its own header
  std::size_t at = 0;
  for (std::size_t end = count / kBlock * kBlock;; at = count - kBlock, end = count) {
    for (; at < end; at += kBlock) {
      const char16_t* from = text + at;
      auto* to = reinterpret_cast<__m256i*>(out + at);
      const __m512i block = _mm512_loadu_si512(from);
      if (reverse_ascii_is_identity_ && _mm512_test_epi16_mask(block, beyond_ascii) == 0) {
        _mm256_storeu_si256(to, _mm512_maskz_cvtepi16_epi8(kAll, block));
        continue;
      }
      const __m512i slot = _mm512_srli_epi16(_mm512_mullo_epi16(block, factor), 10);
      const __mmask32 is_known =
          _mm512_cmpeq_epi16_mask(_mm512_permutex2var_epi16(keys1, slot, keys2), block);
      const __m512i columns = _mm512_permutexvar_epi16(_mm512_srli_epi16(block, 4), identity);
      const __m512i column = _mm512_sllv_epi16(one, _mm512_and_si512(block, _mm512_set1_epi16(15)));
      const __mmask32 is_identity = _mm512_mask_test_epi16_mask(
          _mm512_cmplt_epu16_mask(block, _mm512_set1_epi16(256)), columns, column);
      const __m512i result =
          _mm512_mask_mov_epi16(block, is_known, _mm512_permutex2var_epi16(bytes1, slot, bytes2));
      _mm256_storeu_si256(to, _mm512_maskz_cvtepi16_epi8(kAll, result));
      convert_marked(from, ~(is_known | is_identity), reinterpret_cast<std::uint8_t*>(to));
    }
    if (at == count) return;
  }
}

#undef QV_AVX2
#undef QV_AVX512

}  // namespace qv::native::rtlib
