' Tokens, words, templates, padding and changes of texts, late bound.
Dim text, word, first, second, i, j, thing, none
none = Host.Missing

Check "Get_Token counts from 1", Get_Token("a$$b", "$", 1), "a"
Check "a token may be empty", Get_Token("a$$b", "$", 2), ""
Check "Get_Token finds the last token", Get_Token("a$$b", "$", 3), "b"
Check "Get_Token past the last token is empty", Get_Token("a$$b", "$", 4), ""
Check "Get_Token below 1 is empty", Get_Token("a$$b", "$", 0), ""
Check "Get_Token of an empty text is empty", Get_Token("", "$", 1), ""
Check "a separator is one whole text", Get_Token("1xX2X3", "xX", 2), "2X3"
Check "an empty separator separates nothing", Get_Token("ab", "", 1), "ab"

Check "Get_Token minds case", Get_Token("1xX2", "x", 2), "X2"
Check "Get_Token far past the last token is empty", Get_Token("a$b", "$", CLng(2147483647)), ""
Check "Get_Token of an empty text is empty for every number", Get_Token("", "$", 2), ""
Check "an empty separator has no second token", Get_Token("ab", "", 2), ""
Check "Get_Token below 0 is empty", Get_Token("a$b", "$", -1), ""
Check "Get_Token reads past characters 0", Get_Token("a" & Chr(0) & "b;c", ";", 1), "a" & Chr(0) & "b"

Check "Str_Format replaces each mark", Str_Format("x$y$", "1$2"), "x1y2"
Check "Str_Format leaves marks without a text", Str_Format("x$y$", "1"), "x1y$"
Check "Str_Format stops at an empty text", Str_Format("x$y$z$", "1$$3"), "x1y$z$"
Check "Str_Format drops texts without a mark", Str_Format("x$y", "1$2$3"), "x1y"
Check "Str_Format without texts changes nothing", Str_Format("x$", ""), "x$"
Check "Str_Format of an empty template is empty", Str_Format("", "1"), ""
Check "a text that makes a mark anew is replaced in its turn", TranslMessage("%%%", "a%%b"), "a%"
Check "TranslMessage puts a name in", TranslMessage(CEM_OPENFILE, "a.txt"), "Impossibile aprire il file a.txt."
Check "TranslMessage leaves single percent signs", TranslMessage("5% %%", "x"), "5% x"
Check "TranslMessage replaces each pair", TranslMessage("%% di %%", "1%%2"), "1 di 2"

text = "  ab cd"
Check "Word_Strip takes the first word", Word_Strip(text), "ab"
Check "Word_Strip leaves the rest", text, "cd"
Check "Word_Strip takes the last word", Word_Strip(text), "cd"
Check "Word_Strip leaves nothing then", text, ""
Check "Word_Strip of nothing is empty", Word_Strip(text), ""
text = "-- uno, (due)tre -;"
Check "Word_Strip passes over separators", Word_Strip(text) & "|" & Word_Strip(text) & "|" & Word_Strip(text), "uno|due|tre"
Check "to the end", Word_Strip(text), ""
Check "and leaves nothing of them", text, ""
text = ""
Check "WordBlk_Strip of nothing is empty", WordBlk_Strip(text), ""
text = " a b"
Check "WordBlk_Strip passes over leading blanks", WordBlk_Strip(text), "a"
text = "a-b  c"
Check "WordBlk_Strip minds blanks alone", WordBlk_Strip(text), "a-b"
Check "WordBlk_Strip drops the blanks behind", text, "c"
text = "l'uomo"
Check "WordText_Strip takes an apostrophe by default", WordText_Strip(text), "l"
Check "WordText_Strip leaves the rest", text, "uomo"
text = "a;b,c"
Check "WordText_Strip takes a set", WordText_Strip(text, ",;"), "a"
text = "a b"
Check "WordText_Strip with an empty set takes everything", WordText_Strip(text, ""), "a b"
Check "and leaves nothing", text, ""
text = "a,; b"
Check "WordText_Strip leaves further separators", WordText_Strip(text, ",;"), "a"
Check "in place", text, "; b"
Check "and passes over them next", WordText_Strip(text, ",;"), "b"
Check "Word_Delimiter of nothing", Word_Delimiter(""), CLng(1)
Check "Word_Delimiter takes accented letters for letters", Word_Delimiter("perch" & Chr(233) & " no"), CLng(7)
Check "Word_Delimiter finds the first delimiter", Word_Delimiter("ab-c"), CLng(3)
Check "Word_Delimiter without one is the length + 1", Word_Delimiter("abc"), CLng(4)

