// The calling language's comparison of values.
#pragma once

#include "automation/variant.h"

namespace qv {

// -1, 0 or 1: the first is less than, equal to or greater than the second. Numbers, dates and
// booleans compare by value, texts by character code, and a number is less than any text. Empty is
// 0 beside a number and "" beside a text. An object stands for its default value.
// Run-time error 94 for Null, 13 for arrays and Error values, 91 for Nothing, 438 for an object
// without a default value.
int compare(const Variant& a, const Variant& b);

// The language's >. Only a number that is none (NaN) makes it differ from compare() > 0: that is
// neither less than, equal to nor greater than anything.
bool is_greater(const Variant& a, const Variant& b);

}  // namespace qv
