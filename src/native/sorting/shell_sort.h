// Shell's sort (A High-Speed Sorting Procedure, 1959) with gaps that grow threefold from the lower
// bound of the array. So it is complete for arrays based at 0 or 1 alone: the last gap is the lower
// bound itself, and elements that lie closer are never compared. Callers rely on the result.
#pragma once

#include <cstdint>
#include <optional>

#include "native/sorting/quick_sort.h"

namespace qv::native::sorting {

// Is the array in order when shell_sort() is done?
constexpr bool is_complete_shell_sort(std::int32_t lower_bound) {
  return lower_bound == 0 || lower_bound == 1;
}

// The gap of the first pass; none where the gaps would leave 32 bits before they pass the last
// index, which is always so from a negative lower bound.
constexpr std::optional<std::int64_t> first_gap(std::int32_t first, std::int32_t last) {
  std::int64_t gap = first;
  do {
    gap = 3 * gap + 1;
    if (!is_index(gap)) return std::nullopt;
  } while (gap <= last);
  return (gap - 1) / 3;
}

// Sorts the elements first to last, where first is the lower bound of the array. Of `steps`:
//   take(a)       remembers the value of element a
//   is_greater(a) is element a greater than the value taken?
//   move(a, b)    element a becomes a copy of element b
//   put(a)        element a becomes the value taken
// Without a first gap it ends in kIndexOverflow before the first step.
template <class Steps>
SortEnd shell_sort(std::int32_t first, std::int32_t last, Steps&& steps) {
  const auto widest = first_gap(first, last);
  if (!widest) return SortEnd::kIndexOverflow;
  for (std::int64_t gap = *widest;; gap = (gap - 1) / 3) {
    for (std::int64_t i = gap + first; i <= last; ++i) {
      steps.take(static_cast<std::int32_t>(i));
      std::int64_t j = i;
      while (steps.is_greater(static_cast<std::int32_t>(j - gap))) {
        steps.move(static_cast<std::int32_t>(j), static_cast<std::int32_t>(j - gap));
        j -= gap;
        // With gap 0 an element is beside itself; one that is greater than itself stays so.
        if (gap == 0 || j - gap < first) break;
      }
      steps.put(static_cast<std::int32_t>(j));
    }
    if (gap == first) return SortEnd::kDone;
  }
}

}  // namespace qv::native::sorting
