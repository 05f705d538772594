// Sorting of an array without a helper: the result of the method's steps, from the numbers and
// texts themselves.
#pragma once

#include "collections/sort_elements.h"

namespace qv::collections {

enum class SortMethod { kQuick, kShell };

// Sorts the elements first to last (the whole array for kShell) as that method does; equal ones
// that can be told apart end in its very order. False, with nothing changed, where only its steps
// tell the result or the error: bounds outside the array, elements that don't compare, or not
// consistently (a Currency beside a Double), or no memory.
bool sort_directly(const Elements& elements, Long first, Long last, SortMethod method);

}  // namespace qv::collections
