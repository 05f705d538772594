' Settings in INI files, late bound: on files that the library writes and on files written by hand.
Dim fso, folder, ini, copy, lines, values, file, text, i, nothing_at_all, long_folder

Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetSpecialFolder(2) & "\" & fso.GetTempName
fso.CreateFolder folder
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")

' A new file each time, since the platform remembers for a while what it has read.
Dim files
files = 0
Sub Hold(content)
  files = files + 1
  ini.IniFile = folder & "\f" & files & ".ini"
  Set file = fso.CreateTextFile(ini.IniFile)
  file.Write content
  file.Close
End Sub

' The record
ini.IniFile = "i"
ini.WinPath = "w"
ini.SysPath = "s"
ini.ExePath = "e"
ini.TmpPath = "t"
Set copy = CreateObject("QvRtLibOle.QVtIniStruct")
Check "a new record is empty", copy.IniFile, ""
ini.CopyTo copy
Check "CopyTo copies IniFile", copy.IniFile, "i"
Check "CopyTo copies WinPath", copy.WinPath, "w"
Check "CopyTo copies SysPath", copy.SysPath, "s"
Check "CopyTo copies ExePath", copy.ExePath, "e"
Check "CopyTo copies TmpPath", copy.TmpPath, "t"

' Start_Up
Const STUPF_SHAREDINI = 1
Const STUPF_NOCHANGEPATH = 2
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.ExePath = "C:\App"
Check "Start_Up gives Empty", Start_Up(ini, "setup", STUPF_NOCHANGEPATH), Empty
Check "a bare name lies in ExePath", ini.IniFile, "C:\App\SETUP.INI"
Check "ExePath stays", ini.ExePath, "C:\App"
Check "WinPath", ini.WinPath, fso.GetSpecialFolder(0) & "\"
Check "SysPath", ini.SysPath, fso.GetSpecialFolder(1) & "\"
Check "TmpPath", ini.TmpPath, Get_TempPath()
Start_Up ini, "C:\my.dir\prog", STUPF_NOCHANGEPATH
Check "a dot in a folder's name counts", ini.IniFile, "C:\MY.DIR\PROG"
Start_Up ini, "D:\x\a.cfg", STUPF_SHAREDINI + STUPF_NOCHANGEPATH
Check "a shared file lies in the Windows folder", ini.IniFile, ini.WinPath & "A.CFG"
ini.ExePath = ""
Start_Up ini, "setup"
Check "without ExePath a bare name stays bare", ini.IniFile, "SETUP.INI"
text = fso.GetAbsolutePathName(".")
ini.ExePath = "C:\no such folder"
Start_Up ini, "setup"
Check "a folder that is not there leaves the current one", fso.GetAbsolutePathName("."), text
ini.ExePath = folder
Start_Up ini, "setup"
Check "ExePath becomes the current folder", fso.GetAbsolutePathName("."), folder
ini.ExePath = text
Start_Up ini, "setup"
Start_Up Nothing, "setup"
CheckRecord "Start_Up tells nothing", 0, ""

' Values
ini.IniFile = folder & "\a.ini"
Check "Ini_Put gives Empty", Ini_Put("one", "key", "a value", ini), Empty
Ini_Put "one", "truth", True, ini
Ini_Put "one", "lie", False, ini
Ini_Put "two", "number", 12.5, ini
Check "Ini_Get", Ini_Get("one", "key", "", ini), "a value"
Check "names of any letter case", Ini_Get("ONE", "KEY", "", ini), "a value"
Check "Ini_Get of a Boolean is a String", Ini_Get("one", "truth", False, ini), "True"
Check "Ini_Get of False", Ini_Get("one", "lie", True, ini), "False"
Check "Ini_Get of a number is a String", Ini_Get("two", "number", 0, ini), "12.5"
Check "a missing key gives the default", Ini_Get("one", "none", "default", ini), "default"
Check "an Integer default of 5", Ini_Get("one", "none", CInt(5), ini), "5"
Check "a Boolean default of True", Ini_Get("one", "none", True, ini), "True"
Check "a Boolean default of False", Ini_Get("one", "none", False, ini), "False"
Check "an Empty default", Ini_Get("one", "none", Empty, ini), ""
Check "an empty section asks for all sections", Ini_Get("", "key", "", ini), "one" & Chr(0) & "two" & Chr(0)
Check "a Null section too", Ini_Get(Null, Null, "", ini), "one" & Chr(0) & "two" & Chr(0)
Check "an empty key asks for all keys", Ini_Get("one", "", "", ini), "key" & Chr(0) & "truth" & Chr(0) & "lie" & Chr(0)
Check "a Null key too", Ini_Get("two", Null, "", ini), "number" & Chr(0)

Hold "[s]" & vbCrLf & "a=VERO" & vbCrLf & "b=falso" & vbCrLf & "c=Si" & vbCrLf
Check "VERO is True for a Boolean default", Ini_Get("s", "a", False, ini), "True"
Check "falso is False for a Boolean default", Ini_Get("s", "b", True, ini), "False"
Check "Si stays", Ini_Get("s", "c", True, ini), "Si"
Check "VERO stays for a text default", Ini_Get("s", "a", "", ini), "VERO"

