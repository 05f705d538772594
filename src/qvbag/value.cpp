#include "qvbag/value.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "console/json.h"
#include "console/text.h"

namespace qv::qvbag {
namespace {

namespace bags = native::bags;
using bags::read_number;
using bags::Tag;

constexpr std::size_t kMostShownCharacters = 60;
constexpr std::size_t kMostShownElements = 12;

// How what is no plain number is written.
struct Style {
  const char* truth;
  const char* falsehood;
  const char* quote;  // around dates and around what is no number
  char before_time;
};
constexpr Style kShown{"True", "False", "", ' '};
constexpr Style kJson{"true", "false", "\"", 'T'};

const char* tag_name(std::uint8_t tag) {
  switch (static_cast<Tag>(tag)) {
    case Tag::kInteger:
      return "Integer";
    case Tag::kLong:
      return "Long";
    case Tag::kSingle:
      return "Single";
    case Tag::kDouble:
      return "Double";
    case Tag::kCurrency:
      return "Currency";
    case Tag::kDate:
      return "Date";
    case Tag::kBoolean:
      return "Boolean";
    case Tag::kByte:
      return "Byte";
    case Tag::kShortString:
    case Tag::kString:
      return "String";
    case Tag::kArray:
      break;
  }
  return "";
}

bool is_array(const ValuePlace& value) {
  return value.tag == static_cast<std::uint8_t>(Tag::kArray);
}
bool is_text(const ValuePlace& value) {
  return bags::fixed_width(value.tag) == 0 && !is_array(value);
}

std::string quoted(const std::string& text, const Style& style) {
  return style.quote + text + style.quote;
}

// As few digits as tell the number from all others.
template <class Number>
std::string floating_text(Number number, const Style& style) {
  if (std::isnan(number)) return quoted("NaN", style);
  if (std::isinf(number)) return quoted(number < 0 ? "-Infinity" : "Infinity", style);
  std::array<char, 40> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return std::string(buffer.data(), end);
}

std::string currency_text(std::int64_t ten_thousandths) {
  constexpr std::uint64_t kScale = 10000;
  const bool is_negative = ten_thousandths < 0;
  const auto pattern = static_cast<std::uint64_t>(ten_thousandths);
  const std::uint64_t magnitude = is_negative ? 0 - pattern : pattern;
  std::string text = (is_negative ? "-" : "") + std::to_string(magnitude / kScale);
  if (magnitude % kScale != 0) {
    std::string places = std::to_string(kScale + magnitude % kScale);
    places.erase(places.find_last_not_of('0') + 1);
    text += "." + places.substr(1);
  }
  return text;
}

// Days since 30 December 1899; the fraction is the time of day whatever the sign of the days.
std::optional<std::chrono::sys_seconds> moment_of(double date) {
  constexpr double kFirst = -657434;  // 1 January 100
  constexpr double kEnd = 2958466;    // 1 January 10000
  constexpr int kDaysTo1970 = 25569;
  const double day = std::trunc(date);
  if (!(day >= kFirst && day < kEnd)) return std::nullopt;
  const std::chrono::seconds time(std::llround(std::fabs(date - day) * 86400));
  const std::chrono::sys_seconds moment =
      std::chrono::sys_days(std::chrono::days(static_cast<int>(day) - kDaysTo1970)) + time;
  const std::chrono::sys_days end{std::chrono::days(static_cast<int>(kEnd) - kDaysTo1970)};
  if (moment >= end) return std::nullopt;
  return moment;
}

std::string date_text(double date, const Style& style) {
  const auto moment = moment_of(date);
  if (!moment) return floating_text(date, style);
  const auto day = std::chrono::floor<std::chrono::days>(*moment);
  const std::chrono::year_month_day fields(day);
  const std::chrono::hh_mm_ss time(*moment - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u%c%02d:%02d:%02d", int{fields.year()},
                unsigned{fields.month()}, unsigned{fields.day()}, style.before_time,
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return quoted(text.data(), style);
}

// A value of fixed width.
std::string element_text(const SpanSource& values, std::uint8_t tag, std::size_t at,
                         const Style& style) {
  switch (static_cast<Tag>(tag)) {
    case Tag::kByte:
      return std::to_string(read_number<std::uint8_t>(values, at));
    case Tag::kInteger:
      return std::to_string(read_number<std::int16_t>(values, at));
    case Tag::kBoolean:
      return read_number<std::int16_t>(values, at) != 0 ? style.truth : style.falsehood;
    case Tag::kLong:
      return std::to_string(read_number<std::int32_t>(values, at));
    case Tag::kSingle:
      return floating_text(std::bit_cast<float>(read_number<std::uint32_t>(values, at)), style);
    case Tag::kCurrency:
      return currency_text(read_number<std::int64_t>(values, at));
    case Tag::kDate:
      return date_text(std::bit_cast<double>(read_number<std::uint64_t>(values, at)), style);
    default:
      return floating_text(std::bit_cast<double>(read_number<std::uint64_t>(values, at)), style);
  }
}

std::string bytes_of(const SpanSource& values, std::size_t at, std::size_t count) {
  std::vector<std::uint8_t> bytes(count);
  values.copy(at, bytes);
  return std::string(bytes.begin(), bytes.end());
}

// In the language's quotes.
std::string shown_text(const SpanSource& values, const ValuePlace& value) {
  const bool is_cut = value.data_bytes > kMostShownCharacters;
  const std::size_t count = std::min(value.data_bytes, kMostShownCharacters);
  std::string text = "\"";
  for (const char character : console::shown(bytes_of(values, value.data, count))) {
    if (character == '"') text += '"';
    text += character;
  }
  text += '"';
  if (is_cut) text += " ... (" + std::to_string(value.data_bytes) + " characters)";
  return text;
}

std::size_t element_count(const ValuePlace& array) {
  // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): without an error, its elements have a width
  return array.data_bytes / bags::fixed_width(array.element);
}

std::string elements_text(const SpanSource& values, const ValuePlace& array, std::size_t most,
                          const Style& style) {
  const std::size_t width = bags::fixed_width(array.element);
  const std::size_t count = std::min(element_count(array), most);
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += ", ";
    text += element_text(values, array.element, array.data + i * width, style);
  }
  return text;
}

std::string shown_array(const SpanSource& values, const ValuePlace& array) {
  const std::size_t count = element_count(array);
  std::string text = elements_text(values, array, kMostShownElements, kShown);
  if (count > kMostShownElements) text += " ... (" + std::to_string(count) + " elements)";
  return text;
}

// The bounds of each dimension, up to a number of dimensions.
std::string bounds_text(const SpanSource& values, const ValuePlace& array, const char* before,
                        const char* between, const char* behind) {
  std::string text;
  for (std::size_t i = 0; i < array.dimensions; ++i) {
    const std::size_t at = array.bounds + 8 * i;
    if (i > 0) text += ", ";
    text += before + std::to_string(read_number<std::int32_t>(values, at)) + between +
            std::to_string(read_number<std::int32_t>(values, at + 4)) + behind;
  }
  return text;
}

}  // namespace

std::string type_text(const SpanSource& values, const ValuePlace& value) {
  if (!is_array(value)) return tag_name(value.tag);
  return tag_name(value.element) + ("(" + bounds_text(values, value, "", " To ", "")) + ")";
}

std::string shown_value(const SpanSource& values, const ValuePlace& value) {
  if (is_array(value)) return shown_array(values, value);
  if (is_text(value)) return shown_text(values, value);
  return element_text(values, value.tag, value.data, kShown);
}

std::string json_members(const SpanSource& values, const ValuePlace& value) {
  if (is_array(value)) {
    return R"("type": )" + quoted(std::string(tag_name(value.element)) + "()", kJson) +
           R"(, "bounds": [)" + bounds_text(values, value, "[", ", ", "]") + R"(], "value": [)" +
           elements_text(values, value, value.data_bytes, kJson) + "]";
  }
  const std::string text = is_text(value) ? console::json_text(console::characters_of(
                                                bytes_of(values, value.data, value.data_bytes)))
                                          : element_text(values, value.tag, value.data, kJson);
  return R"("type": )" + quoted(tag_name(value.tag), kJson) + R"(, "value": )" + text;
}

}  // namespace qv::qvbag
