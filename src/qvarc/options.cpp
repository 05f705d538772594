#include "qvarc/options.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "qvarc/names.h"

namespace qv::qvarc {

const char* const kHelp =
    R"(qvarc packs files into archives of the QvRtLib library, and unpacks them.

  qvarc create [option...] ARCHIVE FILE_OR_FOLDER...
  qvarc list ARCHIVE
  qvarc test [option...] ARCHIVE [NAME...]
  qvarc extract [option...] ARCHIVE [NAME...]

create   packs files, and folders with all that is in them; an archive of that
         name is replaced once the new one is whole
list     shows what an archive holds
test     expands everything and compares checksums, without writing a file
extract  restores files, below the folder that --to names; a file that exists is
         replaced once the new one is whole and its checksum is right
NAME     restricts to entries of this name, or in this folder: as listed, or with
         the full stored path; upper and lower case are alike

Options of create:
  -p, --parent FOLDER   the folder below which names are restored; without it, the
                        folder in which all that is packed lies
  -s, --smallest        look longer for repetitions
  -x, --text            code for texts, which makes them smaller and others larger
Options of extract:
  -t, --to FOLDER       where to restore; made if missing (here: the current one)
  -f, --flat            without the stored folders
  -n, --no-attributes   without the stored attributes
Options of create, test and extract:
  -q, --quiet           no progress bar, no summary
  -P, --progress        a progress bar even where the error output is no terminal
Options of all:
  -h, --help            this text
  -V, --version         the program's version
  --                    what follows is no option

A file can have up to 2 GB, an archive too; a stored path 253 characters, of the
system's single-byte code page (Windows 1252 on other systems).

Exit code: 0 all is well; 1 something failed, told on the error output; 2 the
command line is wrong.
)";

namespace {

struct CommandName {
  std::string_view name;
  Command command;
};
constexpr std::array<CommandName, 4> kCommands{{
    {"create", Command::create},
    {"list", Command::list},
    {"test", Command::test},
    {"extract", Command::extract},
}};

// What an option changes, a switch or a path, and the commands that know it.
struct OptionName {
  char letter;
  std::string_view name;
  std::string_view commands;
  bool Options::*switched;
  bool value;
  Path Options::*path;
};
constexpr std::array<OptionName, 8> kOptions{{
    {'p', "parent", "create", nullptr, false, &Options::parent},
    {'t', "to", "extract", nullptr, false, &Options::target},
    {'s', "smallest", "create", &Options::is_smallest, true, nullptr},
    {'x', "text", "create", &Options::is_text, true, nullptr},
    {'f', "flat", "extract", &Options::is_flat, true, nullptr},
    {'n', "no-attributes", "extract", &Options::keeps_attributes, false, nullptr},
    {'q', "quiet", "create test extract", &Options::is_quiet, true, nullptr},
    {'P', "progress", "create test extract", &Options::shows_progress, true, nullptr},
}};

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  Options parse() {
    while (next_ < arguments_.size()) {
      const std::string& argument = arguments_[next_++];
      if (argument == "--" && takes_options_) {
        takes_options_ = false;
      } else if (takes_options_ && argument.size() > 1 && argument[0] == '-') {
        take_option(argument);
      } else {
        words_.push_back(argument);
      }
      if (is_told_) return options_;
    }
    take_words();
    return options_;
  }

 private:
  void take_option(const std::string& argument) {
    if (argument == "-h" || argument == "--help" || argument == "-V" || argument == "--version") {
      options_.command =
          argument.ends_with('h') || argument == "--help" ? Command::help : Command::version;
      is_told_ = true;
      return;
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto option = std::ranges::find_if(kOptions, [&](const OptionName& known) {
      return name == std::string("--").append(known.name) || name == std::string{'-', known.letter};
    });
    if (option == kOptions.end()) throw UsageError("unknown option " + argument);
    used_.push_back(&*option);
    if (option->switched != nullptr) {
      if (equals != std::string::npos) throw UsageError(name + " takes no value");
      options_.*option->switched = option->value;
    } else if (equals != std::string::npos) {
      options_.*option->path = path_of_text(argument.substr(equals + 1));
    } else {
      if (next_ == arguments_.size()) throw UsageError(name + " needs a folder");
      options_.*option->path = path_of_text(arguments_[next_++]);
    }
  }

  void take_words() {
    if (words_.empty()) throw UsageError("a command is missing");
    const auto command = std::ranges::find(kCommands, words_[0], &CommandName::name);
    if (command == kCommands.end()) throw UsageError("unknown command " + words_[0]);
    options_.command = command->command;
    for (const OptionName* option : used_) {
      if (option->commands.find(command->name) == std::string_view::npos) {
        throw UsageError(words_[0] + " knows no option --" + std::string(option->name));
      }
    }
    if (words_.size() < 2) throw UsageError("an archive is missing");
    options_.archive = path_of_text(words_[1]);
    options_.names.assign(words_.begin() + 2, words_.end());
    if (options_.command == Command::create && options_.names.empty()) {
      throw UsageError("nothing to pack is named");
    }
    if (options_.command == Command::list && !options_.names.empty()) {
      throw UsageError("list takes an archive alone");
    }
  }

  const std::vector<std::string>& arguments_;
  std::size_t next_ = 0;
  bool takes_options_ = true;
  bool is_told_ = false;  // help or version: nothing else matters
  std::vector<const OptionName*> used_;
  std::vector<std::string> words_;
  Options options_;
};

}  // namespace

Options parse(const std::vector<std::string>& arguments) { return Parser(arguments).parse(); }

}  // namespace qv::qvarc
