#include "native/rtlib/char_class.h"

#include <algorithm>
#include <cstddef>

namespace qv::native::rtlib {
namespace {

constexpr std::uint16_t bits_of(CharClass char_class) {
  return static_cast<std::uint16_t>(char_class);
}

struct Range {
  int first;
  int last;
  CharClass char_class;
};

constexpr Range kRanges[] = {
    {0x00, 0x7F, CharClass::kAscii},   {0x00, 0x1F, CharClass::kCntrl},
    {0x7F, 0x7F, CharClass::kCntrl},   {0x09, 0x0D, CharClass::kSpace},
    {' ', ' ', CharClass::kSpace},     {' ', ' ', CharClass::kBlank},
    {'!', '/', CharClass::kPunct},     {':', '@', CharClass::kPunct},
    {'[', '`', CharClass::kPunct},     {'{', '~', CharClass::kPunct},
    {'0', '9', CharClass::kDigit},     {'A', 'Z', CharClass::kUpper},
    {'a', 'z', CharClass::kLower},     {'A', 'F', CharClass::kHexLetter},
    {'a', 'f', CharClass::kHexLetter}, {'_', '_', CharClass::kUnderscore},
};

constexpr std::array<std::uint16_t, 256> kClassBits = [] {
  std::array<std::uint16_t, 256> table{};
  for (const Range& range : kRanges) {
    for (int code = range.first; code <= range.last; ++code) {
      table[static_cast<std::size_t>(code)] |= bits_of(range.char_class);
    }
  }
  return table;
}();

}  // namespace

bool is_class(int code, CharClass char_class) {
  return code >= 0 && code <= 255 &&
         (kClassBits[static_cast<std::size_t>(code)] & bits_of(char_class)) != 0;
}

bool all_letters(std::span<const std::uint8_t> bytes, const LetterTable& letters,
                 DigitRule digits) {
  return std::all_of(bytes.begin(), bytes.end(), [&](std::uint8_t byte) {
    return letters[byte] != 0 ||
           (digits == DigitRule::kAllowed && is_class(byte, CharClass::kDigit));
  });
}

bool all_ascii_letters(std::span<const std::uint8_t> bytes, DigitRule digits) {
  const CharClass wanted = digits == DigitRule::kAllowed ? CharClass::kAlnum : CharClass::kAlpha;
  return std::all_of(bytes.begin(), bytes.end(),
                     [wanted](std::uint8_t byte) { return is_class(byte, wanted); });
}

}  // namespace qv::native::rtlib
