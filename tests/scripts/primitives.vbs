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
Check "Floor", Floor(-2.5), CDbl(-3)
Check "Ceil", Ceil(-2.5), CDbl(-2)
Check "GetPointer", GetPointer(1000, -24), CLng(976)

Check "StrSpn", StrSpn("aab", "a"), CLng(3)
Check "StrSpn without another character", StrSpn("aa", "a"), CLng(0)
Check "StrcSpn", StrcSpn("abc", "xc"), CLng(3)
Check "StrcSpn without one of the set", StrcSpn("abc", "x"), CLng(0)
Check "StrnCmp", StrnCmp("abc", "abd", 2), CLng(0)
Check "StrnCmp minds case", StrnCmp("a", "A", 1) > 0, True
Check "StrniCmp does not", StrniCmp("aBc", "AbC", 3), CLng(0)
Check "StrrChr", StrrChr("abca", 97), CLng(4)
Check "StrrChr of what is missing", StrrChr("abc", 120), CLng(0)
text = "abc"
StrRev text
Check "StrRev works in place", text, "cba"
Check "StrTok begins", StrTok(" ab,c", " ,"), CLng(2)
Check "StrTok goes on", StrTok("", " ,"), CLng(5)
Check "StrTok ends", StrTok("", " ,"), CLng(0)

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
Check "CRC", CRC("123456789"), CInt(&H29B1)
Check "CRC from 0", CRC("123456789", 0), CInt(&H31C3)
Check "CRC of nothing", CRC("", 5), 0
Check "CRC of a long buffer covers its last step", CRC(String(32768, "a")), CRC("a")

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
quotient = 0: remainder = 0
Div 100000, 1, quotient, remainder
CheckError "a quotient past an Integer", 6, "Overflow"
On Error GoTo 0
Finish
