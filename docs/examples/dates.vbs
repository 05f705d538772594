' == Date_Set, Date_2_Day, Date_2_Month, Date_2_Year
Dim packed
packed = Date_Set(31, 12, 2043)
Show packed                 '-> 32671
Show Date_2_Day(packed)     '-> 31
Show Date_2_Month(packed)   '-> 12
Show Date_2_Year(packed)    '-> 2043
Show Date_2_Year(Date_Set(1, 1, 2044))    '-> 2045

' == Time_2_Hour, Time_2_Minute, Time_2_Second
Dim packed
packed = 12 * 2048 + 30 * 32 + 29    ' 12:30:58
Show Time_2_Hour(packed)      '-> 12
Show Time_2_Minute(packed)    '-> 30
Show Time_2_Second(packed)    '-> 29

' == Leap_Year, Get_Year_Days, Get_Month_Days
Show Leap_Year(2024)            '-> -1
Show Leap_Year(1900)            '-> 0
Show Get_Year_Days(2024)        '-> 366
Show Get_Month_Days(2023, 2)    '-> 28

' == Get_Month_Name, Get_Day_Name
Show Get_Month_Name(3) = MonthName(3)    '-> True
Show Len(Get_Day_Name(1)) > 0            '-> True

' == Date_Today
Show Len(Date_Today())    '-> 10

' == Easter_Day
Show Month(Easter_Day(2026)) & "/" & Day(Easter_Day(2026))    '-> 4/5

' == Date_2_SysTime, SysTime_2_Date, QvtSystemTime, QvtSystemTime.wYear, QvtSystemTime.wMonth, QvtSystemTime.wDay, QvtSystemTime.wDayOfWeek
Dim record, value
Set record = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime DateSerial(2024, 3, 31), record
Show record.wYear & " " & record.wMonth & " " & record.wDay    '-> 2024 3 31
Show record.wDayOfWeek                                         '-> 1
record.wMonth = 13
SysTime_2_Date record, value
Show value = DateSerial(2025, 1, 31)                           '-> True

' == Date_2_FileTime, FileTime_2_Date, QvtFileTime
Dim time
Set time = CreateObject("QvRtLibOle.QvtFileTime")
Show Date_2_FileTime(DateSerial(2026, 11, 21), time)    '-> False
Show FileTime_2_Date(time) = DateSerial(2026, 11, 21)   '-> True

' == LocalTimeToSystemTime, SystemTimeToLocalTime, Get_SystemTime, Get_LocalTime
Dim record, value
Set record = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime DateSerial(2026, 11, 21), record
Show LocalTimeToSystemTime(record)    '-> False
Show SystemTimeToLocalTime(record)    '-> False
SysTime_2_Date record, value
Show value = DateSerial(2026, 11, 21)    '-> True
Get_LocalTime record
Show record.wYear >= 2000                '-> True

' == Get_FileTime, Set_FileTime
Dim name, written
name = Get_TempPath() & "examples.txt"
Log_Write name, "text", 0
Show Set_FileTime(name, , , DateSerial(2001, 2, 3))    '-> 0
Show Get_FileTime(name, , , written)                   '-> 0
Show written = DateSerial(2001, 2, 3)                  '-> True
Show File_Kill(name)                                   '-> 0

' == GetDateLocaleInfo
Dim order, first_day
Show GetDateLocaleInfo(True, , , , order, , , , , , first_day)    '-> False
Show order        '-> MDY
Show first_day    '-> 1

' == QvtSystemTime.wHour, QvtSystemTime.wMinute, QvtSystemTime.wSecond, QvtSystemTime.wMilliseconds, QvtSystemTime.CopyTo
Dim record, copy
Set record = CreateObject("QvRtLibOle.QvtSystemTime")
Set copy = CreateObject("QvRtLibOle.QvtSystemTime")
Date_2_SysTime DateSerial(2026, 11, 21) + TimeSerial(16, 5, 9), record
Show record.wHour & ":" & record.wMinute & ":" & record.wSecond    '-> 16:5:9
Show record.wMilliseconds      '-> 0
record.CopyTo copy
Show copy.wHour                '-> 16

' == QvtFileTime.dwLowDateTime, QvtFileTime.dwHighDateTime
' 100 nanoseconds each: a second is ten million of them.
Dim time, noon
Set time = CreateObject("QvRtLibOle.QvtFileTime")
Date_2_FileTime DateSerial(2026, 11, 21), time
noon = FileTime_2_Date(time)
time.dwHighDateTime = time.dwHighDateTime + 1    ' 4294967296 of them: some 429 seconds
Show CLng((FileTime_2_Date(time) - noon) * 86400)    '-> 429
Show time.dwLowDateTime <> 0   '-> True

' == QvtRect, QvtRect.RcLeft, QvtRect.RcTop, QvtRect.RcRight, QvtRect.RcBottom, QvtRect.CopyTo
Dim area, copy
Set area = CreateObject("QvRtLibOle.QvtRect")
Set copy = CreateObject("QvRtLibOle.QvtRect")
area.RcLeft = 10
area.RcTop = 20
area.RcRight = 110
area.RcBottom = 70
area.CopyTo copy
Show copy.RcRight - copy.RcLeft    '-> 100
Show copy.RcBottom - copy.RcTop    '-> 50
