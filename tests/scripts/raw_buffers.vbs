' Raw buffers, late bound.
Dim buffer, offset, value, i, item, steps, list

Const PUT_SOURCE = "KwRtLibMod.Buffer_Put"
Const GET_SOURCE = "KwRtLibMod.Buffer_Get"

Sub Start(text, at)
  buffer = text
  offset = at
End Sub

Function Content()
  Content = Left(buffer, offset - 1)
End Function

Sub CheckPut(name, what, expected)
  Start "", CLng(1)
  Check "Buffer_Put of " & name & " succeeds", Buffer_Put(buffer, offset, what), False
  Check "Buffer_Put of " & name & " writes its image", Content(), expected
  Check "Buffer_Put of " & name & " moves Offset", offset, CLng(Len(expected) + 1)
End Sub

Sub CheckNoImage(name, what)
  Start "abcdefgh", 1
  Check "Buffer_Put of " & name & " fails", Buffer_Put(buffer, offset, what), True
  CheckRecord "Buffer_Put of " & name & " is a type mismatch", 13, PUT_SOURCE
  Check "Buffer_Put of " & name & " leaves Offset", offset, CInt(1)
  Check "Buffer_Put of " & name & " leaves the buffer", buffer, "abcdefgh"
  Check "Buffer_Get into " & name & " fails", Buffer_Get(buffer, offset, what), True
  CheckRecord "Buffer_Get into " & name & " is a type mismatch", 13, GET_SOURCE
  Check "Buffer_Get into " & name & " leaves Offset", offset, CInt(1)
End Sub

' Buffer_Put
Start "", 1
Check "Buffer_Put of an Integer succeeds", Buffer_Put(buffer, offset, CInt(7)), False
Check "a first put makes the buffer 16384 long", Len(buffer), CLng(16384)
Check "Offset moves by the width", offset, CLng(3)
Dim unset, counter
counter = 1
Check "a variable that was never assigned is an empty buffer", Buffer_Put(unset, counter, "x"), False
Check "and holds a text then", Len(unset), CLng(16384)

CheckPut "a Byte", CByte(65), "A"
CheckPut "the Byte 128", CByte(128), Chr(128)
CheckPut "an Integer", CInt(4660), Chr(&H34) & Chr(&H12)
CheckPut "True", True, Chr(255) & Chr(255)
CheckPut "False", False, Chr(0) & Chr(0)
CheckPut "a Long", CLng(-1), String(4, Chr(255))
CheckPut "the Single 1.5", CSng(1.5), Long_2_Str(2)
CheckPut "the Single 2.5", CSng(2.5), Long_2_Str(2)
CheckPut "a Double", CDbl(0.1), Double_2_Str(0.1)
CheckPut "a Currency", CCur(1), Double_2_Str(1)
CheckPut "a Date", DateSerial(2000, 1, 1), Date_2_Str(DateSerial(2000, 1, 1))
CheckPut "a text", "text", "text"
CheckPut "a text with character 0", "a" & Chr(0) & "b", "a" & Chr(0) & "b"
CheckPut "an empty text", "", ""
CheckNoImage "Empty", Empty
CheckNoImage "Null", Null
CheckNoImage "an object", CreateObject("QvRtLibOle.QVtError")
CheckNoImage "Nothing", Nothing
CheckNoImage "an array", Array(1, 2)
CheckNoImage "a missing argument", Host.Missing

Start "", 1
Check "a Single beyond the Longs fails", Buffer_Put(buffer, offset, CSng(3000000000.0)), True
CheckRecord "it is an overflow", 6, PUT_SOURCE
Check "and leaves Offset", offset, CInt(1)

Start "", 1
Buffer_Put buffer, offset, "abc", True
Check "a text with prefix stands behind its length", Content(), Long_2_Str(3) & "abc"
Check "Offset counts the prefix", offset, CLng(8)
Buffer_Put buffer, offset, CInt(1), True
Check "the prefix concerns texts only", offset, CLng(10)

list = Array(0, 16382, 16383, 16384, 32767, 32768)
For Each item In list
  Start "", 1
  Buffer_Put buffer, offset, String(item, "x")
  steps = (item + 1 + 16383) \ 16384
  Check "a text of " & item & " makes the buffer grow by whole steps", Len(buffer), CLng(16384) * steps
Next
Start String(10, "x"), 9
Buffer_Put buffer, offset, CByte(65)
Check "no growth while one character is beyond the content", Len(buffer), CLng(10)
Buffer_Put buffer, offset, CByte(66)
Check "growth for the last character", Len(buffer), CLng(16394)
Check "the content is kept", Content(), "xxxxxxxxAB"
Start "ab", 5
Buffer_Put buffer, offset, "X"
Check "a gap is filled with characters 0", Content(), "ab" & Chr(0) & Chr(0) & "X"
Start "..........", 3
Buffer_Put buffer, offset, "abc"
Check "what lies there is overwritten", buffer, "..abc....."
Start "abc", 2
Buffer_Put buffer, offset, buffer
Check "a buffer can be put into itself", Content(), "aabc"
Start "abc", 1
Buffer_Put buffer, offset, buffer, True
Check "a buffer can be put into itself with its prefix", Content(), Long_2_Str(3) & "abc"

