' Sort keys, masks, distinct parts and the escape language, late bound.
Const SRT_UCASE = 1, SRT_TABLE = 4, SRT_MASK = 32, SRT_NONUM = 64, SRT_PRIMARY = 128
Const SRT_NOBLANKS = 4096, SRT_NOMASK = 8192, SRT_NOTABLE = 16384
Dim key, distinct, esc, sep, table, tables, own_table

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

CheckSort "SRT_NOTABLE keeps the table away", "abc", SRT_TABLE + SRT_NOTABLE, String(98, "x"), "abc"
CheckSort "a table without SRT_TABLE weighs nothing", "abc", 0, String(98, "x"), "abc"
CheckSort "case goes before the table", "abc", SRT_TABLE + SRT_UCASE, String(98, "x"), "xxx"
CheckSort "marks of an index change nothing", "a b", 256 + 512 + 1024 + 2048, "", "a b"
CheckSort "nor does SRT_32BIT", "a b", -32768, "", "a b"
CheckSort "no flag changes nothing", "ab" & Chr(224) & " 1", 0, "", "ab" & Chr(224) & " 1"
CheckSort "a key ends before its first character 0", "ab" & Chr(0) & "c", SRT_UCASE, "", "AB"
key = "": Mask_Display key
Check "Mask_Display of nothing", key, ""
key = "": Mask_Sort key
Check "Mask_Sort of nothing", key, ""
key = "": XLate key, "x"
Check "XLate of nothing", key, ""
key = "ab": XLate key, ""
Check "XLate without a table", key, "ab"
key = """<a>""b": Mask_Display key
Check "between quotes marks are literal", key, "<a>b"
key = """<a>""b": Mask_Sort key
Check "for sorting too", key, "<a>b"
key = "a<b": Mask_Display key
Check "an unclosed mark runs to the end and shows", key, "ab"
key = "a<b": Mask_Sort key
Check "and does not sort", key, "a"
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
key = "abc" & sep & "def" & sep & "g"
DistinctSplit key, distinct
Check "DistinctSplit takes the first separator", key, "abc"
Check "and leaves further ones", distinct, "def" & sep & "g"
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
CheckMeta "letters mind case", "a" & esc & "Bb", "ab"
CheckMeta "an escaped escape goes", "a" & esc & esc & "b", "ab"
CheckMeta "an escape at the end goes alone", "a" & esc, "a"
CheckMeta "a text without escapes stays", "abc", "abc"
CheckMeta "nothing stays nothing", "", ""
CheckMeta "other letters go", "a" & esc & "zb", "ab"
key = "a" & esc & "bc" & esc & "hd"
TranslMetaKey key, True
Check "EscRemove removes every pair", key, "acd"

key = "a" & esc & "sb"
TranslMetaKey key, 0
Check "EscRemove 0 translates", key, "a b"
key = "a  <b>@c@" & vbTab
TranslMetaKey key, True
Check "EscRemove changes nothing else", key, "a  <b>@c@" & vbTab

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

Class Own_Table
  Public SortFlags
  Public Table
End Class
Set tables = CreateObject("QvRtLibOle.kwCollection")
key = ""
Check "TranslDelimKey of an empty key needs no table", TranslDelimKey(key, tables), False
Check "and stays empty", key, ""
key = "a" & vbTab & "b"
Check "TranslDelimKey without a table fails at the lookup", TranslDelimKey(key, tables), True
CheckRecord "of the item", 9, "KwRtLibMod.TranslDelimKey"
Check "the field that failed is taken by then", key, "b"
table.SortFlags = SRT_UCASE: table.Table = ""
tables.Add table
Set own_table = New Own_Table
own_table.SortFlags = SRT_NONUM: own_table.Table = ""
tables.Add own_table
key = "ab1" & vbTab & "cd2" & vbTab & "ef3  "
Check "TranslDelimKey takes a table a field, any object with the two names", TranslDelimKey(key, tables), False
Check "the last serves further fields, tabs and trailing blanks go", key, "AB1cdef"
key = "a" & esc & "bb" & vbTab & vbTab & "c" & sep & "d"
Check "TranslDelimKey removes escapes before the distinct part is split off", TranslDelimKey(key, tables), False
Check "so that is not found", key, "ABcd"
tables.Clear
tables.Add tables
key = "a"
Check "an object that is no table fails", TranslDelimKey(key, tables), True
CheckRecord "as one without the member", 438, "KwRtLibMod.TranslDelimKey"
tables.Clear
tables.Add "text"
Check "what is no object fails", TranslDelimKey("a", tables), True
CheckRecord "as what is none", 424, "KwRtLibMod.TranslDelimKey"

On Error Resume Next
key = "x" & esc & "sy" & esc & "hz"
TranslMetaKey key
CheckError "an escaped h", 13, "Type mismatch"
Check "what stands before it is translated", key, "x y" & esc & "hz"
On Error GoTo 0
Finish
