#include "native/zlog/records.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"

namespace qv::native::zlog {
namespace {

// Strides in which whole words are counted and passed over, coarse to fine.
constexpr std::array<std::size_t, 3> kStrides = {512, 32, 1};

// Index of the set bit number `rank`, from 0, of a word that has more than so many.
std::int32_t ranked_bit(std::uint32_t word, std::uint64_t rank) {
  for (; rank > 0; --rank) word &= word - 1;
  return std::countr_zero(word);
}

// The set bit number `rank`, from 0, at or behind `from`; -1 when there is none.
std::int32_t ranked_from(ConstBitSpan set, std::uint32_t from, std::uint64_t rank) {
  const std::int32_t limit = set.limit();
  if (from >= static_cast<std::uint32_t>(limit)) return -1;
  const std::span<const std::uint32_t> words = set.used();
  std::size_t at = from / kWordBits;
  std::uint32_t word = words[at] & (~std::uint32_t{0} << from % kWordBits);
  if (const auto here = static_cast<unsigned>(std::popcount(word)); rank >= here) {
    rank -= here;
    ++at;
    for (const std::size_t stride : kStrides) {
      for (; at + stride <= words.size(); at += stride) {
        const std::uint64_t passed = count(words.subspan(at, stride));
        if (rank < passed) break;
        rank -= passed;
      }
    }
    if (at == words.size()) return -1;
    word = words[at];
  }
  const std::int64_t found = std::int64_t(at) * kWordBits + ranked_bit(word, rank);
  return found < limit ? static_cast<std::int32_t>(found) : -1;
}

// The set bit number `rank`, from 0 and counted downwards, below `end`, which is at most the
// set's limit; -1 when there is none.
std::int32_t ranked_below(ConstBitSpan set, std::uint32_t end, std::uint64_t rank) {
  const std::span<const std::uint32_t> words = set.used();
  std::size_t at = end / kWordBits;
  std::uint32_t word =
      end % kWordBits == 0 ? 0 : words[at] & ((std::uint32_t{1} << end % kWordBits) - 1);
  auto here = static_cast<unsigned>(std::popcount(word));
  if (rank >= here) {
    rank -= here;
    for (const std::size_t stride : kStrides) {
      for (; at >= stride; at -= stride) {
        const std::uint64_t passed = count(words.subspan(at - stride, stride));
        if (rank < passed) break;
        rank -= passed;
      }
    }
    if (at == 0) return -1;
    word = words[--at];
    here = static_cast<unsigned>(std::popcount(word));
  }
  return static_cast<std::int32_t>(at * kWordBits) + ranked_bit(word, here - 1 - rank);
}

}  // namespace

std::int32_t tid_to_bit(std::int32_t tid, std::int32_t bits) {
  return tid >= 1 && tid <= bits ? tid - 1 : -1;
}

std::int32_t bit_to_tid(std::int32_t bit, std::int32_t bits) {
  return bit >= 0 && bit < bits ? bit + 1 : 0;
}

std::int32_t skip_records(ConstBitSpan set, std::int32_t tid, std::int32_t steps) {
  const std::int32_t limit = set.limit();
  if (steps == 0) return test_bit(set, tid_to_bit(tid, limit)) != 0 ? tid : 0;
  const std::int64_t distance = steps;
  // Bit number tid - 1 is the record's own, so its followers begin at tid.
  const std::int32_t found = steps > 0
                                 ? ranked_from(set, static_cast<std::uint32_t>(std::max(tid, 0)),
                                               static_cast<std::uint64_t>(distance - 1))
                                 : ranked_below(set,
                                                static_cast<std::uint32_t>(std::clamp<std::int64_t>(
                                                    std::int64_t{tid} - 1, 0, limit)),
                                                static_cast<std::uint64_t>(-distance - 1));
  return found + 1;
}

void add_index_block(BitSpan set, std::span<const std::uint8_t> block) {
  const std::int32_t limit = set.limit();
  for (std::size_t at = 0; at + sizeof(std::int32_t) <= block.size(); at += sizeof(std::int32_t)) {
    std::int32_t tid;
    std::memcpy(&tid, block.data() + at, sizeof tid);
    set_bit(set, tid_to_bit(tid, limit), true);
  }
}

}  // namespace qv::native::zlog
