// The order of two versions of a file.
#pragma once

#include <limits>

#include "files/file_info.h"

namespace qv::files {

struct FileVersion {
  Long high;
  Long low;
  Date last_write;
};

FileVersion version_of(const QvtFileInfo& file);
FileVersion version_of(const Object<_QvtFileInfo>& file);

inline constexpr Long kComparisonFailed = std::numeric_limits<Long>::min();

// 1 where a is the newer, -1 where b is, 0 where both are alike: by the four numbers, as signed
// 16-bit ones, and where they are equal by the minute of the last change. kComparisonFailed, told
// by the error state, where two numbers lie so far apart that their difference has no 16 bits.
Long VersionCompare(const FileVersion& a, const FileVersion& b);

}  // namespace qv::files
