#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

namespace walk {

// Words `at` and `at` + 1 as one; `at` is even, and the row may end after the first.
inline std::uint64_t pair_at(std::span<const std::uint32_t> words, std::size_t at) {
  if (at + 1 >= words.size()) return words[at];
  std::uint64_t pair;
  std::memcpy(&pair, words.data() + at, sizeof pair);
  return pair;
}

// The even index, at or behind the even index `at`, of the first pair that is not 0; at least
// words.size() when there is none.
std::size_t distant_pair(std::span<const std::uint32_t> words, std::size_t at);

inline std::size_t nonzero_pair(std::span<const std::uint32_t> words, std::size_t at) {
  constexpr std::size_t kNear = 8;  // sets that are not sparse end here, without a call
  for (const std::size_t end = at + kNear; at < end; at += 2) {
    if (at >= words.size() || pair_at(words, at) != 0) return at;
  }
  return distant_pair(words, at);
}

}  // namespace walk

// The first set bit behind `bit`, which is not looked at itself; -1 when there is none. Behind any
// negative number comes bit 0.
inline std::int32_t next_set(ConstBitSpan set, std::int32_t bit) {
  const std::int32_t limit = set.limit();
  const std::uint32_t from = bit < 0 ? 0 : static_cast<std::uint32_t>(bit) + 1;
  if (from >= static_cast<std::uint32_t>(limit)) return -1;
  std::size_t at = from / 64 * 2;
  std::uint64_t pair = walk::pair_at(set.words, at) >> (from % 64);
  std::uint64_t found = from;
  if (pair == 0) {
    const std::span<const std::uint32_t> words = set.used();
    at = walk::nonzero_pair(words, at + 2);
    if (at >= words.size()) return -1;
    pair = walk::pair_at(words, at);
    found = std::uint64_t{at} * 32;
  }
  found += static_cast<unsigned>(std::countr_zero(pair));
  return found < static_cast<std::uint32_t>(limit) ? static_cast<std::int32_t>(found) : -1;
}

// The first clear bit behind `bit`; -1 when there is none below set.bits.
std::int32_t next_clear(ConstBitSpan set, std::int32_t bit);

// The last set bit before `bit`; -1 when there is none. Before set.bits, or any number above, comes
// the last bit.
std::int32_t prev_set(ConstBitSpan set, std::int32_t bit);

// 1 or 0; 0 for a bit number that the set does not have.
int test_bit(ConstBitSpan set, std::int32_t bit);

// Sets or clears one bit and gives what it was, 1 or 0; -1 for a bit number that the set does not
// have.
int set_bit(BitSpan set, std::int32_t bit, bool value);

// Calls visit(std::uint32_t bit) for every set bit, ascending.
template <class Visit>
void for_each_set(ConstBitSpan set, Visit&& visit) {
  const auto visit_pair = [&visit](std::size_t at, std::uint64_t pair) {
    const auto first = static_cast<std::uint32_t>(at * 32);
    for (; pair != 0; pair &= pair - 1) {
      visit(first + static_cast<std::uint32_t>(std::countr_zero(pair)));
    }
  };
  const auto limit = static_cast<std::uint32_t>(set.limit());
  const std::size_t whole = limit / 64 * 2;
  const std::span<const std::uint32_t> words = set.words.first(whole);
  for (std::size_t at = walk::nonzero_pair(words, 0); at < whole;
       at = walk::nonzero_pair(words, at + 2)) {
    visit_pair(at, walk::pair_at(words, at));
  }
  if (limit % 64 != 0) {
    visit_pair(whole, walk::pair_at(set.used(), whole) & ((std::uint64_t{1} << limit % 64) - 1));
  }
}

}  // namespace qv::native::zlog
