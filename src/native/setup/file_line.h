// A line of a setup description's list of files, taken apart. All views lead into the line, and
// numbers stay text: what a number is, the calling language says.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace qv::native::setup {

// The first N pieces of a text between separators. An empty text has no piece at all, and a
// separator at the end has an empty piece behind it.
template <std::size_t N>
struct Pieces {
  std::array<std::u16string_view, N> pieces;
  std::size_t count = 0;  // of those found, at most N
};

// The fields stand between commas; none is quoted.
struct FileLine : Pieces<7> {
  enum Field : std::size_t { kName, kFolder, kRegistration, kSharing, kMoment, kSize, kVersion };
};
FileLine split_file_line(std::u16string_view line);

// The name without the character in front of it, by custom "@".
std::u16string_view name_in(std::u16string_view field);

enum class Registration { kNone, kLibrary, kProgram, kTypeLibrary };
// By the marker, in any case.
Registration registration_in(std::u16string_view field);
bool is_shared(std::u16string_view field);

// "month/day/year hour:minute:second marker". A separator that is missing leaves everything behind
// it empty. Blanks before hour and marker are not part of them.
struct MomentText {
  std::u16string_view month;
  std::u16string_view day;
  std::u16string_view year;
  std::u16string_view hour;
  std::u16string_view minute;
  std::u16string_view second;
  bool is_afternoon = false;  // the marker is "PM", in any case
};
MomentText split_moment(std::u16string_view field);

// "a.b.c.d".
using VersionText = Pieces<4>;
VersionText split_version(std::u16string_view field);

}  // namespace qv::native::setup
