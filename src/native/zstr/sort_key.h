#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "native/zstr/latin_fold.h"

namespace qv::native::zstr {

// What a sort flag does to a key, in this order. The other bits mark an index and change no key.
enum SortFlag : std::int32_t {
  kSortMask = 32,         // takes the masks' sorting form ...
  kSortNoMask = 8192,     // ... unless this is set too
  kSortNoSpaces = 65536,  // drops blanks
  kSortNoNum = 64,        // drops digits
  kSortPrimary = 128,     // takes accents off
  kSortUcase = 1,         // folds to upper case
  kSortTable = 4,         // weighs by the table ...
  kSortNoTable = 16384,   // ... unless this is set too
};

// Turns a key into its sorting form, in place, and returns the new length, which is never greater.
// Character 0 is data. An empty table weighs nothing. A negative flag is a 16-bit one that was
// widened: its bits from 16 on are its sign, not kSortNoSpaces. The folding is that of the key's
// code page.
std::size_t Key_Sort(std::span<std::uint8_t> key, std::int32_t sort_flag,
                     std::span<const std::uint8_t> table, const Folding& folding);

// The weighing alone: character c becomes table[c], where the table is that long. In place.
void XLate(std::span<std::uint8_t> text, std::span<const std::uint8_t> table);

}  // namespace qv::native::zstr
