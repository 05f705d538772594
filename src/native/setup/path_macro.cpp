#include "native/setup/path_macro.h"

#include <algorithm>

#include "native/setup/ascii_case.h"

namespace qv::native::setup {
namespace {

constexpr std::u16string_view kBackslash = u"\\";
// Characters 27 and 11, which no path holds.
constexpr std::u16string_view kMark = u"\x1B\x0B";
constexpr std::u16string_view kMarkAndBackslash = u"\x1B\x0B\\";
constexpr std::u16string_view kBackslashAndMark = u"\\\x1B\x0B";

constexpr std::u16string_view kProgramOpening = u"$(SetupPath:";

std::u16string_view::const_iterator find(std::u16string_view text, std::u16string_view wanted) {
  return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), same_letter);
}

std::u16string always_replaced(std::u16string_view text, std::u16string_view wanted,
                               std::u16string_view value) {
  return replaced(text, wanted, value).value_or(std::u16string(text));
}

}  // namespace

bool holds(std::u16string_view text, std::u16string_view wanted) {
  return !wanted.empty() && find(text, wanted) != text.end();
}

std::optional<std::u16string> replaced(std::u16string_view text, std::u16string_view wanted,
                                       std::u16string_view value) {
  if (!holds(text, wanted)) return std::nullopt;
  std::u16string result;
  auto found = find(text, wanted);
  while (found != text.end()) {
    const auto before = static_cast<std::size_t>(found - text.begin());
    result.append(text.substr(0, before)).append(value);
    text.remove_prefix(before + wanted.size());
    found = find(text, wanted);
  }
  return result.append(text);
}

std::u16string mark_backslashes(std::u16string_view name) {
  return always_replaced(name, kBackslash, kMark);
}

std::u16string join_backslashes(std::u16string_view name) {
  const auto before = always_replaced(name, kMarkAndBackslash, kBackslash);
  const auto behind = always_replaced(before, kBackslashAndMark, kBackslash);
  return always_replaced(behind, kMark, kBackslash);
}

std::optional<ProgramMacro> find_program_macro(std::u16string_view text) {
  const auto found = find(text, kProgramOpening);
  if (found == text.end()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(found - text.begin()));
  const std::size_t closing = text.find(u')');
  const bool is_closed = closing != std::u16string_view::npos;
  const auto whole = text.substr(0, is_closed ? closing + 1 : text.size());
  auto program = whole.substr(kProgramOpening.size());
  if (is_closed) program.remove_suffix(1);
  return ProgramMacro{whole, program, is_closed};
}

std::u16string_view folder_above(std::u16string_view path) {
  return path.substr(0, std::min(path.rfind(u'\\'), path.size()));
}

std::optional<RelativeName> relative_name(std::u16string_view name, std::u16string_view folder) {
  constexpr std::u16string_view kHere = u".\\";
  constexpr std::u16string_view kAbove = u"..\\";
  if (name.starts_with(kHere)) return RelativeName{folder, name.substr(kHere.size())};
  if (!name.starts_with(kAbove)) return std::nullopt;
  while (name.starts_with(kAbove)) {
    folder = folder_above(folder);
    name.remove_prefix(kAbove.size());
  }
  return RelativeName{folder, name};
}

}  // namespace qv::native::setup
