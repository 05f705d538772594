// qvarc: archives of the library from the command line.
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "qvarc/commands.h"
#include "qvarc/names.h"

namespace qv::qvarc {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongCommandLine = 2;

void tell(const std::string& text) { write(Stream::error, "qvarc: " + text + "\n"); }

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
      write(Stream::output, "qvarc " QVARC_VERSION "\n");
      return true;
  }
  return false;
}

int run(const std::vector<std::string>& arguments) {
  try {
    Options options = parse(arguments);
    options.shows_progress =
        options.shows_progress || (!options.is_quiet && is_terminal(Stream::error));
    return run(options) ? 0 : kFailed;
  } catch (const UsageError& error) {
    tell(error.what());
    tell("qvarc --help shows what it can do");
    return kWrongCommandLine;
  } catch (const std::bad_alloc&) {
    tell("not enough memory");
  } catch (const std::exception& error) {
    tell(error.what());
  }
  return kFailed;
}

}  // namespace
}  // namespace qv::qvarc

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i) texts.push_back(qv::qvarc::text_of_path(arguments[i]));
  return qv::qvarc::run(texts);
}
