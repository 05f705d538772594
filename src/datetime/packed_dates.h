// Dates and times packed into 16 bits as file systems keep them, facts of the calendar, names of
// months and days.
//   date  bits 0 to 4 day, 5 to 8 month, 9 to 15 year less 1980
//   time  bits 0 to 4 units of two seconds, 5 to 10 minute, 11 to 15 hour
// An Integer is signed: dates from 2044 on and times from 16:00 on are negative.
#pragma once

#include "automation/text.h"

namespace qv::datetime {

// Nothing is checked but that the sum fits: run-time error 6 from the year 2108 on, and for years
// so early that the sum is below -32768.
Integer Date_Set(Integer iDay, Integer iMonth, Integer iYear);
Integer Date_2_Day(Integer DateInt);
// These two divide instead of shifting, so most dates from 2044 on read one too high. Files out
// there are read by applications that have always seen these numbers.
Integer Date_2_Month(Integer DateInt);
Integer Date_2_Year(Integer DateInt);
Integer Time_2_Hour(Integer TimeInt);
Integer Time_2_Minute(Integer TimeInt);
// The field as it is stored: units of two seconds.
Integer Time_2_Second(Integer TimeInt);

// True or 0, as an Integer.
Integer Leap_Year(Integer iYear);
Integer Get_Year_Days(Integer iYear);
// Run-time error 94 for a month out of range.
Integer Get_Month_Days(Integer iYear, Integer iMonth);

// Full names in the user's language with a capital first letter; run-time error 5 out of range.
Text Get_Month_Name(Integer iMonth);
// Counted from the first day of the week of the user's settings.
Text Get_Day_Name(Long DN);
// Day, month and year with the user's separator.
Text Date_Today();

// Easter Sunday of the Gregorian calendar by the algorithm that D. Knuth gives (The Art of Computer
// Programming, volume 1, 1.3.2, exercise 14), with one deviation: the magnitude of the epact's sum
// is taken before it is reduced. Run-time error 6 for a year beyond 32767.
Date Easter_Day(Long Year);

}  // namespace qv::datetime
