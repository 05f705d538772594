#include "runtime/calendar.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "automation/run_time_error.h"

namespace qv {
namespace {

constexpr std::int64_t kFirstDay = -657434;  // 1 January 100
constexpr std::int64_t kLastDay = 2958465;   // 31 December 9999
constexpr std::int64_t kSecondsOfDay = 86400;
// Day 0 of a Date is 30 December 1899; the counts below begin on 1 March of the year 0, so that the
// day that a leap year adds is the last one of its year.
constexpr std::int64_t kDayOfDateZero = 693899;
constexpr std::int64_t kDaysOf400Years = 146097;

constexpr std::int64_t floor_divide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// The proleptic Gregorian calendar in whole periods of 400 years; month 1 to 12.
constexpr std::int64_t days_from_civil(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t shifted_year = month <= 2 ? year - 1 : year;
  const std::int64_t period = floor_divide(shifted_year, 400);
  const std::int64_t year_of_period = shifted_year - period * 400;
  const std::int64_t month_from_march = (month + 9) % 12;
  const std::int64_t day_of_year = (153 * month_from_march + 2) / 5 + day - 1;
  const std::int64_t day_of_period =
      year_of_period * 365 + year_of_period / 4 - year_of_period / 100 + day_of_year;
  return period * kDaysOf400Years + day_of_period - kDayOfDateZero;
}

void put_civil(std::int64_t days, DateFields& fields) {
  const std::int64_t shifted = days + kDayOfDateZero;
  const std::int64_t period = floor_divide(shifted, kDaysOf400Years);
  const std::int64_t day_of_period = shifted - period * kDaysOf400Years;
  const std::int64_t year_of_period =
      (day_of_period - day_of_period / 1460 + day_of_period / 36524 - day_of_period / 146096) / 365;
  const std::int64_t day_of_year =
      day_of_period - (365 * year_of_period + year_of_period / 4 - year_of_period / 100);
  const std::int64_t month_from_march = (5 * day_of_year + 2) / 153;
  const std::int64_t month = month_from_march < 10 ? month_from_march + 3 : month_from_march - 9;
  fields.day = static_cast<Integer>(day_of_year - (153 * month_from_march + 2) / 5 + 1);
  fields.month = static_cast<Integer>(month);
  fields.year = static_cast<Integer>(year_of_period + period * 400 + (month <= 2 ? 1 : 0));
}

// Whole seconds since day 0. The fraction of a Date is its time of day whatever the sign of its
// day.
std::int64_t seconds_of(Date date) {
  const double day = std::trunc(date.days);
  if (!(day >= kFirstDay && day <= kLastDay)) raise(kInvalidProcedureCall);
  const double time_of_day = std::abs(date.days - day);
  return static_cast<std::int64_t>(day) * kSecondsOfDay +
         static_cast<std::int64_t>(std::floor(time_of_day * kSecondsOfDay + 0.5));
}

Text locale_text(LCTYPE item) {
  std::array<wchar_t, 256> buffer;
  const int length =
      GetLocaleInfoW(LOCALE_USER_DEFAULT, item, buffer.data(), static_cast<int>(buffer.size()));
  return length > 0 ? Text(buffer.data()) : Text();
}

DWORD locale_number(LCTYPE item) {
  DWORD number = 0;
  GetLocaleInfoW(LOCALE_USER_DEFAULT, item | LOCALE_RETURN_NUMBER,
                 reinterpret_cast<wchar_t*>(&number), sizeof number / sizeof(wchar_t));
  return number;
}

std::int64_t complete_year(Integer year) {
  if (year < 0 || year > 99) return year;
  DWORD setting = 2029;
  GetCalendarInfoW(LOCALE_USER_DEFAULT, CAL_GREGORIAN, CAL_ITWODIGITYEARMAX | CAL_RETURN_NUMBER,
                   nullptr, 0, &setting);
  const std::int64_t last_year = setting;
  const std::int64_t century = last_year / 100 * 100;
  return year <= last_year % 100 ? century + year : century - 100 + year;
}

}  // namespace

DateFields fields_of(Date date) {
  const std::int64_t seconds = seconds_of(date);
  const std::int64_t day = floor_divide(seconds, kSecondsOfDay);
  const std::int64_t time = seconds - day * kSecondsOfDay;
  DateFields fields;
  put_civil(day, fields);
  // Day 1, 31 December 1899, was a Sunday.
  fields.weekday = static_cast<Integer>(day - 1 - floor_divide(day - 1, 7) * 7 + 1);
  fields.hour = static_cast<Integer>(time / 3600);
  fields.minute = static_cast<Integer>(time / 60 % 60);
  fields.second = static_cast<Integer>(time % 60);
  return fields;
}

Date date_serial(Integer year, Integer month, Integer day) {
  const std::int64_t carried_years = floor_divide(month - 1, 12);
  const std::int64_t month_of_year = month - carried_years * 12;
  const std::int64_t days =
      days_from_civil(complete_year(year) + carried_years, month_of_year, 1) + day - 1;
  if (days < kFirstDay || days > kLastDay) raise(kInvalidProcedureCall);
  return Date{static_cast<double>(days)};
}

Date time_serial(Integer hour, Integer minute, Integer second) {
  const std::int64_t seconds = (std::int64_t{hour} * 60 + minute) * 60 + second;
  return Date{static_cast<double>(seconds) / kSecondsOfDay};
}

Date date_of(const SYSTEMTIME& time) {
  const auto integer = [](WORD word) { return static_cast<Integer>(word); };
  const Date day = date_serial(integer(time.wYear), integer(time.wMonth), integer(time.wDay));
  const Date time_of_day =
      time_serial(integer(time.wHour), integer(time.wMinute), integer(time.wSecond));
  return Date{day.days + time_of_day.days};
}

Date now() {
  SYSTEMTIME time;
  GetLocalTime(&time);
  return date_of(time);
}

Double minutes_between(Date from, Date to) {
  return static_cast<Double>(floor_divide(seconds_of(to), 60) - floor_divide(seconds_of(from), 60));
}

Text month_name(Long month) {
  if (month < 1 || month > 12) raise(kInvalidProcedureCall);
  return locale_text(LOCALE_SMONTHNAME1 + static_cast<LCTYPE>(month - 1));
}

Text weekday_name(Long day) {
  if (day < 1 || day > 7) raise(kInvalidProcedureCall);
  // Both this setting and the items of the names count from Monday.
  const DWORD first = locale_number(LOCALE_IFIRSTDAYOFWEEK);
  return locale_text(LOCALE_SDAYNAME1 + (first + static_cast<DWORD>(day) - 1) % 7);
}

Text date_separator() { return locale_text(LOCALE_SDATE); }

}  // namespace qv
