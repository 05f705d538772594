// The calling language's date services: a Date taken apart and built, the names and the separator
// of the user's locale. Dates reach from 1 January 100 to 31 December 9999; what
// lies outside is run-time error 5.
#pragma once

#include <windows.h>

#include "automation/text.h"

namespace qv {

struct DateFields {
  Integer year = 0;
  Integer month = 0;
  Integer day = 0;
  Integer weekday = 0;  // 1 for Sunday to 7 for Saturday
  Integer hour = 0;
  Integer minute = 0;
  Integer second = 0;
};

// To the nearest second, which may be that of the next midnight.
DateFields fields_of(Date date);

// Month and day out of range carry over, whatever their sign. A year of 0 to 99 is completed by the
// user's settings, which commonly means 1930 to 2029.
Date date_serial(Integer year, Integer month, Integer day);
// Out of range carries over; 24 hours are 1 day.
Date time_serial(Integer hour, Integer minute, Integer second);

// The sum of the two for a record of the system's, less its milliseconds. As sums of the language
// are, it is no time of that day for days before 30 December 1899.
Date date_of(const SYSTEMTIME& time);

Date now();

// How many starts of a minute lie between the two; negative where `to` is the earlier.
Double minutes_between(Date from, Date to);

// Full names in the language of the user's settings; run-time error 5 for a number out of range.
Text month_name(Long month);
// Days count from the first day of the week of the user's settings.
Text weekday_name(Long day);

// What stands between the fields of a date in the user's settings.
Text date_separator();

}  // namespace qv
