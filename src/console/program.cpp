#include "console/program.h"

#include <exception>
#include <new>

#include "console/console.h"

namespace qv::console {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCommandLine = 2;

}  // namespace

int run_program(const std::string& name, const Arguments& arguments,
                bool (*body)(const Arguments& arguments)) {
  const auto tell = [&](const std::string& text) {
    write(Stream::error, name + ": " + text + "\n");
  };
  try {
    return body(arguments) ? kDone : kFailed;
  } catch (const UsageError& error) {
    tell(error.what());
    tell(name + " --help shows what it can do");
    return kWrongCommandLine;
  } catch (const std::bad_alloc&) {
    tell("not enough memory");
  } catch (const std::exception& error) {
    tell(error.what());
  }
  return kFailed;
}

}  // namespace qv::console
