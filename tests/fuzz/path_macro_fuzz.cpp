#include <cstdint>
#include <cstdlib>
#include <string>

#include "native/setup/path_macro.h"

namespace {

void expect(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

// Two bytes a character. The first character tells how many of the next are a macro's value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::setup;
  constexpr std::u16string_view kMark = u"\x1B\x0B";
  std::u16string text;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    text += static_cast<char16_t>(data[i] | data[i + 1] << 8);
  }
  if (text.empty()) return 0;
  const std::u16string value = text.substr(1, text[0] % 16);
  const std::u16string name = text.substr(1 + value.size());

  const auto marked = mark_backslashes(name);
  expect(marked.find(u'\\') == std::u16string::npos);
  const auto joined = join_backslashes(marked);
  if (name.find(u'\x1B') == std::u16string::npos) expect(joined == name);
  const auto expanded = replaced(marked, u"$(a)", value);
  expect(expanded.has_value() == holds(marked, u"$(a)"));
  const auto resolved = join_backslashes(expanded.value_or(marked));
  if (value.find(u'\x1B') == std::u16string::npos) {
    expect(resolved.find(kMark) == std::u16string::npos);
  }
  if (const auto macro = find_program_macro(name)) {
    const auto without = replaced(name, macro->whole, {});
    expect(without && without->size() < name.size());
    expect(macro->program.size() + (macro->is_closed ? 13 : 12) == macro->whole.size());
  }
  if (const auto relative = relative_name(resolved, value)) {
    expect(resolved.ends_with(relative->name));
    expect(value.starts_with(relative->folder));
  }
  return 0;
}
