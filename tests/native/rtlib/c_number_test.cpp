#include "native/rtlib/c_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace qv::native::rtlib {
namespace {

using namespace std::string_view_literals;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expect_double(std::string_view text, double value, std::size_t used) {
  const auto parsed = parse_double(text);
  EXPECT_EQ(parsed.value, value) << text;
  EXPECT_EQ(parsed.used, used) << text;
}

TEST(ParseDouble, stops_at_the_first_character_that_is_no_part_of_it) {
  expect_double("3.25abc", 3.25, 4);
  expect_double("1.2.3", 1.2, 3);
  expect_double("12,5", 12, 2);
  expect_double("7", 7, 1);
  expect_double("1 2", 1, 1);
  expect_double("1\0002"sv, 1, 1);
}

TEST(ParseDouble, takes_white_space_and_a_sign_before) {
  expect_double(" \t\r\n\v\f+1.5", 1.5, 10);
  expect_double("-.5", -0.5, 3);
  expect_double("5.", 5, 2);
  expect_double("--5", 0, 0);
  expect_double("+-5", 0, 0);
  expect_double("- 5", 0, 0);
}

TEST(ParseDouble, takes_an_exponent_behind_e_and_d) {
  expect_double("1e3", 1000, 3);
  expect_double("1E+3x", 1000, 4);
  expect_double("25d-1", 2.5, 5);
  expect_double("1.5D2", 150, 5);
  expect_double("1e", 1, 1);
  expect_double("1e+", 1, 1);
  expect_double("1d-x", 1, 1);
  expect_double("1.e2", 100, 4);
  expect_double("e3", 0, 0);
}

TEST(ParseDouble, without_a_number_nothing_is_used) {
  for (const auto text : {""sv, " "sv, "abc"sv, "."sv, "-."sv, "-"sv, "inf"sv, "nan"sv}) {
    expect_double(text, 0, 0);
  }
  expect_double("0x10", 0, 1);
}

TEST(ParseDouble, out_of_range_is_an_infinity_or_0) {
  expect_double("1e309", kInfinity, 5);
  expect_double("-1e309", -kInfinity, 6);
  expect_double("1e99999999999999999999", kInfinity, 22);
  expect_double("1e-400", 0, 6);
  expect_double("1e-99999999999999999999", 0, 23);
  expect_double("1d-400", 0, 6);
  expect_double("0e999", 0, 5);
  EXPECT_EQ(parse_double("0." + std::string(400, '0') + "1").value, 0);
  EXPECT_EQ(parse_double("1" + std::string(400, '0')).value, kInfinity);
  EXPECT_EQ(parse_double("0." + std::string(400, '0') + "1e500").value, 1e99);
  EXPECT_EQ(parse_double("1" + std::string(400, '0') + "e-800").value, 0);
  EXPECT_EQ(parse_double("-" + std::string(500, '0') + "." + std::string(20, '0') + "1e400").value,
            -kInfinity);
}

TEST(ParseDouble, limits_of_the_type_are_exact) {
  expect_double("1.7976931348623157e308", std::numeric_limits<double>::max(), 22);
  expect_double("4.9406564584124654e-324", std::numeric_limits<double>::denorm_min(), 23);
  expect_double("2.2250738585072014E-308", std::numeric_limits<double>::min(), 23);
}

TEST(ParseDouble, a_negative_0_keeps_its_sign) {
  EXPECT_TRUE(std::signbit(parse_double("-0").value));
  EXPECT_TRUE(std::signbit(parse_double("-1e-999").value));
}

TEST(ParseDouble, random_texts_agree_with_the_run_time_library) {
  std::mt19937 random(6);
  for (int round = 0; round < 50000; ++round) {
    std::string text(random() % 24, ' ');
    for (char& c : text) c = "0123456789012345678.e+- x"[random() % 25];
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const auto parsed = parse_double(text);
    if (text.find("0x") != std::string::npos) continue;  // this run time reads hexadecimal as well
    ASSERT_EQ(parsed.used, static_cast<std::size_t>(end - text.c_str())) << text;
    ASSERT_EQ(parsed.value, expected) << text;
  }
}

template <class T>
void expect_number(ParsedNumber<T> parsed, T value, std::size_t used) {
  EXPECT_EQ(parsed.value, value);
  EXPECT_EQ(parsed.used, used);
}

TEST(ParseInt32, reads_base_10_and_stops) {
  expect_number(parse_int32("123abc"), 123, 3);
  expect_number(parse_int32("  -45 "), -45, 5);
  expect_number(parse_int32("+7"), 7, 2);
  expect_number(parse_int32("0x1F"), 0, 1);
  expect_number(parse_int32("12.5"), 12, 2);
  expect_number(parse_int32("1\0002"sv), 1, 1);
}

TEST(ParseInt32, without_a_number_nothing_is_used) {
  for (const auto text : {""sv, "abc"sv, "-"sv, " + 1"sv, "--1"sv}) {
    expect_number(parse_int32(text), 0, 0);
  }
}

TEST(ParseInt32, out_of_range_is_the_nearest_limit) {
  expect_number(parse_int32("2147483647"), 2147483647, 10);
  expect_number(parse_int32("2147483648"), 2147483647, 10);
  expect_number(parse_int32("-2147483648"), std::numeric_limits<std::int32_t>::min(), 11);
  expect_number(parse_int32("-2147483649"), std::numeric_limits<std::int32_t>::min(), 11);
  expect_number(parse_int32("99999999999999999999999x"), 2147483647, 23);
}

TEST(ParseUint32, reads_past_the_signed_range) {
  expect_number(parse_uint32("4294967295"), 4294967295u, 10);
  expect_number(parse_uint32(" 3000000000x"), 3000000000u, 11);
}

TEST(ParseUint32, a_minus_sign_negates_modulo_the_range) {
  expect_number(parse_uint32("-1"), 4294967295u, 2);
  expect_number(parse_uint32("-4294967295"), 1u, 11);
}

TEST(ParseUint32, out_of_range_is_the_upper_limit) {
  expect_number(parse_uint32("4294967296"), 4294967295u, 10);
  expect_number(parse_uint32("-4294967296"), 4294967295u, 11);
  expect_number(parse_uint32("99999999999999999999999"), 4294967295u, 23);
  expect_number(parse_uint32("x"), 0u, 0);
}

}  // namespace
}  // namespace qv::native::rtlib
