// Files of the system it runs on, for the program: system_posix.cpp and system_windows.cpp.
#pragma once

#include <cstdint>
#include <optional>

#include "console/console.h"
#include "console/program.h"
#include "console/text.h"

namespace qv::qvarc {

using console::Failure;
using console::is_terminal;
using console::Path;
using console::path_of_text;
using console::shown;
using console::Stream;
using console::terminal_width;
using console::text_of_path;
using console::UsageError;
using console::write;

// As an archive's entry has them: local time in days since the end of 1899, whole seconds; the
// platform's marks of a file (1 read-only, 2 hidden, 4 system, 16 folder, 32 to be archived).
struct FileFacts {
  std::uint64_t size_bytes = 0;
  std::int32_t major_version = 0;
  std::int32_t minor_version = 0;
  double created = 0;
  double changed = 0;
  std::int32_t attributes = 0;
};

// Nothing where the file can't be looked at, or is neither a file nor a folder.
std::optional<FileFacts> facts_of(const Path& path);

// As far as the system keeps them. False where it refuses, or where the date is none.
bool set_dates(const Path& path, double created, double changed);
bool set_attributes(const Path& path, std::int32_t attributes);

}  // namespace qv::qvarc
