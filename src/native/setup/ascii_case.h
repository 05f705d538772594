// Texts compared without regard to the case of the letters A to Z.
#pragma once

#include <algorithm>
#include <string_view>

namespace qv::native::setup {

constexpr char16_t lower(char16_t character) noexcept {
  const bool is_capital = character >= u'A' && character <= u'Z';
  return is_capital ? static_cast<char16_t>(character + (u'a' - u'A')) : character;
}

inline bool same_letter(char16_t a, char16_t b) noexcept { return lower(a) == lower(b); }

inline bool equal_ignoring_case(std::u16string_view a, std::u16string_view b) noexcept {
  return std::ranges::equal(a, b, same_letter);
}

}  // namespace qv::native::setup
