' Macros in path names and setup descriptions, late bound.
Dim fso, name, folder, application, key, dao, path, files, f, i, mark, chain

Set fso = CreateObject("Scripting.FileSystemObject")
mark = Chr(27) & Chr(11)

' Without this value every name leaves an entry in the error state.
dao = "SOFTWARE\Microsoft\Shared Tools\dao360.dll"
RegistryWrite dao, "Path", "C:\Shared\DAO\dao360.dll"

Function Resolved(text)
  Dim resolving, base
  resolving = text
  base = "C:\App"
  If ResolveFileName(resolving, base) Then
    Resolved = "failed: " & resolving
  Else
    Resolved = resolving
  End If
End Function

name = ""
folder = Chr(0)
Check "ResolveFileName of nothing", ResolveFileName(name, folder), False
Check "changes neither the name", name, ""
Check "nor the folder", folder, Chr(0)
Check "$(WinPath) meets a backslash", Resolved("$(WinPath)\X.DLL"), Get_WinPath() & "X.DLL"
Check "$(WinPath) without one", Resolved("$(WinPath)X.DLL"), Get_WinPath() & "X.DLL"
Check "$(WinSysPath) in small letters", Resolved("$(winsyspath)\x"), Get_SysPath() & "x"
Check "$(WinSysPathSysFile)", Resolved("$(WinSysPathSysFile)\x"), Get_SysPath() & "x"
Check "$(ProgramFiles)", Resolved("$(ProgramFiles)\x"), Get_ProgramFilesPath() & "\x"
Check "$(Programs)", Resolved("$(Programs)\x"), Get_ProgramFilesPath() & "\x"
Check "$(AppData)", Resolved("$(AppData)\x"), Get_SpecialPath(26) & "\x"
Check "$(PrivateStartUp)", Resolved("$(PrivateStartUp)\x"), Get_SpecialPath(7) & "\x"
Check "$(Fonts)", Resolved("$(Fonts)\x"), Get_SpecialPath(20) & "\x"
Check "$(TempPath)", Resolved("$(TempPath)\x"), Get_TempPath() & "x"
Check "$(MSDAOPath)", Resolved("$(MSDAOPath)\x"), "C:\Shared\DAO\x"
Check "$(CurPath)", Resolved("$(CurPath)\x"), fso.GetAbsolutePathName("x")
Check "$(AppPath) twice", Resolved("$(AppPath)\a;$(APPPATH)\b"), "C:\App\a;C:\App\b"
Check "macros that meet", Resolved("$(WinPath)$(WinPath)"), Get_WinPath() & Get_WinPath()
Check "a macro that is none", Resolved("$(NoSuchMacro)\x"), "$(NoSuchMacro)\x"
Check "a name in the application's folder", Resolved(".\x"), "C:\App\x"
application = "C:\a\b\c"
name = "..\..\x"
Check "a name two folders up", ResolveFileName(name, application), False
Check "is below them", name, "C:\a\x"
Check "tells nothing", Check_Error(), False

name = "$(AppPath)\x"
folder = Chr(0)
ResolveFileName name, folder
Check "Chr(0) becomes the application's folder", fso.FolderExists(folder), True
Check "and stands for $(AppPath)", name, folder & "\x"
name = "$(AppPath)\x"
Check "a folder left out", ResolveFileName(name), False
Check "is the application's too", name, folder & "\x"

RegistryDeleteKey dao
Check "$(MSDAOPath) without the library", Right(Resolved("$(MSDAOPath)"), 21), "\Microsoft Shared\DAO"
CheckRecord "leaves an entry", 20000, "KwRtLibMod.RegistryRead"
RegistryWrite dao, "Path", "C:\Shared\DAO\dao360.dll"

key = "SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\qvrt script.exe"
RegistryWrite key, "Path", "C:\Programmi\Prova\"
Check "$(SetupPath:)", Resolved("$(SetupPath:qvrt script.exe)\x"), "C:\Programmi\Prova\x"
Check "in any case", Resolved("$(SETUPPATH:QVRT SCRIPT.EXE)"), "C:\Programmi\Prova"
RegistryDeleteKey key
name = "$(AppPath)\$(SetupPath:qvrt script.exe)"
application = "C:\App"
Check "$(SetupPath:) of a program that is not registered", ResolveFileName(name, application), True
Check "leaves the name half expanded", name, "C:\App" & mark & "$(SetupPath:qvrt script.exe)"
CheckRecord "and tells", 20000, "KwRtLibMod.RegistryRead < KwRtLibMod.ResolveFileName"
Check "$(SetupPath: without its bracket", Resolved("$(SetupPath:x"), "failed: $(SetupPath:x"
CheckRecord "tells too", 5, "KwRtLibMod.ResolveFileName"

' A setup description.
path = fso.BuildPath(fso.GetSpecialFolder(2).Path, fso.GetTempName())
Sub Describe(lines)
  Dim stream
  Set stream = fso.CreateTextFile(path, True)
  stream.Write lines
  stream.Close
  Set files = CreateObject("QvRtLibOle.kwCollection")
End Sub

Function Line(number, fields)
  Line = "File" & number & "=" & fields & vbCrLf
End Function

chain = " < QvRtLibOle.KwRtLibMod.SetupIniRead < QvRtLibOle.KwRtLibMod.SetupInfoLoad"
Set files = CreateObject("QvRtLibOle.kwCollection")
Check "SetupInfoLoad of a missing file", SetupInfoLoad(path, files, 0), False
Check "adds nothing", files.Count, CLng(0)
Check "and tells nothing", Check_Error(), False

