// Macros in path names: "$(WinPath)" and its like.
#pragma once

#include "automation/text.h"

namespace qv::files {

// Changes FileName in place; where it fails it is left half expanded, with two characters, of the
// codes 27 and 11, for each backslash. True = failure, told by the error state: a program that is
// not registered, run-time error 5 for "$(SetupPath:" without its bracket and for programs whose
// paths lead back to themselves. A success can leave an entry there too, of a value that the
// registry lacks.
Boolean ResolveFileName(Text& FileName, Text& AppPath);

}  // namespace qv::files