Check "Pad_Left cuts", Pad_Left("abc", 2), "ab"
Check "Pad_Left fills behind", Pad_Left("abc", 5), "abc  "
Check "Pad_Right fills in front", Pad_Right("abc", 5), "  abc"
Check "Pad_Right keeps the first characters", Pad_Right("abc", 2), "ab"
Check "Pad_Left to no length", Pad_Left("abc", 0), ""
Check "Pad_HexLeft of 0", Pad_HexLeft(0, 2), "00"
Check "Pad_HexLeft to no length", Pad_HexLeft(10, 0), ""
Check "Pad_HexLeft of a negative Long has 8 digits", Pad_HexLeft(CLng(-1), 10), "00FFFFFFFF"
Check "Pad_HexLeft of a negative Integer has 4", Pad_HexLeft(CInt(-1), 8), "0000FFFF"
Check "Pad_HexLeft rounds, ties to even", Pad_HexLeft(2.5, 2), "02"
Check "Pad_HexLeft reads a text", Pad_HexLeft("255", 4), "00FF"
Check "Pad_NumLeft keeps the first characters", Pad_NumLeft(12345, 3, "0"), "123"
Check "Pad_NumLeft fills with one character", Pad_NumLeft(-7, 4, "*+"), "**-7"
Check "Pad_NumLeft of Empty", Pad_NumLeft(Empty, 3, "0"), "000"
Check "Pad_NumLeft needs no fill where nothing is to fill", Pad_NumLeft(12, 2, ""), "12"
Check "Pad_NumRight keeps the first characters", Pad_NumRight(12345, 3, "0"), "123"
Check "Pad_HexLeft fills with zeros", Pad_HexLeft(255, 4), "00FF"
Check "Pad_HexLeft keeps the last digits", Pad_HexLeft(CLng(74565), 3), "345"
Check "Pad_HexLeft of a negative Integer", Pad_HexLeft(-1, 4), "FFFF"
Check "Pad_NumLeft fills in front", Pad_NumLeft(12, 5, "0"), "00012"
Check "Pad_NumLeft has a point", Pad_NumLeft(0.5, 4, " "), "  .5"
Check "Pad_NumRight fills behind", Pad_NumRight(12, 5, "0"), "12000"
Check "Round_Num drops a digit below 5", Round_Num(3.47, 1), "3.0"
Check "Round_Num keeps a digit from 5 on", Round_Num(3.57, 1), "3.5"
Check "Round_Num with two digits", Round_Num(3.47, 2), "3.40"
Check "Round_Num of a whole number", Round_Num(7, 1), "7.0"
Check "Round_Num looks at one digit alone", Round_Num(3.99, 1), "3.9"
Check "Round_Num with no digit", Round_Num(3.57, 0), "3."
Check "Round_Num with three shows zeros", Round_Num(3.57, 3), "3.000"
Check "Round_Num up to an Integer", Round_Num(32767.5, 1), "32767.5"
Check "two digits of a negative number are odd as well", Round_Num(-3.2, 2), "-3.62"
Check "Round_Num of a negative number is odd", Round_Num(-3.2, 1), "-3.6"

text = "abcabc"
Replace_Str text, "b", "xx"
Check "Replace_Str replaces all", text, "axxcaxxc"
second = "abc"
Replace_Str second, "B", "x"
Check "Replace_Str minds case", second, "abc"
second = "aaa"
Replace_Str second, "a", "aa"
Check "Replace_Str does not look into what it put in", second, "aaaaaa"
second = "aab"
Replace_Str second, "ab", "b"
Check "nor at what it has passed", second, "ab"
second = "a" & Chr(0) & "b"
Replace_Str second, Chr(0), ", "
Check "Replace_Str reads past characters 0", second, "a, b"
Replace_Str second, second, "xy"
Check "Replace_Str takes one variable for text and wanted", second, "xy"
Replace_Str text, "", "y"
Check "Replace_Str of nothing changes nothing", text, "axxcaxxc"
Trunc_Last text
Check "Trunc_Last takes the last character", text, "axxcaxx"
Trunc_IfLast text, "xx"
Check "Trunc_IfLast takes a tail", text, "axxca"
Trunc_IfLast text, "A"
Check "a tail in another case stays", text, "axxca"
Trunc_IfLast text, "axxcab"
Check "a longer tail too", text, "axxca"
Trunc_IfLast text, ""
Check "an empty tail takes nothing", text, "axxca"
text = ""
Trunc_Last text
Check "Trunc_Last of nothing", text, ""
Check "Label_Filter doubles", Label_Filter("a&b"), "a&&b"
Check "Label_Strip removes all", Label_Strip("a&&b"), "ab"
Check "Label_Filter of a pair makes two", Label_Filter("a&&b"), "a&&&&b"
Check "C_2_Str of a text without character 0", C_2_Str("abc"), "abc"
Check "C_2_Str ends before character 0", C_2_Str("ab" & Chr(0) & "c"), "ab"
Check "IsAlphaString knows accented letters", IsAlphaString("perch" & Chr(233)), True
Check "IsAlphaString, strict, does not", IsAlphaString("perch" & Chr(233), True), False
Check "IsAlNumString knows accented letters", IsAlNumString("perch" & Chr(233) & "1"), True
Check "IsAlNumString, strict, does not", IsAlNumString("perch" & Chr(233) & "1", True), False
Check "IsAlNumString, strict, takes ASCII", IsAlNumString("a1", True), True
Check "IsAlphaString, strict, takes ASCII", IsAlphaString("perche", True), True
Check "IsAlNumString takes no underscore", IsAlNumString("a_1"), False
Check "IsAlphaString takes no blank", IsAlphaString("a b"), False
Check "IsAlphaString of nothing", IsAlphaString(""), True
Check "IsAlNumString takes digits", IsAlNumString("a1"), True
Check "IsAlphaString takes none", IsAlphaString("a1"), False
Check "Oem_2_Ansi undoes Ansi_2_Oem", Oem_2_Ansi(Ansi_2_Oem("perch" & Chr(233))), "perch" & Chr(233)

