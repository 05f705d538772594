#include "native/zlog/counters.h"

#include <algorithm>
#include <cstring>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"

namespace qv::native::zlog {
namespace {

// Planes of `counter` for a set of `bits` bits, which is at least 1.
std::size_t planes_in(ConstBitSpan counter, std::int32_t bits) {
  const std::int64_t plane_bits = std::int64_t(words_for(bits)) * kWordBits;
  const std::int64_t behind_first = std::int64_t{counter.limit()} - bits;
  // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): a set of 1 bit has a word
  return behind_first < 0 ? 0 : static_cast<std::size_t>(behind_first / plane_bits) + 1;
}

// Whether the two rows have a set bit in common.
bool meet(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if ((a[i] & b[i]) != 0) return true;
  }
  return false;
}

}  // namespace

bool add_to_counters(ConstBitSpan set, std::span<std::int16_t> counters) {
  if (counters.size() < static_cast<std::size_t>(set.limit())) return false;
  for_each_set(set, [counters](std::uint32_t bit) {
    std::int16_t& counter = counters[bit];
    counter = static_cast<std::int16_t>(counter + (counter != kMaxCounter ? 1 : 0));
  });
  return true;
}

bool add_to_counters(ConstBitSpan set, std::span<std::uint8_t> counters) {
  if (counters.size() / sizeof(std::int16_t) < static_cast<std::size_t>(set.limit())) return false;
  for_each_set(set, [counters](std::uint32_t bit) {
    std::uint8_t* at = counters.data() + std::size_t{bit} * sizeof(std::int16_t);
    std::int16_t counter;
    std::memcpy(&counter, at, sizeof counter);
    counter = static_cast<std::int16_t>(counter + (counter != kMaxCounter ? 1 : 0));
    std::memcpy(at, &counter, sizeof counter);
  });
  return true;
}

std::int16_t keep_greatest(BitSpan set, std::span<const std::int16_t> counters) {
  const auto of_records =
      counters.first(std::min(counters.size(), static_cast<std::size_t>(set.limit())));
  std::int16_t greatest = 0;
  for (const std::int16_t counter : of_records) greatest = std::max(greatest, counter);
  const std::span<std::uint32_t> words = set.used();
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::size_t first = std::min(i * kWordBits, of_records.size());
    const auto of_word = of_records.subspan(first).first(
        std::min(of_records.size() - first, std::size_t{kWordBits}));
    std::uint32_t word = 0;
    for (std::size_t bit = 0; greatest > 0 && bit < of_word.size(); ++bit) {
      word |= static_cast<std::uint32_t>(of_word[bit] == greatest) << bit;
    }
    words[i] = word;
  }
  return greatest;
}

bool merge_into_planes(ConstBitSpan set, BitSpan counter) {
  if (set.limit() == 0) return true;
  const std::size_t planes = planes_in(counter, set.limit());
  if (planes == 0) return false;
  const std::span<const std::uint32_t> words = set.used();
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::uint32_t carry = words[i];
    for (std::size_t plane = 0; plane < planes && carry != 0; ++plane) {
      std::uint32_t& digit = counter.words[plane * words.size() + i];
      const std::uint32_t sum = digit ^ carry;
      carry &= digit;
      digit = sum;
    }
    // What is still carried had every digit set, and all of them have just turned to 0.
    for (std::size_t plane = 0; plane < planes && carry != 0; ++plane) {
      counter.words[plane * words.size() + i] |= carry;
    }
  }
  return true;
}

bool keep_greatest_of_planes(BitSpan set, ConstBitSpan counter) {
  if (set.limit() == 0) return true;
  const std::size_t planes = planes_in(counter, set.limit());
  if (planes == 0) return false;
  const std::span<std::uint32_t> words = set.used();
  const auto plane_at = [&](std::size_t plane) {
    return counter.words.subspan(plane * words.size(), words.size());
  };
  // From the highest digit down, the records that have it set beat those that have not.
  std::size_t plane = planes;
  while (plane > 0 && next_set({plane_at(plane - 1), set.limit()}, -1) < 0) --plane;
  if (plane == 0) {
    std::ranges::fill(words, 0);
    return true;
  }
  std::ranges::copy(plane_at(--plane), words.begin());
  trim(set);
  while (plane-- > 0) {
    if (meet(words, plane_at(plane))) and_with(words, plane_at(plane));
  }
  return true;
}

}  // namespace qv::native::zlog
