// What the shell is given to start, and what its failures mean.
#pragma once

#include "automation/text.h"

namespace qv::services {

struct LaunchedCommand {
  Text program;
  Text parameters;
};

// A name that begins with a double quote is the program up to the next one; what follows goes
// behind CmdLine, cut to the length of the quoted name: programs were written with that cut. Any
// other name is the program as it stands.
LaunchedCommand split_command(const Text& AppName, const Text& CmdLine);

// The text of a failure code of the shell.
Text shell_failure_text(Long code);

}  // namespace qv::services
