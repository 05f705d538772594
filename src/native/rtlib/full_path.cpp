#include <algorithm>
#include <string>

#include "native/rtlib/c_string.h"
#include "native/rtlib/path.h"

namespace qv::native::rtlib {
namespace {

template <class C>
bool is_separator_at(std::basic_string_view<C> path, std::size_t at) {
  return at < path.size() && (path[at] == C{'\\'} || path[at] == C{'/'});
}

template <class C>
bool has_drive(std::basic_string_view<C> path) {
  return path.size() >= 2 && path[1] == C{':'};
}

template <class C>
std::size_t skip_name(std::basic_string_view<C> path, std::size_t at) {
  while (at < path.size() && !is_separator_at(path, at)) ++at;
  return at;
}

// "\\.\" or "\\?\", the last separator not written where the path ends there.
template <class C>
bool is_device(std::basic_string_view<C> path) {
  return path.size() >= 3 && is_separator_at(path, 0) && is_separator_at(path, 1) &&
         (path[2] == C{'.'} || path[2] == C{'?'}) && (path.size() == 3 || is_separator_at(path, 3));
}

// Length of the part of an absolute path that ".." never leaves: "C:\", "\\server\share\",
// "\\?\", "\\.\"; the final separator is counted where it is there. 0 where the path has no root.
template <class C>
std::size_t root_length(std::basic_string_view<C> path) {
  if (is_separator_at(path, 0) && is_separator_at(path, 1)) {
    if (is_device(path)) return std::min<std::size_t>(4, path.size());
    std::size_t at = skip_name(path, 2);
    if (is_separator_at(path, at)) at = skip_name(path, at + 1);
    return at + (is_separator_at(path, at) ? 1 : 0);
  }
  if (!has_drive(path)) return 0;
  return is_separator_at(path, 2) ? 3 : 2;
}

template <class C>
std::basic_string<C> join(std::basic_string_view<C> folder, std::basic_string_view<C> rest) {
  std::basic_string<C> joined(folder);
  if (!joined.empty() && !is_separator_at<C>(joined, joined.size() - 1)) joined += C{'\\'};
  joined += rest;
  return joined;
}

template <class C>
std::basic_string<C> rooted(std::basic_string_view<C> path,
                            std::basic_string_view<C> current_folder) {
  const bool is_drive_alone = path.size() == 2 && has_drive(path);
  if (path.empty() || is_drive_alone) return std::basic_string<C>(current_folder);
  if (is_separator_at(path, 0)) {
    if (is_separator_at(path, 1)) {
      const bool is_bare_device = path.size() == 3 && is_device(path);
      return is_bare_device ? join(path, {}) : std::basic_string<C>(path);
    }
    return join(current_folder.substr(0, root_length(current_folder)), path.substr(1));
  }
  if (!has_drive(path)) return join(current_folder, path);
  if (is_separator_at(path, 2)) return std::basic_string<C>(path);
  return join(current_folder, path.substr(2));
}

// Of a path that ends in a separator.
template <class C>
void drop_last_level(std::basic_string<C>& path, std::size_t root) {
  if (path.size() <= root) return;
  const std::size_t above = path.rfind(C{'\\'}, path.size() - 2);
  path.resize(above == std::basic_string<C>::npos ? root : std::max(above + 1, root));
}

// Appends the levels behind the root one by one, so that ".." only has to cut the result.
template <class C>
std::basic_string<C> without_dots(std::basic_string_view<C> path) {
  const std::size_t root = root_length(path);
  std::basic_string<C> result(path.substr(0, root));
  std::replace(result.begin(), result.end(), C{'/'}, C{'\\'});
  for (std::size_t at = root; at < path.size();) {
    if (is_separator_at(path, at)) {
      ++at;
      continue;
    }
    const std::size_t end = skip_name(path, at);
    std::basic_string_view<C> level = path.substr(at, end - at);
    const bool is_last = end == path.size();
    at = end;
    const bool is_here = level.size() == 1 && level[0] == C{'.'};
    const bool is_above = level.size() == 2 && level[0] == C{'.'} && level[1] == C{'.'};
    if (is_here || is_above) {
      if (is_above) drop_last_level(result, root);
      if (is_last && result.size() > root) result.pop_back();
      continue;
    }
    if (!is_last && level.back() == C{'.'}) level.remove_suffix(1);
    result += level;
    if (!is_last) result += C{'\\'};
  }
  return result;
}

}  // namespace

template <class C>
std::optional<std::size_t> full_path(std::basic_string_view<C> path,
                                     std::basic_string_view<C> current_folder, std::span<C> out) {
  path = c_text(path);
  if (!path.empty() && path.find_first_not_of(C{' '}) == std::basic_string_view<C>::npos) {
    return std::nullopt;
  }
  const std::basic_string<C> absolute = rooted(path, c_text(current_folder));
  std::basic_string<C> result = without_dots<C>(absolute);
  const std::size_t root = root_length<C>(result);
  while (result.size() > root && (result.back() == C{'.'} || result.back() == C{' '})) {
    result.pop_back();
  }
  if (result.size() > out.size()) return std::nullopt;
  std::copy(result.begin(), result.end(), out.begin());
  return result.size();
}

template std::optional<std::size_t> full_path(std::string_view, std::string_view, std::span<char>);
template std::optional<std::size_t> full_path(std::u16string_view, std::u16string_view,
                                              std::span<char16_t>);

}  // namespace qv::native::rtlib
