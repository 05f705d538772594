#include "native/rtlib/c_string.h"

#include <algorithm>
#include <type_traits>

#include "native/rtlib/char_set.h"

namespace qv::native::rtlib {
namespace {

template <class C>
std::optional<std::size_t> find_first(std::basic_string_view<C> text,
                                      std::basic_string_view<C> members, bool wanted) {
  const CharSet<C> set(c_text(members));
  for (std::size_t i = 0; i < text.size() && text[i] != C{}; ++i) {
    if (set.holds(text[i]) == wanted) return i;
  }
  return std::nullopt;
}

template <class C, class Weigh>
int compare_weighed(std::basic_string_view<C> text1, std::basic_string_view<C> text2,
                    std::size_t count, Weigh weigh) {
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned code1 = i < text1.size() ? static_cast<std::make_unsigned_t<C>>(text1[i]) : 0;
    const unsigned code2 = i < text2.size() ? static_cast<std::make_unsigned_t<C>>(text2[i]) : 0;
    const unsigned weight1 = weigh(code1);
    const unsigned weight2 = weigh(code2);
    if (weight1 != weight2) return weight1 < weight2 ? -1 : 1;
    if (code1 == 0) return 0;
  }
  return 0;
}

}  // namespace

template <class C>
std::optional<std::size_t> find_in_set(std::basic_string_view<C> text,
                                       std::basic_string_view<C> set) {
  return find_first(text, set, true);
}

template <class C>
std::optional<std::size_t> find_not_in_set(std::basic_string_view<C> text,
                                           std::basic_string_view<C> set) {
  return find_first(text, set, false);
}

template <class C>
int compare(std::basic_string_view<C> text1, std::basic_string_view<C> text2, std::size_t count) {
  return compare_weighed(text1, text2, count, [](unsigned code) { return code; });
}

template <class C>
int compare_ignoring_case(std::basic_string_view<C> text1, std::basic_string_view<C> text2,
                          std::size_t count) {
  return compare_weighed(text1, text2, count, [](unsigned code) {
    return code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code;
  });
}

template <class C>
std::optional<std::size_t> find_last(std::basic_string_view<C> text, C character) {
  const std::size_t place = c_text(text).rfind(character);
  if (place == std::basic_string_view<C>::npos) return std::nullopt;
  return place;
}

template <class C>
void reverse(std::span<C> text) {
  std::reverse(text.begin(), std::find(text.begin(), text.end(), C{}));
}

template std::optional<std::size_t> find_in_set(std::string_view, std::string_view);
template std::optional<std::size_t> find_in_set(std::u16string_view, std::u16string_view);
template std::optional<std::size_t> find_not_in_set(std::string_view, std::string_view);
template std::optional<std::size_t> find_not_in_set(std::u16string_view, std::u16string_view);
template int compare(std::string_view, std::string_view, std::size_t);
template int compare(std::u16string_view, std::u16string_view, std::size_t);
template int compare_ignoring_case(std::string_view, std::string_view, std::size_t);
template int compare_ignoring_case(std::u16string_view, std::u16string_view, std::size_t);
template std::optional<std::size_t> find_last(std::string_view, char);
template std::optional<std::size_t> find_last(std::u16string_view, char16_t);
template void reverse(std::span<char>);
template void reverse(std::span<char16_t>);

}  // namespace qv::native::rtlib
