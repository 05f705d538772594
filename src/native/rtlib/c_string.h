#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace qv::native::rtlib {

// Scanning as the C run time does it: a text ends before its first character 0, if it holds one,
// and so does a set. Positions count from 0. All functions exist for char (bytes of the code page)
// and char16_t.

// The part of the text that a C string of it would have.
template <class C>
std::basic_string_view<C> c_text(std::basic_string_view<C> text) {
  return text.substr(0, text.find(C{}));
}

// Position of the first character that lies in the set; none when no character does.
template <class C>
std::optional<std::size_t> find_in_set(std::basic_string_view<C> text,
                                       std::basic_string_view<C> set);

// Position of the first character that does not lie in the set; none when every one does.
template <class C>
std::optional<std::size_t> find_not_in_set(std::basic_string_view<C> text,
                                           std::basic_string_view<C> set);

// Compares at most `count` characters by their codes: -1, 0 or 1. The second form takes A to Z as
// a to z, as the C locale does, and leaves accented letters alone; so "_" comes before "A" there.
template <class C>
int compare(std::basic_string_view<C> text1, std::basic_string_view<C> text2, std::size_t count);
template <class C>
int compare_ignoring_case(std::basic_string_view<C> text1, std::basic_string_view<C> text2,
                          std::size_t count);

// Position of the last occurrence of the character. The character 0 is never found: it ends the
// text and is no part of it.
template <class C>
std::optional<std::size_t> find_last(std::basic_string_view<C> text, C character);

// Reverses the characters in place; a character 0 and what follows it stay where they are.
template <class C>
void reverse(std::span<C> text);

}  // namespace qv::native::rtlib
