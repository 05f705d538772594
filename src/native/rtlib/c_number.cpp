#include "native/rtlib/c_number.h"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include "native/rtlib/char_class.h"

namespace qv::native::rtlib {
namespace {

bool is_digit_at(std::string_view text, std::size_t at) {
  return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

bool is_one_of_at(std::string_view text, std::size_t at, std::string_view choices) {
  return at < text.size() && choices.find(text[at]) != std::string_view::npos;
}

struct Head {
  std::size_t end;  // behind white space and sign
  bool negative;
};

Head read_head(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && is_class(static_cast<unsigned char>(text[at]), CharClass::kSpace)) {
    ++at;
  }
  const bool negative = is_one_of_at(text, at, "-");
  return {at + (is_one_of_at(text, at, "+-") ? 1 : 0), negative};
}

// The digits from `at` as a magnitude that stops growing past 2^32; `used` is the place behind
// them.
ParsedNumber<std::uint64_t> read_digits(std::string_view text, std::size_t at) {
  constexpr std::uint64_t kEnough = std::uint64_t{1} << 32;
  std::uint64_t value = 0;
  for (; is_digit_at(text, at); ++at) {
    if (value <= kEnough) value = value * 10 + static_cast<std::uint64_t>(text[at] - '0');
  }
  return {value, at};
}

struct Exponent {
  std::int64_t value;
  std::size_t end;
};

// At the letter of an exponent; without digits behind it there is none, and the number ends here.
Exponent read_exponent(std::string_view text, std::size_t at) {
  if (!is_one_of_at(text, at, "eEdD")) return {0, at};
  const std::size_t digits_at = at + (is_one_of_at(text, at + 1, "+-") ? 2 : 1);
  if (!is_digit_at(text, digits_at)) return {0, at};
  const auto [value, end] = read_digits(text, digits_at);
  const auto magnitude = static_cast<std::int64_t>(value);
  return {text[at + 1] == '-' ? -magnitude : magnitude, end};
}

}  // namespace

ParsedNumber<double> parse_double(std::string_view text) {
  const Head head = read_head(text);
  std::size_t point_at = head.end;
  while (is_digit_at(text, point_at)) ++point_at;
  std::size_t digits_end = point_at;
  if (is_one_of_at(text, point_at, ".")) {
    ++digits_end;
    while (is_digit_at(text, digits_end)) ++digits_end;
  }
  const std::size_t first_digit = text.substr(0, digits_end).find_first_of("0123456789", head.end);
  if (first_digit == std::string_view::npos) return {0, 0};
  const Exponent exponent = read_exponent(text, digits_end);

  std::string rewritten;
  std::string_view number = text.substr(head.end, exponent.end - head.end);
  const bool has_exponent = exponent.end > digits_end;
  if (has_exponent && is_one_of_at(text, digits_end, "dD")) {
    rewritten = number;
    rewritten[digits_end - head.end] = 'e';
    number = rewritten;
  }
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    const std::size_t leading = text.substr(0, digits_end).find_first_of("123456789", head.end);
    const auto places =
        static_cast<std::int64_t>(point_at) - static_cast<std::int64_t>(leading) + exponent.value;
    value = places > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return {head.negative ? -value : value, exponent.end};
}

ParsedNumber<std::int32_t> parse_int32(std::string_view text) {
  const Head head = read_head(text);
  if (!is_digit_at(text, head.end)) return {0, 0};
  const auto [magnitude, used] = read_digits(text, head.end);
  constexpr std::uint64_t kLimit = std::numeric_limits<std::int32_t>::max();
  if (head.negative) {
    if (magnitude > kLimit) return {std::numeric_limits<std::int32_t>::min(), used};
    return {-static_cast<std::int32_t>(magnitude), used};
  }
  return {static_cast<std::int32_t>(magnitude > kLimit ? kLimit : magnitude), used};
}

ParsedNumber<std::uint32_t> parse_uint32(std::string_view text) {
  const Head head = read_head(text);
  if (!is_digit_at(text, head.end)) return {0, 0};
  const auto [magnitude, used] = read_digits(text, head.end);
  constexpr std::uint32_t kLimit = std::numeric_limits<std::uint32_t>::max();
  if (magnitude > kLimit) return {kLimit, used};
  const auto value = static_cast<std::uint32_t>(magnitude);
  return {head.negative ? 0 - value : value, used};
}

}  // namespace qv::native::rtlib
