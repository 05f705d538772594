// Sorting and searching of arrays, and arrays made and inspected at run time.
#pragma once

#include "automation/variant.h"
#include "interfaces.h"

namespace qv::collections {

// The comparison and exchange that sorting and searching use without a helper.
struct QvSort {
  Long Compare(const Variant& v1, const Variant& v2) const;
  // Values, in place. Typed variables keep their types: what is exchanged is converted.
  void Swap(Variant& v1, Variant& v2) const;
};

// True = failure, told by the error state. What can be indexed but is no array is sorted by copies
// of its items: only a helper that changes the items themselves has an effect there.
Boolean QuickSort(const Variant& vArray, const Variant& vFirst, const Variant& vLast,
                  const Object<_QvSort>& helper);
Boolean ShellSort(const Variant& vArray);

// The index; 0 = not found, -1 = failure, told by the error state.
Long BinarySearch(const Variant& vArray, Variant& vKeyToSearch, const Variant& vFirst,
                  const Variant& vLast, Long& Nearest, const Object<_QvSort>& helper);

// The number of the item in the list, from 1; 0 = not found, or failure, told by the error state.
Long GetWordIndex(const Text& Buffer, const Text& Word, Long& StartFrom);

// Empty = failure; told by the error state unless it was the system that refused.
Variant ArrayCreate(Integer Dims, const Variant& Bounds, Long vt);
// 0 = no array that lies in the Variant itself.
Long GetArrayDims(const Variant& vArray);

}  // namespace qv::collections
