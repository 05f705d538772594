' Page geometry, the default printer, spool folders.
Const HKLM = -2147483646, REG_SZ = 1, GSP_ENUMALLPRINTERS = 1
Const PRINTERS = "SYSTEM\CurrentControlSet\Control\Print\Printers"
Dim page, canvas, n, names, spools, fallback, before, ini, old

Set page = CreateObject("QvRtLibOle.QvtPrinter")
Check "HDC of a new record", page.HDC, CLng(0)
canvas = Desk.Canvas(10, 10)
page.HDC = canvas
Check "HDC", page.HDC, CLng(canvas)
Check "XRes", page.XRes > 0, True
Check "YRes", page.YRes > 0, True
Check "the screen has no paper", page.Width, CLng(0)
Check "RightOffset", page.RightOffset, CLng(page.Width - (page.LeftOffset + page.ScaleWidth))
Check "BottomOffset", page.BottomOffset, CLng(page.Height - (page.TopOffset + page.ScaleHeight))
page.LeftOffset = 5
Check "a field can be written", page.LeftOffset, CLng(5)
page.HDC = 0
Check "HDC 0 clears", page.XRes + page.YRes + page.LeftOffset + page.ScaleWidth + page.RightOffset, CLng(0)
On Error Resume Next
page.HDC = 1
CheckError "HDC of what is no device context", 11, "Division by zero"
On Error GoTo 0
Check "GetPrinterParms", GetPrinterParms(canvas, page), False
Check "fills the record", page.XRes > 0, True
Check "GetPrinterParms of 0", GetPrinterParms(0, page), False
Check "clears it", page.XRes, CLng(0)
Check "GetPrinterParms of what is no device context", GetPrinterParms(1, page), True
CheckRecord "is recorded", 11, "KwRtLibMod.GetPrinterParms"
Check "GetPrinterParms into Nothing", GetPrinterParms(0, Nothing), True
CheckRecord "is recorded", 91, "KwRtLibMod.GetPrinterParms"

' --- the default printer
Set ini = CreateObject("QvRtLibOle.QVtIniStruct")
ini.IniFile = Get_WinPath() & "win.ini"
old = Ini_Get("windows", "Device", "", ini)
Check "SetDefaultPrinter", SetDefaultPrinter("QvPrinter", "driver", "LPT9:"), False
Check "writes the entry", Ini_Get("windows", "Device", "", ini), "QvPrinter,driver,LPT9:"
Check "SetDefaultPrinter in another case", SetDefaultPrinter("QVPRINTER", "driver", "LPT9:"), False
Check "does not write", Ini_Get("windows", "Device", "", ini), "QvPrinter,driver,LPT9:"
If old = "" Then Ini_DeletePar "windows", "Device", ini Else Ini_Put "windows", "Device", old, ini

' --- spool folders
before = ""
n = RegistryRead(PRINTERS, "DefaultSpoolDirectory", before, HKLM)
n = RegistryWrite(PRINTERS, "DefaultSpoolDirectory", "C:\spool", HKLM, REG_SZ)
n = RegistryWrite(PRINTERS & "\QvScriptA", "SpoolDirectory", "D:\spool", HKLM, REG_SZ)
n = RegistryWrite(PRINTERS & "\QvScriptB", "Other", "x", HKLM, REG_SZ)
Reset_Error
names = ""
spools = "kept"
Check "Get_SpoolPath without names", Get_SpoolPath(fallback, names, spools), False
Check "fills the default", fallback, "C:\spool"
Check "and nothing else", spools, "kept"
names = "QvScriptA" & Chr(0) & Chr(0) & "QvScriptB" & Chr(0)
Check "Get_SpoolPath of two", Get_SpoolPath(fallback, names, spools, 0), False
Check "drops empty names", names, "QvScriptA" & Chr(0) & "QvScriptB"
Check "one has no folder of its own", spools, "D:\spool" & Chr(0) & "C:\spool"
Check "Get_SpoolPath of all", Get_SpoolPath(fallback, names, spools, GSP_ENUMALLPRINTERS), False
Check "has the first", InStr(names, "QvScriptA") > 0, True
Check "has the second", InStr(names, "QvScriptB") > 0, True
Check "in step", Occurrences(Chr(0), names), Occurrences(Chr(0), spools)
Check "Get_SpoolPath without arguments", Get_SpoolPath(), False
n = RegistryDeleteKey(PRINTERS & "\QvScriptA", HKLM)
n = RegistryDeleteKey(PRINTERS & "\QvScriptB", HKLM)
If before = "" Then
  n = RegistryDeleteValue(PRINTERS, "DefaultSpoolDirectory", HKLM)
Else
  n = RegistryWrite(PRINTERS, "DefaultSpoolDirectory", before, HKLM, REG_SZ)
End If
Finish
