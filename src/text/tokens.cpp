#include <string>

#include "frame/error_state.h"
#include "native/rtlib/text_search.h"
#include "runtime/characters.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

using native::rtlib::Occurrences;

// Replacing the first mark again and again, each time from the beginning, comes to one pass: the
// texts hold no mark, and a text that another follows does not end in a part of one.
Text filled_template(const Text& form, std::u16string_view mark, const Text& inserts) {
  const auto rest = code_units(form);
  const auto texts = code_units(inserts);
  Occurrences places(rest, mark);
  Occurrences ends(texts, mark);
  std::u16string filled;
  filled.reserve(form.size() + inserts.size());
  std::size_t copied = 0;
  std::size_t start = 0;
  while (start < texts.size()) {
    const std::size_t end = ends.next().value_or(texts.size());
    const auto place = places.next();
    if (end == start || !place) break;
    filled += rest.substr(copied, *place - copied);
    filled += texts.substr(start, end - start);
    copied = *place + mark.size();
    start = end + mark.size();
  }
  filled += rest.substr(copied);
  return Text(wide_characters(filled));
}

}  // namespace

Text Get_Token(const Text& sSource, const Text& SepChars, Long TokenNo) {
  if (TokenNo < 1) return {};
  const auto token = native::rtlib::find_token(code_units(sSource), code_units(SepChars),
                                               static_cast<std::size_t>(TokenNo - 1));
  return token ? Text(wide_characters(*token)) : Text();
}

Text Str_Format(const Text& FmtStr, const Text& InsStr) {
  return filled_template(FmtStr, u"$", InsStr);
}

Text TranslMessage(const Text& msg, const Text& TranslStr) {
  Text message;
  frame::attempt([&] { message = filled_template(msg, u"%%", TranslStr); });
  return message;
}

}  // namespace qv::text
