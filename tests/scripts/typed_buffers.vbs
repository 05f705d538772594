' Typed buffers, late bound.
Dim buffer, offset, value, i, nothing_there, list

' The bytes of a text in hexadecimal, with a blank between them.
Function Bytes_Of(text)
  Dim n, shown
  For n = 1 To Len(text)
    If n > 1 Then shown = shown & " "
    shown = shown & Right("0" & Hex(Asc(Mid(text, n, 1))), 2)
  Next
  Bytes_Of = shown
End Function

Sub CheckPut(name, given, expected)
  Dim typed
  typed = ""
  Check name & " is put", BufferTyped_Put(typed, given), CInt(0)
  Check name & " has its bytes", Bytes_Of(typed), expected
End Sub

CheckPut "an Integer", CInt(-2), "02 FE FF"
CheckPut "a Long", CLng(1), "03 01 00 00 00"
CheckPut "a Single", CSng(1.5), "04 00 00 C0 3F"
CheckPut "a Double", CDbl(-2), "05 00 00 00 00 00 00 00 C0"
CheckPut "a Currency", CCur(1.25), "06 D4 30 00 00 00 00 00 00"
CheckPut "a Date", CDate(2.5), "07 00 00 00 00 00 00 04 40"
CheckPut "True", True, "0B FF FF"
CheckPut "False", False, "0B 00 00"
CheckPut "a Byte", CByte(200), "11 C8"
CheckPut "a String", "ab", "FF 02 00 00 00 61 62"
CheckPut "an empty String", "", "FF 00 00 00 00"
CheckPut "an array of Byte", Host.Bytes(1, 2, 3), "20 11 01 00 00 00 00 00 02 00 00 00 03 00 00 00 01 02 03"
CheckPut "an array of Long", Host.Longs(5, 6), _
  "20 03 01 00 00 00 00 00 01 00 00 00 08 00 00 00 05 00 00 00 06 00 00 00"

CheckPut "an array of two dimensions", ArrayCreate(2, Array(2, 1, 1, -1), 2), _
  "20 02 02 00 01 00 00 00 02 00 00 00 FF FF FF FF FF FF FF FF 04 00 00 00 00 00 00 00"
CheckPut "an array of Single", ArrayCreate(1, Array(1, 5), 4), "20 04 01 00 05 00 00 00 05 00 00 00 04 00 00 00 00 00 00 00"
CheckPut "an array of Double", ArrayCreate(1, Array(1, 0), 5), _
  "20 05 01 00 00 00 00 00 00 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00"
CheckPut "an array of Currency", ArrayCreate(1, Array(1, 0), 6), _
  "20 06 01 00 00 00 00 00 00 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00"
CheckPut "an array of Date", ArrayCreate(1, Array(1, 0), 7), _
  "20 07 01 00 00 00 00 00 00 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00"
CheckPut "an array of Boolean", ArrayCreate(1, Array(1, 0), 11), "20 0B 01 00 00 00 00 00 00 00 00 00 02 00 00 00 00 00"
CheckPut "an array without elements", ArrayCreate(1, Array(0, 1), 3), "20 03 01 00 01 00 00 00 00 00 00 00 00 00 00 00"
CheckPut "a text with a character 0", "a" & Chr(0), "FF 02 00 00 00 61 00"

Sub CheckNoForm(name, given)
  Dim typed
  typed = ""
  Check name & " has no form", BufferTyped_Put(typed, given), CInt(-1)
  Check name & " leaves the buffer alone", typed, ""
  CheckRecord name & " is recorded", 13, "KwRtLibMod.BufferTyped_Put"
End Sub

CheckNoForm "Empty", Empty
CheckNoForm "Null", Null
CheckNoForm "an array of Variant", Array(1, 2)
CheckNoForm "an array of String", Host.Strings("a", "b")
CheckNoForm "a missing argument", Host.Missing
CheckNoForm "an object", Host

buffer = ""
nothing_there = Host.Empty_Array(3)
Check "an unallocated array fails", BufferTyped_Put(buffer, nothing_there), CInt(-1)
Check "and nothing is written", buffer, ""
Check "and nothing is recorded", Check_Error(), False

' A sequence is read without knowing what was written.
buffer = ""
list = Array(CInt(-2), CLng(1), CSng(1.5), CDbl(-2), CCur(1.25), CDate(2.5), True, "ab", "")
For Each value In list
  i = BufferTyped_Put(buffer, value)
Next
offset = 1
list = Array(CInt(-2), CLng(1), CSng(1.5), CDbl(-2), CCur(1.25), CDate(2.5), True, "ab", "")
For Each value In list
  Check "a value of type " & VarType(value) & " comes back", BufferTyped_Get(buffer, offset), value
