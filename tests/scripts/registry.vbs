' Values of the registry, late bound, with the system's own shell object as the other program.
Const HKEY_CURRENT_USER = -2147483647
Const HKEY_LOCAL_MACHINE = -2147483646
Const REG_NONE = 0
Const REG_SZ = 1
Const REG_EXPAND_SZ = 2
Const REG_BINARY = 3
Const REG_DWORD = 4
Const REG_DWORD_BIG_ENDIAN = 5
Const REG_MULTI_SZ = 7
Const path = "Software\QvRtLib scripts"
Dim shell, value, names, values, types, text, missing, i, found, key

Set shell = CreateObject("WScript.Shell")

Sub CheckRefusal(name, code, source)
  Check name & ": its description", Right(Error_Description(), Len(" (DLL#" & code & ")")), " (DLL#" & code & ")"
  CheckRecord name & ": its record", 20000, source
End Sub

' Written by the other program
shell.RegWrite "HKCU\" & path & "\text", "one", "REG_SZ"
shell.RegWrite "HKCU\" & path & "\expand", "%PATH%", "REG_EXPAND_SZ"
shell.RegWrite "HKCU\" & path & "\number", 305419896, "REG_DWORD"
Check "RegistryRead of a text", RegistryRead(path, "text", value, HKEY_CURRENT_USER), False
Check "the text", value, "one"
Check "RegistryRead of a text to expand", RegistryRead(path, "expand", value, HKEY_CURRENT_USER), False
Check "is not expanded", value, "%PATH%"
Check "RegistryRead of a number", RegistryRead(path, "number", value, HKEY_CURRENT_USER), False
Check "the number", value, CLng(305419896)
Check "a leading backslash", RegistryRead("\" & path, "text", value, HKEY_CURRENT_USER), False
Check "reads the same", value, "one"
Check "two leading backslashes", RegistryRead("\\" & path, "text", value, HKEY_CURRENT_USER), True
CheckRecord "lose only one", 20000, "KwRtLibMod.RegistryRead"

' Read by the other program
Check "RegistryWrite of a text", RegistryWrite(path, "w1", "two", HKEY_CURRENT_USER), False
Check "the other program reads it", shell.RegRead("HKCU\" & path & "\w1"), "two"
Check "RegistryWrite of a number", RegistryWrite(path, "w2", 77, HKEY_CURRENT_USER, REG_DWORD), False
Check "the other program reads it", CLng(shell.RegRead("HKCU\" & path & "\w2")), CLng(77)
Check "RegistryWrite of the default value", RegistryWrite(path, "", "default", HKEY_CURRENT_USER), False
Check "the other program reads it", shell.RegRead("HKCU\" & path & "\"), "default"

' Every type, back and forth
Check "REG_NONE", RegistryWrite(path, "none", "text", HKEY_CURRENT_USER, REG_NONE), False
RegistryRead path, "none", value, HKEY_CURRENT_USER
Check "is four characters 0", value, String(4, Chr(0))
Check "REG_BINARY", RegistryWrite(path, "binary", "A" & Chr(0) & Chr(255), HKEY_CURRENT_USER, REG_BINARY), False
RegistryRead path, "binary", value, HKEY_CURRENT_USER
Check "comes back as an array of Byte", Host.VarType(value), CLng(8192 + vbByte)
Check "of its bytes", Byte_2_Str(value), "A" & Chr(0) & Chr(255)
Check "REG_DWORD_BIG_ENDIAN", RegistryWrite(path, "big", 16909060, HKEY_CURRENT_USER, REG_DWORD_BIG_ENDIAN), False
RegistryRead path, "big", value, HKEY_CURRENT_USER
Check "comes back as a Long", value, CLng(16909060)
Check "REG_MULTI_SZ", RegistryWrite(path, "list", Array("one", "two", 3), HKEY_CURRENT_USER, REG_MULTI_SZ), False
RegistryRead path, "list", value, HKEY_CURRENT_USER
Check "comes back as an array of String", Host.VarType(value), CLng(8192 + vbString)
Check "which can be written again", RegistryWrite(path, "list", value, HKEY_CURRENT_USER, REG_MULTI_SZ), False
Check "REG_EXPAND_SZ", RegistryWrite(path, "expand 2", "%x%", HKEY_CURRENT_USER, REG_EXPAND_SZ), False
RegistryRead path, "expand 2", value, HKEY_CURRENT_USER
Check "comes back as it is", value, "%x%"
Check "an unknown type", RegistryWrite(path, "unknown", "text", HKEY_CURRENT_USER, 4711), False
RegistryRead path, "unknown", value, HKEY_CURRENT_USER
Check "comes back Empty", value, Empty

' Keys
Check "an empty name and value make a key", RegistryWrite(path & "\sub", "", "", HKEY_CURRENT_USER), False
Check "without a default value", RegistryRead(path & "\sub", "", value, HKEY_CURRENT_USER), True
CheckRefusal "a missing value", 2, "KwRtLibMod.RegistryRead"
Check "an empty name and an array", RegistryWrite(path & "\sub", "", Array("x"), HKEY_CURRENT_USER), True
CheckRecord "fail", 13, "KwRtLibMod.RegistryWrite"
Check "a missing key", RegistryRead(path & "\none", "x", value, HKEY_CURRENT_USER), True
CheckRefusal "a missing key", 2, "KwRtLibMod.RegistryRead"
Check "a root that is none", RegistryRead(path, "x", value, 0), True
CheckRefusal "a root that is none", 6, "KwRtLibMod.RegistryRead"
Check "a value that is no number", RegistryWrite(path, "bad", "x", HKEY_CURRENT_USER, REG_DWORD), True
CheckRecord "fails", 13, "KwRtLibMod.RegistryWrite"
Check "a value past a Long", RegistryWrite(path, "bad", 1E10, HKEY_CURRENT_USER, REG_DWORD), True
CheckRecord "fails", 6, "KwRtLibMod.RegistryWrite"
Check "Null", RegistryWrite(path, "bad", Null, HKEY_CURRENT_USER), True
CheckRecord "fails", 94, "KwRtLibMod.RegistryWrite"

Check "RegistryListKeys", RegistryListKeys(path, names, HKEY_CURRENT_USER), False
Check "lower bound of the names", LBound(names), CLng(0)
Check "upper bound of the names", UBound(names), CLng(1)
Check "element 0 is empty", names(0), ""
Check "element 1 is the key", names(1), "sub"
Check "RegistryListKeys without keys", RegistryListKeys(path & "\sub", names, HKEY_CURRENT_USER), False
Check "has the upper bound 0", UBound(names), CLng(0)
Check "RegistryListKeys of a missing key", RegistryListKeys(path & "\none", names, HKEY_CURRENT_USER), True
CheckRefusal "RegistryListKeys of a missing key", 2, "KwRtLibMod.RegistryListKeys"
Check "RegistryListValues", RegistryListValues(path, names, values, types, HKEY_CURRENT_USER), False
found = 0
For i = 1 To UBound(names)
  Select Case names(i)
    Case "text"
      Check "type of a text", types(i), CLng(REG_SZ)
      Check "value of a text", values(i), "one"
      found = found + 1
    Case "number"
      Check "type of a number", types(i), CLng(REG_DWORD)
      Check "value of a number", values(i), CLng(305419896)
      found = found + 1
    Case ""
      Check "type of the default value", types(i), CLng(REG_SZ)
      Check "the default value", values(i), "default"
      found = found + 1
    Case "unknown"
      Check "type of an unknown value", types(i), CLng(4711)
      Check "an unknown value", values(i), Empty
      found = found + 1
  End Select
Next
Check "all of them are listed", found, 4
Check "RegistryListValues of a missing key", RegistryListValues(path & "\none", names, values, types, HKEY_CURRENT_USER), True
CheckRefusal "RegistryListValues of a missing key", 2, "KwRtLibMod.RegistryListValues"

' Deleting
Check "RegistryDeleteValue", RegistryDeleteValue(path, "text", HKEY_CURRENT_USER), False
Check "the value has gone", RegistryDeleteValue(path, "text", HKEY_CURRENT_USER), True
CheckRefusal "RegistryDeleteValue of a missing value", 2, "KwRtLibMod.RegistryDeleteValue"
Check "RegistryDelete wants the same path below", RegistryDelete(path, HKEY_CURRENT_USER), True
CheckRefusal "RegistryDelete", 2, "KwRtLibMod.RegistryDelete"
RegistryWrite path & "\" & path, "", "", HKEY_CURRENT_USER
Check "RegistryDelete with the same path below", RegistryDelete(path, HKEY_CURRENT_USER), False
RegistryListKeys path & "\Software", names, HKEY_CURRENT_USER
Check "deletes that one", UBound(names), CLng(0)
RegistryDeleteKey path & "\Software", HKEY_CURRENT_USER
Check "RegistryDeleteKey of a key with keys below", RegistryDeleteKey("\" & path, HKEY_CURRENT_USER), True
CheckRecord "fails", 20000, "KwRtLibMod.RegistryDeleteKey"
Check "RegistryDeleteKey", RegistryDeleteKey(path & "\sub", HKEY_CURRENT_USER), False
Check "of a missing key", RegistryDeleteKey(path & "\sub", HKEY_CURRENT_USER), True
CheckRefusal "RegistryDeleteKey of a missing key", 2, "KwRtLibMod.RegistryDeleteKey"
Check "RegistryDeleteKey with a leading backslash", RegistryDeleteKey("\" & path, HKEY_CURRENT_USER), False
Check "RegistryDeleteKey without a backslash", RegistryDeleteKey("Software", HKEY_CURRENT_USER), True
CheckRecord "tells nothing", 0, ""

' An application's own key
Check "GetRegistryAppKey", GetRegistryAppKey("QvRtLib scripts"), "Software\Corvane\QvRtLib scripts"
Check "RegistryApp_Write", RegistryApp_Write("QvRtLib scripts", "Path", "C:\App"), False
Check "RegistryApp_Read", RegistryApp_Read("QvRtLib scripts", "Path", text), False
Check "gives the text", text, "C:\App"
Check "the other program finds it in the machine's part", shell.RegRead("HKLM\Software\Corvane\QvRtLib scripts\Path"), "C:\App"
Check "the default root is the machine's", RegistryRead("Software\Corvane\QvRtLib scripts", "Path", value), False
Check "and so is its value", value, "C:\App"
Check "GetApplicationPath", GetApplicationPath("QvRtLib scripts"), "C:\App\"
Check "GetApplicationPath of an unknown one", GetApplicationPath("QvRtLib no scripts"), ""
CheckRefusal "GetApplicationPath of an unknown one", 2, "KwRtLibMod.RegistryRead"
Check "RegistryApp_Read of an unknown value", RegistryApp_Read("QvRtLib scripts", "none", text), True
Check "leaves the variable alone", text, "C:\App"
CheckRefusal "RegistryApp_Read of an unknown value", 2, "KwRtLibMod.RegistryRead"
RegistryDeleteKey "Software\Corvane\QvRtLib scripts"
RegistryDeleteKey "Software\Corvane"
Reset_Error
Finish
