#include "automation/bytes.h"
#include "native/rtlib/char_class.h"
#include "runtime/characters.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

using native::rtlib::DigitRule;

bool consists_of(const Text& text, bool strict, DigitRule digits) {
  const auto bytes = bytes_of_text(text);
  if (strict) return native::rtlib::all_ascii_letters(bytes, digits);
  return native::rtlib::all_letters(bytes, letters_of_code_page(), digits);
}

// A service that converts `length` bytes of one code page to as many of another.
using ConvertBytes = BOOL(WINAPI*)(LPCSTR source, LPSTR target, DWORD length);

Text converted_bytes(const Text& text, ConvertBytes convert) {
  auto bytes = bytes_of_text(text);
  auto* characters = reinterpret_cast<char*>(bytes.data());
  // The services may work in place.
  convert(characters, characters, static_cast<DWORD>(bytes.size()));
  return before_character_0(text_of_bytes(bytes));
}

}  // namespace

Boolean IsAlphaString(const Text& sstr, Boolean Strict) {
  return consists_of(sstr, Strict, DigitRule::kRefused);
}

Boolean IsAlNumString(const Text& sstr, Boolean Strict) {
  return consists_of(sstr, Strict, DigitRule::kAllowed);
}

Text Ansi_2_Oem(const Text& a) { return converted_bytes(a, CharToOemBuffA); }

Text Oem_2_Ansi(const Text& a) { return converted_bytes(a, OemToCharBuffA); }

}  // namespace qv::text
