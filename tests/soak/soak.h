#pragma once

#include <string>

namespace qv::tests {

// How long the soak test goes on.
extern int soak_seconds;

// Writes into the folder, over and over, until the process is killed: an archive and what is
// restored from it, a filter, an INI file. A file "ready" stands when all have been written once.
[[noreturn]] void write_until_killed(const std::wstring& folder);

// Looks at what a killed writer left: prints "ok NAME" or "FAILED NAME: ..." for each, at last
// "done".
void check_what_is_left(const std::wstring& folder);

}  // namespace qv::tests
