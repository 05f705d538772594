#include "qvflt/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace qv::qvflt {

const char* const kHelp =
    R"(qvflt tells about and converts files of filters of the QvRtLib library.

  qvflt info [option...] FILE
  qvflt list [option...] FILE
  qvflt convert [option...] FILE TARGET

info     tells the images that the file holds, one behind the other: kind, body,
         bits, records that are set, bytes
list     shows the records of one image, a number a line; the first record is 1
convert  writes the images of the file as another kind; an existing target is
         replaced once the new one is whole

Kinds:
  saved  what Save, Bloom_Save and BloomSaveExt write
  older  what Bloom_LoadOld reads
  raw    the bits alone, as Bloom_CopyTo gives them: one image a file

Options of all commands:
  -f, --from KIND   the kind of the file; without it the file itself is asked,
                    which tells saved and older images, but never a raw one
  -n, --bits N      the bits of a raw image (here: 8 a byte)
Options of info and list:
  -j, --json        a JSON object
Options of list and convert:
  -i, --image N     this image alone, from 1 (list: 1; convert: all)
Options of convert:
  -t, --to KIND     the kind of the target (here: saved)
  -b, --body BODY   of saved images: "words" for all of the bit map, "numbers"
                    for those of the set bits, which must be the shorter body
                    (here: the shorter one)
  -q, --quiet       no summary
Others:
  -h, --help        this text
  -V, --version     the program's version
  --                what follows is no option

The JSON object of info has "images", an array of objects with "image", "kind",
"body" (of a saved one), "offset", "bytes", "bits" and "records", and "error"
where the file is damaged. That of list has "image", "bits" and "records", an
array.

Exit code: 0 all is well; 1 something failed or is damaged, told on the error
output; 2 the command line is wrong.
)";

namespace {

using console::UsageError;

template <class Value>
struct Word {
  std::string_view word;
  Value value;
};
constexpr std::array<Word<Command>, 3> kCommands{
    {{"info", Command::info}, {"list", Command::list}, {"convert", Command::convert}}};
constexpr std::array<Word<Kind>, 3> kKinds{
    {{"saved", Kind::saved}, {"older", Kind::older}, {"raw", Kind::raw}}};
constexpr std::array<Word<Body>, 2> kBodies{{{"words", Body::words}, {"numbers", Body::numbers}}};

template <class Value, std::size_t Count>
Value value_of(const std::array<Word<Value>, Count>& words, std::string_view word,
               const char* what) {
  const auto known = std::ranges::find(words, word, &Word<Value>::word);
  if (known == words.end()) throw UsageError(std::string(what) + " " + std::string(word));
  return known->value;
}

std::int32_t number_of(const std::string& text, std::int32_t least) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least) {
    throw UsageError("no such number is possible: " + text);
  }
  return number;
}

// An option, the commands that know it, and what it does: `set` without a value, or `take` with it.
struct OptionName {
  char letter;
  std::string_view name;
  std::string_view commands;
  void (*set)(Options& options);
  void (*take)(Options& options, const std::string& value);
};
constexpr std::array<OptionName, 7> kOptions{{
    {'f', "from", "info list convert", nullptr,
     [](Options& options, const std::string& value) {
       options.from = value_of(kKinds, value, "unknown kind");
     }},
    {'n', "bits", "info list convert", nullptr,
     [](Options& options, const std::string& value) { options.bits = number_of(value, 0); }},
    {'j', "json", "info list", [](Options& options) { options.is_json = true; }, nullptr},
    {'i', "image", "list convert", nullptr,
     [](Options& options, const std::string& value) { options.image = number_of(value, 1); }},
    {'t', "to", "convert", nullptr,
     [](Options& options, const std::string& value) {
       options.to = value_of(kKinds, value, "unknown kind");
     }},
    {'b', "body", "convert", nullptr,
     [](Options& options, const std::string& value) {
       options.body = value_of(kBodies, value, "unknown body");
     }},
    {'q', "quiet", "convert", [](Options& options) { options.is_quiet = true; }, nullptr},
}};

class Parser {
 public:
  explicit Parser(const console::Arguments& arguments) : arguments_(arguments) {}

  Options parse() {
    bool takes_options = true;
    while (next_ < arguments_.size()) {
      const std::string& argument = arguments_[next_++];
      if (!takes_options || argument.size() < 2 || argument[0] != '-') {
        words_.push_back(argument);
      } else if (argument == "--") {
        takes_options = false;
      } else if (argument == "-h" || argument == "--help") {
        options_.command = Command::help;
        return options_;
      } else if (argument == "-V" || argument == "--version") {
        options_.command = Command::version;
        return options_;
      } else {
        take_option(argument);
      }
    }
    take_words();
    return options_;
  }

 private:
  void take_option(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto option = std::ranges::find_if(kOptions, [&](const OptionName& known) {
      return name == std::string("--").append(known.name) || name == std::string{'-', known.letter};
    });
    if (option == kOptions.end()) throw UsageError("unknown option " + argument);
    used_.push_back(&*option);
    if (option->set != nullptr) {
      if (equals != std::string::npos) throw UsageError(name + " takes no value");
      option->set(options_);
    } else if (equals != std::string::npos) {
      option->take(options_, argument.substr(equals + 1));
    } else {
      if (next_ == arguments_.size()) throw UsageError(name + " needs a value");
      option->take(options_, arguments_[next_++]);
    }
  }

  void take_words() {
    if (words_.empty()) throw UsageError("a command is missing");
    options_.command = value_of(kCommands, words_[0], "unknown command");
    for (const OptionName* option : used_) {
      if (option->commands.find(words_[0]) == std::string_view::npos) {
        throw UsageError(words_[0] + " knows no option --" + std::string(option->name));
      }
    }
    const std::size_t files = options_.command == Command::convert ? 2 : 1;
    if (words_.size() != files + 1) {
      throw UsageError(words_[0] + (files == 1 ? " takes one file" : " takes a file and a target"));
    }
    options_.source = console::path_of_text(words_[1]);
    if (files == 2) options_.target = console::path_of_text(words_[2]);
    if (options_.bits && options_.from != Kind::raw) throw UsageError("--bits needs --from raw");
    if (options_.body != Body::shorter && options_.to != Kind::saved) {
      throw UsageError("--body goes with saved images");
    }
  }

  const console::Arguments& arguments_;
  std::size_t next_ = 0;
  std::vector<const OptionName*> used_;
  std::vector<std::string> words_;
  Options options_;
};

}  // namespace

Options parse(const console::Arguments& arguments) { return Parser(arguments).parse(); }

}  // namespace qv::qvflt
