#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "console/console.h"

namespace qv::console {
namespace {

int descriptor(Stream stream) { return stream == Stream::output ? STDOUT_FILENO : STDERR_FILENO; }

}  // namespace

void write(Stream stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream == Stream::output ? stdout : stderr);
}

bool is_terminal(Stream stream) { return isatty(descriptor(stream)) == 1; }

std::size_t terminal_width(Stream stream) {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  return ioctl(descriptor(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                              : kUsual;
}

const native::rtlib::ForwardTable& characters() { return native::rtlib::kWindows1252; }

}  // namespace qv::console
