#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace qv::native::rtlib {

// The classes of the C run time's "C" locale: ASCII only, so no code above 127 is in any of them.
// A class is a mask over the primary bits below.
enum class CharClass : std::uint16_t {
  kUpper = 0x01,
  kLower = 0x02,
  kDigit = 0x04,
  kSpace = 0x08,
  kPunct = 0x10,
  kCntrl = 0x20,
  kBlank = 0x40,  // the blank alone: printable, but not graphic
  kHexLetter = 0x80,
  kUnderscore = 0x100,
  kAscii = 0x200,
  kAlpha = kUpper | kLower,
  kAlnum = kAlpha | kDigit,
  kCsymf = kAlpha | kUnderscore,
  kCsym = kAlnum | kUnderscore,
  kGraph = kAlnum | kPunct,
  kPrint = kGraph | kBlank,
  kXdigit = kDigit | kHexLetter,
};

// Whether the code is in the class. Codes outside 0 to 255 are in none.
bool is_class(int code, CharClass char_class);

// One mark per character code: non-zero for a letter. Callers make it from the code page at hand.
using LetterTable = std::array<std::uint8_t, 256>;

// Whether every byte is a letter (or, where allowed, a digit 0 to 9). True for no bytes at all.
// The strict form knows ASCII letters only, the other one the letters of the table.
enum class DigitRule { kRefused, kAllowed };
bool all_letters(std::span<const std::uint8_t> bytes, const LetterTable& letters, DigitRule digits);
bool all_ascii_letters(std::span<const std::uint8_t> bytes, DigitRule digits);

}  // namespace qv::native::rtlib
