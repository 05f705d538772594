#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv::native::rtlib {

// Numbers at the beginning of a text, read as the C run time does in the C locale: white space
// (codes 9 to 13 and the blank) and one sign may go before. `used` is the number of characters
// read, white space included; without a number it is 0, and so is the value. A character 0 ends the
// text.
template <class T>
struct ParsedNumber {
  T value;
  std::size_t used;
};

// Decimal digits with an optional point and an optional exponent behind E or D (which may be small;
// the language writes both). Names of infinities and hexadecimal digits are no numbers. Rounds to
// nearest, ties to even. Out of range: an infinity or a zero with the text's sign.
ParsedNumber<double> parse_double(std::string_view text);

// Base 10. Out of range: -2147483648 or 2147483647, all digits used.
ParsedNumber<std::int32_t> parse_int32(std::string_view text);

// Base 10. A minus sign negates modulo 2^32, so "-1" is 4294967295. Out of range: 4294967295
// whatever the sign, all digits used.
ParsedNumber<std::uint32_t> parse_uint32(std::string_view text);

}  // namespace qv::native::rtlib
