' Sort keys, masks, distinct parts and the escape language, late bound.
Const SRT_UCASE = 1, SRT_TABLE = 4, SRT_MASK = 32, SRT_NONUM = 64, SRT_PRIMARY = 128
Const SRT_NOBLANKS = 4096, SRT_NOMASK = 8192
Dim key, distinct, esc, sep, table

esc = Chr(27)
sep = esc & Chr(31)

Sub CheckSort(name, stored, flags, weights, expected)
  Dim k
  k = stored
  Key_Sort k, flags, weights
  Check name, k, expected
End Sub
Sub CheckMeta(name, stored, expected)
  Dim k
  k = stored
  TranslMetaKey k
  Check name, k, expected
End Sub

CheckSort "an empty key stays empty", "", SRT_UCASE, "", ""
CheckSort "SRT_UCASE folds", "ab" & Chr(224), SRT_UCASE, "", "AB" & Chr(192)
CheckSort "SRT_PRIMARY takes accents off", "ab" & Chr(224), SRT_PRIMARY, "", "aba"
CheckSort "SRT_NONUM drops digits", "a1b2", SRT_NONUM, "", "ab"
CheckSort "SRT_MASK takes the sorting form", "<La >Bibbia", SRT_MASK, "", "Bibbia"
CheckSort "unless SRT_NOMASK", "<La >B", SRT_MASK + SRT_NOMASK, "", "<La >B"
CheckSort "SRT_TABLE weighs", "abc", SRT_TABLE, String(98, "x"), "xbc"
CheckSort "an empty table weighs nothing", "abc", SRT_TABLE, "", "abc"

key = "<La >Bibbia@1@": Mask_Display key
Check "Mask_Display", key, "La Bibbia"
key = "<La >Bibbia@1@": Mask_Sort key
Check "Mask_Sort", key, "Bibbia1"
key = "aab": XLate key, String(98, "x")
Check "XLate", key, "xxb"

key = "abc": distinct = "def"
DistinctAppend key, distinct
Check "DistinctAppend", key, "abc" & sep & "def"
distinct = ""
DistinctSplit key, distinct
Check "DistinctSplit leaves the key", key, "abc"
Check "and gives the distinct text", distinct, "def"
DistinctSplit key, distinct
Check "without a separator the key stays", key, "abc"
Check "and there is no distinct text", distinct, ""

key = "abc" & sep & "def"
TranslKeySort key, SRT_UCASE, "", distinct
Check "TranslKeySort", key, "ABC"
Check "TranslKeySort gives the distinct text", distinct, "def"
key = "a   b" & sep & "def"
TranslKeySort key, SRT_NOBLANKS, ""
Check "SRT_NOBLANKS halves pairs in one pass", key, "a  b"
key = "<La >Bibbia@1@" & sep & "def"
TranslKeyDisplay key
Check "TranslKeyDisplay", key, "La Bibbia"

CheckMeta "bold", "a" & esc & "bc", "a" & Chr(1) & Chr(2) & "c"
CheckMeta "italic", esc & "i", Chr(1) & Chr(1)
CheckMeta "struck", esc & "k", Chr(1) & Chr(4)
CheckMeta "underlined", esc & "u", Chr(1) & Chr(8)
CheckMeta "line breaks", esc & "l" & esc & "n", vbCrLf & vbCrLf
CheckMeta "blank and tab", "x" & esc & "sy" & esc & "tz", "x y" & vbTab & "z"
CheckMeta "marks", esc & "<" & esc & ">" & esc & "@" & esc & """", "<>@"""
CheckMeta "other letters go", "a" & esc & "zb", "ab"
key = "a" & esc & "bc" & esc & "hd"
TranslMetaKey key, True
Check "EscRemove removes every pair", key, "acd"

Set table = CreateObject("QvRtLibOle.QvtSortTable")
Check "a new table has no flags", table.SortFlags, 0
Check "and no weights", table.Table, ""
table.SortFlags = SRT_UCASE
table.Table = "x"
Check "SortFlags stays", table.SortFlags, SRT_UCASE
Check "Table stays", table.Table, "x"
key = "a"
Check "TranslDelimKey without tables fails", TranslDelimKey(key, Nothing), True
CheckRecord "and tells where", 91, "KwRtLibMod.TranslDelimKey"

On Error Resume Next
key = "x" & esc & "sy" & esc & "hz"
TranslMetaKey key
CheckError "an escaped h", 13, "Type mismatch"
Check "what stands before it is translated", key, "x y" & esc & "hz"
On Error GoTo 0
Finish
