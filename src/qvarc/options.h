// The command line.
#pragma once

#include <string>
#include <vector>

#include "qvarc/system.h"

namespace qv::qvarc {

enum class Command { create, list, test, extract, help, version };

struct Options {
  Command command = Command::help;
  Path archive;
  std::vector<std::string> names;  // files and folders to pack, or entries to look for
  Path parent;                     // --parent, or empty
  Path target = ".";               // --to
  bool is_smallest = false;
  bool is_text = false;
  bool is_flat = false;
  bool keeps_attributes = true;
  bool is_quiet = false;
  bool shows_progress = false;
};

// Of the arguments behind the program's name, in UTF-8. Throws UsageError.
Options parse(const std::vector<std::string>& arguments);

extern const char* const kHelp;

}  // namespace qv::qvarc
