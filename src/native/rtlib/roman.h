#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv::native::rtlib {

// The Roman numeral of 1 to 4999 ("MMMM" is 4000). Empty for every other number: there is no
// numeral for it.
std::u16string roman_from_number(std::int32_t number);

// Reads M, CM, D, CD, C, XC, L, XL, X, IX, V, IV, I in this order, letters of either case; M, C, X
// and I as often as they repeat ("IIII" is 4), the others once. Reading ends at what stands out of
// this order ("IXX" is 9, "no" is 0). None when the sum exceeds 2147483647.
std::optional<std::int32_t> number_from_roman(std::u16string_view roman);

}  // namespace qv::native::rtlib
