// How a program begins and ends. Exit code: 0 all is well; 1 something failed, told on the error
// output; 2 the command line is wrong.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "console/text.h"

namespace qv::console {

// What ends a program, or a part of its work; the text is for the user.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using Arguments = std::vector<std::string>;

// Runs `body` with the arguments behind the program's own name, in UTF-8; it returns whether all
// was well. What it throws is told with the name in front. Returns the exit code.
int run_program(const std::string& name, const Arguments& arguments,
                bool (*body)(const Arguments& arguments));

// Of the platform's own.
template <class Character>
Arguments arguments_of(int count, Character** given) {
  Arguments arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(text_of_path(given[i]));
  return arguments;
}

}  // namespace qv::console
