' Character classes, bits, division, C-string scanning, check values and file access, late bound.
Dim value, quotient, remainder, endPtr, number, text, fso, file, path

Check "IsAlpha knows ASCII alone", IsAlpha(224), False
Check "IsAlpha", IsAlpha(65), True
Check "IsAlnum", IsAlnum(48), True
Check "IsAscii", IsAscii(128), False
Check "IsCntrl", IsCntrl(127), True
Check "IsCsym", IsCsym(95), True
Check "IsCsymf", IsCsymf(48), False
Check "IsDigit", IsDigit(57), True
Check "IsGraph", IsGraph(32), False
Check "IsLower", IsLower(97), True
Check "IsPrint", IsPrint(32), True
Check "IsPunct", IsPunct(33), True
Check "IsSpace", IsSpace(13), True
Check "IsUpper", IsUpper(97), False
Check "IsXdigit", IsXdigit(102), True

' The codes from -300 to 600 for which a class holds, as ranges.
Function Ranges_Of(class_name)
  Dim code, holds, first
  Ranges_Of = "": first = Empty
  For code = -300 To 601
    holds = False
    If code <= 600 Then holds = In_Class(class_name, code)
    If holds And IsEmpty(first) Then first = code
    If Not holds And Not IsEmpty(first) Then
      Ranges_Of = Ranges_Of & first & "-" & (code - 1) & ";"
      first = Empty
    End If
  Next
End Function
Function In_Class(class_name, code)
  Select Case class_name
    Case "IsAlnum": In_Class = IsAlnum(code)
    Case "IsAlpha": In_Class = IsAlpha(code)
    Case "IsAscii": In_Class = IsAscii(code)
    Case "IsCntrl": In_Class = IsCntrl(code)
    Case "IsCsym": In_Class = IsCsym(code)
    Case "IsCsymf": In_Class = IsCsymf(code)
    Case "IsDigit": In_Class = IsDigit(code)
    Case "IsGraph": In_Class = IsGraph(code)
    Case "IsLower": In_Class = IsLower(code)
    Case "IsPrint": In_Class = IsPrint(code)
    Case "IsPunct": In_Class = IsPunct(code)
    Case "IsSpace": In_Class = IsSpace(code)
    Case "IsUpper": In_Class = IsUpper(code)
    Case "IsXdigit": In_Class = IsXdigit(code)
  End Select
End Function
Check "IsAlnum of every code", Ranges_Of("IsAlnum"), "48-57;65-90;97-122;"
Check "IsAlpha of every code", Ranges_Of("IsAlpha"), "65-90;97-122;"
Check "IsAscii of every code", Ranges_Of("IsAscii"), "0-127;"
Check "IsCntrl of every code", Ranges_Of("IsCntrl"), "0-31;127-127;"
Check "IsCsym of every code", Ranges_Of("IsCsym"), "48-57;65-90;95-95;97-122;"
Check "IsCsymf of every code", Ranges_Of("IsCsymf"), "65-90;95-95;97-122;"
Check "IsDigit of every code", Ranges_Of("IsDigit"), "48-57;"
Check "IsGraph of every code", Ranges_Of("IsGraph"), "33-126;"
Check "IsLower of every code", Ranges_Of("IsLower"), "97-122;"
Check "IsPrint of every code", Ranges_Of("IsPrint"), "32-126;"
Check "IsPunct of every code", Ranges_Of("IsPunct"), "33-47;58-64;91-96;123-126;"
Check "IsSpace of every code", Ranges_Of("IsSpace"), "9-13;32-32;"
Check "IsUpper of every code", Ranges_Of("IsUpper"), "65-90;"
Check "IsXdigit of every code", Ranges_Of("IsXdigit"), "48-57;65-70;97-102;"

Sub CheckShift(operation, given, count, expected)
  Dim moved, bits
  moved = given: bits = count
  Select Case operation
    Case "Shl": Shl moved, bits
    Case "Shr": Shr moved, bits
    Case "Lshl": Lshl moved, bits
    Case "Lshr": Lshr moved, bits
  End Select
  Check operation & " " & given & " by " & count, moved, expected
  Check operation & " leaves its count alone", bits, count
End Sub
CheckShift "Shl", CInt(-32768), 1, CInt(0)
CheckShift "Shl", CInt(5), 16, CInt(0)
CheckShift "Shl", CInt(5), 0, CInt(5)
CheckShift "Shl", CInt(5), -1, CInt(5)
CheckShift "Shr", CInt(-1), 1, CInt(32767)
CheckShift "Shr", CInt(5), 100, CInt(0)
CheckShift "Lshl", CLng(1), 31, CLng(&H80000000)
CheckShift "Lshl", CLng(5), 32, CLng(0)
CheckShift "Lshr", CLng(-1), 1, CLng(2147483647)
CheckShift "Lshr", CLng(5), -3, CLng(5)
Check "Rotl takes its count modulo the width", Rotl(&H1234, 20), &H2341
Check "Rotl by a negative count turns the other way", Rotl(&H1234, -4), &H4123
Check "Lrotl by 4", Lrotl(CLng(&H12345678), 4), CLng(&H23456781)
Check "Lrotr by 4", Lrotr(CLng(&H12345678), 4), CLng(&H81234567)
Check "Lrotr by a negative count", Lrotr(CLng(&H12345678), -4), CLng(&H23456781)

