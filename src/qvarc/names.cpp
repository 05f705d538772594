#include "qvarc/names.h"

#include <algorithm>
#include <system_error>

namespace qv::qvarc {
using console::characters;
using console::characters_of;

std::optional<std::string> stored_text(std::string_view text) {
  std::string stored;
  try {
    for (const char16_t character : path_of_text(text).u16string()) {
      const auto place = std::ranges::find(characters(), character);
      if (place == characters().end()) return std::nullopt;
      stored += static_cast<char>(place - characters().begin());
    }
  } catch (const std::system_error&) {
    return std::nullopt;  // not in the encoding of the system's names
  }
  return stored;
}

std::optional<std::string> stored_name(const Path& path) {
  auto stored = stored_text(text_of_path(path));
  // On a system where "\\" is a letter like others it would come back as a separator.
  if (!stored || (Path::preferred_separator != '\\' && stored->find('\\') != stored->npos)) {
    return std::nullopt;
  }
  std::ranges::replace(*stored, '/', '\\');
  return stored;
}

Path relative_path(std::string_view stored) {
  std::u16string text = characters_of(stored);
  std::ranges::replace(text, u'\\', u'/');
  return Path(text).make_preferred();
}

std::optional<std::string_view> below(std::string_view stored, std::string_view folder) {
  if (!stored.starts_with(folder)) return std::nullopt;
  return stored.substr(folder.size());
}

std::string_view last_component(std::string_view stored) {
  return stored.substr(stored.find_last_of("\\/") + 1);
}

}  // namespace qv::qvarc
