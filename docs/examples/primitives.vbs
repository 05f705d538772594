' == IsAlnum, IsAlpha, IsDigit, IsXdigit
' Classes of ASCII alone: an accented letter is none.
Show IsAlpha(Asc("a"))      '-> True
Show IsAlpha(233)           '-> False
Show IsAlnum(Asc("7"))      '-> True
Show IsDigit(Asc("7"))      '-> True
Show IsXdigit(Asc("F"))     '-> True
Show IsXdigit(Asc("G"))     '-> False

' == IsLower, IsUpper
Show IsUpper(Asc("A"))      '-> True
Show IsLower(Asc("A"))      '-> False

' == IsAscii, IsCntrl, IsPrint, IsGraph, IsSpace, IsPunct
Show IsAscii(128)           '-> False
Show IsCntrl(13)            '-> True
Show IsPrint(Asc(" "))      '-> True
Show IsGraph(Asc(" "))      '-> False
Show IsSpace(9)             '-> True
Show IsPunct(Asc("?"))      '-> True

' == IsCsym, IsCsymf
' May a character stand in a C name, and begin one?
Show IsCsym(Asc("7"))       '-> True
Show IsCsymf(Asc("7"))      '-> False
Show IsCsymf(Asc("_"))      '-> True

' == Shl, Shr
Dim flags
flags = 1
Shl flags, 4
Show flags                  '-> 16
Shr flags, 2
Show flags                  '-> 4

' == Lshl, Lshr
' Bits, not numbers: -1 shifted to the right becomes positive.
Dim value
value = CLng(1)
Lshl value, 20
Show value                  '-> 1048576
value = CLng(-1)
Lshr value, 1
Show value                  '-> 2147483647

' == Rotl, Rotr
Show Hex(Rotl(&H1234, 4))   '-> 2341
Show Hex(Rotr(&H1234, 4))   '-> 4123

' == Lrotl, Lrotr
Show Hex(Lrotl(CLng(&H12345678), 8))    '-> 34567812
Show Hex(Lrotr(CLng(&H12345678), 8))    '-> 78123456

' == Div, Ldiv
' The remainder has the sign of the dividend.
Dim quotient, remainder
Div -7, 2, quotient, remainder
Show quotient & " " & remainder         '-> -3 -1
Ldiv 1000003, 1000, quotient, remainder
Show quotient & " " & remainder         '-> 1000 3

' == Ceil, Floor
Show Ceil(-2.5)             '-> -2
Show Floor(-2.5)            '-> -3

' == GetPointer
Show GetPointer(CLng(65536), 16)        '-> 65552

' == StrSpn, StrcSpn
' The first character that is no digit, and the first separator.
Show StrSpn("2026-11-21", "0123456789")    '-> 5
Show StrcSpn("name=value", "=:")           '-> 5
Show StrSpn("2026", "0123456789")          '-> 0

' == StrnCmp, StrniCmp
Show StrnCmp("order12", "order99", 5)      '-> 0
Show StrnCmp("a", "b", 1) < 0              '-> True
Show StrniCmp("ORDER", "order", 5)         '-> 0

' == StrrChr
Show StrrChr("C:\data\a.txt", Asc("\"))    '-> 8

' == StrRev
Dim text
text = "roma"
StrRev text
Show text                   '-> amor

' == StrTok
' The positions of the words of a text; "" goes on with the text that was begun.
Dim text, at
text = "one, two;three"
at = StrTok(text, " ,;")
Do While at > 0
  Show at & ": " & Mid(text, at, 3)
  at = StrTok("", " ,;")
Loop
'-> 1: one
'-> 6: two
'-> 10: thr

' == StrTol, StrToul
' The number at the beginning of a text, and where it ends.
Dim behind
Show StrTol("42 km", behind)            '-> 42
Show behind                             '-> 3
Show StrTol("km", behind)               '-> 0
Show behind                             '-> 1
Show StrToul("4294967295", behind)      '-> -1

' == StrTod
Dim value, behind
StrTod "2.5e3 lire", behind, value
Show value                  '-> 2500
Show behind                 '-> 6

' == Crypt
' The same call twice gives the text back: this hides, and protects nothing.
Dim text
text = "abcd"
Crypt text, 1
Show text                   '-> `cbe
Crypt text, 1
Show text                   '-> abcd

' == CRC
' Pieces chain to the check value of the whole.
Show Hex(CRC("123456789"))                         '-> 29B1
Show CRC("6789", CRC("12345")) = CRC("123456789")  '-> True

' == Access
Const CHK_EX = 0
Const CHK_RW = 6
Show Access(Get_WinPath(), CHK_RW)                 '-> 0
Show Access(Get_WinPath() & "no such file", CHK_EX)    '-> 2

' == Commit
' What was written lies on the disk when Commit has come back.
Const O_CREAT_TRUNC = 48
Dim name, handle, attributes
name = Get_TempPath() & "examples.dat"
attributes = 0
File_Open32 name, O_CREAT_TRUNC, 0, attributes, handle
File_Write32 handle, "important"
Show Commit(handle)         '-> 0
File_Close32 handle
Show Commit(0)              '-> -1
File_Kill name
