// Characters as the language's narrow services see them: through the byte that the ANSI code page
// has for each.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "automation/text.h"

namespace qv {

// The same characters in the type of the portable routines.
inline std::u16string_view code_units(std::wstring_view text) noexcept {
  static_assert(sizeof(wchar_t) == sizeof(char16_t));
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}
inline std::wstring_view wide_characters(std::u16string_view text) noexcept {
  return {reinterpret_cast<const wchar_t*>(text.data()), text.size()};
}

// One mark for each byte of the code page: non-zero where its character belongs to the class. The
// system decides what is a letter, accented ones included; the tables are made on first use.
using ByteClass = std::array<std::uint8_t, 256>;
const ByteClass& letters_of_code_page();
const ByteClass& letters_and_digits_of_code_page();

// The language's UCase: by the user's locale, character by character.
Text upper_case(std::wstring_view text);

// In the ANSI code page, several bytes a character where that has such; what it has no character
// for is replaced by what the system finds nearest.
std::string narrow_text(std::wstring_view text);

// The text before the first character 0: what a narrow service's result holds.
Text before_character_0(std::wstring_view text);

}  // namespace qv
