// What the calling language lacks beside texts: character classes, shifts and rotations, division,
// scanning in the manner of C, check values, file access. No function has a handler of its own.
#pragma once

#include "automation/text.h"

namespace qv::text {

// Character classes (char_classes.cpp): ASCII alone. A code outside 0 to 255 is in none.
Boolean IsAlnum(Integer c);
Boolean IsAlpha(Integer c);
Boolean IsAscii(Integer c);
Boolean IsCntrl(Integer c);
Boolean IsCsym(Integer c);
Boolean IsCsymf(Integer c);
Boolean IsDigit(Integer c);
Boolean IsGraph(Integer c);
Boolean IsLower(Integer c);
Boolean IsPrint(Integer c);
Boolean IsPunct(Integer c);
Boolean IsSpace(Integer c);
Boolean IsUpper(Integer c);
Boolean IsXdigit(Integer c);

// Bits and arithmetic (bit_arithmetic.cpp). Shifts by the width or more give 0, by a negative count
// they change nothing; rotations take the count modulo the width, a negative one turns the other
// way.
void Shl(Integer& Value, Integer shift);
void Shr(Integer& Value, Integer shift);
Integer Rotl(Integer Value, Integer shift);
Integer Rotr(Integer Value, Integer shift);
void Lshl(Long& Value, Long shift);
void Lshr(Long& Value, Long shift);
Long Lrotl(Long Value, Long shift);
Long Lrotr(Long Value, Long shift);
// Run-time error 11 for a divisor 0, 6 where a result does not fit; then nothing is stored.
void Div(Long numer, Long denom, Integer& quot, Integer& rmnd);
void Ldiv(Long numer, Long denom, Long& quot, Long& rmnd);
Double Floor(Double x);
Double Ceil(Double x);
// Wraps around at 32 bits, as addresses do.
Long GetPointer(Long ptr, Long Offset);

// Scanning (c_strings.cpp). A text and a set end before their first character 0. Positions count
// from 1, 0 is not found. A Count below 1 compares nothing. Those whose text is not const see it
// through the ANSI code page, and leave it as that gives it back.
Long StrcSpn(const Text& sString, const Text& sCharSet);
Long StrSpn(const Text& sString, const Text& sCharSet);
Long StrnCmp(const Text& String1, const Text& String2, Long Count);
Long StrniCmp(const Text& String1, const Text& String2, Long Count);
Long StrrChr(Text& sString, Integer c);
void StrRev(Text& sString);
Long StrTok(const Text& sToken, const Text& sDelimit);
void StrTod(Text& sstr, Long& EndPtr, Double& Value);
Long StrTol(Text& sstr, Long& EndPtr);
Long StrToul(Text& sstr, Long& EndPtr);

// Buffers (buffer_checks.cpp).
void Crypt(Text& Buffer, Integer Code);
// Of a buffer longer than 32767 characters only as many as the last step of that length has are
// covered, from the beginning on: stored check values depend on it.
Integer CRC(Text& Buffer, Integer StartWith);

// Files (file_access.cpp).
Long Access(const Text& Path, Long Mode);
Long Commit(Long Handle);

}  // namespace qv::text
