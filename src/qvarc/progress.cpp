#include "qvarc/progress.h"

#include <algorithm>

#include "qvarc/system.h"

namespace qv::qvarc {
namespace {

constexpr std::size_t kBarColumns = 24;

// Characters of UTF-8 text; each takes one column, near enough.
std::size_t columns_of(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

// Cut at the front, where paths say least.
std::string last_columns(const std::string& text, std::size_t columns) {
  std::size_t excess = columns_of(text) - std::min(columns_of(text), columns);
  std::size_t start = 0;
  while (excess > 0 || (start < text.size() && (text[start] & 0xC0) == 0x80)) {
    if ((text[start] & 0xC0) != 0x80) --excess;
    ++start;
  }
  return text.substr(start);
}

}  // namespace

void Progress::begin(const std::string& name) {
  name_ = name;
  file_bytes_ = 0;
  draw();
}

void Progress::advance_to(std::uint64_t bytes) {
  file_bytes_ = bytes;
  draw();
}

void Progress::end(std::uint64_t file_bytes) {
  done_bytes_ += file_bytes;
  file_bytes_ = 0;
  draw();
}

void Progress::draw() {
  if (!is_shown_) return;
  const std::uint64_t done = std::min(done_bytes_ + file_bytes_, total_bytes_);
  const double share =
      total_bytes_ == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total_bytes_);
  const auto filled = static_cast<std::size_t>(share * kBarColumns);
  const std::string percent = std::to_string(static_cast<int>(share * 100));
  std::string line = "[" + std::string(filled, '#') + std::string(kBarColumns - filled, '.') +
                     "] " + std::string(3 - percent.size(), ' ') + percent + " %  ";
  // A line as wide as the terminal would go on in the next.
  const std::size_t width = terminal_width(Stream::error);
  line += last_columns(name_, width - std::min(width, line.size() + 1));
  if (line == line_) return;
  const std::size_t before = columns_of(line_);
  const std::size_t now = columns_of(line);
  write(Stream::error, "\r" + line + std::string(before - std::min(before, now), ' '));
  line_ = line;
}

void Progress::clear() {
  if (line_.empty()) return;
  write(Stream::error, "\r" + std::string(columns_of(line_), ' ') + "\r");
  line_.clear();
}

}  // namespace qv::qvarc
