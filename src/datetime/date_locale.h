// The date settings of the user or of the system.
#pragma once

#include "automation/variant.h"

namespace qv::datetime {

// Only the settings whose arguments are given are asked for, and get a value; one that the system
// answers with a code of no meaning here is left alone. True = failure.
Boolean GetDateLocaleInfo(Boolean User, Variant& LongDateFmt, Variant& ShortDateFmt,
                          Variant& LongDateFmtOrder, Variant& ShortDateFmtOrder,
                          Variant& DateSepChar, Variant& YearMonthFmt, Variant& CenturySize,
                          Variant& DayLeadingZero, Variant& MonthLeadingZero,
                          Variant& FirstDayOfWeek, Variant& FirstWeekOfYear);

}  // namespace qv::datetime
