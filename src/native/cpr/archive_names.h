#pragma once

#include <cstddef>
#include <string_view>

// Names in an archive's head: what fits, and what may be restored.
namespace qv::native::cpr {

inline constexpr std::size_t kNameFieldBytes = 255;
inline constexpr std::size_t kLongestEntryName = 253;
inline constexpr std::size_t kLongestParentDirectory = 254;  // its final separator included

// Whether the text comes back from its field as it is: neither too long nor with a character 0. A
// cut name could not be restored, so a writer refuses one that does not fit.
bool entry_name_fits(std::string_view name);
bool parent_directory_fits(std::string_view directory);

// Whether a name, put behind a folder's path and a separator, surely stays below that folder. Not
// so with a drive or a stream (":" anywhere), with a leading separator of either kind, with ".." as
// a component or what the platform takes for it (dots and blanks alone, two dots at least), with a
// character 0, or with nothing at all.
bool stays_in_folder(std::string_view name);
bool stays_in_folder(std::u16string_view name);

}  // namespace qv::native::cpr
