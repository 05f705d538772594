' == TranslMessage
Show TranslMessage("%% of %% files", "3%%10")    '-> 3 of 10 files

' == Str_Format
Show Str_Format("Dear $ $,", "Anna$Rossi")       '-> Dear Anna Rossi,
Show Str_Format("$ and $", "one")                '-> one and $

' == Get_Token
Dim i
For i = 1 To 4
  Show "[" & Get_Token("Turin;;Rome", ";", i) & "]"
Next
'-> [Turin]
'-> []
'-> [Rome]
'-> []

' == Word_Strip, Word_Delimiter
' Takes a text apart word by word; the text shrinks.
Dim text
text = "one, two (three)"
Show Word_Delimiter(text)    '-> 4
Show Word_Strip(text)        '-> one
Show Word_Strip(text)        '-> two
Show Word_Strip(text)        '-> three
Show Word_Strip(text) = ""   '-> True

' == WordText_Strip, WordBlk_Strip
' The separators are the caller's set, or blanks alone.
Dim text
text = "l'uomo dorme"
Show WordText_Strip(text)         '-> l
Show text                         '-> uomo dorme
text = "a;b,c"
Show WordText_Strip(text, ",;")   '-> a
text = "12:30 Turin"
Show WordBlk_Strip(text)          '-> 12:30
Show text                         '-> Turin

' == Trunc_Last, Trunc_IfLast
Dim list
list = "Turin, Rome, "
Trunc_IfLast list, ", "
Show list          '-> Turin, Rome
Trunc_Last list
Show list          '-> Turin, Rom

' == Replace_Str
Dim text
text = "1.2.3"
Replace_Str text, ".", ".."
Show text          '-> 1..2..3

' == IsAlphaString, IsAlNumString
' Letters of the ANSI code page count, unless Strict asks for ASCII alone.
Show IsAlphaString("perch" & Chr(233))          '-> True
Show IsAlphaString("perch" & Chr(233), True)    '-> False
Show IsAlNumString("A380")                      '-> True
Show IsAlNumString("A-380")                     '-> False

' == Label_Filter, Label_Strip
' Label_Strip is no way back: it takes every "&".
Show Label_Filter("Rossi & Bianchi")     '-> Rossi && Bianchi
Show Label_Strip("&File && Folder")      '-> File  Folder

' == Pad_Left, Pad_Right
Show Pad_Left("Rome", 6) & "|"      '-> Rome  |
Show Pad_Right("Rome", 6) & "|"     '->   Rome|
Show Pad_Right("Rome", 2)           '-> Ro

' == Pad_NumLeft, Pad_NumRight, Pad_HexLeft
Show Pad_NumLeft(42, 6, "0")        '-> 000042
Show Pad_NumLeft(0.5, 6, "*")       '-> ****.5
Show Pad_NumRight(1.5, 6, "0")      '-> 1.5000
Show Pad_HexLeft(255, 4)            '-> 00FF
Show Pad_HexLeft(-1, 6)             '-> 00FFFF

' == Round_Num
' The first decimal digit decides, so this is no rounding.
Show Round_Num(3.47, 1)     '-> 3.0
Show Round_Num(3.57, 1)     '-> 3.5
Show Round_Num(3.47, 2)     '-> 3.40

' == Swap
Dim first, second
first = "one"
second = 2
Swap first, second
Show first      '-> 2
Show second     '-> one

' == SwapZ
' The lower bound of a range first; 0 stands for no bound.
Dim low, high
low = CLng(7)
high = CLng(3)
SwapZ low, high
Show low & " to " & high    '-> 3 to 7
low = CLng(0)
SwapZ low, high
Show low & " to " & high    '-> 7 to 0

' == Ansi_2_Oem, Oem_2_Ansi
' What a console program reads and writes.
Dim text
text = Ansi_2_Oem("perch" & Chr(233))
Show Asc(Right(text, 1))                             '-> 130
Show Oem_2_Ansi(text) = "perch" & Chr(233)           '-> True

