#include "native/cmdline/command_line.h"

#include <algorithm>

namespace qv::native::cmdline {
namespace {

constexpr char16_t kBlank = u' ';
constexpr char16_t kQuote = u'"';

std::u16string_view without_blanks_behind(std::u16string_view text) {
  return text.substr(0, text.find_last_not_of(kBlank) + 1);
}

std::u16string_view trimmed(std::u16string_view text) {
  text = without_blanks_behind(text);
  return text.substr(std::min(text.find_first_not_of(kBlank), text.size()));
}

}  // namespace

std::u16string working_line(std::u16string_view line, char16_t mark) {
  std::u16string result;
  bool is_quoted = false;
  for (const char16_t character : trimmed(line)) {
    if (character == kQuote) {
      is_quoted = !is_quoted;
    } else {
      result += is_quoted && character == kBlank ? mark : character;
    }
  }
  return result;
}

std::optional<std::u16string_view> Words::next() {
  if (!has_more_) return std::nullopt;
  const std::size_t end = rest_.find(kBlank);
  const auto word = rest_.substr(0, end);
  has_more_ = end != std::u16string_view::npos;
  if (has_more_) rest_.remove_prefix(end + 1);
  return word;
}

Argument read_argument(std::u16string_view word, char16_t mark) {
  std::u16string text(word);
  std::ranges::replace(text, mark, kBlank);
  if (!text.starts_with(u'/') && !text.starts_with(u'-')) return {false, {}, std::move(text)};
  const auto named = std::u16string_view(text).substr(1);
  const std::size_t end = std::min(named.find(u'='), named.size());
  return {true, std::u16string(without_blanks_behind(named.substr(0, end))),
          std::u16string(trimmed(named.substr(std::min(end + 1, named.size()))))};
}

}  // namespace qv::native::cmdline