Check "Ansi_2_Oem ends before character 0", Ansi_2_Oem("ab" & Chr(0) & "c"), "ab"
Check "Oem_2_Ansi too", Oem_2_Ansi("ab" & Chr(0) & "c"), "ab"
Check "Ansi_2_Oem of nothing", Ansi_2_Oem(""), ""
Check "byte 82 hexadecimal is an accented letter of the console", Ansi_2_Oem(Chr(233)), Chr(130)

Set thing = CreateObject("QvRtLibOle.QVtError")
thing.Number = 5
Set first = thing
second = "text"
Swap first, second
Check "Swap exchanges objects by reference", first, "text"
Check "so it is the same object", second.Number, CLng(5)
Swap first, first
Check "Swap of a variable with itself changes nothing", first, "text"
first = "abc": second = 7
Swap first, second
Check "Swap exchanges values", first, 7
Check "and types", second, "abc"
i = CLng(0): j = CLng(5)
SwapZ i, j
Check "SwapZ of 0 and 5", i, CLng(5)
Check "SwapZ leaves the 0 behind", j, CLng(0)
i = CLng(7): j = CLng(0)
SwapZ i, j
Check "SwapZ of 7 and 0 moves nothing", i, CLng(7)

Sub CheckSwapZ(title, i_before, j_before, i_after, j_after)
  Dim a, b
  a = CLng(i_before): b = CLng(j_before)
  SwapZ a, b
  Check title, a & " " & b, i_after & " " & j_after
End Sub
CheckSwapZ "SwapZ puts the smaller number first", 7, 3, 3, 7
CheckSwapZ "SwapZ leaves it there", 3, 7, 3, 7
CheckSwapZ "SwapZ of two zeros", 0, 0, 0, 0
CheckSwapZ "SwapZ moves no negative number to the front of a number", 3, -1, 3, -1
CheckSwapZ "but moves one before a 0", 0, -1, -1, 0

On Error Resume Next
Pad_Left "a", -1
CheckError "a length below 0", 5, "Invalid procedure call or argument"
Pad_Right "a", -1
CheckError "a length below 0 of Pad_Right", 5, ""
Pad_HexLeft 1, -1
CheckError "a length below 0 of Pad_HexLeft", 5, ""
Pad_NumLeft 1, -1, "0"
CheckError "a length below 0 of Pad_NumLeft", 5, ""
Pad_NumRight 1, -1, "0"
CheckError "a length below 0 of Pad_NumRight", 5, ""
Round_Num 1, -1
CheckError "a size below 0 of Round_Num", 5, ""
Pad_HexLeft 3000000000, 4
CheckError "Pad_HexLeft past a Long", 6, "Overflow"
Pad_NumRight "abc", 4, "0"
CheckError "Pad_NumRight of no number", 13, "Type mismatch"
Pad_NumRight 1, 4, ""
CheckError "a fill behind that is empty", 5, ""
text = "a"
WordText_Strip text, Null
CheckError "a set that is no text", 94, "Invalid use of Null"
Round_Num -32768, 1
CheckError "Round_Num below an Integer", 6, "Overflow"
Pad_HexLeft "abc", 4
CheckError "Pad_HexLeft of no number", 13, "Type mismatch"
Pad_NumLeft Null, 4, "0"
CheckError "Pad_NumLeft of Null", 94, "Invalid use of Null"
Pad_NumLeft 1, 4, ""
CheckError "a fill that is empty", 5, ""
Round_Num 32768, 1
CheckError "Round_Num past an Integer", 6, "Overflow"
Round_Num "abc", 1
CheckError "Round_Num of no number", 13, ""
On Error GoTo 0
Finish
