#include "native/rtlib/hex.h"

#include <immintrin.h>

#include <cstring>

#include "native/rtlib/hex_digits.h"

namespace qv::native::rtlib {
namespace {

constexpr std::uint8_t kNoDigit = 0xFF;

constexpr auto kDigitValues = [] {
  std::array<std::uint8_t, 128> values{};
  values.fill(kNoDigit);
  for (std::uint8_t i = 0; i < 10; ++i) values['0' + std::size_t{i}] = i;
  for (std::uint8_t i = 0; i < 6; ++i) {
    values['A' + std::size_t{i}] = values['a' + std::size_t{i}] = static_cast<std::uint8_t>(10 + i);
  }
  return values;
}();

std::uint8_t digit_value(char16_t digit) {
  return digit < kDigitValues.size() ? kDigitValues[digit] : kNoDigit;
}

// Both return how many bytes they have done; the rest is for the table.
__attribute__((target("avx2"))) std::size_t encode_blocks(std::span<const std::uint8_t> bytes,
                                                          char16_t* out) {
  std::size_t done = 0;
  for (; bytes.size() - done >= 16; done += 16) {
    const __m256i digits = hex_digits_of(bytes.data() + done);
    auto* to = reinterpret_cast<__m256i*>(out + 2 * done);
    _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(digits)));
    _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(digits, 1)));
  }
  return done;
}

// Stops in front of a block that holds something else than digits.
__attribute__((target("avx2"))) std::size_t decode_blocks(std::u16string_view digits,
                                                          std::uint8_t* out) {
  std::size_t done = 0;
  for (; digits.size() - 2 * done >= 32; done += 16) {
    const auto* from = reinterpret_cast<const __m256i*>(digits.data() + 2 * done);
    // Codes above 255 saturate to 255, or to 0 from 8000 hex on: neither is a digit.
    const __m256i codes = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_loadu_si256(from), _mm256_loadu_si256(from + 1)), 0xD8);
    const __m256i numeral = _mm256_sub_epi8(codes, _mm256_set1_epi8('0'));
    const __m256i letter =
        _mm256_sub_epi8(_mm256_or_si256(codes, _mm256_set1_epi8(0x20)), _mm256_set1_epi8('a'));
    const __m256i is_numeral =
        _mm256_cmpeq_epi8(_mm256_min_epu8(numeral, _mm256_set1_epi8(9)), numeral);
    const __m256i is_letter =
        _mm256_cmpeq_epi8(_mm256_min_epu8(letter, _mm256_set1_epi8(5)), letter);
    if (_mm256_movemask_epi8(_mm256_or_si256(is_numeral, is_letter)) != -1) break;
    const __m256i values =
        _mm256_blendv_epi8(_mm256_add_epi8(letter, _mm256_set1_epi8(10)), numeral, is_numeral);
    const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi16(0x0110));
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(pairs, pairs), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done), _mm256_castsi256_si128(packed));
  }
  return done;
}

}  // namespace

void hex_encode(std::span<const std::uint8_t> bytes, char16_t* out, SimdLevel level) {
  std::size_t done = level == SimdLevel::kPortable ? 0 : encode_blocks(bytes, out);
  for (; done < bytes.size(); ++done) {
    std::memcpy(out + 2 * done, kHexPairs[bytes[done]].data(), sizeof kHexPairs[0]);
  }
}

std::optional<std::size_t> hex_decode(std::u16string_view digits, std::uint8_t* out,
                                      SimdLevel level) {
  std::size_t done = level == SimdLevel::kPortable ? 0 : decode_blocks(digits, out);
  for (; done < digits.size() / 2; ++done) {
    const unsigned high = digit_value(digits[2 * done]);
    const unsigned low = digit_value(digits[2 * done + 1]);
    if (high > 15 || low > 15) return std::nullopt;
    out[done] = static_cast<std::uint8_t>(high << 4 | low);
  }
  if (digits.size() % 2 != 0) {
    out[done] = digit_value(digits.back());
    if (out[done++] == kNoDigit) return std::nullopt;
  }
  return done;
}

}  // namespace qv::native::rtlib
