' Local time and UTC around both changes of daylight time, east of America.
' Under C.UTF-8 EST5EDT,M3.2.0,M11.1.0
Dim t
Set t = CreateObject("QvRtLibOle.QvtSystemTime")

Sub Put_Time(dt)
  Date_2_SysTime dt, t
End Sub
Function Got_Time()
  Dim dt
  SysTime_2_Date t, dt
  Got_Time = dt
End Function

Sub To_UTC(name, local, utc)
  Put_Time local
  Check name & " converts to UTC", LocalTimeToSystemTime(t), False
  Check name & " in UTC", CStr(Got_Time()), CStr(utc)
End Sub
Sub To_Local(name, utc, local)
  Put_Time utc
  Check name & " converts to local time", SystemTimeToLocalTime(t), False
  Check name & " in local time", CStr(Got_Time()), CStr(local)
End Sub

To_UTC "winter", #2024-01-15 12:00:00#, #2024-01-15 17:00:00#
To_UTC "summer", #2024-07-15 12:00:00#, #2024-07-15 16:00:00#
To_Local "winter", #2024-01-15 12:00:00#, #2024-01-15 07:00:00#
To_Local "summer", #2024-07-15 12:00:00#, #2024-07-15 08:00:00#
To_UTC "the last minute of winter time", #2024-03-10 01:59:00#, #2024-03-10 06:59:00#
To_UTC "the first minute of summer time", #2024-03-10 03:00:00#, #2024-03-10 07:00:00#
To_Local "the minute before summer time", #2024-03-10 06:59:00#, #2024-03-10 01:59:00#
To_Local "the start of summer time", #2024-03-10 07:00:00#, #2024-03-10 03:00:00#
To_UTC "the hour before the end of summer time", #2024-11-03 00:59:00#, #2024-11-03 04:59:00#
To_UTC "the hour after the end of summer time", #2024-11-03 02:00:00#, #2024-11-03 07:00:00#
To_Local "the last minute of summer time", #2024-11-03 05:59:00#, #2024-11-03 01:59:00#
To_Local "the end of summer time", #2024-11-03 06:00:00#, #2024-11-03 01:00:00#
To_UTC "over the turn of a year", #2023-12-31 20:30:00#, #2024-01-01 01:30:00#

' West of Greenwich a file time of 0 has no local time; it fails as elsewhere.
Dim f
Set f = CreateObject("QvRtLibOle.QvtFileTime")
Check "FileTime_2_Date of a file time of 0", FileTime_2_Date(f), CDate(0)
CheckRecord "its failure is told", 5, "KwRtLibMod.SysTime_2_Date"
Reset_Error
Finish