list = Array(0, -1, CLng(-2147483647))
For Each item In list
  Start "abcdefgh", item
  Check "Buffer_Put at Offset " & item & " fails", Buffer_Put(buffer, offset, CInt(1)), True
  CheckRecord "Buffer_Put at Offset " & item & " is error 5", 5, PUT_SOURCE
Next
Start "abc", 2147483647
Check "Buffer_Put at the greatest Offset fails", Buffer_Put(buffer, offset, CInt(1)), True
CheckRecord "it is an overflow", 6, PUT_SOURCE
Start "abc", 2147000000
Check "Buffer_Put beyond all texts fails", Buffer_Put(buffer, offset, CInt(1)), True
CheckRecord "string space is out", 14, PUT_SOURCE
Check "the buffer stays", buffer, "abc"

' Buffer_Get
Sub CheckGet(name, bytes, variable, expected)
  value = variable
  Start bytes & "rest", CLng(1)
  Check "Buffer_Get of " & name & " succeeds", Buffer_Get(buffer, offset, value), False
  Check "Buffer_Get of " & name & " gives the value", value, expected
  Check "Buffer_Get of " & name & " moves Offset", offset, CLng(Len(bytes) + 1)
End Sub

CheckGet "an Integer", Int_2_Str(-2), CInt(0), CInt(-2)
CheckGet "a Boolean", Int_2_Str(-1), False, CInt(-1)
CheckGet "a Long", Long_2_Str(-3), CLng(0), CLng(-3)
CheckGet "a Single", Single_2_Str(1.5), CSng(0), CSng(1.5)
CheckGet "a Double", Double_2_Str(0.1), CDbl(0), CDbl(0.1)
CheckGet "a Date", Date_2_Str(DateSerial(2000, 1, 1)), CDate(0), DateSerial(2000, 1, 1)
CheckGet "a Currency", Currency_2_Str(CCur("1.5")), CCur(0), CCur("1.5")
CheckGet "a text", "abc", "...", "abc"
CheckGet "an empty text", "", "", ""
CheckGet "a digit as a Byte", "7", CByte(0), CByte(7)
list = Array(0, 32, 47, 58, 65, 128, 178, 255)
For Each item In list
  value = CByte(9)
  Start Chr(item), 1
  Check "Buffer_Get of the Byte " & item & " fails", Buffer_Get(buffer, offset, value), True
  CheckRecord "Buffer_Get of the Byte " & item & " is a type mismatch", 13, GET_SOURCE
  Check "Buffer_Get of the Byte " & item & " moves Offset", offset, CLng(2)
  Check "Buffer_Get of the Byte " & item & " leaves the variable", value, CByte(9)
Next

Start "", 1
Buffer_Put buffer, offset, CSng(1.5)
Buffer_Put buffer, offset, CCur(1)
offset = 1
value = CSng(0)
Buffer_Get buffer, offset, value
Check "a Single put is not read back", value = CSng(1.5), False
Check "it is the Long 2 taken for a Single", Single_2_Str(value), Long_2_Str(2)
value = CCur(0)
Buffer_Get buffer, offset, value
Check "a Currency put is not read back", value = CCur(1), False
Check "it is the Double 1 taken for a Currency", Currency_2_Str(value), Double_2_Str(1)

Start Long_2_Str(2) & "abc", 1
value = ""
Check "Buffer_Get with a prefix succeeds", Buffer_Get(buffer, offset, value, True), False
Check "it reads the length told", value, "ab"
Check "Offset is behind the text", offset, CLng(7)
Start Long_2_Str(4) & "abc", 1
value = "old"
Check "a prefix longer than the rest fails", Buffer_Get(buffer, offset, value, True), True
CheckRecord "it is out of range", 9, GET_SOURCE
Check "Offset is behind the prefix", offset, CLng(5)
Check "the variable stays", value, "old"
Start Long_2_Str(-1) & "abc", 1
Check "a negative prefix fails", Buffer_Get(buffer, offset, value, True), True
CheckRecord "it is error 5", 5, GET_SOURCE
Start "abc", 1
Check "a prefix that is cut fails", Buffer_Get(buffer, offset, value, True), True
CheckRecord "it is out of range and recorded once", 9, GET_SOURCE
Check "Offset stays", offset, CInt(1)

list = Array(0, 2, 5, 6, 1000, 2147483647)
For Each item In list
  Start "abcd", item
  value = CLng(7)
  Check "Buffer_Get of a Long at Offset " & item & " of 4 fails", Buffer_Get(buffer, offset, value), True
  CheckRecord "Buffer_Get of a Long at Offset " & item & " of 4 is out of range", 9, GET_SOURCE
  Check "Buffer_Get of a Long at Offset " & item & " of 4 leaves the variable", value, CLng(7)
