' System times, file times, the dates of files, late bound.
Dim t, u, f, r, dt, fso, folder, file, created, accessed, written, handle, missing

Set t = CreateObject("QvRtLibOle.QvtSystemTime")
Set u = CreateObject("QvRtLibOle.QvtSystemTime")
Check "a new record is empty", t.wYear, CInt(0)
Check "Date_2_SysTime gives Empty", Date_2_SysTime(#2024-03-31 18:05:07#, t), Empty
Check "wYear", t.wYear, CInt(2024)
Check "wMonth", t.wMonth, CInt(3)
Check "wDay", t.wDay, CInt(31)
Check "wDayOfWeek of a Sunday", t.wDayOfWeek, CInt(1)
Check "wHour", t.wHour, CInt(18)
Check "wMinute", t.wMinute, CInt(5)
Check "wSecond", t.wSecond, CInt(7)
Check "wMilliseconds", t.wMilliseconds, CInt(0)
Date_2_SysTime #2024-03-30#, u
Check "wDayOfWeek of a Saturday", u.wDayOfWeek, CInt(7)
t.CopyTo u
Check "CopyTo", u.wSecond, CInt(7)
Check "Date_2_SysTime of no date gives Empty too", Date_2_SysTime("none", u), Empty
Check "and leaves the record alone", u.wYear, CInt(2024)
CheckRecord "and tells", 13, "KwRtLibMod.Date_2_SysTime"
Date_2_SysTime Null, u
CheckRecord "Date_2_SysTime of Null", 94, "KwRtLibMod.Date_2_SysTime"

Check "SysTime_2_Date gives Empty", SysTime_2_Date(t, dt), Empty
Check "and fills the variable", VarType(dt), VarType(Now)
Check "with the date", CStr(dt), CStr(#2024-03-31 18:05:07#)
t.wMonth = 13
SysTime_2_Date t, dt
Check "month 13 carries into the next year", CStr(dt), CStr(#2025-01-31 18:05:07#)
t.wYear = -5
Check "SysTime_2_Date of no date gives Empty too", SysTime_2_Date(t, dt), Empty
Check "and leaves the variable alone", CStr(dt), CStr(#2025-01-31 18:05:07#)
CheckRecord "and tells", 5, "KwRtLibMod.SysTime_2_Date"

Set f = CreateObject("QvRtLibOle.QvtFileTime")
Check "Date_2_FileTime", Date_2_FileTime(#1970-01-01#, f), False
Check "dwLowDateTime", f.dwLowDateTime, CLng(-717324288)
Check "dwHighDateTime", f.dwHighDateTime, CLng(27111902)
Check "FileTime_2_Date", FileTime_2_Date(f), #1970-01-01#
f.dwLowDateTime = 0
f.dwHighDateTime = 0
Check "a file time of 0 is no date", FileTime_2_Date(f), CDate(0)
CheckRecord "and tells", 5, "KwRtLibMod.SysTime_2_Date"
f.dwHighDateTime = -1
Check "a file time beyond all dates", FileTime_2_Date(f), CDate(0)
CheckRecord "adds to the Source", 0, " < KwRtLibMod.FileTime_2_Date"
Check "Date_2_FileTime of a date before 1601", Date_2_FileTime(#1500-01-01#, f), True
CheckRecord "has no number", 0, "KwRtLibMod.Date_2_FileTime"

t.wYear = 2024
t.wMonth = 13
Check "LocalTimeToSystemTime of no time", LocalTimeToSystemTime(t), True
Check "leaves the record alone", t.wMonth, CInt(13)
CheckRecord "names the library first", 20000, "QvRtLibOle.KwRtLibMod.LocalTimeToSystemTime"
Check "SystemTimeToLocalTime of no time", SystemTimeToLocalTime(t), True
Check "its description begins with the service", Left(Error_Description(), 33), "SystemTimeToTzSpecificLocalTime" & Chr(13) & Chr(10)
CheckRecord "and its Source with the library", 20000, "QvRtLibOle.KwRtLibMod.SystemTimeToLocalTime"
Get_SystemTime t
Check "Get_SystemTime", Abs(CLng(t.wYear) - Year(Now)) < 2, True
Get_LocalTime t
Check "Get_LocalTime", CLng(t.wYear), CLng(Year(Now))

Set r = CreateObject("QvRtLibOle.QvtRect")
Set u = CreateObject("QvRtLibOle.QvtRect")
r.RcLeft = 1: r.RcTop = 2: r.RcBottom = 3: r.RcRight = 4
r.CopyTo u
Check "a rectangle's copy", u.RcLeft & " " & u.RcTop & " " & u.RcBottom & " " & u.RcRight, "1 2 3 4"

Set fso = CreateObject("Scripting.FileSystemObject")
folder = Get_TempPath()
file = folder & "qv file times script.tmp"
fso.CreateTextFile(file, True).Close
Check "Set_FileTime", Set_FileTime(file, , #2001-02-03 04:05:06#, #2002-03-04 05:06:08#), CInt(0)
Check "Get_FileTime", Get_FileTime(file, created, accessed, written), CInt(0)
Check "the last access", CStr(accessed), CStr(#2001-02-03 04:05:06#)
Check "the last write", CStr(written), CStr(#2002-03-04 05:06:08#)
Check "the creation is a date", VarType(created), VarType(Now)
Check "Get_FileTime without an output", Get_FileTime(file), CInt(0)
Check "Get_FileTime of a folder", Get_FileTime(folder, , , written), CInt(0)
Check "Set_FileTime of a folder", Set_FileTime(Left(folder, Len(folder) - 1), , , Now), CInt(-1)
Reset_Error
Check "Get_FileTime of a missing file", Get_FileTime(folder & "no such file"), CInt(-1)
CheckRecord "is told by the opener", 53, "KwRtLibMod.File_Open32"
Check "Set_FileTime of a missing file", Set_FileTime(folder & "no such file", , , Now), CInt(-1)
CheckRecord "is told by the attributes", 53, "KwRtLibMod.Set_FileTime"
Check "Set_FileTime with no date", Set_FileTime(file, , , "none"), CInt(-1)
CheckRecord "has no number", 0, "KwRtLibMod.Set_FileTime"
fso.GetFile(file).Attributes = 1
Check "Set_FileTime of a read-only file", Set_FileTime(file, , , #2003-03-04#), CInt(0)
Check "puts the attribute back", fso.GetFile(file).Attributes And 1, CLng(1)
Get_FileTime file, , , written
Check "and sets the time", CStr(written), CStr(#2003-03-04#)
fso.GetFile(file).Attributes = 0
dt = CLng(0)
handle = CLng(0)
File_Open32 file, 4, 64, dt, handle
fso.GetFile(file).Attributes = 1
Check "Set_FileTime of an open handle", Set_FileTime(handle, , , #2004-03-04#), CInt(0)
Check "leaves the attribute alone", fso.GetFile(file).Attributes And 1, CLng(1)
Check "Get_FileTime of the handle", Get_FileTime(handle, , , written), CInt(0)
Check "its time", CStr(written), CStr(#2004-03-04#)
Check "the handle is still open", File_Close32(handle), False
fso.GetFile(file).Attributes = 0
fso.DeleteFile file
Finish
