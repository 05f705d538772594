' Command lines, late bound.
Dim args, valid, name, number, value, quote, argument
quote = Chr(34)
Set args = CreateObject("QvRtLibOle.kwCollection")

Function Shown_Arguments(arguments)
  Dim each_argument, occurrence
  Shown_Arguments = ""
  For Each each_argument In arguments
    Shown_Arguments = Shown_Arguments & each_argument.Name & "=" & each_argument.Desc & "#" & each_argument.Ordinal
    For Each occurrence In each_argument.List
      Shown_Arguments = Shown_Arguments & "[" & occurrence.Name & occurrence.Desc & "#" & occurrence.Ordinal & "]"
    Next
    Shown_Arguments = Shown_Arguments & ";"
  Next
End Function

Sub CheckLine(name, line, expected)
  Check name & ": no failure", CommandLineParmsExtr(line, args), False
  Check name, Shown_Arguments(args), expected
End Sub

CheckLine "a name in any case, with its values in a list", "/a=1 /A=2", "A=1#1[1#1][2#2];"
CheckLine "a name without a value", "-x", "X=#1;"
CheckLine "the first = divides", "/a=b=c", "A=b=c#1;"
CheckLine "quotes keep a blank", quote & "one two" & quote & " three", "NONAME=one two#1[one two#1][three#2];"
CheckLine "quotes in the middle of a word", "/a=" & quote & "one two" & quote, "A=one two#1;"
CheckLine "an unclosed quote reaches to the end", "/a=" & quote & "one two", "A=one two#1;"
CheckLine "two blanks in a row make an empty unnamed argument", "/a  /b", "A=#1;NONAME=#2;B=#3;"
CheckLine "blanks at the ends are dropped", "  /a  ", "A=#1;"
CheckLine "an empty line has no arguments", "", ""
CheckLine "nor have empty quotes", quote & quote, ""
CheckLine "a quoted value of a name is trimmed", "/a=" & quote & " b " & quote, "A=b#1;"
CheckLine "a quoted unnamed value is not", quote & " b " & quote, "NONAME= b #1;"
CheckLine "character 255 becomes a blank", "a" & Chr(255) & "b", "NONAME=a b#1;"
CheckLine "a lone switch has an empty name", "/ -=1", "=#1[#1][1#2];"

CheckLine "a line to append to", "/a=1", "A=1#1;"
Check "another line is appended", CommandLineParmsExtr("/b /a=2", args, 2), False
Check "with places from 1 again", Shown_Arguments(args), "A=1#1[1#1][2#2];B=#1;"

Check "a repeated name is refused where names are unique", CommandLineParmsExtr("/a=1 /b /A=2 /c", args, 1), True
Check "with its name in the text", Error_Description(), "Parametro duplicato: A"
CheckRecord "as 20001", 20001, "KwRtLibMod.CommandLineParmsExtr"
Check "the arguments before it stay", Shown_Arguments(args), "A=1#1;B=#2;"
Check "two unnamed arguments are a repeated name", CommandLineParmsExtr("x y", args, 1), True
Check "of that name", Error_Description(), "Parametro duplicato: NONAME"
CheckRecord "and so 20001", 20001, "KwRtLibMod.CommandLineParmsExtr"

Set valid = CreateObject("QvRtLibOle.kwCollection")
valid.Add 1, "a"
Check "a valid name passes in any case", CommandLineParmsExtr("/A=1", args, 0, valid), False
Check "another is refused", CommandLineParmsExtr("/a=" & quote & "x y" & quote & " /b", args, 0, valid), True
Check "with the whole working line in the text", Error_Description(), "Parametro /a=x" & Chr(255) & "y /b sconosciuto."
CheckRecord "as 20000", 20000, "KwRtLibMod.CommandLineParmsExtr"
Check "an unnamed argument needs NONAME", CommandLineParmsExtr("x", args, 0, valid), True
CheckRecord "among the valid names", 20000, "KwRtLibMod.CommandLineParmsExtr"
valid.Add 1, "NONAME"
Check "which lets it pass", CommandLineParmsExtr("x", args, 0, valid), False
Check "no collection fails", CommandLineParmsExtr("x", Nothing), True
CheckRecord "as an object that is not set", 91, "KwRtLibMod.CommandLineParmsExtr"

Sub CheckGet(title, asked_name, item_number, expected_result, expected_value, expected_name)
  Dim found_name, found_value
  found_name = asked_name: found_value = "before"
  Check title, CommandLineParmGet(args, found_name, item_number, found_value), CLng(expected_result)
  Check title & ": value", found_value, expected_value
  Check title & ": name", found_name, expected_name
End Sub

number = CommandLineParmsExtr("/a=1 x /A=2 /b=3 /a=4", args)
CheckGet "the first occurrence of a name", "a", 1, 0, "1", "a"
CheckGet "the third one", "A", 3, 0, "4", "A"
CheckGet "past the last one", "A", 4, 3, "", "A"
CheckGet "a second one of a name that stands once", "B", 2, 3, "", "B"
CheckGet "a name that is not there", "c", 1, 1, "", "c"
CheckGet "without a name the first argument", "", 1, 0, "1", "A"
CheckGet "the occurrences of a name count first", "", 3, 0, "4", "A"
CheckGet "then those of the next", "", 4, 0, "x", "NONAME"
CheckGet "to the last", "", 5, 0, "3", "B"
CheckGet "and no further", "", 6, 3, "", ""
CheckGet "item 0 of a list fails", "A", 0, -1, "", "A"
CheckRecord "as an index", 9, "KwRtLibMod.CommandLineParmGet"
Check "everything but the collection may be left out", CommandLineParmGet(args), CLng(0)

Set argument = CreateObject("QvRtLibOle.QvCmdArg")
argument.Name = "n": argument.Desc = "d": argument.Ordinal = 5
Check "an argument keeps its name", argument.Name, "n"
Check "its value", argument.Desc, "d"
Check "its place", argument.Ordinal, CLng(5)
Check "its list is empty at first", argument.List.Count, CLng(0)
argument.List.Add "x"
Check "and made once", argument.List.Count, CLng(1)
Set argument.List = args
Check "another list may take its place", argument.List.Count, args.Count

Finish
