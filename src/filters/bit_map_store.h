// The bit maps behind filter records. A record is a plain value that applications copy, write and
// lose, so it never holds a map itself: its hFilter is a token of a map that the thread owns, and a
// token is not given twice. Whatever is done with a record whose map is gone finds no bits and does
// no harm.
#pragma once

#include "automation/types.h"
#include "interfaces.h"
#include "native/zlog/bit_map.h"

namespace qv::filters {

// The bits that a record stands for: those of the map under its token, or with hFilter 0 and Filter
// not 0 those of an application's own map at that address (32-bit hosts), as far as its memory can
// be written. Empty for any other record. Good until the map is released or resized.
native::zlog::BitSpan bits_of(const BFILTER& record);

// Does the record stand for a map, if one without bits?
bool has_bit_map(const BFILTER& record);

// Makes the record one of that map, under a new token. What the record stood for before stays.
void adopt(BFILTER& record, native::zlog::BitMap map);

// Releases the map under the record's token, if it is there.
void release(const BFILTER& record) noexcept;

// Changes the extension of the map under the record's token. False, and nothing changed, when there
// is none or `bits` is negative.
bool resize(BFILTER& record, Long bits);

}  // namespace qv::filters
