#include "native/rtlib/text_search.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>

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

// Moves on to the next block that has candidates; false when only what is less than a block is
// left.
__attribute__((target("avx2"))) bool Occurrences::find_candidates() {
  const __m256i first = repeated(wanted_.front());
  const __m256i last = repeated(wanted_.back());
  const std::size_t last_at = wanted_.size() - 1;
  while (text_.size() - next_block_ >= kBlock + last_at) {
    block_ = next_block_;
    next_block_ += kBlock;
    candidates_ = equal_in_block(text_.data() + block_, first);
    if (candidates_ == 0) continue;
    candidates_ &= equal_in_block(text_.data() + block_ + last_at, last);
    if (candidates_ != 0) return true;
  }
  return false;
}

bool Occurrences::stands_at(std::size_t at) const {
  return at >= from_ && (wanted_.size() <= 2 || text_.compare(at, wanted_.size(), wanted_) == 0);
}

std::optional<std::size_t> Occurrences::next() {
  if (wanted_.empty()) return std::nullopt;
  if (level_ != SimdLevel::kPortable) {
    do {
      for (; candidates_ != 0; candidates_ &= candidates_ - 1) {
        const std::size_t at = block_ + static_cast<std::size_t>(std::countr_zero(candidates_));
        if (!stands_at(at)) continue;
        candidates_ &= candidates_ - 1;
        from_ = at + wanted_.size();
        return at;
      }
    } while (find_candidates());
  }
  const std::size_t at = text_.find(wanted_, std::max(from_, next_block_));
  if (at == std::u16string_view::npos) return std::nullopt;
  from_ = at + wanted_.size();
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
  Occurrences ends(text, separator, level);
  std::size_t start = 0;
  for (;;) {
    const auto end = ends.next();
    if (number == 0) return text.substr(start, end.value_or(text.size()) - start);
    if (!end) return std::nullopt;
    start = *end + separator.size();
    --number;
  }
}

}  // namespace qv::native::rtlib