value = 1
Shl value, 4
Check "Shl works in place", value, 16
Shr value, 2
Check "Shr works in place", value, 4
value = CLng(&H80000000)
Lshl value, 1
Check "Lshl loses what moves out", value, CLng(0)
value = CLng(-1)
Lshr value, 31
Check "Lshr moves zeros in", value, CLng(1)
value = CLng(305419896)
Check "Lrotl by 32 returns the value", Lrotl(value, 32), CLng(305419896)
Check "and leaves the argument alone", value, CLng(305419896)
Check "Lrotr", Lrotr(CLng(1), 1), CLng(&H80000000)
Check "Rotl", Rotl(-32768, 1), 1
Check "Rotr", Rotr(1, 1), CInt(-32768)

quotient = 0: remainder = 0
Div -7, 2, quotient, remainder
Check "Div truncates towards zero", quotient, -3
Check "its remainder", remainder, -1
quotient = CLng(0): remainder = CLng(0)
Ldiv 100001, 100000, quotient, remainder
Check "Ldiv", quotient, CLng(1)
Check "its remainder too", remainder, CLng(1)
Sub CheckDivision(numerator, denominator, whole, rest)
  Dim q, r, lq, lr
  q = 0: r = 0: lq = CLng(0): lr = CLng(0)
  Div numerator, denominator, q, r
  Ldiv numerator, denominator, lq, lr
  Check "Div " & numerator & " by " & denominator, q & " " & r, whole & " " & rest
  Check "Ldiv " & numerator & " by " & denominator, lq & " " & lr, whole & " " & rest
End Sub
CheckDivision 7, 2, 3, 1
CheckDivision 7, -2, -3, 1
CheckDivision -7, -2, 3, -1
Check "Floor of a positive number", Floor(2.8), CDbl(2)
Check "Floor of an integer", Floor(-3), CDbl(-3)
Check "Ceil of a positive number", Ceil(2.2), CDbl(3)
Check "GetPointer wraps around", GetPointer(CLng(2147483647), 1), CLng(&H80000000)
Check "Floor", Floor(-2.5), CDbl(-3)
Check "Ceil", Ceil(-2.5), CDbl(-2)
Check "GetPointer", GetPointer(1000, -24), CLng(976)

Check "StrSpn", StrSpn("aab", "a"), CLng(3)
Check "StrSpn without another character", StrSpn("aa", "a"), CLng(0)
Check "StrSpn of nothing", StrSpn("", "a"), CLng(0)
Check "StrSpn with an empty set", StrSpn("ab", ""), CLng(1)
Check "StrSpn ends before character 0", StrSpn("a" & Chr(0) & "b", "a"), CLng(0)
Check "StrcSpn with an empty set", StrcSpn("abc", ""), CLng(0)
Check "StrcSpn ends before character 0", StrcSpn("a" & Chr(0) & "b", "b"), CLng(0)
Check "StrcSpn", StrcSpn("abc", "xc"), CLng(3)
Check "StrcSpn without one of the set", StrcSpn("abc", "x"), CLng(0)
Check "StrnCmp", StrnCmp("abc", "abd", 2), CLng(0)
Check "StrnCmp minds case", StrnCmp("a", "A", 1) > 0, True
Check "StrniCmp does not", StrniCmp("aBc", "AbC", 3), CLng(0)
Check "StrnCmp of a lesser text", StrnCmp("abc", "abd", 3) < 0, True
Check "StrnCmp of a greater text", StrnCmp("abd", "abc", 3) > 0, True
Check "StrnCmp of a shorter text", StrnCmp("ab", "abc", 10) < 0, True
Check "StrnCmp of no characters", StrnCmp("a", "b", 0), CLng(0)
Check "StrnCmp of less than none", StrnCmp("a", "b", -1), CLng(0)
Check "StrnCmp ends at character 0", StrnCmp("a" & Chr(0) & "b", "a" & Chr(0) & "c", 3), CLng(0)
Check "StrniCmp of a lesser text", StrniCmp("a", "B", 1) < 0, True
Check "StrniCmp knows case in ASCII alone", StrniCmp(Chr(224), Chr(192), 1) <> 0, True
Check "StrrChr of a character above 127", StrrChr("a" & Chr(128) & "b", 128), CLng(2)
Check "StrrChr ends at character 0", StrrChr("a" & Chr(0) & "a", 97), CLng(1)
Check "StrrChr of nothing", StrrChr("", 97), CLng(0)
Check "StrrChr", StrrChr("abca", 97), CLng(4)
Check "StrrChr of what is missing", StrrChr("abc", 120), CLng(0)
text = "abc"
StrRev text
Check "StrRev works in place", text, "cba"
text = ""
StrRev text
Check "StrRev of nothing", text, ""
text = "ab" & Chr(0) & "cd"
StrRev text
Check "StrRev turns what lies before character 0", text, "ba" & Chr(0) & "cd"
Check "StrTok begins", StrTok(" ab,c", " ,"), CLng(2)
Check "StrTok goes on", StrTok("", " ,"), CLng(5)
Check "StrTok ends", StrTok("", " ,"), CLng(0)

