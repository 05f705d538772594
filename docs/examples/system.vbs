' == Get_WinPath, Get_SysPath
' Names can be put behind the folder at once.
Show Right(Get_WinPath(), 1)                          '-> \
Show LCase(Left(Get_SysPath(), Len(Get_WinPath()))) = LCase(Get_WinPath())   '-> True

' == Get_SpecialPath
Show Get_SpecialPath(36) & "\" = Get_WinPath()        '-> True
' The printers (4) are no folder of the file system.
Show Get_SpecialPath(4)                               '->
Show Check_Error()                                    '-> False

' == Get_ShortPathName
Show Get_ShortPathName("C:\no such file")             '->
Show Error_Source()                                   '-> KwRtLibMod.Get_ShortPathName
Show Error_LastDLLError()                             '-> 2

' == Get_AppPaths, Get_ProgramFilesPath
Show Get_ProgramFilesPath() = ""                      '-> False
Show Get_AppPaths("no such program.exe")              '->
Show Error_Source()                                   '-> KwRtLibMod.RegistryRead

' == GetDriveStrings
Dim roots, i, has_c
Show GetDriveStrings(roots)                           '-> False
For i = 1 To UBound(roots)
  If roots(i) = "C:\" Then has_c = True
Next
Show has_c                                            '-> True

' == GetVolumeInfo
Dim label, serial, longest, flags, system, kind
Show GetVolumeInfo("C:\", label, serial, longest, flags, system, kind)   '-> False
Show kind                                             '-> 3
Show longest                                          '-> 255
' There is no such drive.
Show GetVolumeInfo("Q:\", label)                      '-> True

' == Get_DiskSpace, Get_DiskFree
Dim root
Show Get_DiskSpace("C:\") > 0                         '-> True
Show Get_DiskSpace("Q:\")                             '-> -1
' No disk has that much: no failure, but no root either.
Show Get_DiskFree(1E+30, root)                        '-> False
Show root                                             '->

' == ResolveFileName
Dim name, app
name = "$(WinPath)\X.DLL"
app = "C:\App"
Show ResolveFileName(name, app)                       '-> False
Show name = Get_WinPath() & "X.DLL"                   '-> True
name = "$(AppPath)\Dati\clienti.txt"
ResolveFileName name, app
Show name                                             '-> C:\App\Dati\clienti.txt
name = "..\Dati\clienti.txt"
ResolveFileName name, app
Show name                                             '-> C:\Dati\clienti.txt

' == SetupInfoLoad
Dim fso, path, stream, files, file
Set fso = CreateObject("Scripting.FileSystemObject")
path = Get_TempFile(Null, "lst")
Set stream = fso.CreateTextFile(path)
stream.WriteLine "[Setup]"
stream.WriteLine "AppExe=fatture.exe"
stream.WriteLine "DefaultDir=C:\Fatture"
stream.WriteLine "[Setup1 Files]"
stream.WriteLine "File1=@fatture.exe,$(AppPath),,,8/6/98 5:30:00 PM,1048576,5.0.0.267"
stream.Close
Set files = CreateObject("QvRtLibOle.kwCollection")
Show SetupInfoLoad(path, files, 0)                    '-> False
Set file = files.Item("fatture.exe")
Show file.IsAppExe                                    '-> True
Show file.VersionString                               '-> 5.0.0.267
Show file.Installed.FileName                          '-> C:\Fatture\fatture.exe
Show file.Updated                                     '-> False
File_Kill path

' == Border_Height, Border_Width
' A form without a border.
Show Border_Height(0)                                 '-> 0
Show Border_Width(0)                                  '-> 0
Show Border_Width(2) > Border_Width(1)                '-> True

' == DblClick_Rect
Dim width, height
DblClick_Rect width, height
Show width > 0                                        '-> True

' == TextHigh_BackColor, TextHigh_ForeColor
Show TextHigh_BackColor() = TextHigh_ForeColor()      '-> False

' == Win_VersionEx
Dim major, minor, build, is_nt, info
Win_VersionEx major, minor, build, is_nt, info
Show is_nt                                            '-> True

' == Get_ScreenSaverStatus, Set_ScreenSaverStatus
Dim active
active = Get_ScreenSaverStatus()
Show Set_ScreenSaverStatus(False)                     '-> False
Show Get_ScreenSaverStatus()                          '-> False
Set_ScreenSaverStatus active
