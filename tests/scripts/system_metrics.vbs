' Measures and colours, late bound.
Dim shell, i, w, h, maj, min, build, isNt, info, answer, cpu, math, mode, before

Set shell = CreateObject("WScript.Shell")

Sub CheckLong(name, value)
  Check name & " is a Long", VarType(value), VarType(CLng(1))
  Check name & " is above 0", value > 0, True
End Sub
Sub CheckInteger(name, value)
  Check name & " is an Integer", VarType(value), VarType(CInt(1))
  Check name & " is above 0", value > 0, True
End Sub

CheckLong "CaptionSmall_Height", CaptionSmall_Height()
CheckLong "CaptionButton_Width", CaptionButton_Width()
CheckLong "CaptionButton_Height", CaptionButton_Height()
CheckLong "CaptionSmallButton_Height", CaptionSmallButton_Height()
CheckLong "CaptionSmallButton_Width", CaptionSmallButton_Width()
CheckLong "Minimized_Width", Minimized_Width()
CheckLong "Minimized_Height", Minimized_Height()
CheckInteger "Caption_Height", Caption_Height()
CheckInteger "ControlBox_BitmapHeight", ControlBox_BitmapHeight()
CheckInteger "ControlBox_BitmapWidth", ControlBox_BitmapWidth()
CheckInteger "HScroll_BitmapHeight", HScroll_BitmapHeight()
CheckInteger "HScroll_BitmapWidth", HScroll_BitmapWidth()
CheckInteger "HScroll_ThumbWidth", HScroll_ThumbWidth()
CheckInteger "VScroll_BitmapHeight", VScroll_BitmapHeight()
CheckInteger "VScroll_BitmapWidth", VScroll_BitmapWidth()
CheckInteger "VScroll_ThumbHeight", VScroll_ThumbHeight()
CheckInteger "Menu_Height", Menu_Height()
Check "the control box is as wide as a caption's button", CLng(ControlBox_BitmapWidth()), CaptionButton_Width()
Check "and as high", CLng(ControlBox_BitmapHeight()), CaptionButton_Height()

Check "Border_Height of no border", Border_Height(0), CLng(0)
Check "Border_Width of no border", Border_Width(0), CLng(0)
Check "Border_Height of an unknown style", Border_Height(6), CLng(0)
For i = 1 To 5
  CheckLong "Border_Height of style " & i, Border_Height(i)
  CheckLong "Border_Width of style " & i, Border_Width(i)
Next
Check "a sizable border is one for a tool window too", Border_Height(5), Border_Height(2)
Check "a dialog's border is one for a tool window too", Border_Width(4), Border_Width(3)
Check "a sizable border is wider than a line", Border_Width(2) > Border_Width(1), True
w = CInt(0)
h = CInt(0)
DblClick_Rect w, h
CheckInteger "DblClick_Rect width", w
CheckInteger "DblClick_Rect height", h

' The user's settings hold each colour as three numbers.
Sub CheckColour(setting, value)
  Dim rest, parts, n, at
  ReDim parts(2)
  rest = shell.RegRead("HKCU\Control Panel\Colors\" & setting) & " "
  For n = 0 To 2
    at = InStr(rest, " ")
    parts(n) = CLng(Left(rest, at - 1))
    rest = Mid(rest, at + 1)
  Next
  Check setting, value, CLng(parts(0) + 256 * parts(1) + 65536 * parts(2))
End Sub
CheckColour "ActiveBorder", BorderActive_BackColor()
CheckColour "InactiveBorder", BorderInActive_BackColor()
CheckColour "ActiveTitle", CaptionActive_BackColor()
CheckColour "TitleText", CaptionActive_ForeColor()
CheckColour "InactiveTitle", CaptionInActive_BackColor()
CheckColour "InactiveTitleText", CaptionInActive_ForeColor()
CheckColour "WindowFrame", Frame_BackColor()
CheckColour "Menu", Menu_BackColor()
CheckColour "MenuText", Menu_ForeColor()
CheckColour "Scrollbar", Scroll_BackColor()
CheckColour "GrayText", TextGray_ForeColor()
CheckColour "Hilight", TextHigh_BackColor()
CheckColour "HilightText", TextHigh_ForeColor()

maj = CLng(0)
min = CLng(0)
build = CLng(0)
isNt = False
info = "old"
Win_VersionEx maj, min, build, isNt, info
Check "Win_VersionEx major", maj > 3, True
Check "Win_VersionEx build", build > 0, True
Check "Win_VersionEx of the NT line", isNt, True
Check "Win_VersionEx is text", VarType(info), vbString
w = CLng(0)
Win_VersionEx w
Check "Win_VersionEx of the major version alone", w, maj
w = CInt(0)
h = CInt(0)
Win_Version w, h
Check "Win_Version gives the minor version first", CLng(w), min
Check "and the major version second", CLng(h), maj
Dos_Version w, h
Check "Dos_Version gives the bytes of the build", CLng(w) + 256 * h, CLng(build And 32767)

On Error Resume Next
answer = CLng(-77)
h = CInt(-77)
Win_Free answer, h
If Err.Number = 0 Then
  Check "Win_Free", h <= 100 And answer > 0, True
Else
  CheckError "Win_Free of a large machine", 6, "Overflow"
  Check "tells no percent", h, CInt(-77)
End If
cpu = "old"
math = CInt(5)
mode = CInt(5)
Win_Equipment cpu, math, mode
CheckError "Win_Equipment of a present system", 453, "Can't find DLL entry point GetWinFlags in Kernel32.dll"
On Error GoTo 0
Check "leaves the processor", cpu, "old"
Check "has no coprocessor to tell", math, CInt(-1)
Check "and mode 1", mode, CInt(1)

before = Get_ScreenSaverStatus()
Check "Set_ScreenSaverStatus", Set_ScreenSaverStatus(Not before), False
Check "Get_ScreenSaverStatus", Get_ScreenSaverStatus(), Not before
Set_ScreenSaverStatus before
Check "and back", Get_ScreenSaverStatus(), before
Check "Taskman_Enable", Taskman_Enable(True), Empty
Check "Get_ComputerName", Get_ComputerName(), _
  shell.RegRead("HKLM\System\CurrentControlSet\Control\ComputerName\ActiveComputerName\ComputerName")
Check "tells nothing", Check_Error(), False
Finish
