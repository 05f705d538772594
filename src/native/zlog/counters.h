#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// Counters tell in how many sets a record lies. All of them stop at their greatest value instead of
// passing it. Nothing here allocates.

inline constexpr std::int16_t kMaxCounter = std::numeric_limits<std::int16_t>::max();

// Adds 1 to the counter of each set record, the first counter being that of bit 0. False, and
// nothing changed, when there are fewer counters than bits.
bool add_to_counters(ConstBitSpan set, std::span<std::int16_t> counters);

// The same for counters that are text, two bytes each, low byte first.
bool add_to_counters(ConstBitSpan set, std::span<std::uint8_t> counters);

// The greatest of the counters, and in `set` exactly the records that have it. When it is 0, or
// none is above it, the result is 0 and the set is empty. Counters past the set are no record's;
// records without a counter count 0.
std::int16_t keep_greatest(BitSpan set, std::span<const std::int16_t> counters);

// Bit planes: a set `counter` that holds whole copies of the words of another set, one behind the
// other. Bit k of a record's count is its bit in copy k. A copy counts when the counter's bits
// reach to its last record.

// Adds 1 to the count of each record of `set`. False, and nothing changed, when the counter has not
// even one plane. The counter may be the same memory as the set.
bool merge_into_planes(ConstBitSpan set, BitSpan counter);

// Leaves in `set` exactly the records with the greatest count above 0. False, and nothing changed,
// when the counter has not even one plane.
bool keep_greatest_of_planes(BitSpan set, ConstBitSpan counter);

}  // namespace qv::native::zlog
