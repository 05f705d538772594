#include "text/numerals.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "native/rtlib/hex.h"
#include "native/rtlib/roman.h"
#include "runtime/characters.h"

namespace qv::text {
namespace {

using Bytes = std::vector<std::uint8_t>;

char16_t* code_units_of(wchar_t* characters) noexcept {
  return reinterpret_cast<char16_t*>(characters);
}

Text hex_text(std::span<const std::uint8_t> bytes) {
  Text digits = Text::uninitialized(2 * bytes.size());
  native::rtlib::hex_encode(bytes, code_units_of(digits.data()));
  return digits;
}

Bytes bytes_of_hex(const Text& digits) {
  Bytes bytes(native::rtlib::hex_decoded_size(digits.size()));
  if (!native::rtlib::hex_decode(code_units(digits), bytes.data())) raise(kTypeMismatch);
  return bytes;
}

// A Byte array, or the array of Variant that a script has in its place.
Bytes bytes_of_array(const Variant& array) {
  if (!array.is_array()) raise(kTypeMismatch);
  SAFEARRAY* const elements = array.array();
  if (elements == nullptr || SafeArrayGetDim(elements) != 1) raise(kSubscriptOutOfRange);
  if (array.type() == (VT_ARRAY | VT_UI1)) {
    const LockedElements<Byte> locked(elements);
    return Bytes(locked.begin(), locked.end());
  }
  if (array.type() != (VT_ARRAY | VT_VARIANT)) raise(kTypeMismatch);
  const LockedElements<Variant> locked(elements);
  Bytes bytes;
  bytes.reserve(locked.size());
  for (const Variant& element : locked.span()) bytes.push_back(element.to_byte());
  return bytes;
}

}  // namespace

Text Num_2_Roman(const Variant& v) {
  return Text(wide_characters(native::rtlib::roman_from_number(v.to_long())));
}

Long Roman_2_Num(const Text& Roman) {
  const auto number = native::rtlib::number_from_roman(code_units(Roman));
  if (!number) raise(kOverflow);
  return *number;
}

Text BinToHex(const Text& Buffer) { return hex_text(bytes_of_text(Buffer)); }

Text HexToBin(const Text& Buffer) { return text_of_bytes(bytes_of_hex(Buffer)); }

Boolean ByteToHex(const Variant& ByteArr, Text& RetStr) {
  return frame::handled(L"QvRtLibOle.KwRtLibMod.ByteToHex", frame::kChain, True, [&] {
    RetStr = hex_text(bytes_of_array(ByteArr));
    return False;
  });
}

Boolean HexToByte(const Text& HexStr, Variant& RetByte) {
  return frame::handled(L"QvRtLibOle.KwRtLibMod.HexToByte", frame::kChain, True, [&] {
    const Bytes bytes = bytes_of_hex(HexStr);
    Array<Byte> array(0, bytes.size());
    std::ranges::copy(bytes, array.lock().begin());
    RetByte.assign(std::move(array));
    return False;
  });
}

Boolean Hex_Dump(const Text& Data, Text& RetBuffer, Long Width, const Text& LineTerm,
                 Boolean Retain) {
  return frame::handled(L"KwRtLibMod.Hex_Dump", frame::kTakeError, True, [&] {
    if (!Retain) RetBuffer = Text();
    // Data and LineTerm may be the variable that is filled: what they hold now is what counts.
    const Bytes bytes = bytes_of_text(Data);
    const Text line_end(LineTerm.view());
    const auto layout = native::rtlib::hex_dump_layout(bytes.size(), Width, line_end.size());
    const std::size_t start = RetBuffer.size();
    const std::uint64_t length = start + layout.characters;
    if (length > std::numeric_limits<Long>::max()) raise(kOutOfStringSpace);
    RetBuffer.grow(static_cast<std::size_t>(length));
    native::rtlib::hex_dump(bytes, Width, code_units(line_end),
                            code_units_of(RetBuffer.data()) + start);
    return False;
  });
}

}  // namespace qv::text
