// Typed buffers: values one after the other in a String, each behind a tag that tells its type.
// docs/formats/typed-buffer.md tells every byte.
#pragma once

#include "automation/variant.h"

namespace qv::text {

// Appends a value. True (-1) = failure, told by the error state: run-time error 13 for a value
// without a form, 6 for an array too large, of which a piece may stand in the buffer. An array that
// is not allocated is a failure that nothing tells of.
Integer BufferTyped_Put(Text& Buffer, const Variant& InVal);
// Reads the value at Offset, from 1, and moves Offset behind it, or after a failure behind what
// could be read. Failures are raised: run-time error 9 for an Offset of 0 or past the end and for a
// value cut short, 13 for an unknown tag, 5 for a negative Offset or length. Arrays are passed over
// with run-time error 9.
Variant BufferTyped_Get(const Text& Buffer, Long& Offset);

}  // namespace qv::text
