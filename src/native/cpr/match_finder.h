#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>

#include "native/cpr/block_format.h"
#include "native/cpr/little_endian.h"

namespace qv::native::cpr {

// How far a search goes.
struct Search {
  unsigned depth;        // earlier places looked at for one position
  unsigned long_enough;  // a match that goes on is not searched anew from this length on
};

// Finds, for each position of a piece of text, the matches worth using: of each length the nearest.
// Earlier places stand in chains, newest first: those with the same pair, and those whose first
// three or four bytes have the same hash. The piece is asked backwards, so that a match often is
// the one of the position behind, begun a byte earlier.
class MatchFinder {
 public:
  static constexpr std::size_t kMostBytes = 32767;

  explicit MatchFinder(Search search) : search_(search) {}

  // Takes text[begin, begin + size), at most kMostBytes, and what lies before it in reach. The text
  // must outlive the questions.
  void load(std::span<const std::uint8_t> text, std::size_t begin, std::size_t size);

  // Calls take(shortest, longest, distance) for the matches at a position of the piece, each longer
  // and farther than the one before: all lengths in between are had at that distance. A shortest of
  // 2 means a pair alone. To be called from the last position down to the first.
  template <typename Take>
  void for_each_match(std::size_t position, Take&& take);

  // How many positions just before `end`, the one asked for last, go on with its longest match by a
  // byte each. Where that has the greatest length they need not be asked for.
  std::size_t repeats_before(std::size_t end) const;

  // Of the longest match of the position asked for last.
  unsigned longest() const { return length_; }
  unsigned distance_of_longest() const { return distance_; }

 private:
  static constexpr std::size_t kReach = block_format::kLargestDictionary;
  static constexpr unsigned kHashBits = 15;
  static constexpr std::uint16_t kNowhere = 0xFFFF;
  // Other triples of the same hash are passed over so far; beyond it a triple may pass for new.
  static constexpr int kMostCollisions = 32;
  // A match that is long enough offers no shorter length than this.
  static constexpr unsigned kShortestOfLong = 12;

  // Equal bytes at two places of which `length` are known to be equal; at most `limit`.
  static unsigned equal_bytes(const std::uint8_t* a, const std::uint8_t* b, unsigned length,
                              unsigned limit) {
    for (; length + 8 <= limit; length += 8) {
      const std::uint64_t differ = load_little_endian<std::uint64_t>(a + length) ^
                                   load_little_endian<std::uint64_t>(b + length);
      if (differ != 0) return length + static_cast<unsigned>(std::countr_zero(differ)) / 8;
    }
    while (length < limit && a[length] == b[length]) ++length;
    return length;
  }

  static bool same_triple(const std::uint8_t* a, const std::uint8_t* b) {
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
  }

  void note(std::size_t place, std::uint32_t bytes, unsigned count);

  Search search_;
  // Places count from the first byte in reach; the piece lies from piece_ to end_.
  const std::uint8_t* text_ = nullptr;
  std::size_t piece_ = 0;
  std::size_t end_ = 0;
  // The longest match of the position asked for last.
  unsigned length_ = 0;
  unsigned distance_ = 0;
  // By place: the last place before with the same pair, and with the same hash of three and of four
  // bytes.
  std::array<std::uint16_t, kReach + kMostBytes> pairs_;
  std::array<std::uint16_t, kReach + kMostBytes> triples_;
  std::array<std::uint16_t, kReach + kMostBytes> chain_;
  std::array<std::uint16_t, 1u << 16> pair_heads_;
  std::array<std::uint16_t, 1u << kHashBits> triple_heads_;
  std::array<std::uint16_t, 1u << kHashBits> heads_;
};

template <typename Take>
void MatchFinder::for_each_match(std::size_t position, Take&& take) {
  const std::size_t place = piece_ + position;
  const std::uint8_t* const here = text_ + place;
  const auto limit =
      static_cast<unsigned>(std::min<std::size_t>(block_format::kLongestMatch, end_ - place));
  // No match is longer than the longest one behind it and a byte before that. If that one goes on
  // here it is the nearest of its length, and only nearer ones need be looked for.
  const unsigned bound = std::min(length_ + 1, limit);
  const unsigned whole_distance = distance_;
  const bool goes_on = bound > 3 && whole_distance <= place && *here == *(here - whole_distance);

  if (goes_on && bound >= search_.long_enough) {
    length_ = bound;
    take(std::min(bound, kShortestOfLong), bound, whole_distance);
    return;
  }
  length_ = 1;
  if (limit < 2) return;
  if (const std::size_t distance = place - pairs_[place]; distance <= block_format::kPairReach) {
    take(2u, 2u, static_cast<unsigned>(distance));
    length_ = 2;
  }
  if (limit < 3) return;
  const std::size_t lowest = place > kReach ? place - kReach : 0;
  std::size_t triple = triples_[place];
  for (int i = 0; triple != kNowhere && triple >= lowest && !same_triple(text_ + triple, here);
       ++i) {
    triple = i < kMostCollisions ? triples_[triple] : kNowhere;
  }
  if (triple == kNowhere || triple < lowest) return;
  length_ = 3;
  distance_ = static_cast<unsigned>(place - triple);
  take(3u, 3u, distance_);
  if (bound <= 3) return;
  const std::size_t reach = goes_on ? place - whole_distance + 1 : lowest;
  unsigned left = search_.depth;
  for (std::size_t earlier = chain_[place]; earlier != kNowhere && earlier >= reach && left > 0;
       earlier = chain_[earlier], --left) {
    const std::uint8_t* const there = text_ + earlier;
    if (load_little_endian<std::uint32_t>(there + length_ - 3) !=
        load_little_endian<std::uint32_t>(here + length_ - 3)) {
      continue;
    }
    const unsigned length = equal_bytes(here, there, 0, limit);
    if (length <= length_) continue;
    distance_ = static_cast<unsigned>(place - earlier);
    take(length_ + 1, length, distance_);
    length_ = length;
    if (length >= bound) return;
  }
  if (goes_on && bound > length_) {
    distance_ = whole_distance;
    take(length_ + 1, bound, distance_);
    length_ = bound;
  }
}

}  // namespace qv::native::cpr
