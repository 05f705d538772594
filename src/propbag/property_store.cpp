#include "propbag/property_store.h"

#include <array>
#include <bit>
#include <limits>
#include <string>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "native/bags/directory.h"
#include "runtime/characters.h"
#include "runtime/comparison.h"
#include "text/codecs.h"
#include "text/typed_buffers.h"

namespace qv::propbag {
namespace {

using native::bags::kEntryOverhead;
using native::bags::kEntryStart;
using native::bags::kNameEnd;
using native::bags::kPositionBytes;

Long position_in(std::wstring_view characters) {
  Text bytes(characters.substr(0, kPositionBytes));
  return text::Str_2_Long(bytes);
}

constexpr wchar_t kEntryStartCharacter = kEntryStart<wchar_t>;
constexpr wchar_t kNameEndCharacter = kNameEnd<wchar_t>;
constexpr std::wstring_view kEntryStartText(&kEntryStartCharacter, 1);
constexpr std::wstring_view kNameEndText(&kNameEndCharacter, 1);

}  // namespace

PropertyStore::Place PropertyStore::find(const Text& name) const {
  return frame::handled(L"QvPropertyBag.DirectoryFind", frame::kTakeError, Place{.value = -1}, [&] {
    const Text upper = upper_case(name);
    const auto directory = directory_.view();
    const std::size_t entry = native::bags::find_entry(directory, upper.view());
    if (entry == std::wstring_view::npos) return Place{};
    const std::size_t at = native::bags::value_position_of(entry, upper.size());
    return Place{.entry = entry, .value = position_in(directory.substr(at))};
  });
}

Text PropertyStore::names() const {
  std::wstring names;
  for (native::bags::Names found(directory_.view()); found.next();) {
    names.append(found.name()).append(1, L'\0');
  }
  return Text(names);
}

Variant PropertyStore::read(Long& position) const {
  return text::BufferTyped_Get(values_, position);
}

Boolean PropertyStore::add_name(const Text& name) {
  return frame::handled(L"QvPropertyBag.DirectoryAdd", frame::kTakeError, True, [&] {
    const Long found = find(name).value;
    if (found > 0) {
      raise({.number = frame::kFirstApplicationError,
             .description = concat({L"La propriet\xE0 ", name, L" \xE8 gi\xE0 stata inserita."})});
    }
    if (found < 0) return True;
    const Text upper = upper_case(name);
    directory_ += concat({kEntryStartText, upper, kNameEndText,
                          text::Long_2_Str(values_.length() + 1), kEntryStartText});
    return False;
  });
}

Boolean PropertyStore::write(const Variant& value, const Text& name, Variant& default_value) {
  return frame::handled(L"QvPropertyBag.WriteProperty", frame::kTakeError, True, [&] {
    if (default_value.is_missing()) default_value.assign(default_of(value));
    if (compare(value, default_value) == 0) return False;
    if (add_name(name)) return True;
    return Boolean(text::BufferTyped_Put(values_, value) != 0);
  });
}

void PropertyStore::remove(const Text& name, const Place& place) {
  const auto directory = directory_.view();
  const std::size_t entry_end = place.entry + upper_case(name).size() + kEntryOverhead;
  directory_ = concat(
      {directory.substr(0, place.entry), directory.substr(std::min(entry_end, directory.size()))});
  Long end = place.value;
  read(end);
  const auto values = values_.view();
  values_ = concat({values.substr(0, static_cast<std::size_t>(place.value - 1)),
                    values.substr(static_cast<std::size_t>(end - 1))});
  shift_positions(static_cast<std::size_t>(place.value), end - place.value);
}

void PropertyStore::shift_positions(std::size_t start, Long distance) {
  for (std::size_t at = start;; at += kPositionBytes + 1) {
    at = directory_.view().find(kNameEnd<wchar_t>, at);
    if (at == std::wstring_view::npos) return;
    ++at;
    const auto rest = directory_.view().substr(at);
    const std::int64_t shifted = std::int64_t{position_in(rest)} - distance;
    if (shifted < std::numeric_limits<Long>::min()) raise(kOverflow);
    if (rest.empty()) raise(kInvalidProcedureCall);
    const auto bytes =
        std::bit_cast<std::array<std::uint8_t, kPositionBytes>>(static_cast<Long>(shifted));
    put_bytes(std::span(bytes).first(std::min(rest.size(), bytes.size())), directory_.data() + at);
  }
}

Text PropertyStore::contents() const {
  return concat({text::Long_2_Str(directory_.length()), directory_, values_});
}

void PropertyStore::assign(Text directory, Text values) {
  directory_ = std::move(directory);
  values_ = std::move(values);
}

Variant PropertyStore::default_of(const Variant& value) {
  switch (value.type()) {
    case VT_I4:
      return Long{0};
    case VT_R4:
      return Single{0};
    case VT_CY:
      return Currency{0};
    case VT_DATE:
      return Date{0};
    case VT_BSTR:
      return Text();
    case VT_DISPATCH:
      return Object<IDispatch>();
    case VT_BOOL:
      return False;
    case VT_DECIMAL:
      return converted(Long{0}, VT_DECIMAL);
    case VT_UI1:
      return Byte{0};
    default:
      return Integer{0};
  }
}

}  // namespace qv::propbag