Next
list = Array(-1, -1000)
For Each item In list
  Start "abcd", item
  Check "Buffer_Get at Offset " & item & " fails", Buffer_Get(buffer, offset, value), True
  CheckRecord "Buffer_Get at Offset " & item & " is error 5", 5, GET_SOURCE
Next
Start "abcd", 5
value = ""
Check "an empty text can be read at the end", Buffer_Get(buffer, offset, value), False

' The ends of a buffer
Start "", 1
Buffer_Put buffer, offset, "abc"
Buffer_Complete buffer, offset
Check "Buffer_Complete cuts to the content", buffer, "abc"
Check "Offset is the length then", offset, CLng(3)
Start "abc", 1
Buffer_Complete buffer, offset
Check "Buffer_Complete at Offset 1 is empty", buffer, ""
Check "Offset is 0 then", offset, CLng(0)
Start "abc", -5
Buffer_Complete buffer, offset
Check "Buffer_Complete below 1 is empty", buffer, ""
Check "Offset stays then", offset, CInt(-5)
Start "abc", 10
Buffer_Complete buffer, offset
Check "Buffer_Complete beyond the end keeps the buffer", buffer, "abc"
Check "Offset goes down by 1", offset, CLng(9)

Sub CheckLTrim(text, at, expected, expectedOffset)
  Start text, CLng(at)
  Buffer_LTrim buffer, offset
  Check "Buffer_LTrim of '" & text & "' at " & at, buffer, expected
  Check "Buffer_LTrim of '" & text & "' at " & at & " (Offset)", offset, CLng(expectedOffset)
End Sub
CheckLTrim "  ab..", 5, "ab..", 3
CheckLTrim "ab", 3, "ab", 3
CheckLTrim "    ", 3, "  ", 1
CheckLTrim "  ", 10, "", 8
CheckLTrim "  ab", 1, "  ab", 1
CheckLTrim "  ab", 0, "  ab", 0
CheckLTrim "", 1, "", 1

Sub CheckRTrim(text, at, expectedOffset)
  Start text, CLng(at)
  Buffer_RTrim buffer, offset
  Check "Buffer_RTrim of '" & text & "' at " & at, offset, CLng(expectedOffset)
  Check "Buffer_RTrim of '" & text & "' at " & at & " leaves the buffer", buffer, text
End Sub
CheckRTrim "ab  ", 5, 3
CheckRTrim "ab  ", 3, 3
CheckRTrim "    ", 5, 1
CheckRTrim "  ", 0, 0
CheckRTrim "ab  ", 6, 6

Sub CheckTrunc(text, at, last, expectedOffset)
  Start text, CLng(at)
  Check "Buffer_TruncIfLast gives False", Buffer_TruncIfLast(buffer, offset, last), False
  Check "Buffer_TruncIfLast of '" & last & "' in '" & text & "' at " & at, offset, CLng(expectedOffset)
End Sub
CheckTrunc "ab, ", 5, ", ", 3
CheckTrunc "ab, ", 4, ", ", 4
CheckTrunc "ab", 3, "", 3
CheckTrunc "ab", 3, "ab", 1
CheckTrunc "ab", 2, "ab", 2
CheckTrunc "ab", 3, "AB", 3
CheckTrunc "ab", 0, "b", 0

Check "Buffer_Right gives the characters before Offset", Buffer_Right("abcd", 5, 2), "cd"
Check "Buffer_Right gives all there are", Buffer_Right("abcd", 3, 100), "ab"
Check "Buffer_Right of no characters", Buffer_Right("abcd", 5, 0), ""
Check "Buffer_Right at Offset 1", Buffer_Right("abcd", 1, 3), ""
Check "Buffer_Right beyond the end", Buffer_Right("abcd", 100, 2), ""
On Error Resume Next
value = Buffer_Right("abcd", 5, -1)
CheckError "Buffer_Right of -1 characters", 5, "Invalid procedure call or argument"
value = Buffer_Right("abcd", 0, 1)
CheckError "Buffer_Right at Offset 0", 5, "Invalid procedure call or argument"
On Error GoTo 0
Check "Buffer_Right records nothing", Check_Error(), False

' A record, there and back
Start "", 1
For i = 1 To 3000
  Buffer_Put buffer, offset, CLng(i)
  Buffer_Put buffer, offset, "name " & i, True
Next
Buffer_Complete buffer, offset
offset = 1
Dim good, number, text
good = True
number = CLng(0)
text = ""
For i = 1 To 3000
  If Buffer_Get(buffer, offset, number) Then good = False
  If Buffer_Get(buffer, offset, text, True) Then good = False
  If number <> i Or text <> "name " & i Then good = False
Next
Check "3000 records come back", good, True
Check "up to the end of the buffer", offset, CLng(Len(buffer) + 1)
Finish
