#include <cstdlib>
#include <string>

#include "native/cmdline/command_line.h"

namespace {

constexpr char16_t kMark = 0xFF;

}  // namespace

// A line of one byte a character. Its words, joined again, are the working line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::cmdline;
  const std::u16string line(data, data + size);
  const std::u16string working = working_line(line, kMark);
  if (working.size() > line.size() || working.find(u'"') != working.npos) std::abort();
  std::u16string joined;
  Words words(working);
  for (bool is_first = true; const auto word = words.next(); is_first = false) {
    if (!is_first) joined += u' ';
    joined += *word;
    const Argument argument = read_argument(*word, kMark);
    if (argument.name.size() + argument.value.size() > word->size()) std::abort();
    if (!argument.is_named && argument.value.size() != word->size()) std::abort();
    if (argument.value.find(kMark) != argument.value.npos) std::abort();
  }
  if (joined != working) std::abort();
  return 0;
}
