#pragma once

#include <cstdint>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// Whole-set operations in place. `source` may be the target itself; words that it has not count as
// clear, and words that the target has not are passed over. Nothing here allocates.
void and_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source);
void or_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source);
void xor_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source);
// Target without the bits of `source`.
void exclude(std::span<std::uint32_t> target, std::span<const std::uint32_t> source);

// Every bit below set.bits turns over; the rest of the last word is cleared.
void invert(BitSpan set);

// Clears the bits of the last word that lie past set.bits.
void trim(BitSpan set);

// Number of set bits.
std::uint64_t count(std::span<const std::uint32_t> words);

// Exactly the first `records` bits are set. False, and nothing changed, when that is negative or
// more than the set holds.
bool fill(BitSpan set, std::int32_t records);

// Bit w of `summary` becomes set when word w of `words` is not 0; all its other bits are cleared.
// False, and nothing changed, when it has fewer bits than there are words. `summary` may be the
// same memory as `words`.
bool summarise(std::span<const std::uint32_t> words, BitSpan summary);

}  // namespace qv::native::zlog