Describe "[Setup]" & vbCrLf & "AppExe=prova.exe" & vbCrLf & "DefaultDir=$(WinPath)\Prova" & vbCrLf & _
  "[Bootstrap Files]" & vbCrLf & _
  Line(1, "@reg.dll,$(WinSysPath)\qvrt,$(DLLSelfRegister),$(Shared),8/6/98 5:30:00 PM,1024,5.1.2.3") & _
  "[Setup1 Files]" & vbCrLf & _
  Line(1, "@PROVA.EXE,$(AppPath),$(EXESelfRegister),,8/6/98 12:30:00 PM,2048,32767.0.0.-1") & _
  Line(2, "@prova.tlb,.\Tipi,$(TLBRegister),,1/2/03,512,0.0.0.0") & _
  Line(4, "@gap.txt,$(AppPath),,,1/2/03,512,0.0.0.0")
Check "SetupInfoLoad", SetupInfoLoad(path, files, 0), False
Check "one record for each line before the gap", files.Count, CLng(3)
Set f = files.Item("reg.dll")
Check "FileName", f.FileName, "reg.dll"
Check "Installed.FileName", f.Installed.FileName, Get_SysPath() & "qvrt\reg.dll"
Check "RegMode of a library", f.RegMode, CLng(1)
Check "IsShared", f.IsShared, True
Check "IsAppExe of another file", f.IsAppExe, False
Check "LastWriteTime", CStr(f.LastWriteTime), CStr(#1998-08-06 17:30:00#)
Check "FileSize", f.FileSize, CLng(1024)
Check "MajVer", f.MajVer, CLng(327681)
Check "MinVer", f.MinVer, CLng(131075)
Check "a file that is not installed has no version", f.Installed.MajVer, CLng(0)
Check "and is not updated", f.Updated, False
Check "nor its other record", f.Installed.Updated, False
Check "RegName without a reader of type libraries", f.Installed.RegName, ""
Check "CLSID without one", f.Installed.CLSID, ""
Set f = files.Item(2)
Check "IsAppExe in any case", f.IsAppExe, True
Check "$(AppPath) is DefaultDir", f.Installed.FileName, Get_WinPath() & "Prova\PROVA.EXE"
Check "RegMode of a program", f.RegMode, CLng(2)
Check "IsShared without the marker", f.IsShared, False
Check "twelve in the afternoon is the next day", CStr(f.LastWriteTime), CStr(#1998-08-07 00:30:00#)
Check "VersionString", f.VersionString, "32767.0.0.-1"
Set f = files.Item("PROVA.TLB")
Check "a relative folder", f.Installed.FileName, Get_WinPath() & "Prova\Tipi\prova.tlb"
Check "RegMode of a type library", f.RegMode, CLng(3)
Check "a date without a time", CStr(f.LastWriteTime), CStr(#2003-01-02#)
Set files = CreateObject("QvRtLibOle.kwCollection")
Check "SIF_NOBOOT", SetupInfoLoad(path, files, 1), False
Check "leaves a section out", files.Count, CLng(2)

Describe "[Setup1 Files]" & vbCrLf & Line(1, "@shell32.dll,$(WinSysPath),,,8/6/98,1,0.0.0.1") & _
  Line(2, "@SHELL32.DLL,$(WinSysPath),,,8/6/98,1,0.0.0.2")
Check "a file that is installed", SetupInfoLoad(path, files, 2), False
Check "its second, newer line is dropped", files.Count, CLng(1)
Set f = files.Item(1)
Check "its installed size", f.Installed.FileSize, CLng(fso.GetFile(Get_SysPath() & "shell32.dll").Size)
Check "its installed version is higher", f.Installed.MajVer > 0, True
Check "so it is updated", f.Updated, True
Check "and its other record", f.Installed.Updated, True

Describe "[Setup1 Files]" & vbCrLf & Line(1, "@a,C:\x,,,8/6/98,1,0.0.0.2") & _
  Line(2, "@a,C:\x,,,8/6/98,1,0.0.0.1")
Check "a second line that is older", SetupInfoLoad(path, files, 0), True
Check "leaves the first", files.Item(1).MinVer, CLng(2)
CheckRecord "after what its missing file has told", 20000, "KwRtLibMod.GetFileVersion" & chain
Describe "[Setup1 Files]" & vbCrLf & Line(1, "@a,C:\x,,,8/6/98,1")
Check "a line of six fields", SetupInfoLoad(path, files, 0), True
CheckRecord "only the Source tells", 0, chain
Describe "[Setup1 Files]" & vbCrLf & Line(1, "@a,$(SetupPath:no such.exe),,,8/6/98,1,0.0.0.0")
Check "a folder that can't be resolved", SetupInfoLoad(path, files, 0), True
CheckRecord "is told from the beginning", 20000, _
  "KwRtLibMod.RegistryRead < KwRtLibMod.ResolveFileName" & chain
Describe "[Setup1 Files]" & vbCrLf & Line(1, "@a,C:\x,,,8/6/98,1,32767.0.0.0") & _
  Line(2, "@a,C:\x,,,8/6/98,1,-1.0.0.0")
Check "versions too far apart", SetupInfoLoad(path, files, 0), True
CheckRecord "are told from the beginning too", 6, "QvRtLibOle.KwRtLibMod.VersionCompare" & chain

fso.DeleteFile path
RegistryDeleteKey dao
Finish
