#include "text/codecs.h"

#include <array>
#include <bit>
#include <cstring>

#include "automation/bytes.h"

namespace qv::text {
namespace {

static_assert(std::endian::native == std::endian::little);

template <class Value>
Text image(const Value& value) {
  const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value);
  return text_of_bytes(bytes);
}

template <class Value>
Value value_of(Text& text) {
  round_trip(text);
  if (text.size() < sizeof(Value)) return Value{};
  std::array<std::uint8_t, sizeof(Value)> bytes;
  get_bytes(text.view().substr(0, sizeof(Value)), bytes.data());
  return std::bit_cast<Value>(bytes);
}

}  // namespace

Text Int_2_Str(Integer SInt) { return image(SInt); }
Text Long_2_Str(Long SLong) { return image(SLong); }
Text Single_2_Str(Single SSingle) { return image(SSingle); }
Text Double_2_Str(Double SDbl) { return image(SDbl); }
Text Date_2_Str(Date SDate) { return image(SDate); }
Text Currency_2_Str(Currency SCur) { return image(SCur); }

Integer Str_2_Int(Text& sString) { return value_of<Integer>(sString); }
Long Str_2_Long(Text& sString) { return value_of<Long>(sString); }
Single Str_2_Single(Text& sString) { return value_of<Single>(sString); }
Double Str_2_Double(Text& sstr) { return value_of<Double>(sstr); }
Date Str_2_Date(Text& sstr) { return value_of<Date>(sstr); }
Currency Str_2_Currency(Text& sstr) { return value_of<Currency>(sstr); }

Text Str_2_ZStr(const Text& a) {
  if (a.view().find(L'\0') != std::wstring_view::npos) return a;
  return concat({a, std::wstring_view(L"\0", 1)});
}

void Str_2_Byte(Text& sstr, Array<Byte>& DByte) {
  round_trip(sstr);
  // An array can't be empty: for an empty text it holds one 0.
  DByte.redimension(0, sstr.empty() ? 1 : sstr.size());
  if (!sstr.empty()) get_bytes(sstr, DByte.lock().begin());
}

Text Byte_2_Str(const Array<Byte>& DByte) { return text_of_bytes(DByte.lock().span()); }

// Division, not a shift: it truncates towards zero, so -1 gives 0.
Integer Hi_Byte(Integer SInt) { return static_cast<Integer>(SInt / 256); }
Integer Lo_Byte(Integer SInt) { return static_cast<Integer>(SInt & 0xFF); }
Integer Hi_Word(Long SLong) { return static_cast<Integer>(SLong >> 16); }
Integer Lo_Word(Long SLong) { return static_cast<Integer>(SLong & 0xFFFF); }

Integer Make_Int(Integer bLow, Integer bHigh) {
  return static_cast<Integer>((bLow & 0xFF) | (bHigh & 0xFF) << 8);
}

Long Make_Long(Integer uLow, Integer uHigh) {
  return static_cast<Long>(static_cast<std::uint16_t>(uLow) |
                           static_cast<std::uint32_t>(static_cast<std::uint16_t>(uHigh)) << 16);
}

}  // namespace qv::text
