#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "native/rtlib/text_search.h"
#include "runtime/characters.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

// Calls `use` with the place of each occurrence. It may write there, but not behind it.
template <class Use>
void for_each_occurrence(const Text& text, const Text& wanted, Use use) {
  native::rtlib::Occurrences occurrences(code_units(text), code_units(wanted));
  while (const auto at = occurrences.next()) use(*at);
}

Text replaced(const Text& text, const Text& wanted, const Text& replacement, std::size_t count) {
  const std::uint64_t length = text.size() - std::uint64_t{count} * wanted.size() +
                               std::uint64_t{count} * replacement.size();
  if (length > std::numeric_limits<Long>::max()) raise(kOutOfStringSpace);
  Text result = Text::uninitialized(static_cast<std::size_t>(length));
  wchar_t* target = result.data();
  std::size_t from = 0;
  for_each_occurrence(text, wanted, [&](std::size_t at) {
    target = std::copy(text.data() + from, text.data() + at, target);
    target = std::ranges::copy(replacement.view(), target).out;
    from = at + wanted.size();
  });
  std::ranges::copy(text.view().substr(from), target);
  return result;
}

// Keeps the first characters in the block where they lie: a loop over a long text that drops one
// character at a time must not copy the text each time.
void shorten(Text& text, std::size_t new_length) noexcept {
  // The length in bytes, in the 4 bytes before the characters, is the public part of a BSTR's head.
  const auto bytes = static_cast<UINT32>(new_length * sizeof(wchar_t));
  std::memcpy(reinterpret_cast<unsigned char*>(text.data()) - sizeof bytes, &bytes, sizeof bytes);
  text[new_length] = L'\0';
}

}  // namespace

void Replace_Str(Text& sstr, const Text& MStr, const Text& rStr) {
  if (MStr.size() == rStr.size()) {
    for_each_occurrence(sstr, MStr, [&](std::size_t at) {
      // One variable may be handed over twice: then the text is its own replacement.
      std::char_traits<wchar_t>::move(sstr.data() + at, rStr.data(), rStr.size());
    });
    return;
  }
  std::size_t count = 0;
  for_each_occurrence(sstr, MStr, [&](std::size_t) { ++count; });
  if (count > 0) sstr = replaced(sstr, MStr, rStr, count);
}

void Trunc_Last(Text& sstr) {
  if (!sstr.empty()) shorten(sstr, sstr.size() - 1);
}

void Trunc_IfLast(Text& sstr, const Text& sLast) {
  if (sLast.empty() || !sstr.view().ends_with(sLast.view())) return;
  shorten(sstr, sstr.size() - sLast.size());
}

Text Label_Filter(const Text& Caption) {
  Text caption = Caption;
  Replace_Str(caption, L"&", L"&&");
  return caption;
}

Text Label_Strip(const Text& Caption) {
  Text caption = Caption;
  Replace_Str(caption, L"&", L"");
  return caption;
}

Text C_2_Str(const Text& s) { return before_character_0(s); }

}  // namespace qv::text
