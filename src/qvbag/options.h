// The command line.
#pragma once

#include "console/program.h"

namespace qv::qvbag {

enum class Command { show, help, version };

struct Options {
  Command command = Command::show;
  bool is_json = false;
  console::Path file;
  std::vector<std::string> names;
};

// Throws UsageError.
Options parse(const console::Arguments& arguments);

extern const char* const kHelp;

}  // namespace qv::qvbag
