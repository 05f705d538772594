#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

namespace walk {

// Two words as one.
inline std::uint64_t pair_at(const std::uint32_t* words) {
  std::uint64_t pair;
  std::memcpy(&pair, words, sizeof pair);
  return pair;
}

// What next_set gives, for sets where the next bit is not near.
std::int32_t next_set_far(ConstBitSpan set, std::int32_t bit);

// The index of the first pair, from pair `at` on, that is not 0; `pairs` when there is none.
std::size_t nonzero_pair_far(const std::uint32_t* words, std::size_t at, std::size_t pairs);

inline std::size_t nonzero_pair(const std::uint32_t* words, std::size_t at, std::size_t pairs) {
  constexpr std::size_t kNearPairs = 4;  // sets that are not sparse end here, without a call
  for (const std::size_t end = at + kNearPairs; at < end; ++at) {
    if (at >= pairs) return pairs;
    if (pair_at(words + 2 * at) != 0) return at;
  }
  return nonzero_pair_far(words, at, pairs);
}

}  // namespace walk

// The first set bit behind `bit`, which is not looked at itself; -1 when there is none. Behind any
// negative number comes bit 0.
inline std::int32_t next_set(ConstBitSpan set, std::int32_t bit) {
  constexpr std::uint32_t kNearPairs = 4;
  // One comparison serves for all ends: a number below -1 wraps to a pair that no set has, and a
  // last pair that is not whole is left to the far search.
  const std::uint32_t whole_pairs = static_cast<std::uint32_t>(set.limit()) / 64;
  const std::uint32_t from = static_cast<std::uint32_t>(bit) + 1;
  std::uint32_t at = from / 64;
  if (at < whole_pairs) {
    const auto found = [](std::uint32_t first, std::uint64_t pair) {
      return static_cast<std::int32_t>(first + static_cast<unsigned>(std::countr_zero(pair)));
    };
    std::uint64_t pair = walk::pair_at(set.words.data() + 2 * std::size_t{at}) >> (from % 64);
    if (pair != 0) return found(from, pair);
    for (const std::uint32_t end = std::min(at + kNearPairs, whole_pairs); ++at < end;) {
      pair = walk::pair_at(set.words.data() + 2 * std::size_t{at});
      if (pair != 0) return found(at * 64, pair);
    }
  }
  return walk::next_set_far(set, bit);
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
  const auto visit_all = [&visit](std::uint32_t first, std::uint64_t pair) {
    for (; pair != 0; pair &= pair - 1) {
      visit(first + static_cast<std::uint32_t>(std::countr_zero(pair)));
    }
  };
  const auto limit = static_cast<std::uint32_t>(set.limit());
  const std::uint32_t* words = set.words.data();
  const std::size_t pairs = limit / 64;
  for (std::size_t at = 0; at < pairs;) {
    const std::uint64_t pair = walk::pair_at(words + 2 * at);
    if (pair == 0) {
      at = walk::nonzero_pair(words, at + 1, pairs);
      continue;
    }
    visit_all(static_cast<std::uint32_t>(at * 64), pair);
    ++at;
  }
  if (const std::uint32_t rest = limit % 64; rest != 0) {
    std::uint64_t last = 0;
    std::memcpy(&last, words + 2 * pairs, rest > 32 ? 8 : 4);
    visit_all(limit - rest, last & ((std::uint64_t{1} << rest) - 1));
  }
}

}  // namespace qv::native::zlog
