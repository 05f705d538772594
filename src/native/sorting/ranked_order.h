// Where elements end that are equal but can be told apart. Their order is what quick_sort() and
// shell_sort() happen to make of it; elements of known rank go through the same steps here, without
// those whose outcome the ranks tell.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace qv::native::sorting {

// The rank of an element is the place (from 0) that the first of its equals has in ascending order.
struct RankedElement {
  std::uint32_t rank;
  std::uint32_t index;  // of the caller's own
};

// What quick_sort() does to elements that stand at first_index and on: the same exchanges and the
// same random numbers. Many equal elements don't make it slow.
void quick_sort_ranked(std::span<RankedElement> elements, std::int32_t first_index,
                       const std::function<double()>& random);

// What shell_sort() does to an array of that lower bound (from 0).
void shell_sort_ranked(std::span<RankedElement> elements, std::int32_t lower_bound);

}  // namespace qv::native::sorting
