// Filters to files and buffers and back.
#pragma once

#include "automation/array.h"
#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::filters {

// The result is the handle, -1 when the file can't be opened. With WriteAccess a missing file is
// made, and an existing one keeps what it holds.
Long Bloom_Open(const Text& FileName, Boolean WriteAccess);
// True = failure.
Boolean Bloom_Close(Long Handle);
// Bytes read or written, -1 on failure; never more than Buffer holds.
Long Bloom_Read(Long Handle, Text& Buffer, Long Size);
Long Bloom_Write(Long Handle, Text& Buffer, Long Size);

// 0 = done, -1 = failure and the filter is as it was. The error state is not touched.
Integer Bloom_Load(const Object<_QvtBloomFilter>& Filter, Long Handle);
Integer Bloom_LoadOld(const Object<_QvtBloomFilter>& Filter, Long Handle);
Integer Bloom_Save(const Object<_QvtBloomFilter>& Filter, Long Handle);

// True = failure, through the error state.
Boolean BloomLoadExt(Text& FileName, const Object<_QvtBloomFilter>& flt1,
                     const Object<_QvtBloomFilter>& flt2);
Boolean BloomSaveExt(Text& FileName, const Object<_QvtBloomFilter>& flt1,
                     const Object<_QvtBloomFilter>& flt2);

// Sizes and results count bytes; -1 for a filter whose bit map is gone.
Long Bloom_CopyBufferSize(const Object<_QvtBloomFilter>& Filter);
Long Bloom_CopyTo(const Object<_QvtBloomFilter>& Filter, Array<Byte>& Buffer);
Long Bloom_CopyToString(const Object<_QvtBloomFilter>& Filter, Text& Buffer);
// The filter gets 8 bits for each byte.
Long Bloom_CopyFrom(const Object<_QvtBloomFilter>& Filter, const Array<Byte>& Buffer);
// The filter keeps its extension: run-time error 20000 when the image can't be one of that size.
Long Bloom_CopyFromString(const Object<_QvtBloomFilter>& Filter, Text& Buffer);

}  // namespace qv::filters
