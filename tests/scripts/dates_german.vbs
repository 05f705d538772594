' Names and settings of dates in German: Monday first, "." as separator.
' Under de_DE.UTF-8 UTC0
Dim long_picture, short_picture, separator, first_day, first_week, order, t

Check "Get_Month_Name of March", Get_Month_Name(3), "M" & Host.ChrW(228) & "rz"
Check "Get_Day_Name of day 1", Get_Day_Name(1), "Montag"
Check "Get_Day_Name of day 7", Get_Day_Name(7), "Sonntag"
Check "Date_Today", Date_Today(), Right("0" & Day(Date), 2) & "." & Right("0" & Month(Date), 2) & "." & Year(Date)
Check "GetDateLocaleInfo", GetDateLocaleInfo(True, long_picture, short_picture, , order, separator, _
  , , , , first_day, first_week), False
Check "LongDateFmt", long_picture, "dddd, d. MMMM yyyy"
Check "ShortDateFmt", short_picture, "d.M.yyyy"
Check "ShortDateFmtOrder", order, "DMY"
Check "DateSepChar", separator, "."
Check "FirstDayOfWeek is Monday", first_day, CLng(2)
Check "FirstWeekOfYear is the first with four days", first_week, CLng(2)

Set t = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime "5.3.2001 14:07:09", t
Check "a text is read with the day first", t.wMonth, CInt(3)
Check "its hour", t.wHour, CInt(14)
Check "its second", t.wSecond, CInt(9)
Finish