' == C_2_Str
Show C_2_Str("name" & Chr(0) & "rest of the buffer")    '-> name

' == BinToHex, HexToBin
Show BinToHex("AZ" & Chr(255))      '-> 415AFF
Show HexToBin("415a")               '-> AZ

' == HexToByte, ByteToHex
Dim bytes, text
Show HexToByte("0041FF", bytes)     '-> False
Show Byte_2_Str(bytes) = Chr(0) & "A" & Chr(255)    '-> True
Show ByteToHex(bytes, text)         '-> False
Show text                           '-> 0041FF
Show HexToByte("0x41", bytes)       '-> True

' == Hex_Dump
' Lines of 9 characters: three bytes each.
Dim text
Show Hex_Dump("ciao", text, 9, "|") '-> False
Show text                           '->  63 69 61| 6F

' == Num_2_Roman, Roman_2_Num
Show Num_2_Roman(1994)              '-> MCMXCIV
Show Roman_2_Num("mcmxciv")         '-> 1994
Show Num_2_Roman(5000) = ""         '-> True

' == Key_Sort
Const SRT_UCASE = 1
Const SRT_NONUM = 64
Const SRT_PRIMARY = 128
Dim key
key = "perch" & Chr(233) & " 12"
Key_Sort key, SRT_UCASE + SRT_NONUM + SRT_PRIMARY, ""
Show key & "|"    '-> PERCHE |

' == XLate
' The table has a character for each code: here "a" (97) and "b" (98) weigh alike.
Dim table, key
table = ""
For key = 0 To 255
  table = table & Chr(key)
Next
table = Left(table, 98) & "a" & Mid(table, 100)
key = "abbey"
XLate key, table
Show key          '-> aaaey

' == Mask_Display, Mask_Sort
' What stands in < > is shown and not sorted, what stands in @ @ is sorted and not shown.
Dim key
key = "<The >Beatles@1962@"
Mask_Display key
Show key          '-> The Beatles
key = "<The >Beatles@1962@"
Mask_Sort key
Show key          '-> Beatles1962

' == DistinctAppend, DistinctSplit
' Two customers of one name keep their order by a text that nobody sees.
Dim key, distinct
key = "Rossi"
DistinctAppend key, "0042"
Show Len(key)     '-> 11
DistinctSplit key, distinct
Show key          '-> Rossi
Show distinct     '-> 0042

' == TranslKeySort, TranslKeyDisplay
Const SRT_UCASE = 1
Const SRT_MASK = 32
Dim stored, key, distinct
stored = "<The >Beatles"
DistinctAppend stored, "7"
key = stored
TranslKeySort key, SRT_UCASE + SRT_MASK, "", distinct
Show key          '-> BEATLES
Show distinct     '-> 7
key = stored
TranslKeyDisplay key
Show key          '-> The Beatles

' == TranslMetaKey
' Escape and a letter: here "b" for bold and "n" for a line break.
Dim text
text = "one" & Chr(27) & "btwo"
TranslMetaKey text
Show BinToHex(Mid(text, 4, 2))    '-> 0102
text = "one" & Chr(27) & "ntwo"
TranslMetaKey text
Show Replace(text, vbCrLf, "/")   '-> one/two
text = "one" & Chr(27) & "btwo"
TranslMetaKey text, True
Show text                         '-> onetwo

' == TranslDelimKey, QvtSortTable, QvtSortTable.SortFlags, QvtSortTable.Table
' A key of two fields: the first without regard to case, the second as it is.
Const SRT_NOCASE = 1
Dim tables, table, key
Set tables = CreateObject("QvRtLibOle.kwCollection")
Set table = CreateObject("QvRtLibOle.QvtSortTable")
table.SortFlags = SRT_NOCASE
table.Table = ""
tables.Add table
tables.Add CreateObject("QvRtLibOle.QvtSortTable")
key = "Rossi" & vbTab & "Anna"
Show TranslDelimKey(key, tables)  '-> False
Show key                          '-> ROSSIAnna
