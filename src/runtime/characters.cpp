#include "runtime/characters.h"

#include "automation/bytes.h"

namespace qv {
namespace {

ByteClass make_class(BOOL(WINAPI* is_in_class)(WCHAR)) {
  ByteClass marks{};
  for (unsigned code = 0; code < marks.size(); ++code) {
    const auto byte = static_cast<std::uint8_t>(code);
    wchar_t character = 0;
    put_bytes({&byte, 1}, &character);
    marks[code] = is_in_class(character) != FALSE ? 1 : 0;
  }
  return marks;
}

}  // namespace

const ByteClass& letters_of_code_page() {
  static const ByteClass marks = make_class(IsCharAlphaW);
  return marks;
}

const ByteClass& letters_and_digits_of_code_page() {
  static const ByteClass marks = make_class(IsCharAlphaNumericW);
  return marks;
}

Text upper_case(std::wstring_view text) {
  if (text.empty()) return {};
  Text upper = Text::uninitialized(text.size());
  const auto length = static_cast<int>(text.size());
  LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, text.data(), length, upper.data(), length);
  return upper;
}

std::string narrow_text(std::wstring_view text) {
  const auto length = static_cast<int>(text.size());
  std::string bytes(text.size() * 4, '\0');  // no code page takes more for a character
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

Text before_character_0(std::wstring_view text) { return Text(text.substr(0, text.find(L'\0'))); }

}  // namespace qv
