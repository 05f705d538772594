#include "text/sort_keys.h"

#include <iterator>
#include <span>
#include <utility>

#include "automation/bytes.h"
#include "constants.h"
#include "native/zstr/mask.h"
#include "native/zstr/sort_key.h"
#include "runtime/characters.h"
#include "text/key_folding.h"

namespace qv::text {
namespace {

using namespace KWZSTR_Constants;

constexpr wchar_t kDistinctMark[] = {ESCAPECHAR, DISTINCTSEP};
constexpr std::wstring_view kDistinctSeparator(kDistinctMark, std::size(kDistinctMark));

// `transform` works in place on the bytes of the key and returns how many there are then.
template <class Transform>
void transform_key(Text& key, Transform transform) {
  if (key.empty()) return;
  auto bytes = bytes_of_text(before_character_0(key));
  const std::size_t length = transform(std::span(bytes));
  key = before_character_0(text_of_bytes(std::span(bytes).first(length)));
}

}  // namespace

void Key_Sort(Text& Key, Integer SortFlag, const Text& Table) {
  transform_key(Key, [&, table = bytes_of_text(Table)](std::span<std::uint8_t> key) {
    return native::zstr::Key_Sort(key, SortFlag, table, folding_of_code_page());
  });
}

void Mask_Display(Text& Key) { transform_key(Key, native::zstr::Mask_Display); }

void Mask_Sort(Text& Key) { transform_key(Key, native::zstr::Mask_Sort); }

void XLate(Text& sString, const Text& Table) {
  transform_key(sString, [table = bytes_of_text(Table)](std::span<std::uint8_t> text) {
    native::zstr::XLate(text, table);
    return text.size();
  });
}

void DistinctAppend(Text& Key, const Text& Distinct) {
  Key += concat({kDistinctSeparator, Distinct});
}

void DistinctSplit(Text& Key, Text& Distinct) {
  const std::size_t end = Key.view().find(kDistinctSeparator);
  Text distinct;
  if (end != std::wstring_view::npos) {
    distinct = Text(Key.view().substr(end + kDistinctSeparator.size()));
    Key.cut(end);
  }
  Distinct = std::move(distinct);
}

}  // namespace qv::text
