// The text work of macros in path names: "$(Name)" stands for a folder. While macros are replaced,
// each backslash that the name itself holds is a mark of two characters, so that it can be told
// from one that a macro's value brings in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::native::setup {

std::u16string mark_backslashes(std::u16string_view name);
// Marks become backslashes again. A mark and a value's backslash side by side are one, on whichever
// side the mark stands; backslashes of two values that meet both stay.
std::u16string join_backslashes(std::u16string_view name);

// Texts are looked for whatever the case of their letters A to Z. An empty one is nowhere.
bool holds(std::u16string_view text, std::u16string_view wanted);
// All occurrences, from the left, replaced; none where there is no occurrence.
std::optional<std::u16string> replaced(std::u16string_view text, std::u16string_view wanted,
                                       std::u16string_view value);

// "$(SetupPath:program)" stands for the folder in which the program is installed. Views into the
// text.
struct ProgramMacro {
  std::u16string_view whole;    // up to the closing bracket, or the end of the text without one
  std::u16string_view program;  // what stands between
  bool is_closed = false;
};
// The first of a text, in any case.
std::optional<ProgramMacro> find_program_macro(std::u16string_view text);

// The path before its last backslash; all of it where it holds none.
std::u16string_view folder_above(std::u16string_view path);

// A name that begins with ".\" or "..\", as seen from a folder; none for any other name. Each
// further "..\" goes one folder higher.
struct RelativeName {
  std::u16string_view folder;  // with or without a final backslash
  std::u16string_view name;
};
std::optional<RelativeName> relative_name(std::u16string_view name, std::u16string_view folder);

}  // namespace qv::native::setup
