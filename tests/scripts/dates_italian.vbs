' Names and settings of dates in Italian: Monday first, "/" as separator.
' Under it_IT.UTF-8 UTC0
Dim long_picture, short_picture, long_order, short_order, separator, year_month, century
Dim day_zero, month_zero, first_day, first_week, t, dt

Check "Get_Month_Name of March", Get_Month_Name(3), "Marzo"
Check "Get_Day_Name of day 1", Get_Day_Name(1), "Luned" & Host.ChrW(236)
Check "Get_Day_Name of day 7", Get_Day_Name(7), "Domenica"
Check "Date_Today", Date_Today(), Right("0" & Day(Date), 2) & "/" & Right("0" & Month(Date), 2) & "/" & Year(Date)
Check "GetDateLocaleInfo", GetDateLocaleInfo(True, long_picture, short_picture, long_order, _
  short_order, separator, year_month, century, day_zero, month_zero, first_day, first_week), False
Check "LongDateFmt", long_picture, "dddd d MMMM yyyy"
Check "ShortDateFmt", short_picture, "d/M/yyyy"
Check "LongDateFmtOrder", long_order, "DMY"
Check "ShortDateFmtOrder", short_order, "DMY"
Check "DateSepChar", separator, "/"
Check "YearMonthFmt", year_month, "MMMM yyyy"
Check "CenturySize", century, CInt(4)
Check "DayLeadingZero", day_zero, False
Check "MonthLeadingZero", month_zero, False
Check "FirstDayOfWeek is Monday", first_day, CLng(2)
Check "FirstWeekOfYear is the first with four days", first_week, CLng(2)

Set t = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime "5/3/2001", t
Check "a text is read with the day first", t.wMonth, CInt(3)
Date_2_SysTime "7 marzo 2001", t
Check "a text with an Italian month", t.wDay, CInt(7)
Finish
