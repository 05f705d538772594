#pragma once

#include <array>
#include <cstdint>

namespace qv::native::zstr {

// One byte for each byte of a code page, so keys neither grow nor shrink by folding.
using FoldTable = std::array<std::uint8_t, 256>;

// How the letters of a code page fold.
struct Folding {
  FoldTable upper_case;
  FoldTable without_accent;
};

// Windows code page 1252. Upper case takes accented letters too (9A, 9C, 9E, FF hex to 8A, 8C, 8E,
// 9F); what has no capital of one letter (German sharp s, the florin and the micro sign) stays.
// Without accents, case is kept: O and o with a stroke are O and o; ligatures, thorn, eth and sharp
// s are letters of their own and stay.
extern const Folding kWindows1252Folding;

}  // namespace qv::native::zstr
