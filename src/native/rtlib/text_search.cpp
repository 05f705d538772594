#include "native/rtlib/text_search.h"

#include <immintrin.h>

#include <bit>
#include <cstdint>

namespace qv::native::rtlib {
namespace {

constexpr std::size_t kBlock = 32;

// One bit a character of a block: where it is the wanted one.
__attribute__((target("avx2"), always_inline)) inline std::uint32_t equal_in_block(
    const char16_t* block, __m256i wanted) {
  const auto* from = reinterpret_cast<const __m256i*>(block);
  const __m256i low = _mm256_cmpeq_epi16(_mm256_loadu_si256(from), wanted);
  const __m256i high = _mm256_cmpeq_epi16(_mm256_loadu_si256(from + 1), wanted);
  // Packing works within each half, so the quarters come out as 0 2 1 3.
  const __m256i ordered = _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), 0xD8);
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(ordered));
}

__attribute__((target("avx2"), always_inline)) inline __m256i repeated(char16_t character) {
  return _mm256_set1_epi16(static_cast<short>(character));
}

bool stands_at(std::u16string_view text, std::size_t at, std::u16string_view wanted) {
  return text.compare(at, wanted.size(), wanted) == 0;
}

struct Search {
  std::optional<std::size_t> found;
  std::size_t next;  // where the rest begins, for the portable loop
};

// Compares in full only where the first and the last character match.
__attribute__((target("avx2"))) Search find_in_blocks(std::u16string_view text,
                                                      std::u16string_view wanted,
                                                      std::size_t from) {
  const __m256i first = repeated(wanted.front());
  const __m256i last = repeated(wanted.back());
  const std::size_t last_at = wanted.size() - 1;
  for (; text.size() - from >= kBlock + last_at; from += kBlock) {
    std::uint32_t candidates = equal_in_block(text.data() + from, first);
    if (candidates == 0) continue;
    candidates &= equal_in_block(text.data() + from + last_at, last);
    for (; candidates != 0; candidates &= candidates - 1) {
      const std::size_t at = from + static_cast<std::size_t>(std::countr_zero(candidates));
      if (stands_at(text, at, wanted)) return {at, at};
    }
  }
  return {std::nullopt, from};
}

struct Count {
  std::size_t next;    // the block with the wanted occurrence, or what is less than a block
  std::size_t number;  // of that occurrence, counted from there
};

__attribute__((target("avx2,popcnt"))) Count count_in_blocks(std::u16string_view text,
                                                             char16_t wanted, std::size_t number) {
  const __m256i pattern = repeated(wanted);
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock) {
    const auto count =
        static_cast<std::size_t>(std::popcount(equal_in_block(text.data() + at, pattern)));
    if (count > number) break;
    number -= count;
  }
  return {at, number};
}

}  // namespace

std::optional<std::size_t> find_text(std::u16string_view text, std::u16string_view wanted,
                                     std::size_t from, SimdLevel level) {
  if (wanted.empty() || from > text.size()) return std::nullopt;
  if (level != SimdLevel::kPortable) {
    const Search search = find_in_blocks(text, wanted, from);
    if (search.found) return search.found;
    from = search.next;
  }
  const std::size_t at = text.find(wanted, from);
  if (at == std::u16string_view::npos) return std::nullopt;
  return at;
}

std::optional<std::size_t> find_nth(std::u16string_view text, char16_t wanted, std::size_t number,
                                    SimdLevel level) {
  Count count{0, number};
  if (level != SimdLevel::kPortable) count = count_in_blocks(text, wanted, number);
  for (std::size_t at = count.next; at < text.size(); ++at) {
    if (text[at] != wanted) continue;
    if (count.number == 0) return at;
    --count.number;
  }
  return std::nullopt;
}

std::optional<std::u16string_view> find_token(std::u16string_view text,
                                              std::u16string_view separator, std::size_t number,
                                              SimdLevel level) {
  if (separator.size() == 1 && number > 0) {
    const auto before = find_nth(text, separator.front(), number - 1, level);
    if (!before) return std::nullopt;
    text.remove_prefix(*before + 1);
    number = 0;
  }
  for (;;) {
    const auto end = find_text(text, separator, 0, level);
    if (number == 0) return text.substr(0, end.value_or(text.size()));
    if (!end) return std::nullopt;
    text.remove_prefix(*end + separator.size());
    --number;
  }
}

}  // namespace qv::native::rtlib
