// The words of an application's command line: split at single blanks, with quotes that keep blanks
// together wherever they open.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv::native::cmdline {

// The line as it is split: without blanks at its ends, without quotes, and with `mark` in place of
// each blank that stood between two quotes. A quote that is not closed reaches to the end.
std::u16string working_line(std::u16string_view line, char16_t mark);

// The words of a working line. Nothing collapses: between two blanks in a row lies an empty word.
// An empty line has none.
class Words {
 public:
  explicit Words(std::u16string_view working_line) : rest_(working_line) {
    if (rest_.empty()) has_more_ = false;
  }
  std::optional<std::u16string_view> next();

 private:
  std::u16string_view rest_;
  bool has_more_ = true;
};

struct Argument {
  bool is_named;        // began with "/" or "-"
  std::u16string name;  // as it was written, blanks behind it cut
  std::u16string value;
};

// A word as an argument; every mark in it is a blank again. In a named one the first "=" divides,
// and the value has no blanks at its ends.
Argument read_argument(std::u16string_view word, char16_t mark);

}  // namespace qv::native::cmdline
