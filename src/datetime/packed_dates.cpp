#include "datetime/packed_dates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "automation/run_time_error.h"
#include "runtime/calendar.h"

namespace qv::datetime {
namespace {

constexpr int kFirstYear = 1980;
constexpr int kUnitsOfMonth = 32;
constexpr int kUnitsOfYear = 512;

constexpr std::array<Integer, 12> kMonthDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool is_leap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

Text capitalized(Text name) {
  if (!name.empty()) CharUpperBuffW(name.data(), 1);
  return name;
}

std::wstring with_zeros(Integer value, std::size_t width) {
  std::wstring digits = std::to_wstring(value);
  digits.insert(0, width - std::min(width, digits.size()), L'0');
  return digits;
}

template <class Number>
Number fitting(std::int64_t value) {
  using Limits = std::numeric_limits<Number>;
  if (value < Limits::min() || value > Limits::max()) raise(kOverflow);
  return static_cast<Number>(value);
}

}  // namespace

Integer Date_Set(Integer iDay, Integer iMonth, Integer iYear) {
  const int sum = iMonth * kUnitsOfMonth + iDay + (iYear - kFirstYear) * kUnitsOfYear;
  // The upper half of 16 bits is what an Integer shows as negative.
  const bool is_upper_half = sum > 0x7FFF && sum <= 0xFFFF;
  return fitting<Integer>(is_upper_half ? sum - 0x10000 : sum);
}

Integer Date_2_Day(Integer DateInt) { return static_cast<Integer>(DateInt & 31); }
Integer Date_2_Month(Integer DateInt) { return static_cast<Integer>(DateInt / kUnitsOfMonth & 15); }
Integer Date_2_Year(Integer DateInt) {
  return static_cast<Integer>((DateInt / kUnitsOfYear & 127) + kFirstYear);
}
Integer Time_2_Hour(Integer TimeInt) {
  return static_cast<Integer>(static_cast<std::uint16_t>(TimeInt) >> 11);
}
Integer Time_2_Minute(Integer TimeInt) { return static_cast<Integer>(TimeInt >> 5 & 63); }
Integer Time_2_Second(Integer TimeInt) { return static_cast<Integer>(TimeInt & 31); }

Integer Leap_Year(Integer iYear) { return Boolean(is_leap(iYear)); }
Integer Get_Year_Days(Integer iYear) { return is_leap(iYear) ? 366 : 365; }

Integer Get_Month_Days(Integer iYear, Integer iMonth) {
  if (iMonth < 1 || iMonth > 12) raise(kInvalidUseOfNull);
  const Integer days = kMonthDays[static_cast<std::size_t>(iMonth - 1)];
  return days == 28 && is_leap(iYear) ? Integer{29} : days;
}

Text Get_Month_Name(Integer iMonth) { return capitalized(month_name(iMonth)); }
Text Get_Day_Name(Long DN) { return capitalized(weekday_name(DN)); }

Text Date_Today() {
  const DateFields today = fields_of(now());
  const Text separator = date_separator();
  return concat({with_zeros(today.day, 2), separator, with_zeros(today.month, 2), separator,
                 with_zeros(today.year, 4)});
}

Date Easter_Day(Long Year) {
  const Long golden_number = Year % 19 + 1;
  const double century = std::floor(Year / 100.0) + 1;
  const double dropped_leap_years = std::floor(3 * century / 4) - 12;
  const double moon_correction = std::floor((8 * century + 5) / 25) - 5;
  const Long sunday = fitting<Long>(
      static_cast<std::int64_t>(std::floor(5.0 * Year / 4) - dropped_leap_years) - 10);
  const auto corrections = static_cast<Long>(moon_correction - dropped_leap_years);
  Long epact = std::abs(11 * golden_number + 20 + corrections) % 30;
  if ((epact == 25 && golden_number > 11) || epact == 24) ++epact;
  Long day = 44 - epact;
  if (day < 21) day += 30;
  day += 7 - (sunday + day) % 7;
  const auto year = fitting<Integer>(Year);
  return day > 31 ? date_serial(year, 4, static_cast<Integer>(day - 31))
                  : date_serial(year, 3, static_cast<Integer>(day));
}

}  // namespace qv::datetime
