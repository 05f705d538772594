' Takes the head of a real program file apart: raw bytes through a file handle, values through
' Buffer_Get and the codecs.
'
'   cscript read_binary_head.vbs [program or DLL]

Option Explicit
Dim rt, fileName, handle, attributes, head, offset, newHead
Dim machine, sections, stamp, optionalSize, characteristics

Set rt = CreateObject("QvRtLibOle.KwRtLib")
fileName = "build\x64\QvRtLibOle.dll"
If WScript.Arguments.Count > 0 Then fileName = WScript.Arguments(0)

' Read-only (1) and binary (256), others may do what they like (64).
attributes = CLng(0): handle = CLng(0)
If rt.File_Open32(fileName, 257, 64, attributes, handle) Then Fail "File_Open32"
head = Space(4096)
If rt.File_Read32(handle, head) Then Fail "File_Read32"
rt.File_Close32 handle

WScript.Echo fileName
WScript.Echo "  first bytes: " & rt.BinToHex(Left(head, 16))
If Left(head, 2) <> "MZ" Then
  WScript.Echo "  no program file"
Else
  ' The position of the newer head is a Long at offset 60, counted from 0.
  newHead = rt.Str_2_Long(Mid(head, 61, 4))
  WScript.Echo "  newer head at " & newHead & ", signature " & Mid(head, newHead + 1, 2)
  ' Buffer_Get reads what the variable's type says and moves the offset on.
  offset = newHead + 5
  machine = CInt(0): sections = CInt(0): stamp = CLng(0)
  If rt.Buffer_Get(head, offset, machine) Then Fail "Buffer_Get"
  If rt.Buffer_Get(head, offset, sections) Then Fail "Buffer_Get"
  If rt.Buffer_Get(head, offset, stamp) Then Fail "Buffer_Get"
  offset = offset + 8
  optionalSize = CInt(0): characteristics = CInt(0)
  If rt.Buffer_Get(head, offset, optionalSize) Then Fail "Buffer_Get"
  If rt.Buffer_Get(head, offset, characteristics) Then Fail "Buffer_Get"
  WScript.Echo "  machine &H" & Hex(machine) & ", " & sections & " sections, time stamp &H" & Hex(stamp)
  WScript.Echo "  characteristics: low byte &H" & Hex(rt.Lo_Byte(characteristics)) & _
    ", high byte &H" & Hex(rt.Hi_Byte(characteristics))
End If
WScript.Echo "done"

Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
