// Numbers and their texts, as the calling language's own functions have them: independent of the
// locale, with a point.
#pragma once

#include "automation/variant.h"

namespace qv {

// The language's Str without the blank that stands for a plus: 15 significant digits of a Double,
// 7 of a Single, no 0 before the point (".5"), an exponent ("1E+15", "1.5E-07") where the number
// has more places than that. A Boolean or a Date is the number that it holds, Empty is 0. Run-time
// error 13 for what is no number, 94 for Null.
Text number_text(const Variant& number);

// The language's Hex: upper case, without leading zeros; 4 digits for a negative Integer or
// Boolean, 8 for any other negative number. Fractions are rounded, ties to even. Run-time error 6
// past a Long, 13 and 94 as above.
Text Hex(const Variant& number);

// The language's Val: the number at the beginning of the text, 0 where there is none. Blanks, tabs
// and line feeds are passed over wherever they stand; the decimal mark is the point; an exponent
// stands behind E or D. "&H" and "&O" begin hexadecimal and octal numbers, which are an Integer
// where they fit 16 bits and a Long behind that ("&HFFFF" is -1, "&HFFFF&" 65535). Run-time error 6
// past a Double, or past 32 bits in those.
Double Val(std::wstring_view text);

}  // namespace qv
