#include "runtime/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "native/rtlib/c_number.h"

namespace qv {
namespace {

// The significant digits of a finite number, without zeros at the end, and the power of ten of the
// first one.
struct Digits {
  std::string digits;
  int exponent;
};

Digits digits_of(double magnitude, int count) {
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                    std::chars_format::scientific, count - 1);
  std::string_view written(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
  const std::size_t mark = written.find('e');
  Digits split{std::string(written.substr(0, mark)), 0};
  std::erase(split.digits, '.');
  split.digits.resize(std::max<std::size_t>(split.digits.find_last_not_of('0') + 1, 1));
  const bool is_small = written[mark + 1] == '-';
  int power = 0;
  std::from_chars(written.data() + mark + 2, written.data() + written.size(), power);
  split.exponent = is_small ? -power : power;
  return split;
}

std::string fixed_text(const Digits& number) {
  const auto length = static_cast<int>(number.digits.size());
  if (number.exponent < 0) {
    return "." + std::string(static_cast<std::size_t>(-number.exponent - 1), '0') + number.digits;
  }
  if (length <= number.exponent + 1) {
    return number.digits + std::string(static_cast<std::size_t>(number.exponent + 1 - length), '0');
  }
  std::string text = number.digits;
  return text.insert(static_cast<std::size_t>(number.exponent) + 1, 1, '.');
}

std::string exponent_text(const Digits& number) {
  std::string text = number.digits;
  if (text.size() > 1) text.insert(1, 1, '.');
  std::string power = std::to_string(std::abs(number.exponent));
  if (power.size() < 2) power.insert(0, 1, '0');
  return text + (number.exponent < 0 ? "E-" : "E+") + power;
}

// In full where that takes no more places, before or behind the point, than the type has digits.
std::string text_of(double number, int count) {
  if (!std::isfinite(number)) raise(kOverflow);
  if (number == 0) return "0";
  const Digits digits = digits_of(std::abs(number), count);
  const int places = static_cast<int>(digits.digits.size()) - 1 - digits.exponent;
  const bool is_fixed = digits.exponent < count && places <= count;
  return (number < 0 ? "-" : "") + (is_fixed ? fixed_text(digits) : exponent_text(digits));
}

std::string text_of(Currency amount) {
  constexpr std::uint64_t kScale = 10000;
  const bool is_negative = amount.ten_thousandths < 0;
  const auto pattern = static_cast<std::uint64_t>(amount.ten_thousandths);
  const std::uint64_t magnitude = is_negative ? 0 - pattern : pattern;
  std::string text = magnitude < kScale ? "" : std::to_string(magnitude / kScale);
  if (magnitude % kScale != 0) {
    std::string places = std::to_string(kScale + magnitude % kScale).substr(1);
    text += "." + places.substr(0, places.find_last_not_of('0') + 1);
  }
  if (text.empty()) return "0";
  return (is_negative ? "-" : "") + text;
}

Text wide(std::string_view ascii) { return Text(std::wstring(ascii.begin(), ascii.end())); }

// Decimal has its own digits, which a Double would lose.
Text decimal_text(const Variant& number) {
  const auto value = Variant::adopt([&] {
    VARIANT text;
    VariantInit(&text);
    check(VariantChangeTypeEx(&text, number.raw(), LOCALE_INVARIANT, 0, VT_BSTR));
    return text;
  }());
  std::wstring text(value.text_view());
  const std::size_t sign = text.starts_with(L'-') ? 1 : 0;
  if (text.compare(sign, 2, L"0.") == 0) text.erase(sign, 1);
  return Text(text);
}

Double radix_value(std::string_view digits, int base) {
  std::uint32_t pattern = 0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, pattern, base);
  if (result.ec == std::errc::result_out_of_range) raise(kOverflow);
  const bool is_marked_long = result.ptr != end && *result.ptr == '&';
  if (pattern <= 0xFFFF && !is_marked_long) return static_cast<std::int16_t>(pattern);
  return static_cast<std::int32_t>(pattern);
}

}  // namespace

Text number_text(const Variant& number) {
  switch (number.type()) {
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_BOOL:
      return decimal(number.to_long());
    case VT_R4:
      return wide(text_of(number.to_single(), 7));
    case VT_CY:
      return wide(text_of(number.to_currency()));
    case VT_DECIMAL:
      return decimal_text(number);
    default:
      return wide(text_of(number.to_double(), 15));
  }
}

Text Hex(const Variant& number) {
  const bool is_short = number.type() == VT_I2 || number.type() == VT_BOOL;
  const auto pattern = is_short ? std::uint32_t{static_cast<std::uint16_t>(number.to_integer())}
                                : static_cast<std::uint32_t>(number.to_long());
  std::array<char, 8> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), pattern, 16);
  std::wstring text(digits.data(), result.ptr);
  for (wchar_t& digit : text) {
    if (digit >= L'a') digit = static_cast<wchar_t>(digit - L'a' + L'A');
  }
  return Text(text);
}

Double Val(std::wstring_view text) {
  constexpr std::wstring_view kPassedOver = L" \t\n";
  std::string characters;
  for (const wchar_t character : text) {
    if (kPassedOver.find(character) != std::wstring_view::npos) continue;
    // What is not ASCII ends a number, and so does this.
    characters += character > L' ' && character < 0x80 ? static_cast<char>(character) : '?';
  }
  if (characters.size() >= 2 && characters[0] == '&') {
    const std::string_view digits = std::string_view(characters).substr(2);
    switch (characters[1]) {
      case 'H':
      case 'h':
        return radix_value(digits, 16);
      case 'O':
      case 'o':
        return radix_value(digits, 8);
      default:
        return 0;
    }
  }
  const double value = native::rtlib::parse_double(characters).value;
  if (!std::isfinite(value)) raise(kOverflow);
  return value;
}

}  // namespace qv
