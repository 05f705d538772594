// qvarc: archives of the library from the command line.
#include "console/program.h"
#include "qvarc/commands.h"

namespace qv::qvarc {
namespace {

bool run(const Options& options) {
  switch (options.command) {
    case Command::create:
      return create(options);
    case Command::list:
      return list(options);
    case Command::test:
      return test(options);
    case Command::extract:
      return extract(options);
    case Command::help:
      write(Stream::output, kHelp);
      return true;
    case Command::version:
      write(Stream::output, "qvarc " QV_PROGRAM_VERSION "\n");
      return true;
  }
  return false;
}

bool run(const console::Arguments& arguments) {
  Options options = parse(arguments);
  options.shows_progress =
      options.shows_progress || (!options.is_quiet && is_terminal(Stream::error));
  return run(options);
}

}  // namespace
}  // namespace qv::qvarc

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  namespace console = qv::console;
  return console::run_program("qvarc", console::arguments_of(count, arguments), &qv::qvarc::run);
}
