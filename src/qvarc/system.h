// What the program asks of the system it runs on: system_posix.cpp and system_windows.cpp.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "native/rtlib/code_page.h"

namespace qv::qvarc {

using Path = std::filesystem::path;

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

// The characters of the bytes in stored names.
native::rtlib::ForwardTable name_table();

enum class Stream { output, error };
// UTF-8, whatever the stream is: a console, a file or a pipe.
void write(Stream stream, std::string_view text);
bool is_terminal(Stream stream);
// In columns; 80 where it is unknown.
std::size_t terminal_width(Stream stream);

}  // namespace qv::qvarc
