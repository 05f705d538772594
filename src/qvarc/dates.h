// Dates as archives have them: local time in days since the end of 1899, as a number.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace qv::qvarc {

inline constexpr std::int64_t kSecondsPerDay = 86400;

// From a count of seconds that begins at 1 January 1970, local time. Days before the start of the
// calendar's count have a negative number, and their time of day counts forward all the same.
inline double date_of(std::int64_t local_seconds) {
  constexpr std::int64_t kDaysTo1970 = 25569;
  const std::int64_t seconds = local_seconds + kDaysTo1970 * kSecondsPerDay;
  const std::int64_t day =
      seconds >= 0 ? seconds / kSecondsPerDay : (seconds + 1) / kSecondsPerDay - 1;
  const double time =
      static_cast<double>(seconds - day * kSecondsPerDay) / static_cast<double>(kSecondsPerDay);
  return day >= 0 ? static_cast<double>(day) + time : static_cast<double>(day) - time;
}

// The reverse, to the nearest second. Nothing for what is no date of the years 1601 to 9999.
inline std::optional<std::int64_t> local_seconds_of(double date) {
  constexpr double kFirst = -109205;
  constexpr double kEnd = 2958466;
  constexpr double kDaysTo1970 = 25569;
  if (!(date >= kFirst && date < kEnd)) return std::nullopt;
  const double day = std::trunc(date);
  const double time = std::fabs(date - day);
  return std::llround((day - kDaysTo1970 + time) * static_cast<double>(kSecondsPerDay));
}

}  // namespace qv::qvarc
