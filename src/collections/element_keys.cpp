#include "collections/element_keys.h"

#include <bit>
#include <cmath>

namespace qv::collections {
namespace {

using native::sorting::radix_key;

std::u16string_view characters_of(BSTR text) noexcept {
  if (text == nullptr) return {};
  return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

// A text that another one with the same characters need not be like: a BSTR that is null is ""
// too, and one of an odd number of bytes hides the last of them.
bool is_special(BSTR text) noexcept { return text == nullptr || SysStringByteLen(text) % 2 != 0; }

constexpr unsigned bit_of(VARTYPE type) { return 1U << type; }
constexpr unsigned kWhole = bit_of(VT_I2) | bit_of(VT_I4) | bit_of(VT_BOOL) | bit_of(VT_UI1);
constexpr unsigned kFloating = bit_of(VT_R4) | bit_of(VT_R8) | bit_of(VT_DATE);
constexpr unsigned kNumbers = kWhole | kFloating | bit_of(VT_CY);
constexpr unsigned kComparable = kNumbers | bit_of(VT_BSTR) | bit_of(VT_EMPTY);

Long whole_number(const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_I2:
    case VT_BOOL:
      return value.iVal;
    case VT_I4:
      return value.lVal;
    case VT_UI1:
      return value.bVal;
    default:
      return 0;  // Empty
  }
}

double floating_number(const VARIANT& value) noexcept {
  switch (value.vt) {
    case VT_R4:
      return value.fltVal;
    case VT_R8:
    case VT_DATE:
      return value.dblVal;
    default:
      return whole_number(value);
  }
}

std::int64_t ten_thousandths(const VARIANT& value) noexcept {
  return value.vt == VT_CY ? value.cyVal.int64 : std::int64_t{whole_number(value)} * 10000;
}

// The types among the elements, each by its bit; nullopt where one is not comparable by itself.
std::optional<unsigned> types_among(std::span<const VARIANT> elements) {
  unsigned types = 0;
  for (const VARIANT& element : elements) {
    if (element.vt > VT_UI1) return std::nullopt;
    types |= bit_of(element.vt);
  }
  if ((types & ~kComparable) != 0) return std::nullopt;
  return types;
}

// A number beside a Currency becomes one, and a Double beside a Single is rounded to it: with
// fractions about, a can be equal to b and b to c, and yet a is not equal to c.
bool are_consistent(unsigned types) {
  const bool has_currency = (types & bit_of(VT_CY)) != 0;
  const bool has_both = (types & bit_of(VT_R4)) != 0 && (types & bit_of(VT_R8)) != 0;
  return !(has_currency && (types & kFloating) != 0) && !has_both;
}

// Collects keys and notes what makes equal elements differ.
class KeyCollector {
 public:
  explicit KeyCollector(std::size_t count) : count_(count) {}

  void add_number(std::uint64_t key, std::size_t index) {
    if (keys_.numbers.empty()) keys_.numbers.reserve(count_);
    keys_.numbers.push_back({key, static_cast<std::uint32_t>(index)});
  }
  // False for a NaN, which is neither less nor greater.
  bool add_floating(double number, std::size_t index) {
    if (std::isnan(number)) return false;
    if (number == 0) (std::signbit(number) ? has_minus_0_ : has_0_) = true;
    add_number(radix_key(number + 0.0), index);  // the sum turns -0 to 0
    return true;
  }
  void add_text(BSTR text, std::size_t index) {
    keys_.may_differ |= is_special(text);
    add_characters(characters_of(text), index);
  }
  void add_characters(std::u16string_view text, std::size_t index) {
    if (keys_.texts.empty()) {
      keys_.texts.reserve(count_);
      keys_.text_indexes.reserve(count_);
    }
    keys_.texts.push_back(text);
    keys_.text_indexes.push_back(static_cast<std::uint32_t>(index));
  }
  ElementKeys finish(bool may_differ) {
    keys_.may_differ |= may_differ || (has_0_ && has_minus_0_);
    return std::move(keys_);
  }

 private:
  std::size_t count_;
  ElementKeys keys_;
  bool has_0_ = false;
  bool has_minus_0_ = false;
};

template <class Number>
std::optional<ElementKeys> keys_of_floating(std::span<const Number> elements) {
  KeyCollector collector(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (!collector.add_floating(elements[i], i)) return std::nullopt;
  }
  return collector.finish(false);
}

}  // namespace

std::optional<ElementKeys> keys_of(std::span<const VARIANT> elements) {
  const auto types = types_among(elements);
  if (!types || !are_consistent(*types)) return std::nullopt;
  const bool has_numbers = (*types & kNumbers) != 0;
  const bool has_texts = (*types & bit_of(VT_BSTR)) != 0;
  const bool is_empty_text = has_texts && !has_numbers;
  // Empty is 0 beside a number and "" beside a text: with both about, it can't be placed.
  const bool is_empty_ambiguous = has_texts && has_numbers && (*types & bit_of(VT_EMPTY)) != 0;

  KeyCollector collector(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const VARIANT& element = elements[i];
    if (element.vt == VT_BSTR) {
      if (is_empty_ambiguous && characters_of(element.bstrVal).empty()) return std::nullopt;
      collector.add_text(element.bstrVal, i);
    } else if (element.vt == VT_EMPTY && is_empty_text) {
      collector.add_characters({}, i);
    } else if ((*types & kFloating) != 0) {
      if (!collector.add_floating(floating_number(element), i)) return std::nullopt;
    } else if ((*types & bit_of(VT_CY)) != 0) {
      collector.add_number(radix_key(ten_thousandths(element)), i);
    } else {
      collector.add_number(radix_key(whole_number(element)), i);
    }
  }
  const unsigned of_numbers = *types & (kNumbers | (is_empty_text ? 0 : bit_of(VT_EMPTY)));
  const bool is_empty_beside_text = is_empty_text && (*types & bit_of(VT_EMPTY)) != 0;
  return collector.finish(std::popcount(of_numbers) > 1 || is_empty_beside_text);
}

std::optional<ElementKeys> keys_of(std::span<const BSTR> elements) {
  KeyCollector collector(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) collector.add_text(elements[i], i);
  return collector.finish(false);
}

std::optional<ElementKeys> keys_of(std::span<const double> elements) {
  return keys_of_floating(elements);
}
std::optional<ElementKeys> keys_of(std::span<const float> elements) {
  return keys_of_floating(elements);
}

bool are_alike(BSTR a, BSTR b) noexcept {
  return (a == nullptr) == (b == nullptr) && SysStringByteLen(a) == SysStringByteLen(b);
}
bool are_alike(double a, double b) noexcept { return std::signbit(a) == std::signbit(b); }
bool are_alike(float a, float b) noexcept { return std::signbit(a) == std::signbit(b); }

bool are_alike(const VARIANT& a, const VARIANT& b) noexcept {
  if (a.vt != b.vt) return false;
  switch (a.vt) {
    case VT_BSTR:
      return are_alike(a.bstrVal, b.bstrVal);
    case VT_R4:
      return are_alike(a.fltVal, b.fltVal);
    case VT_R8:
    case VT_DATE:
      return are_alike(a.dblVal, b.dblVal);
    default:
      return true;
  }
}

}  // namespace qv::collections
