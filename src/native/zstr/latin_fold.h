#pragma once

#include <array>
#include <cstdint>

namespace qv::native::zstr {

// One byte for each byte of Windows code page 1252, so keys neither grow nor shrink by folding.
using FoldTable = std::array<std::uint8_t, 256>;

// Upper case, accented letters too (9A, 9C, 9E, FF hex to 8A, 8C, 8E, 9F). What has no capital of
// one letter (German sharp s, the florin and the micro sign) stays.
extern const FoldTable kUpperCase;

// Letters without their accents, case kept: O and o with a stroke are O and o; ligatures, thorn,
// eth and sharp s are letters of their own and stay.
extern const FoldTable kWithoutAccent;

}  // namespace qv::native::zstr
