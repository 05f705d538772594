' Names and settings of dates in American English: Sunday first, the month before the day.
' Under en_US.UTF-8 UTC0
Dim long_picture, short_picture, long_order, short_order, separator, year_month, century
Dim day_zero, month_zero, first_day, first_week, t

Check "Get_Month_Name of March", Get_Month_Name(3), "March"
Check "Get_Day_Name of day 1", Get_Day_Name(1), "Sunday"
Check "Get_Day_Name of day 7", Get_Day_Name(7), "Saturday"
Check "Date_Today keeps the day first", Date_Today(), Right("0" & Day(Date), 2) & "/" & Right("0" & Month(Date), 2) & "/" & Year(Date)
Check "GetDateLocaleInfo", GetDateLocaleInfo(True, long_picture, short_picture, long_order, _
  short_order, separator, year_month, century, day_zero, month_zero, first_day, first_week), False
Check "LongDateFmt", long_picture, "dddd, MMMM d, yyyy"
Check "ShortDateFmt", short_picture, "M/d/yyyy"
Check "LongDateFmtOrder", long_order, "MDY"
Check "ShortDateFmtOrder", short_order, "MDY"
Check "DateSepChar", separator, "/"
Check "YearMonthFmt", year_month, "MMMM yyyy"
Check "CenturySize", century, CInt(4)
Check "DayLeadingZero", day_zero, False
Check "MonthLeadingZero", month_zero, False
Check "FirstDayOfWeek is Sunday", first_day, CLng(1)
Check "FirstWeekOfYear is that of 1 January", first_week, CLng(1)

short_picture = Empty
Check "the system's settings, one alone", GetDateLocaleInfo(False, , short_picture), False
Check "ShortDateFmt of the system", short_picture, "M/d/yyyy"
Check "a call without outputs", GetDateLocaleInfo(), False
Check "a call without outputs for the system", GetDateLocaleInfo(False), False

Set t = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime "5/3/2001", t
Check "a text is read with the month first", t.wMonth, CInt(5)
Check "nothing touched the error state", Check_Error(), False
Finish
