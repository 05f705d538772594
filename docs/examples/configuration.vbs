' == Start_Up, QVtIniStruct, QVtIniStruct.ExePath, QVtIniStruct.IniFile, QVtIniStruct.WinPath, QVtIniStruct.SysPath, QVtIniStruct.TmpPath
Const STUPF_NOCHANGEPATH = 2
Dim ini
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.ExePath = "C:\App"
Start_Up ini, "setup", STUPF_NOCHANGEPATH
Show ini.IniFile                        '-> C:\App\SETUP.INI
Show ini.WinPath = Get_WinPath()        '-> True
Show ini.SysPath = Get_SysPath()        '-> True
Show ini.TmpPath = Get_TempPath()       '-> True
Start_Up ini, "C:\my.dir\prog", STUPF_NOCHANGEPATH    ' the folder's dot keeps ".INI" away
Show ini.IniFile                        '-> C:\MY.DIR\PROG

' == QVtIniStruct.CopyTo
Dim ini, copy
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
Set copy = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = "C:\a.ini"
ini.CopyTo copy
Show copy.IniFile    '-> C:\a.ini

' == Ini_Get, Ini_Put
Dim ini, keys
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = Get_TempPath() & "examples.ini"
Ini_Put "Window", "Left", 120, ini
Ini_Put "Window", "Visible", True, ini
Show Ini_Get("Window", "Left", 0, ini)         '-> 120
Show Ini_Get("Window", "Top", 40, ini)         '-> 40
Show Ini_Get("Window", "Visible", False, ini)  '-> True
keys = Ini_Get("Window", "", "", ini)          ' all keys, each with a Chr(0) behind it
Show Replace(keys, Chr(0), ";")                '-> Left;Visible;
Show File_Kill(ini.IniFile)                    '-> 0

' == Ini_GetSect, Ini_PutSect
Dim ini, lines
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = Get_TempPath() & "examples.ini"
Show Ini_PutSect("Towns", Array("left out", "TO=Turin", "RM=Rome"), ini)    '-> False
Ini_GetSect "Towns", lines, ini
Show UBound(lines)             '-> 2
Show lines(2)                  '-> RM=Rome
Ini_GetSect "Rivers", lines, ini
Show UBound(lines)             '-> 0
Show File_Kill(ini.IniFile)    '-> 0

' == Ini_DeletePar, Ini_DeleteSection
Dim ini
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = Get_TempPath() & "examples.ini"
Ini_Put "Window", "Left", 120, ini
Ini_DeletePar "Window", "Left", ini
Show Ini_Get("Window", "Left", "gone", ini)      '-> gone
Show Replace(Ini_Get("", "", "", ini), Chr(0), ";")    '-> Window;
Ini_DeleteSection "Window", ini
Show Ini_Get("Window", "Left", "gone", ini)      '-> gone
Show File_Kill(ini.IniFile)                      '-> 0

' == RegistryWrite, RegistryRead, RegistryDeleteKey
Const HKEY_CURRENT_USER = -2147483647
Const REG_DWORD = 4
Dim value
Show RegistryWrite("Software\Examples", "Left", 120, HKEY_CURRENT_USER, REG_DWORD)    '-> False
Show RegistryRead("Software\Examples", "Left", value, HKEY_CURRENT_USER)              '-> False
Show value                                                                            '-> 120
Show RegistryRead("Software\Examples", "Top", value, HKEY_CURRENT_USER)               '-> True
Show Error_Number()                                                                   '-> 20000
Show Right(Error_Description(), 7)                                                    '-> (DLL#2)
Show RegistryDeleteKey("Software\Examples", HKEY_CURRENT_USER)                        '-> False

' == RegistryListKeys, RegistryListValues, RegistryDeleteValue
Const HKEY_CURRENT_USER = -2147483647
Dim names, values, types
RegistryWrite "Software\Examples", "Colour", "blue", HKEY_CURRENT_USER
RegistryWrite "Software\Examples\Below", "", "", HKEY_CURRENT_USER    ' makes the key alone
Show RegistryListKeys("Software\Examples", names, HKEY_CURRENT_USER)  '-> False
Show UBound(names)    '-> 1
Show names(1)         '-> Below
Show RegistryListValues("Software\Examples", names, values, types, HKEY_CURRENT_USER)    '-> False
Show names(1) & " " & values(1) & " " & types(1)                                         '-> Colour blue 1
Show RegistryDeleteValue("Software\Examples", "Colour", HKEY_CURRENT_USER)               '-> False
RegistryDeleteKey "Software\Examples\Below", HKEY_CURRENT_USER
RegistryDeleteKey "Software\Examples", HKEY_CURRENT_USER

' == RegistryDelete
Const HKEY_CURRENT_USER = -2147483647
RegistryWrite "Examples", "", "", HKEY_CURRENT_USER
Show RegistryDelete("Examples", HKEY_CURRENT_USER)    '-> True
RegistryWrite "Examples\Examples", "", "", HKEY_CURRENT_USER
Show RegistryDelete("Examples", HKEY_CURRENT_USER)    '-> False

' == RegistryApp_Write, RegistryApp_Read, GetRegistryAppKey, GetApplicationPath
Dim text
Show GetRegistryAppKey("Examples")                    '-> Software\Corvane\Examples
Show RegistryApp_Write("Examples", "Path", "C:\App")  '-> False
Show RegistryApp_Read("Examples", "Path", text)       '-> False
Show text                                             '-> C:\App
Show GetApplicationPath("Examples")                   '-> C:\App\
Show RegistryDeleteKey(GetRegistryAppKey("Examples")) '-> False

' == GetFileVersion, GetProductVersion
Dim major, minor, revision, high, low
Show GetFileVersion(Get_SysPath() & "kernel32.dll", major, minor, revision, high, low)    '-> False
Show high = major * 65536 + minor                                                         '-> True
Show low = revision                                                                       '-> True
Show GetProductVersion(Get_SysPath() & "no such file.dll")                                '-> True
Show Error_Number()                                                                       '-> 20000

' == GetInfoCompanyName, GetInfoFileDescription, GetInfoFileVersion, GetInfoInternalName, GetInfoLegalCopyright, GetInfoProductName, GetInfoProductVersion
Dim name
name = Get_SysPath() & "kernel32.dll"
Show GetInfoCompanyName(name) <> ""      '-> True
Show GetInfoFileVersion(name) <> ""      '-> True
Show GetInfoCompanyName(Get_WinPath() & "no such file") = ""    '-> True
Show Error_Number()                                             '-> 20000

' == QvtFileInfo, QvtFileInfo.GetFileInfo, QvtFileInfo.FileSize, QvtFileInfo.FileName, QvtFileInfo.VersionString, QvtFileInfo.MajVer, QvtFileInfo.MinVer
Dim info, major, minor
Set info = CreateObject("QvRtLibOle.QvtFileInfo")
Show info.VersionString                                    '-> 0.0.0.0
Show info.GetFileInfo(Get_SysPath() & "kernel32.dll")      '-> False
Show Get_FileName(info.FileName)                           '-> kernel32.dll
Show info.FileSize > 0                                     '-> True
info.MajVer = 65538     ' 1 in the high word, 2 in the low one
info.MinVer = 196612
Show info.VersionString                                    '-> 1.2.3.4
