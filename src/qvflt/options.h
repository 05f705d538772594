// The command line.
#pragma once

#include <optional>

#include "console/program.h"
#include "qvflt/images.h"

namespace qv::qvflt {

enum class Command { info, list, convert, help, version };
enum class Body { shorter, words, numbers };

struct Options {
  Command command = Command::help;
  console::Path source;
  console::Path target;
  std::optional<Kind> from;           // --from, or else as the file looks
  Kind to = Kind::saved;              // --to
  Body body = Body::shorter;          // --body
  std::optional<std::int32_t> bits;   // --bits
  std::optional<std::int32_t> image;  // --image, from 1
  bool is_json = false;
  bool is_quiet = false;
};

// Throws UsageError.
Options parse(const console::Arguments& arguments);

extern const char* const kHelp;

}  // namespace qv::qvflt
