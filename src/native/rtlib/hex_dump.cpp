#include <immintrin.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "native/rtlib/hex.h"
#include "native/rtlib/hex_digits.h"

namespace qv::native::rtlib {
namespace {

constexpr std::size_t kCharactersPerByte = 3;

// Spreads 16 bytes to 48 characters: a blank before each pair of digits. 0x80 leaves a 0, which the
// blanks fill.
__attribute__((target("avx2"))) std::size_t dump_blocks(std::span<const std::uint8_t> bytes,
                                                        char16_t* out) {
  constexpr char kNone = -128;
  const __m128i pick1 =
      _mm_setr_epi8(kNone, 0, 1, kNone, 2, 3, kNone, 4, 5, kNone, 6, 7, kNone, 8, 9, kNone);
  const __m128i pick2_low = _mm_setr_epi8(10, 11, kNone, 12, 13, kNone, 14, 15, kNone, kNone, kNone,
                                          kNone, kNone, kNone, kNone, kNone);
  const __m128i pick2_high = _mm_setr_epi8(kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone,
                                           kNone, 0, 1, kNone, 2, 3, kNone, 4);
  const __m128i pick3 =
      _mm_setr_epi8(5, kNone, 6, 7, kNone, 8, 9, kNone, 10, 11, kNone, 12, 13, kNone, 14, 15);
  const __m128i blanks1 = _mm_setr_epi8(' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ');
  const __m128i blanks2 = _mm_setr_epi8(0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0);
  const __m128i blanks3 = _mm_setr_epi8(0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0);
  std::size_t done = 0;
  for (; bytes.size() - done >= 16; done += 16) {
    const __m256i digits = hex_digits_of(bytes.data() + done);
    const __m128i low = _mm256_castsi256_si128(digits);
    const __m128i high = _mm256_extracti128_si256(digits, 1);
    const __m128i part1 = _mm_or_si128(_mm_shuffle_epi8(low, pick1), blanks1);
    const __m128i part2 = _mm_or_si128(
        _mm_or_si128(_mm_shuffle_epi8(low, pick2_low), _mm_shuffle_epi8(high, pick2_high)),
        blanks2);
    const __m128i part3 = _mm_or_si128(_mm_shuffle_epi8(high, pick3), blanks3);
    auto* to = reinterpret_cast<__m256i*>(out + kCharactersPerByte * done);
    _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(part1));
    _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(part2));
    _mm256_storeu_si256(to + 2, _mm256_cvtepu8_epi16(part3));
  }
  return done;
}

void dump_line(std::span<const std::uint8_t> bytes, char16_t* out, SimdLevel level) {
  std::size_t done = level == SimdLevel::kPortable ? 0 : dump_blocks(bytes, out);
  out += kCharactersPerByte * done;
  for (; done < bytes.size(); ++done, out += kCharactersPerByte) {
    *out = u' ';
    std::memcpy(out + 1, kHexPairs[bytes[done]].data(), sizeof kHexPairs[0]);
  }
}

}  // namespace

HexDumpLayout hex_dump_layout(std::size_t byte_count, std::int32_t width,
                              std::size_t line_end_length) {
  const std::int32_t limit = width > 0 ? width : std::numeric_limits<std::int32_t>::max();
  const std::size_t bytes_per_line = static_cast<std::size_t>(limit) / kCharactersPerByte;
  std::size_t line_ends = byte_count;
  if (bytes_per_line > 0) line_ends = byte_count == 0 ? 0 : (byte_count - 1) / bytes_per_line;
  return {
      bytes_per_line, line_ends,
      std::uint64_t{byte_count} * kCharactersPerByte + std::uint64_t{line_ends} * line_end_length};
}

void hex_dump(std::span<const std::uint8_t> bytes, std::int32_t width, std::u16string_view line_end,
              char16_t* out, SimdLevel level) {
  const auto layout = hex_dump_layout(bytes.size(), width, line_end.size());
  const bool ends_first = layout.bytes_per_line == 0;
  const std::size_t line_bytes = std::max<std::size_t>(layout.bytes_per_line, 1);
  for (std::size_t at = 0; at < bytes.size(); at += line_bytes) {
    if (at > 0 || ends_first) out = std::copy(line_end.begin(), line_end.end(), out);
    const auto line = bytes.subspan(at, std::min(line_bytes, bytes.size() - at));
    dump_line(line, out, level);
    out += kCharactersPerByte * line.size();
  }
}

}  // namespace qv::native::rtlib