Next
Check "Offset stands behind the last value", offset, CLng(Len(buffer) + 1)

buffer = Chr(17) & Chr(200): offset = 1
Check "a Byte comes back as an Integer", BufferTyped_Get(buffer, offset), CInt(200)
buffer = Chr(8) & Chr(2) & Chr(0) & "ab": offset = 1
Check "a text of the earlier format reads", BufferTyped_Get(buffer, offset), "ab"
Check "and passes over it", offset, CLng(6)
buffer = Chr(255) & String(4, Chr(0)): offset = 1
Check "an empty text reads", BufferTyped_Get(buffer, offset), ""
buffer = Chr(2) & Chr(128) & Chr(159): offset = 1
Check "bytes above 127 are those of the code page", BufferTyped_Get(buffer, offset), CInt(-24704)
buffer = Chr(11) & Chr(7) & Chr(0): offset = 1
Check "any Integer but 0 is True", BufferTyped_Get(buffer, offset), True

On Error Resume Next
list = Array(0, 1, 9, 10, 12, 16, 18, 254)
For Each i In list
  buffer = Chr(i) & "abcdefgh": offset = 1
  value = BufferTyped_Get(buffer, offset)
  CheckError "tag " & i & " is unknown", 13, "Type mismatch"
Next
buffer = Chr(3) & "abcd": offset = 0
value = BufferTyped_Get(buffer, offset)
CheckError "Offset 0", 9, "Subscript out of range"
offset = 6
value = BufferTyped_Get(buffer, offset)
CheckError "Offset past the end", 9, ""
For i = 1 To 4
  buffer = Left(Chr(3) & "abcd", i): offset = 1
  value = BufferTyped_Get(buffer, offset)
  CheckError "a Long cut to " & i & " bytes", 9, ""
Next
offset = -1
value = BufferTyped_Get(buffer, offset)
CheckError "a negative Offset", 5, ""
buffer = "": offset = 1
value = BufferTyped_Get(buffer, offset)
CheckError "an empty buffer", 9, ""
Sub CheckCut(name, whole)
  Dim n, at, got, wrong
  wrong = ""
  On Error Resume Next
  For n = 1 To Len(whole) - 1
    buffer = Left(whole, n): at = 1
    Err.Clear
    got = BufferTyped_Get(buffer, at)
    If Err.Number <> 9 Or at < 2 Or at > n + 1 Then wrong = wrong & n & ":" & Err.Number & "@" & at & " "
  Next
  Err.Clear
  Check name & " cut at any byte", wrong, ""
End Sub
Sub CheckCutValue(name, given)
  Dim typed, done
  typed = ""
  done = BufferTyped_Put(typed, given)
  CheckCut name, typed
End Sub
On Error Resume Next
CheckCutValue "an Integer", CInt(5)
CheckCutValue "a Single", CSng(5)
CheckCutValue "a Double", CDbl(5)
CheckCutValue "a Currency", CCur(5)
CheckCutValue "a Date", CDate(5)
CheckCutValue "a Boolean", True
CheckCutValue "a Byte", CByte(5)
CheckCutValue "a String", "abc"
CheckCutValue "an array", Host.Longs(5, 6)
CheckCut "a String of the earlier format", Chr(8) & Chr(3) & Chr(0) & "abc"
buffer = Chr(255) & String(4, Chr(255)) & "a": offset = 1
value = BufferTyped_Get(buffer, offset)
CheckError "a negative length", 5, ""
buffer = ""
i = BufferTyped_Put(buffer, Host.Longs(5, 6))
i = BufferTyped_Put(buffer, "behind")
offset = 1
value = BufferTyped_Get(buffer, offset)
CheckError "an array is passed over", 9, ""
Check "with Offset behind it", offset, CLng(25)
Check "where the next value reads", BufferTyped_Get(buffer, offset), "behind"
' The head of an array of one element, with its four bytes of data.
Function One_Element(element)
  One_Element = Chr(32) & Chr(element) & Chr(1) & Chr(0) & Long_2_Str(1) & Long_2_Str(1) & Long_2_Str(4) & "abcd"
End Function
buffer = One_Element(8): offset = 1
value = BufferTyped_Get(buffer, offset)
CheckError "an array of String is passed over too", 9, "Subscript out of range"
Check "with Offset behind it as well", offset, CLng(21)
list = Array(0, 1, 32, 255)
For Each i In list
  offset = 1: value = 5
  value = BufferTyped_Get(One_Element(i), offset)
  Check "an array of type " & i & ", which has none, is Empty", value, Empty
  Check "with Offset at its data", offset, CLng(17)
Next
Check "reading records nothing", Check_Error(), False
Finish
