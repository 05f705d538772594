#include <algorithm>
#include <utility>

#include "automation/foreign_error.h"
#include "automation/late_bound.h"
#include "constants.h"
#include "frame/error_state.h"
#include "text/sort_keys.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

using namespace KWZSTR_Constants;

constexpr wchar_t kEscape = ESCAPECHAR;
constexpr wchar_t kStyle = 1;  // the code of the style follows
constexpr wchar_t kBold[] = {kStyle, ST_BOLD, 0};
constexpr wchar_t kItalic[] = {kStyle, ST_ITALIC, 0};
constexpr wchar_t kStrike[] = {kStyle, ST_STRIKE, 0};
constexpr wchar_t kUnderline[] = {kStyle, ST_UNDERLINE, 0};

struct Escape {
  wchar_t letter;
  std::wstring_view replacement;  // never longer than the escape and its letter, nor with an escape
};

constexpr Escape kEscapes[] = {
    {L'b', kBold},   {L'i', kItalic}, {L'k', kStrike}, {L'u', kUnderline},
    {L'l', L"\r\n"}, {L'n', L"\r\n"}, {L's', L" "},    {L't', L"\t"},
    {L'<', L"<"},    {L'>', L">"},    {L'@', L"@"},    {L'"', L"\""},
};

// Was meant to cut the text up to a closing mark, whose number can't be made out.
constexpr wchar_t kBrokenLetter = L'h';

std::wstring_view replacement_of(wchar_t letter) {
  const auto* row = std::ranges::find(kEscapes, letter, &Escape::letter);
  return row != std::end(kEscapes) ? row->replacement : std::wstring_view();
}

}  // namespace

void TranslMetaKey(Text& Buffer, const Variant& EscRemove) {
  const bool removes = !EscRemove.is_missing() && EscRemove.to_boolean();
  const auto text = Buffer.view();
  std::size_t at = text.find(kEscape);
  if (at == std::wstring_view::npos) return;
  wchar_t* target = Buffer.data() + at;
  const auto put = [&target](std::wstring_view piece) {
    target = std::copy(piece.begin(), piece.end(), target);
  };
  bool is_broken = false;
  while (at < text.size()) {
    const auto pair = text.substr(at, 2);
    is_broken = !removes && pair.back() == kBrokenLetter;
    if (is_broken) break;
    if (!removes) put(replacement_of(pair.back()));
    const std::size_t behind = at + pair.size();
    at = std::min(text.find(kEscape, behind), text.size());
    put(text.substr(behind, at - behind));
  }
  put(text.substr(at));
  Buffer.cut(static_cast<std::size_t>(target - Buffer.data()));
  if (is_broken) raise(kTypeMismatch);
}

void TranslKeySort(Text& Key, Integer SortFlag, const Text& Table, Variant& Distinct) {
  Text key = Key;
  Text distinct;
  DistinctSplit(key, distinct);
  Key_Sort(key, SortFlag, Table);
  if (!Distinct.is_missing()) Distinct.assign(std::move(distinct));
  if ((SortFlag & SRT_NOBLANKS) != 0) Replace_Str(key, L"  ", L" ");
  Key = std::move(key);
}

void TranslKeyDisplay(Text& Key) {
  Text distinct;
  DistinctSplit(Key, distinct);
  Mask_Display(Key);
}

Boolean TranslDelimKey(Text& KeyValue, const Object<_kwCollection>& SortTables) {
  return frame::handled(L"KwRtLibMod.TranslDelimKey", frame::kTakeError, True, [&] {
    Long count = 0;
    check_foreign(SortTables, SortTables->Count(reinterpret_cast<LONG*>(&count)));
    Long index = 0;
    Text output;
    while (!KeyValue.empty()) {
      if (index < count) ++index;
      const std::size_t tab = std::min(KeyValue.view().find(L'\t'), KeyValue.size());
      Text field(KeyValue.view().substr(0, tab));
      KeyValue.erase_front(std::min(tab + 1, KeyValue.size()));
      TranslMetaKey(field, True);

      Variant position(index);
      Variant item;
      check_foreign(SortTables, SortTables->get_Item(position.raw(), item.raw()));
      const auto sort_table = item.to_object();
      const Integer flags = late_bound::get(sort_table, L"SortFlags").to_integer();
      const Text table = late_bound::get(sort_table, L"Table").to_text();
      Variant no_distinct = Variant::missing();
      TranslKeySort(field, flags, table, no_distinct);
      output += field;
    }
    output.cut(output.view().find_last_not_of(L' ') + 1);
    KeyValue = std::move(output);
    return False;
  });
}

}  // namespace qv::text
