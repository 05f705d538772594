// Counters: in how many filters a record lies.
#pragma once

#include "automation/array.h"
#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::filters {

// Adds 1 to the counter of each record of the filter; the first counter is the array's first
// element, whatever its lower bound. True = failure, through the error state.
Boolean Bloom_Sum(const Object<_QvtBloomFilter>& Filter, const Array<Integer>& Counter);
// The greatest counter; the filter keeps exactly the records that have it. -1 = failure, through
// the error state.
Integer Bloom_SumMax(const Array<Integer>& Counter, const Object<_QvtBloomFilter>& Filter);
// As Bloom_Sum with counters of 2 bytes each in a text: 0 = done, -1 = too few of them.
Integer Bloom_Sum_Ex(const Object<_QvtBloomFilter>& Filter, Text& Counters);
// The counter filter holds bit planes. 0 = done, -1 = it has not even one; neither is changed then.
Integer Bloom_Merge(const Object<_QvtBloomFilter>& Filter, const Object<_QvtBloomFilter>& Counter);
Integer Bloom_Result(const Object<_QvtBloomFilter>& Filter, const Object<_QvtBloomFilter>& Counter);

}  // namespace qv::filters
