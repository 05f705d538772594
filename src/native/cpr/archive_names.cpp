#include "native/cpr/archive_names.h"

#include <algorithm>

namespace qv::native::cpr {
namespace {

template <typename Char>
bool is_separator(Char character) {
  return character == Char{'\\'} || character == Char{'/'};
}

template <typename Char>
bool climbs(std::basic_string_view<Char> component) {
  std::ptrdiff_t dots = 0;
  for (const Char character : component) {
    if (character == Char{'.'}) {
      ++dots;
    } else if (character != Char{' '}) {
      return false;
    }
  }
  return dots >= 2;
}

template <typename Char>
bool stays(std::basic_string_view<Char> name) {
  if (name.empty() || is_separator(name.front())) return false;
  if (std::ranges::count(name, Char{':'}) != 0 || std::ranges::count(name, Char{}) != 0)
    return false;
  for (auto rest = name;;) {
    const auto length =
        static_cast<std::size_t>(std::ranges::find_if(rest, is_separator<Char>) - rest.begin());
    const auto component = rest.substr(0, length);
    if (climbs(component)) return false;
    if (length == rest.size()) return true;
    rest.remove_prefix(length + 1);
  }
}

bool fits(std::string_view text, std::size_t longest) {
  return text.size() <= longest && std::ranges::count(text, '\0') == 0;
}

}  // namespace

bool entry_name_fits(std::string_view name) { return fits(name, kLongestEntryName); }

bool parent_directory_fits(std::string_view directory) {
  return fits(directory, kLongestParentDirectory);
}

bool stays_in_folder(std::string_view name) { return stays(name); }
bool stays_in_folder(std::u16string_view name) { return stays(name); }

}  // namespace qv::native::cpr
