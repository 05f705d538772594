#include <algorithm>
#include <array>
#include <optional>

#include "automation/bytes.h"
#include "native/rtlib/c_string.h"
#include "runtime/characters.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

using Place = std::optional<std::size_t>;

// The first character that is neither a letter nor a digit of the code page.
Place find_delimiter(std::wstring_view text) {
  constexpr std::size_t kPiece = 256;
  const auto& is_in_word = letters_and_digits_of_code_page();
  std::array<std::uint8_t, kPiece> bytes;
  for (std::size_t start = 0; start < text.size(); start += kPiece) {
    const auto piece = text.substr(start, kPiece);
    get_bytes(piece, bytes.data());
    for (std::size_t i = 0; i < piece.size(); ++i) {
      if (is_in_word[bytes[i]] == 0) return start + i;
    }
  }
  return std::nullopt;
}

template <class FindSeparator>
Text take_word(Text& text, FindSeparator find_separator) {
  auto rest = text.view();
  while (const Place end = find_separator(rest)) {
    const auto word = rest.substr(0, *end);
    rest.remove_prefix(*end + 1);
    rest.remove_prefix(std::min(rest.find_first_not_of(L' '), rest.size()));
    if (word.empty()) continue;
    Text taken(word);
    text.erase_front(text.size() - rest.size());
    return taken;
  }
  Text last(rest);
  text = Text();
  return last;
}

}  // namespace

Long Word_Delimiter(const Text& sString) {
  return static_cast<Long>(find_delimiter(sString).value_or(sString.size())) + 1;
}

Text Word_Strip(Text& sString) { return take_word(sString, find_delimiter); }

Text WordBlk_Strip(Text& sString) {
  return take_word(sString, [](std::wstring_view text) {
    const std::size_t blank = text.find(L' ');
    return blank == std::wstring_view::npos ? Place() : blank;
  });
}

Text WordText_Strip(Text& sString, const Variant& WrdSepChars) {
  const Text separators = WrdSepChars.to_text();
  return take_word(sString, [&](std::wstring_view text) {
    return native::rtlib::find_in_set(code_units(text), code_units(separators));
  });
}

}  // namespace qv::text
