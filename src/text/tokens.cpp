#include <string>

#include "frame/error_state.h"
#include "native/rtlib/text_search.h"
#include "runtime/characters.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

using native::rtlib::find_text;
using native::rtlib::find_token;

// Replacing the first mark again and again, each time from the beginning, comes to one pass: the
// texts hold no mark, and a text that another follows does not end in a part of one.
Text filled_template(const Text& form, std::u16string_view mark, const Text& inserts) {
  std::u16string filled;
  filled.reserve(form.size() + inserts.size());
  auto rest = code_units(form);
  auto texts = code_units(inserts);
  for (;;) {
    const auto end = find_text(texts, mark);
    const auto text = texts.substr(0, end.value_or(texts.size()));
    const auto place = find_text(rest, mark);
    if (text.empty() || !place) break;
    filled += rest.substr(0, *place);
    filled += text;
    rest.remove_prefix(*place + mark.size());
    texts.remove_prefix(end ? *end + mark.size() : texts.size());
  }
  filled += rest;
  return Text(wide_characters(filled));
}

}  // namespace

Text Get_Token(const Text& sSource, const Text& SepChars, Long TokenNo) {
  if (TokenNo < 1) return {};
  const auto token =
      find_token(code_units(sSource), code_units(SepChars), static_cast<std::size_t>(TokenNo - 1));
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
