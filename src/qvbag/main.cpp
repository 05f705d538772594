// qvbag: property bags of the library from the command line.
#include <fstream>
#include <limits>
#include <system_error>

#include "console/console.h"
#include "console/program.h"
#include "qvbag/options.h"
#include "qvbag/shown_bag.h"

namespace qv::qvbag {
namespace {

using console::Failure;
using console::Path;
using console::Stream;
using console::write;

// Positions are signed, of 32 bits.
constexpr std::uint64_t kMost_bytes = std::numeric_limits<std::int32_t>::max();

std::vector<std::uint8_t> bytes_of_file(const Path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) throw Failure("there is no such file");
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  std::ifstream stream(path, std::ios::binary);
  if (error || !stream) throw Failure("the file can't be opened");
  if (size > kMost_bytes) throw Failure("the file has more than 2 GB, which no property bag has");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (static_cast<std::size_t>(stream.gcount()) != bytes.size()) {
    throw Failure("the file can't be read");
  }
  return bytes;
}

bool show_file(const Options& options) {
  const Bag bag(bytes_of_file(options.file));
  const Selection selection(bag, options.names);
  const auto say = [](std::string_view text) { write(Stream::output, text); };
  if (options.is_json) {
    show_json(bag, selection, say);
  } else {
    show(bag, selection, say);
  }
  bool is_sound = true;
  tell_errors(bag, selection, [&](std::string_view error) {
    is_sound = false;
    write(Stream::error, "qvbag: " + std::string(error) + "\n");
  });
  return is_sound;
}

bool run(const console::Arguments& arguments) {
  const Options options = parse(arguments);
  switch (options.command) {
    case Command::show:
      try {
        return show_file(options);
      } catch (const Failure& failure) {
        throw Failure("\"" + console::text_of_path(options.file) + "\": " + failure.what());
      }
    case Command::help:
      write(Stream::output, kHelp);
      return true;
    case Command::version:
      write(Stream::output, "qvbag " QV_PROGRAM_VERSION "\n");
      return true;
  }
  return false;
}

}  // namespace
}  // namespace qv::qvbag

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  namespace console = qv::console;
  return console::run_program("qvbag", console::arguments_of(count, arguments), &qv::qvbag::run);
}
