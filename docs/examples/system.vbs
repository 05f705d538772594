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

' == Caption_Height, CaptionSmall_Height, CaptionButton_Width, CaptionButton_Height, CaptionSmallButton_Width, CaptionSmallButton_Height
Show Caption_Height() >= CaptionButton_Height()       '-> True
Show CaptionSmall_Height() >= CaptionSmallButton_Height()   '-> True
Show CaptionSmallButton_Width() <= CaptionButton_Width()   '-> True

' == ControlBox_BitmapWidth, ControlBox_BitmapHeight
' As large as a button of the caption.
Show ControlBox_BitmapWidth() = CaptionButton_Width() '-> True
Show ControlBox_BitmapHeight() = CaptionButton_Height()   '-> True

' == HScroll_BitmapWidth, HScroll_BitmapHeight, HScroll_ThumbWidth, VScroll_BitmapWidth, VScroll_BitmapHeight, VScroll_ThumbHeight
' What a list needs beside its text.
Show VScroll_BitmapWidth() > 0                        '-> True
Show VScroll_BitmapHeight() = VScroll_ThumbHeight()   '-> True
Show HScroll_BitmapHeight() = VScroll_BitmapWidth()   '-> True
Show HScroll_BitmapWidth() = HScroll_ThumbWidth()     '-> True

' == Menu_Height, Minimized_Width, Minimized_Height
Show Menu_Height() > 0                                '-> True
Show Minimized_Width() > Minimized_Height()           '-> True

' == CaptionActive_BackColor, CaptionActive_ForeColor, CaptionInActive_BackColor, CaptionInActive_ForeColor
' Texts can be read on their captions.
Show CaptionActive_BackColor() = CaptionActive_ForeColor()       '-> False
Show CaptionInActive_BackColor() = CaptionInActive_ForeColor()   '-> False

' == Menu_BackColor, Menu_ForeColor, TextGray_ForeColor
Show Menu_BackColor() = Menu_ForeColor()              '-> False
Show TextGray_ForeColor() = Menu_ForeColor()          '-> False

' == BorderActive_BackColor, BorderInActive_BackColor, Frame_BackColor, Scroll_BackColor
' Red is the lowest byte of a colour, blue the highest.
Dim colour
colour = Scroll_BackColor()
Show colour = RGB(colour And 255, (colour \ 256) And 255, colour \ 65536)   '-> True
Show BorderActive_BackColor() = BorderInActive_BackColor()   '-> True
Show Frame_BackColor() = Scroll_BackColor()           '-> False

' == Win_Version, Dos_Version
' The minor version comes first.
Dim first, second, major, minor
Win_Version first, second
Win_VersionEx major, minor
Show second = major And first = minor                 '-> True
Dos_Version first, second

' == Win_Free
' A machine of today has more bytes than a Long.
Dim free, percent
On Error Resume Next
Win_Free free, percent
Show Err.Number = 6 Or percent <= 100                 '-> True

' == Win_Equipment
' A question for 16-bit systems.
Dim processor, coprocessor, mode
On Error Resume Next
Win_Equipment processor, coprocessor, mode
Show Err.Number                                       '-> 453
Show coprocessor & " " & mode                         '-> -1 1

' == Taskman_Enable
' Of effect on one old system alone.
Taskman_Enable False
Taskman_Enable True

' == Get_ComputerName, Get_UserName
Dim shell
Set shell = CreateObject("WScript.Shell")
Show UCase(Get_ComputerName()) = UCase(shell.ExpandEnvironmentStrings("%COMPUTERNAME%"))   '-> True
Show LCase(Get_UserName()) = LCase(shell.ExpandEnvironmentStrings("%USERNAME%"))   '-> True

' == HtmlHelpShow
' The contents (1), a topic (0) in a window type of the help file, a topic by its number (15).
Show HtmlHelpShow("C:\App\fatture.chm", 1)            '-> False
Show HtmlHelpShow("C:\App\fatture.chm", 0, "clienti\nuovo.htm", "main")   '-> False
Show HtmlHelpShow("C:\App\fatture.chm", 15, "", "", 42)   '-> False

' == ShowBrowseFolder
' The user cancels.
Dim folder, name
Host.Press_Button 2
Show ShowBrowseFolder(folder, 0, name, "Where to?")   '-> True
Show Error_Number()                                   '-> 32755
Show Error_Description()                              '-> Operazione annullata.
