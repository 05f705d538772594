' ServiceInstall, ServiceUninstall, ServiceVerify, LogEvent and UserCreate, late bound. Two programs
' stand in for the helpers in the system folder, and an object of the host for the directory.
Const kInstall = "QvRtLibOle.KwRtLibMod.ServiceInstall, 0"
Const kUninstall = "QvRtLibOle.KwRtLibMod.ServiceUninstall, 0"
Const kUserCreate = "QvRtLibOle.KwRtLibMod.UserCreate, 0"
Const kProvider = "Software\Classes\LDAP\CLSID"
Const kName = "QvRtScript", kKey = "SYSTEM\CurrentControlSet\Services\"
Dim files, folder, value, calls, user, root

Set files = CreateObject("Scripting.FileSystemObject")
folder = Get_SysPath()
files.CopyFile Host.Folder & "companion.exe", folder & "instsrv.exe"
files.CopyFile Host.Folder & "companion.exe", folder & "srvany.exe"

Check "a service is installed", ServiceInstall(kName, "C:\the program.exe", "one two"), False
Check "by the two calls of the helper", CallsOfHelper(), _
  kName & " REMOVE" & vbLf & kName & " """ & folder & "srvany.exe""" & vbLf
Check "its program is stored", RegistryRead(kKey & kName & "\Parameters", "Application", value), False
Check "in quotes, with its parameters", value, """C:\the program.exe"" one two"
Check "it is in order", ServiceVerify(kName), False
Check "it is installed anew without parameters", ServiceInstall(kName, "C:\program.exe", ""), False
RegistryRead kKey & kName & "\Parameters", "Application", value
Check "with nothing behind the program", value, """C:\program.exe"""
Check "another program in its place", RegistryWrite(kKey & kName, "ImagePath", "C:\other.exe"), False
Check "is not in order", ServiceVerify(kName), True
Check "but no error", Error_Number(), CLng(0)
RegistryWrite kKey & kName, "ImagePath", UCase(folder & "srvany.exe")
Check "case does not count", ServiceVerify(kName), False
Check "it is removed", ServiceUninstall(kName), False
Check "and unknown then", ServiceVerify(kName), True
CheckRecord "which is the registry's error", 20000, "KwRtLibMod.RegistryRead < " & kUninstall
Check "removing what is not there succeeds", ServiceUninstall(kName), False
Check "whatever the helper's exit code", ServiceUninstall("exit=5"), False
Check "which is kept", Error_LastDLLError(), CLng(5)

Check "a service that does not come out right fails", ServiceInstall("Deaf" & kName, "C:\a.exe", ""), True
Check "with its text", Error_Description(), "Servizio non installato correttamente."
CheckRecord "as error 20000", 20000, kInstall
files.DeleteFile folder & "srvany.exe"
Check "without the runner nothing is installed", ServiceInstall(kName, "C:\a.exe", ""), True
Check "since it is not found", Error_Description(), "Impossibile localizzare srvany.exe"
CheckRecord "as error 20000", 20000, kInstall
files.DeleteFile folder & "instsrv.exe"
Check "without the installer neither", ServiceInstall(kName, "C:\a.exe", ""), True
Check "since it is not found either", Error_Description(), "Impossibile localizzare instsrv.exe"
CheckRecord "as error 20000", 20000, kInstall
Check "nor is anything removed", ServiceUninstall(kName), True
CheckRecord "by the same error", 20000, kUninstall
files.DeleteFile folder & "instsrv.log"

Check "an entry is logged", LogEvent("QvRtScript", "text", 4, CLng(5), 2), False
Check "without a category too", LogEvent("QvRtScript", "text", CLng(1), CLng(5)), False
Check "a kind that fits no entry fails", LogEvent("QvRtScript", "text", CLng(70000), CLng(5)), True
CheckRecord "by an overflow", 6, "QvRtLibOle.KwRtLibMod.LogEvent, 0"

root = "LDAP://localhost"
user = "LDAP://cn=rossi,cn=Users,dc=example,dc=com"
calls = "bind " & root & vbLf & root & " Create(User,rossi)" & vbLf & _
  root & "/rossi SetInfo()" & vbLf & root & "/rossi SetPassword(segreto)" & vbLf & _
  root & "/rossi AccountExpirationDate=of type 7" & vbLf & root & "/rossi SetInfo()" & vbLf & _
  "bind " & user & vbLf
Host.Directory_Begin
Check "an account is made", UserCreate("server", "rossi", "segreto"), False
Check "in the directory", Host.Directory_End, calls
Host.Directory_Begin
Check "with group and properties", UserCreate("server", "rossi", "segreto", "Vendite", "Mail=a=b::City=Roma"), False
Check "all is told to the directory", Host.Directory_End, calls & user & " Mail=a=b" & vbLf & _
  user & " City=Roma" & vbLf & "bind WinNT://server/Vendite,group" & vbLf & user & " get ADsPath" & vbLf & _
  "WinNT://server/Vendite,group Add(" & user & ")" & vbLf & "WinNT://server/Vendite,group SetInfo()" & vbLf
Host.Directory_Begin
Check "an entry without a value fails", UserCreate("server", "rossi", "segreto", , "Mail"), True
CheckRecord "by an invalid argument", 5, kUserCreate
Check "with the account made", Host.Directory_End, calls
Reset_Error
RegistryRead kProvider, "", value
RegistryDeleteKey kProvider
Check "without a provider no account is made", UserCreate("server", "rossi", "segreto"), True
RegistryWrite kProvider, "", value
Check "which is an error of the system", Error_Number() < 0, True
Check "in the function", Error_Source(), kUserCreate
Finish

' The arguments of each call of the installer.
Function CallsOfHelper()
  Dim log, at, line
  log = files.OpenTextFile(folder & "instsrv.log").ReadAll & vbLf
  Do While log <> ""
    at = InStr(log, vbLf)
    line = Left(log, at - 1)
    log = Mid(log, at + 1)
    If Left(line, 10) = "arguments=" Then CallsOfHelper = CallsOfHelper & Mid(line, 11) & vbLf
  Loop
End Function
