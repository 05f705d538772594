#include "qvbag/options.h"

namespace qv::qvbag {

const char* const kHelp =
    R"(qvbag shows what a property bag of the QvRtLib library holds.

  qvbag [option...] FILE [NAME...]

FILE     what Flush of QvtPropertyBag2 or QvtPropertyBag gave, one byte a
         character; an empty file is an empty bag
NAME     shows the properties of this name alone; upper and lower case are alike

Options:
  -j, --json      everything in full, as a JSON object; without it long texts
                  and arrays are cut, and control characters shown as "?"
  -h, --help      this text
  -V, --version   the program's version
  --              what follows is no option

Characters are those of the system's single-byte code page (Windows 1252 on
other systems). The JSON object has "form" (1 or 2), "version" and "properties",
an array of objects with "name", "type" and "value". The "value" of an array
lists its elements, the index of its first dimension varying fastest, and its
"bounds" tell the lower and upper bound of each dimension. A date is a text such
as "2026-11-21T05:22:00". What is damaged has "error" instead.

Exit code: 0 all is well; 1 something failed or is damaged, told on the error
output; 2 the command line is wrong.
)";

Options parse(const console::Arguments& arguments) {
  using console::UsageError;
  Options options;
  std::vector<std::string> words;
  bool takes_options = true;
  for (const std::string& argument : arguments) {
    if (!takes_options || argument.size() < 2 || argument[0] != '-') {
      words.push_back(argument);
    } else if (argument == "--") {
      takes_options = false;
    } else if (argument == "-j" || argument == "--json") {
      options.is_json = true;
    } else if (argument == "-h" || argument == "--help") {
      options.command = Command::help;
      return options;
    } else if (argument == "-V" || argument == "--version") {
      options.command = Command::version;
      return options;
    } else {
      throw UsageError("unknown option " + argument);
    }
  }
  if (words.empty()) throw UsageError("a file is missing");
  options.file = console::path_of_text(words[0]);
  options.names.assign(words.begin() + 1, words.end());
  return options;
}

}  // namespace qv::qvbag
