' Local time and UTC around both changes of daylight time, Central Europe.
' Under C.UTF-8 CET-1CEST,M3.5.0,M10.5.0/3
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

To_UTC "winter", #2024-01-15 12:00:00#, #2024-01-15 11:00:00#
To_UTC "summer", #2024-07-15 12:00:00#, #2024-07-15 10:00:00#
To_Local "winter", #2024-01-15 12:00:00#, #2024-01-15 13:00:00#
To_Local "summer", #2024-07-15 12:00:00#, #2024-07-15 14:00:00#
To_UTC "the last minute of winter time", #2024-03-31 01:59:00#, #2024-03-31 00:59:00#
To_UTC "the first minute of summer time", #2024-03-31 03:00:00#, #2024-03-31 01:00:00#
To_Local "the minute before summer time", #2024-03-31 00:59:00#, #2024-03-31 01:59:00#
To_Local "the start of summer time", #2024-03-31 01:00:00#, #2024-03-31 03:00:00#
To_UTC "an hour before the end of summer time", #2024-10-27 01:59:00#, #2024-10-26 23:59:00#
To_UTC "the hour after the end of summer time", #2024-10-27 03:00:00#, #2024-10-27 02:00:00#
To_Local "the last minute of summer time", #2024-10-27 00:59:00#, #2024-10-27 02:59:00#
To_Local "the end of summer time", #2024-10-27 01:00:00#, #2024-10-27 02:00:00#
To_UTC "over the turn of a year", #2024-01-01 00:30:00#, #2023-12-31 23:30:00#
Finish
