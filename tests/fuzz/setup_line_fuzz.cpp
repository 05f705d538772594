#include <cstdint>
#include <cstdlib>
#include <string>

#include "native/setup/file_line.h"

namespace {

using namespace qv::native::setup;

void expect(bool holds) {
  if (!holds) std::abort();
}

bool lies_inside(std::u16string_view piece, std::u16string_view text) {
  return piece.empty() ||
         (piece.data() >= text.data() && piece.data() + piece.size() <= text.data() + text.size());
}

// The pieces with their separators are the beginning of the text, or all of it.
template <std::size_t N>
void expect_beginning(const Pieces<N>& split, std::u16string_view text, char16_t separator) {
  std::u16string joined;
  for (std::size_t i = 0; i < split.count; ++i) {
    if (i > 0) joined += separator;
    expect(split.pieces[i].find(separator) == std::u16string_view::npos);
    joined += split.pieces[i];
  }
  expect(text.starts_with(joined));
  expect(joined.size() == text.size() || (split.count == N && text[joined.size()] == separator));
}

}  // namespace

// Two bytes a character.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::u16string text;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    text += static_cast<char16_t>(data[i] | data[i + 1] << 8);
  }
  const FileLine line = split_file_line(text);
  expect_beginning(line, text, u',');
  for (std::size_t i = 0; i < line.count; ++i) {
    const auto field = line.pieces[i];
    expect(name_in(field).size() + 1 == field.size() || field.empty());
    expect(!is_shared(field) || registration_in(field) == Registration::kNone);
    expect_beginning(split_version(field), field, u'.');
    const MomentText moment = split_moment(field);
    for (const auto piece :
         {moment.month, moment.day, moment.year, moment.hour, moment.minute, moment.second}) {
      expect(lies_inside(piece, field));
    }
  }
  return 0;
}
