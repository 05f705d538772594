' The system's folders and the machine's drives, late bound.
Dim fso, shell, roots, i, found, folder, file, name, serial, longest, flags, kind, fileSystem, root, key

Set fso = CreateObject("Scripting.FileSystemObject")
Set shell = CreateObject("WScript.Shell")

Check "Get_WinPath", LCase(Get_WinPath()), LCase(fso.GetSpecialFolder(0).Path) & "\"
Check "Get_SysPath", LCase(Get_SysPath()), LCase(fso.GetSpecialFolder(1).Path) & "\"
Check "Get_SpecialPath of the Windows folder", Get_SpecialPath(36) & "\", Get_WinPath()
Check "Get_SpecialPath of the system folder", Get_SpecialPath(37) & "\", Get_SysPath()
Check "Get_SpecialPath of the application data", Get_SpecialPath(26), Replace(shell.ExpandEnvironmentStrings("%APPDATA%"), Chr(0), "")
Check "with the flag that creates it", Get_SpecialPath(26 - 32768), Get_SpecialPath(26)
Error_Set 5
Check "Get_SpecialPath of the printers, which are no folder", Get_SpecialPath(4), ""
Check "leaves the record alone", Error_Number(), CLng(5)
Reset_Error

folder = fso.GetSpecialFolder(2).Path
file = folder & "\a long name, for a short one.text"
fso.CreateTextFile(file, True).Close
name = Get_ShortPathName(file)
Check "Get_ShortPathName names the file", fso.FileExists(name), True
Check "with at most 8 and 3 characters", Len(name) - InStrRev(name, "\") <= 12, True
fso.DeleteFile file
Check "Get_ShortPathName of a missing file", Get_ShortPathName(file), ""
Check "has the system's text", Error_Description(), vbCrLf & SystemError(Error_LastDLLError())
CheckRecord "and tells", 20000, "KwRtLibMod.Get_ShortPathName"

key = "SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\qvrt script.exe"
RegistryWrite key, "Path", "C:\Programmi\Prova\;D:\"
Check "Get_AppPaths", Get_AppPaths("qvrt script.exe"), "C:\Programmi\Prova\;D:\"
RegistryDeleteKey key
Check "Get_AppPaths of a program that is not registered", Get_AppPaths("qvrt script.exe"), ""
CheckRecord "and tells", 20000, "KwRtLibMod.RegistryRead"
Check "Get_ProgramFilesPath", Get_ProgramFilesPath(), _
  shell.RegRead("HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\ProgramFilesDir")

Check "GetDriveStrings", GetDriveStrings(roots), False
Check "from 1", LBound(roots), CLng(1)
Check "one for each drive", UBound(roots), CLng(fso.Drives.Count)
found = False
For i = 1 To UBound(roots)
  If roots(i) = "C:\" Then found = True
Next
Check "with their backslash", found, True

Check "GetVolumeInfo", GetVolumeInfo("C:\", name, serial, longest, flags, fileSystem, kind), False
Check "VolumeName", name, fso.GetDrive("C:").VolumeName
Check "SerialNumber", serial, CLng(fso.GetDrive("C:").SerialNumber)
Check "MaxFileLen", longest, CLng(255)
Check "FileSysFlags keep the case of names", (flags And 2), CLng(2)
Check "FileSysName", fileSystem, fso.GetDrive("C:").FileSystem
Check "DriveType of a disk", kind, CLng(3)
Check "GetVolumeInfo of nothing but the drive", GetVolumeInfo("C:\"), False
name = "old"
Check "GetVolumeInfo of a missing drive", GetVolumeInfo("Q:\", name), True
Check "leaves the variable alone", name, "old"
CheckRecord "and tells", 20000, "KwRtLibMod.GetVolumeInfo"

Check "Get_DiskSpace", Get_DiskSpace("C:\") > 0, True
Check "is a Double", VarType(Get_DiskSpace("C:\")), VarType(CDbl(1))
Check "Get_DiskSpace of a missing drive", Get_DiskSpace("Q:\"), CDbl(-1)
Check "tells nothing", Check_Error(), False
root = "old"
Check "Get_DiskFree", Get_DiskFree(0, root), False
Check "with the first disk", root, "C:\"
Check "Get_DiskFree without any disk is no failure", Get_DiskFree(CDbl("1E30"), root), False
Check "but has no root", root, ""
Finish
