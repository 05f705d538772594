#include "console/json.h"

namespace qv::console {

std::string json_text(std::u16string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string json = "\"";
  json.reserve(text.size() + 2);
  for (const char16_t character : text) {
    if (character == u'"' || character == u'\\') json += '\\';
    if (character >= 0x20 && character < 0x7F) {
      json += static_cast<char>(character);
      continue;
    }
    json += "\\u";
    for (const int shift : {12, 8, 4, 0}) json += kDigits[character >> shift & 15];
  }
  return json += '"';
}

}  // namespace qv::console
