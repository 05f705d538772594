#include "console/text.h"

#include <algorithm>

#include "console/console.h"

namespace qv::console {
namespace {

constexpr bool is_control(char16_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

Path path_of_text(std::string_view text) { return Path(std::u8string(text.begin(), text.end())); }

std::string text_of_path(const Path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::u16string characters_of(std::string_view stored) {
  std::u16string text;
  text.reserve(stored.size());
  for (const char byte : stored) text += characters()[static_cast<unsigned char>(byte)];
  return text;
}

std::string shown(std::string_view stored) {
  std::u16string text = characters_of(stored);
  std::ranges::replace_if(text, is_control, u'?');
  return text_of_path(Path(text));
}

}  // namespace qv::console
