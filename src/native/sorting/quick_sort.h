// Quicksort by comparisons and exchanges of elements. Which elements are compared and exchanged,
// and in which order, is a promise: callers watch and steer it through helpers of their own. The
// scheme is Hoare's (Quicksort, 1962) with a random pivot that waits at the end of its range, and
// with the larger part stacked, so that the stack stays short.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace qv::native::sorting {

// Indexes have 32 bits and a sign; a step that needs one beyond them ends the work there.
enum class SortEnd { kDone, kIndexOverflow };

constexpr bool is_index(std::int64_t number) {
  return number >= std::numeric_limits<std::int32_t>::min() &&
         number <= std::numeric_limits<std::int32_t>::max();
}

// An index from lo to hi; `random` lies from 0 up to, not including, 1.
inline std::int32_t pick_index(double random, std::int32_t lo, std::int32_t hi) {
  const double count = static_cast<double>(hi) - lo + 1;
  // Far from 0 the sum may round up to the index behind the range.
  return static_cast<std::int32_t>(std::min<double>(std::floor(random * count + lo), hi));
}

// Parts the range lo to hi by the pivot, which stands at hi; returns the pivot's place.
template <class Steps>
std::int32_t part(std::int32_t lo, std::int32_t hi, int patience, Steps&& steps) {
  std::int32_t i = lo;
  std::int32_t j = hi;
  bool is_exchanged = false;
  int fruitless = 0;
  while (true) {
    const std::pair before(i, j);
    while (steps.compare(i, hi) <= 0 && i < j) ++i;
    while (steps.compare(j, hi) >= 0 && j > i) --j;
    if (i >= j) break;
    fruitless = is_exchanged && std::pair(i, j) == before ? fruitless + 1 : 0;
    if (fruitless == patience) break;
    steps.exchange(i, j);
    is_exchanged = true;
  }
  steps.exchange(i, hi);
  return i;
}

// Sorts the elements first to last. Of `steps`:
//   compare(a, b)   below 0, 0, above 0: element a is less than, equal to, greater than element b
//   exchange(a, b)  exchanges the two, which may be one
//   random()        the next random number from 0 up to, not including, 1
// Two elements are compared once and need no random number; one element needs nothing at all.
//
// Where an exchange has no effect (the elements are copies, a helper does nothing), the scans would
// come back to the same two for ever: after `patience` such exchanges in a row (from 1) the work
// goes on as if the two were in place.
template <class Steps>
SortEnd quick_sort(std::int32_t first, std::int32_t last, int patience, Steps&& steps) {
  std::vector<std::pair<std::int32_t, std::int32_t>> waiting;
  std::int64_t lo = first;
  std::int64_t hi = last;
  while (true) {
    while (lo < hi) {
      if (!is_index(hi - lo)) return SortEnd::kIndexOverflow;
      const auto lo_index = static_cast<std::int32_t>(lo);
      const auto hi_index = static_cast<std::int32_t>(hi);
      if (hi - lo == 1) {
        if (steps.compare(lo_index, hi_index) > 0) steps.exchange(lo_index, hi_index);
        break;
      }
      steps.exchange(hi_index, pick_index(steps.random(), lo_index, hi_index));
      const std::int32_t place = part(lo_index, hi_index, patience, steps);
      if (place - lo >= hi - place) {
        waiting.emplace_back(lo_index, place - 1);
        lo = std::int64_t{place} + 1;
      } else {
        waiting.emplace_back(place + 1, hi_index);
        hi = std::int64_t{place} - 1;
      }
      if (!is_index(lo) || !is_index(hi)) return SortEnd::kIndexOverflow;
    }
    if (waiting.empty()) return SortEnd::kDone;
    lo = waiting.back().first;
    hi = waiting.back().second;
    waiting.pop_back();
  }
}

}  // namespace qv::native::sorting