Check "StrTok stays at its end", StrTok("", " ,"), CLng(0)
Check "StrTok begins another text", StrTok("x-y z", "-"), CLng(1)
Check "the set may change", StrTok("", " "), CLng(3)
Check "from call to call", StrTok("", " "), CLng(5)

Sub CheckDouble(given, expected, stop_at)
  Dim p, v
  p = CLng(0): v = CDbl(77)
  StrTod given, p, v
  Check "StrTod of '" & given & "'", v, CDbl(expected)
  Check "it stops", p, CLng(stop_at)
End Sub
CheckDouble " -1.5E2x", -150, 8
CheckDouble "1d2", 100, 4
CheckDouble "1e", 1, 2
CheckDouble "1,5", 1, 2
CheckDouble "", 0, 1
Sub CheckLong(is_signed, given, expected, stop_at)
  Dim p, v
  p = CLng(0)
  If is_signed Then v = StrTol(given, p) Else v = StrToul(given, p)
  Check "StrTol, StrToul of '" & given & "'", v, CLng(expected)
  Check "where it stopped at last", p, CLng(stop_at)
End Sub
CheckLong True, "x", 0, 1
CheckLong True, "-", 0, 1
CheckLong True, "99999999999", 2147483647, 12
CheckLong True, "-99999999999", &H80000000, 13
CheckLong False, "2147483648", &H80000000, 11
CheckLong False, "99999999999", -1, 12
CheckLong False, "-1", -1, 3
CheckLong False, "x", 0, 1

endPtr = CLng(0): number = CDbl(0)
StrTod "3.25abc", endPtr, number
Check "StrTod", number, CDbl(3.25)
Check "where it stopped", endPtr, CLng(5)
StrTod "abc", endPtr, number
Check "StrTod of no number", number, CDbl(0)
Check "stopped at the beginning", endPtr, CLng(1)
Check "StrTol", StrTol(" -12x", endPtr), CLng(-12)
Check "where it stopped as well", endPtr, CLng(5)
Check "StrTol past a Long", StrTol("99999999999", endPtr), CLng(2147483647)
Check "StrToul", StrToul("4294967295", endPtr), CLng(-1)

text = "abcd"
Crypt text, 0
Crypt text, 0
Check "Crypt twice restores", text, "abcd"
Crypt text, 1
Check "Crypt with a code is an exclusive or", text, "`cbe"
text = "abcd"
Crypt text, CInt(&H102)
Check "Crypt with a code above 255 takes its bytes in turn", text, "ccae"
text = ""
Crypt text, 0
Check "Crypt of nothing", text, ""
Check "CRC chains", CRC("6789", CRC("12345")), CInt(&H29B1)
Check "CRC of two whole steps covers one", CRC(String(65534, "a")), CRC(String(32767, "a"))
Check "CRC", CRC("123456789"), CInt(&H29B1)
Check "CRC from 0", CRC("123456789", 0), CInt(&H31C3)
Check "CRC of nothing", CRC("", 5), 0
Check "CRC of a long buffer covers its last step", CRC(String(32768, "a")), CRC("a")

Check "Access of a folder", Access("C:\windows", 6), CLng(0)
Check "Access of no name", Access("", 0), CLng(2)
Check "Commit of no handle", Commit(-1), CLng(-1)
Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.GetSpecialFolder(2).Path & "\qv_primitives.tmp"
fso.CreateTextFile(path, True).Close
Check "Access of a file", Access(path, 6), CLng(0)
fso.GetFile(path).Attributes = 1
Check "Access for writing of a read-only file", Access(path, 2), CLng(13)
Check "Access for reading of a read-only file", Access(path, 4), CLng(0)
fso.GetFile(path).Attributes = 0
fso.DeleteFile path, True
Check "Access of a missing file", Access(path, 0), CLng(2)
Check "Commit of an invalid handle", Commit(0), CLng(-1)

On Error Resume Next
Ldiv 1, 0, quotient, remainder
CheckError "a division by 0", 11, "Division by zero"
Div 1, 0, quotient, remainder
CheckError "a division by 0 with Integer results", 11, "Division by zero"
quotient = 7: remainder = 8
Div 100000, 1, quotient, remainder
CheckError "a quotient past an Integer", 6, "Overflow"
Div 100000, 200000, quotient, remainder
CheckError "a remainder past an Integer", 6, "Overflow"
Check "stores no quotient", quotient, 7
Check "and no remainder", remainder, 8
quotient = CLng(7): remainder = CLng(8)
Ldiv CLng(&H80000000), -1, quotient, remainder
CheckError "a quotient past a Long", 6, "Overflow"
On Error GoTo 0
Finish
