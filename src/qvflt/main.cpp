// qvflt: files of filters from the command line.
#include "console/console.h"
#include "console/program.h"
#include "qvflt/commands.h"

namespace qv::qvflt {
namespace {

bool run(const console::Arguments& arguments) {
  const Options options = parse(arguments);
  switch (options.command) {
    case Command::info:
      return info(options);
    case Command::list:
      return list(options);
    case Command::convert:
      return convert(options);
    case Command::help:
      console::write(console::Stream::output, kHelp);
      return true;
    case Command::version:
      console::write(console::Stream::output, "qvflt " QV_PROGRAM_VERSION "\n");
      return true;
  }
  return false;
}

}  // namespace
}  // namespace qv::qvflt

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  namespace console = qv::console;
  return console::run_program("qvflt", console::arguments_of(count, arguments), &qv::qvflt::run);
}
