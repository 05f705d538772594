// Raw buffers: values packed one after the other in a String, without marks of their types. The
// caller holds the String and an Offset, the position from 1 of the next byte. While a buffer is
// being built its String is longer than its content.
#pragma once

#include "automation/variant.h"

namespace qv::text {

// True = failure, told by the error state: run-time error 13 for a value of a type that has no
// image, 5 for an Offset below 1.
Boolean Buffer_Put(Text& Buffer, Long& Offset, const Variant& InVal, Boolean StringPrefix);
// The type of the variable RetVal tells what is read. True = failure: 13 for a type that has no
// image, 9 for an Offset that leaves too little to read.
Boolean Buffer_Get(Text& Buffer, Long& Offset, Variant& RetVal, Boolean StringPrefix);

void Buffer_LTrim(Text& Buffer, Long& Offset);
void Buffer_RTrim(const Text& Buffer, Long& Offset);
void Buffer_Complete(Text& Buffer, Long& Offset);
Boolean Buffer_TruncIfLast(const Text& Buffer, Long& Offset, const Text& LastStr);
Text Buffer_Right(const Text& Buffer, Long Offset, Long Chars);

}  // namespace qv::text
