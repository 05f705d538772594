#include <algorithm>
#include <cmath>

#include "runtime/numbers.h"
#include "text/text_tools.h"

namespace qv::text {
namespace {

enum class Side { kLeft, kRight };

// The first characters of a text, on one side of a field that is filled up on the other.
Text field(std::wstring_view text, Integer length, std::wstring_view fill, Side side) {
  if (length < 0) raise(kInvalidProcedureCall);
  const auto size = static_cast<std::size_t>(length);
  text = text.substr(0, size);
  if (text.size() < size && fill.empty()) raise(kInvalidProcedureCall);
  Text padded = Text::filled(size, fill.empty() ? L' ' : fill.front());
  std::ranges::copy(text, padded.data() + (side == Side::kLeft ? 0 : size - text.size()));
  return padded;
}

}  // namespace

Text Pad_Left(const Text& a, Integer l) { return field(a, l, L" ", Side::kLeft); }

Text Pad_Right(const Text& a, Integer l) { return field(a, l, L" ", Side::kRight); }

Text Pad_HexLeft(const Variant& n, Integer l) {
  const Text digits = Hex(n);
  auto last = digits.view();
  if (l >= 0 && last.size() > static_cast<std::size_t>(l)) {
    last.remove_prefix(last.size() - static_cast<std::size_t>(l));
  }
  return field(last, l, L"0", Side::kRight);
}

Text Pad_NumLeft(const Variant& n, Integer l, const Text& pc) {
  return field(number_text(n), l, pc, Side::kRight);
}

Text Pad_NumRight(const Variant& n, Integer l, const Text& pc) {
  return field(number_text(n), l, pc, Side::kLeft);
}

Text Round_Num(const Variant& n, Integer Size) {
  // A decimal digit that a Double holds a little below itself (2.3 - 2 is less than 0.3) counts as
  // that digit; with an integer part of five digits the error is below this.
  constexpr Double kError = 1e-10;
  constexpr Double kMaxInteger = 32767;

  const Double number = n.to_double();
  const Double whole = std::abs(std::trunc(number));
  if (!(whole <= kMaxInteger)) raise(kOverflow);
  const Double fraction = std::abs(number - whole);
  const auto tenths = static_cast<Long>(std::floor(fraction * 10 + kError));
  Long shown = 0;
  if (Size == 1 && tenths >= 5) shown = tenths;
  if (Size == 2) shown = tenths * 10;
  return concat({number < 0 ? L"-" : L"", decimal(static_cast<Long>(whole)), L".",
                 Pad_NumRight(shown, Size, L"0")});
}

}  // namespace qv::text
