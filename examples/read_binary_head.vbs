' What does the head of a binary file say? The first bytes are read into a String, one character a
' byte, and taken apart with Buffer_Get and the codecs. Knows programs and libraries of Windows and
' Linux, and PNG images; shows a dump of anything else.
'
'   cscript read_binary_head.vbs [file]        without a file: the library's own DLL

Option Explicit
Const O_RDONLY = 1, SH_DENYNO = 64
Const HEAD_BYTES = 4096
Dim rt, fileName, head, offset

Set rt = CreateObject("QvRtLibOle.KwRtLib")
If WScript.Arguments.Count > 0 Then
  fileName = WScript.Arguments(0)
Else
  fileName = OwnLibrary()
End If
head = ReadHead(fileName)
WScript.Echo fileName & ": " & Len(head) & " bytes of its head"

If Left(head, 2) = "MZ" Then
  ShowWindowsProgram
ElseIf Left(head, 4) = Chr(127) & "ELF" Then
  ShowLinuxProgram
ElseIf Left(head, 8) = Chr(137) & "PNG" & vbCrLf & Chr(26) & vbLf Then
  ShowImage
Else
  ShowDump
End If
WScript.Echo "done"

' The variable that is given to File_Read32 tells by its length how much is read.
Function ReadHead(name)
  Dim fso, handle, size
  Set fso = CreateObject("Scripting.FileSystemObject")
  handle = CLng(0)
  If rt.File_Open32(name, O_RDONLY, SH_DENYNO, 0, handle) Then Fail "File_Open32"
  size = fso.GetFile(name).Size
  If size > HEAD_BYTES Then size = HEAD_BYTES
  ReadHead = String(size, " ")
  If rt.File_Read32(handle, ReadHead) Then Fail "File_Read32"
  rt.File_Close32 handle
End Function

' The registry knows where the server was registered from.
Function OwnLibrary()
  Dim shell, classId
  Set shell = CreateObject("WScript.Shell")
  classId = shell.RegRead("HKCR\QvRtLibOle.KwRtLib\CLSID\")
  OwnLibrary = shell.RegRead("HKCR\CLSID\" & classId & "\InprocServer32\")
End Function

' Reads on at Offset: the subtype of a variable tells Buffer_Get what to read.
Function NextInteger()
  NextInteger = CInt(0)
  If rt.Buffer_Get(head, offset, NextInteger) Then Fail "Buffer_Get"
End Function

Function NextLong()
  NextLong = CLng(0)
  If rt.Buffer_Get(head, offset, NextLong) Then Fail "Buffer_Get"
End Function

Function NextText(length)
  NextText = String(length, " ")
  If rt.Buffer_Get(head, offset, NextText) Then Fail "Buffer_Get"
End Function

Sub ShowWindowsProgram
  Dim sections, optionalBytes, i, name, size, place
  offset = CLng(&H3D)  ' positions begin at 1
  offset = NextLong() + 1
  If NextText(4) <> "PE" & Chr(0) & Chr(0) Then
    WScript.Echo "  a DOS program"
    Exit Sub
  End If
  WScript.Echo "  a Windows program for " & Machine(NextInteger())
  sections = NextInteger()
  offset = offset + 12  ' time of linking, the old symbol table
  optionalBytes = NextInteger()
  If NextInteger() And &H2000 Then WScript.Echo "  a library"
  Select Case NextInteger()
    Case &H10B: WScript.Echo "  32-bit addresses"
    Case &H20B: WScript.Echo "  64-bit addresses"
  End Select
  offset = offset + optionalBytes - 2
  WScript.Echo "  " & sections & " sections:"
  For i = 1 To sections
    name = NextText(8)
    If InStr(name, Chr(0)) > 0 Then name = Left(name, InStr(name, Chr(0)) - 1)
    size = NextLong()
    place = NextLong()
    offset = offset + 24
    WScript.Echo "    " & Left(name & Space(10), 10) & Right(Space(10) & size, 10) & " bytes at " & Hex(place)
  Next
End Sub

Function Machine(code)
  Select Case code
    Case &H14C: Machine = "x86"
    Case &H8664: Machine = "x86-64"
    Case &HAA64: Machine = "ARM64"
    Case Else: Machine = "machine " & Hex(code)
  End Select
End Function

Sub ShowLinuxProgram
  Dim kind
  WScript.Echo "  a Linux program, " & Asc(Mid(head, 5, 1)) * 32 & "-bit"
  offset = CLng(17)
  kind = NextInteger()
  If kind = 2 Then WScript.Echo "  an executable"
  If kind = 3 Then WScript.Echo "  a library, or an executable that runs at any address"
  WScript.Echo "  for machine " & NextInteger() & " (62 is x86-64, 3 is x86, 183 is ARM64)"
End Sub

' The image's numbers are big-endian: their bytes are turned round for the codecs.
Sub ShowImage
  WScript.Echo "  a PNG image of " & BigEndian(17) & " x " & BigEndian(21) & " pixels, " & _
    Asc(Mid(head, 25, 1)) & " bits a sample"
End Sub

Function BigEndian(position)
  BigEndian = rt.Str_2_Long(StrReverse(Mid(head, position, 4)))
End Function

Sub ShowDump
  Dim i, line
  For i = 1 To 16
    If i > Len(head) Then Exit For
    line = line & " " & Right("0" & Hex(Asc(Mid(head, i, 1))), 2)
  Next
  WScript.Echo "  something else:" & line
End Sub

Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
