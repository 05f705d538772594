// Roman numerals, and the hexadecimal text of byte strings and byte arrays.
#pragma once

#include "automation/variant.h"

namespace qv::text {

// "" for numbers that have no numeral: below 1 and above 4999.
Text Num_2_Roman(const Variant& v);
// Reads what stands in the order of a numeral and no further; run-time error 6 past a Long.
Long Roman_2_Num(const Text& Roman);

Text BinToHex(const Text& Buffer);
// Digits of either case; a last digit without a partner is a byte of its own. Run-time error 13 for
// what is no digit.
Text HexToBin(const Text& Buffer);

// True = failure: a Source onto the chain of the error state, whose number stays as it was; what
// should have been filled in stays too. In place of a Byte array, an array of Variant will do whose
// elements are numbers from 0 to 255.
Boolean ByteToHex(const Variant& ByteArr, Text& RetStr);
Boolean HexToByte(const Text& HexStr, Variant& RetByte);

// True = failure, told by the error state.
Boolean Hex_Dump(const Text& Data, Text& RetBuffer, Long Width, const Text& LineTerm,
                 Boolean Retain);

}  // namespace qv::text
