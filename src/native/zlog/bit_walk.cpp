#include "native/zlog/bit_walk.h"

#include <algorithm>

#include "native/zlog/bit_kernels.h"

namespace qv::native::zlog {

namespace {

// The first bit behind `bit` that is not as in `others`, which is a word of equal bits.
std::int32_t next_unlike(ConstBitSpan set, std::int32_t bit, std::uint32_t others) {
  const std::int32_t limit = set.limit();
  const std::uint32_t from = bit < 0 ? 0 : static_cast<std::uint32_t>(bit) + 1;
  if (from >= static_cast<std::uint32_t>(limit)) return -1;
  const std::span<const std::uint32_t> words = set.used();
  std::size_t at = from / kWordBits;
  std::uint32_t unlike = (words[at] ^ others) & (~std::uint32_t{0} << from % kWordBits);
  if (unlike == 0) {
    ++at;
    at += kernels().first_other(words.data() + at, words.size() - at, others);
    if (at == words.size()) return -1;
    unlike = words[at] ^ others;
  }
  const std::uint64_t found =
      std::uint64_t{at} * kWordBits + static_cast<unsigned>(std::countr_zero(unlike));
  return found < static_cast<std::uint32_t>(limit) ? static_cast<std::int32_t>(found) : -1;
}

}  // namespace

std::int32_t walk::next_set_far(ConstBitSpan set, std::int32_t bit) {
  return next_unlike(set, bit, 0);
}

std::size_t walk::nonzero_pair_far(const std::uint32_t* words, std::size_t at, std::size_t pairs) {
  return at + kernels().first_other(words + 2 * at, 2 * (pairs - at), 0) / 2;
}

std::int32_t next_clear(ConstBitSpan set, std::int32_t bit) {
  return next_unlike(set, bit, ~std::uint32_t{0});
}

std::int32_t prev_set(ConstBitSpan set, std::int32_t bit) {
  if (bit <= 0 || set.limit() == 0) return -1;
  const std::span<const std::uint32_t> words = set.used();
  const auto last = static_cast<std::uint32_t>(std::min(bit, set.limit()) - 1);
  std::size_t at = last / kWordBits;
  std::uint32_t below = words[at] & (~std::uint32_t{0} >> (kWordBits - 1 - last % kWordBits));
  if (below == 0) {
    const std::size_t found = kernels().last_other(words.data(), at, 0);
    if (found == at) return -1;
    at = found;
    below = words[at];
  }
  return static_cast<std::int32_t>(at * kWordBits + std::bit_width(below) - 1);
}

int test_bit(ConstBitSpan set, std::int32_t bit) {
  if (bit < 0 || bit >= set.limit()) return 0;
  return static_cast<int>(set.words[static_cast<std::size_t>(bit / kWordBits)] >> bit % kWordBits &
                          1);
}

int set_bit(BitSpan set, std::int32_t bit, bool value) {
  if (bit < 0 || bit >= set.limit()) return -1;
  std::uint32_t& word = set.words[static_cast<std::size_t>(bit / kWordBits)];
  const std::uint32_t mask = std::uint32_t{1} << bit % kWordBits;
  const int before = (word & mask) != 0 ? 1 : 0;
  word = value ? word | mask : word & ~mask;
  return before;
}

}  // namespace qv::native::zlog