Hold "[s]" & vbCrLf & "a=" & String(9000, "x") & vbCrLf
Check "a long value is cut", Len(Ini_Get("s", "a", "", ini)), CLng(8191)
CheckRecord "and nothing is told", 0, ""

' Sections
Hold "[s]" & vbCrLf & "a=1" & vbCrLf & "b=2" & vbCrLf
Check "Ini_GetSect gives Empty", Ini_GetSect("s", lines, ini), Empty
Check "lower bound of the lines", LBound(lines), CLng(0)
Check "upper bound of the lines", UBound(lines), CLng(2)
Check "element 0", lines(0), ""
Check "line 1", lines(1), "a=1"
Check "line 2", lines(2), "b=2"
Check "Ini_PutSect of them", Ini_PutSect("t", lines, ini), False
Check "the copied section", Ini_Get("t", "b", "", ini), "2"
Check "Ini_PutSect replaces", Ini_PutSect("t", Array("left out", "c=3"), ini), False
Check "the old key has gone", Ini_Get("t", "b", "none", ini), "none"
Check "the new one is there", Ini_Get("t", "c", "none", ini), "3"
Check "an array that ends at 0 empties the section", Ini_PutSect("t", Array("left out"), ini), False
Ini_GetSect "t", lines, ini
Check "no lines are left", UBound(lines), CLng(0)
Check "the section is", Ini_Get("", "", "", ini), "s" & Chr(0) & "t" & Chr(0)
Ini_GetSect "missing", lines, ini
Check "a missing section has no lines", UBound(lines), CLng(0)
Check "but its element 0", lines(0), ""
Check "Ini_PutSect of an array without dimensions", Ini_PutSect("t", Host.Empty_Array(vbString), ini), True
CheckRecord "tells", 9, "KwRtLibMod.Ini_PutSect"
Ini_DeletePar "s", "a", ini
Check "Ini_DeletePar", Ini_Get("s", "", "", ini), "b" & Chr(0)
Ini_DeleteSection "s", ini
Check "Ini_DeleteSection", Ini_Get("", "", "", ini), "t" & Chr(0)
ini.IniFile = folder & "\no folder\a.ini"
Ini_GetSect "s", lines, ini
Check "a missing file has no lines", UBound(lines), CLng(0)
Ini_Put "s", "k", "x", ini
Check "a file that can not be written", Ini_PutSect("s", Array("", "a=1"), ini), False
CheckRecord "is not told", 0, ""

' Failures
Check "Ini_Get of a Null default", Ini_Get("s", "k", Null, ini), Empty
Check "its description", Error_Description(), "Invalid use of Null"
CheckRecord "its record", 94, "KwRtLibMod.Ini_Get"
Check "Ini_Get of an array", Ini_Get(Array("s"), "k", "", ini), Empty
CheckRecord "its record", 13, "KwRtLibMod.Ini_Get"
Set nothing_at_all = Nothing
Check "Ini_Get of Nothing", Ini_Get("s", "k", "", nothing_at_all), Empty
CheckRecord "its record", 91, "KwRtLibMod.Ini_Get"
Check "Ini_Get clears the record", Ini_Get("s", "k", "none", ini), "none"
CheckRecord "of an error before", 0, ""
Check "Ini_PutSect of Nothing", Ini_PutSect("s", Array("", "a=1"), nothing_at_all), True
CheckRecord "its record", 91, "KwRtLibMod.Ini_PutSect"
On Error Resume Next
Ini_Put "s", "k", Null, ini
CheckError "Ini_Put of Null", 94, "Invalid use of Null"
Ini_Put "s", "k", Array(1), ini
CheckError "Ini_Put of an array", 13, "Type mismatch"
Ini_Put "s", "k", "x", nothing_at_all
CheckError "Ini_Put of Nothing", 91, "Object variable or With block variable not set"
Ini_GetSect "s", lines, nothing_at_all
CheckError "Ini_GetSect of Nothing", 91, ""
Ini_DeleteSection "s", nothing_at_all
CheckError "Ini_DeleteSection of Nothing", 91, ""
Ini_DeletePar "s", "k", nothing_at_all
CheckError "Ini_DeletePar of Nothing", 91, ""
On Error GoTo 0
CheckRecord "an operation without a handler tells nothing", 0, ""

' Names beyond the services' limit
long_folder = folder
For i = 1 To 6
  long_folder = long_folder & "\" & String(50, "a")
Next
Path_Create long_folder
ini.IniFile = long_folder & "\a.ini"
Check "a file of a long name that is not there", Ini_Get("s", "k", "none", ini), "none"
Ini_Put "s", "k", "x", ini
Check "a value in it", Ini_Get("s", "k", "none", ini), "x"
Check "it lies where it should", File_Verify(ini.IniFile), CInt(True)
ini.IniFile = long_folder & "\no folder\a.ini"
Ini_Put "s", "k", "x", ini
Check "a long name in a folder that is not there", Ini_Get("s", "k", "none", ini), "none"
CheckRecord "is not told", 0, ""
Check "the long folder goes", Path_Kill(folder & "\" & String(50, "a")), CInt(0)

fso.DeleteFolder folder
Finish
