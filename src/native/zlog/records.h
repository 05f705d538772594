#pragma once

#include <cstdint>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// A Tid is a record number, from 1: that of bit b is b + 1. 0 means no record.

// -1 for a Tid that a set of `bits` bits does not have.
std::int32_t tid_to_bit(std::int32_t tid, std::int32_t bits);

// 0 for a bit number that a set of `bits` bits does not have.
std::int32_t bit_to_tid(std::int32_t bit, std::int32_t bits);

// The Tid of the set record that lies `steps` set records behind `tid`, or before it for negative
// `steps`; with 0 steps `tid` itself if it is set. `tid` need not be set, nor in range: 0 steps
// forward from before the first record, set.bits + 1 backward from behind the last. 0 when there is
// no such record.
std::int32_t skip_records(ConstBitSpan set, std::int32_t tid, std::int32_t steps);

// Sets the records of a block of 32-bit little-endian Tids; those out of range are passed over, and
// so are bytes at the end that make no whole Tid. `block` may lie anywhere.
void add_index_block(BitSpan set, std::span<const std::uint8_t> block);

}  // namespace qv::native::zlog
