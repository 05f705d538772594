' Tokens, words, templates, padding and changes of texts, late bound.
Dim text, word, first, second, i, j

Check "Get_Token counts from 1", Get_Token("a$$b", "$", 1), "a"
Check "a token may be empty", Get_Token("a$$b", "$", 2), ""
Check "Get_Token finds the last token", Get_Token("a$$b", "$", 3), "b"
Check "Get_Token past the last token is empty", Get_Token("a$$b", "$", 4), ""
Check "Get_Token below 1 is empty", Get_Token("a$$b", "$", 0), ""
Check "Get_Token of an empty text is empty", Get_Token("", "$", 1), ""
Check "a separator is one whole text", Get_Token("1xX2X3", "xX", 2), "2X3"
Check "an empty separator separates nothing", Get_Token("ab", "", 1), "ab"

Check "Str_Format replaces each mark", Str_Format("x$y$", "1$2"), "x1y2"
Check "Str_Format leaves marks without a text", Str_Format("x$y$", "1"), "x1y$"
Check "TranslMessage replaces each pair", TranslMessage("%% di %%", "1%%2"), "1 di 2"

text = "  ab cd"
Check "Word_Strip takes the first word", Word_Strip(text), "ab"
Check "Word_Strip leaves the rest", text, "cd"
Check "Word_Strip takes the last word", Word_Strip(text), "cd"
Check "Word_Strip leaves nothing then", text, ""
Check "Word_Strip of nothing is empty", Word_Strip(text), ""
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
Check "Word_Delimiter finds the first delimiter", Word_Delimiter("ab-c"), CLng(3)
Check "Word_Delimiter without one is the length + 1", Word_Delimiter("abc"), CLng(4)

Check "Pad_Left cuts", Pad_Left("abc", 2), "ab"
Check "Pad_Left fills behind", Pad_Left("abc", 5), "abc  "
Check "Pad_Right fills in front", Pad_Right("abc", 5), "  abc"
Check "Pad_Right keeps the first characters", Pad_Right("abc", 2), "ab"
Check "Pad_HexLeft fills with zeros", Pad_HexLeft(255, 4), "00FF"
Check "Pad_HexLeft keeps the last digits", Pad_HexLeft(CLng(74565), 3), "345"
Check "Pad_HexLeft of a negative Integer", Pad_HexLeft(-1, 4), "FFFF"
Check "Pad_NumLeft fills in front", Pad_NumLeft(12, 5, "0"), "00012"
Check "Pad_NumLeft has a point", Pad_NumLeft(0.5, 4, " "), "  .5"
Check "Pad_NumRight fills behind", Pad_NumRight(12, 5, "0"), "12000"
Check "Round_Num drops a digit below 5", Round_Num(3.47, 1), "3.0"
Check "Round_Num keeps a digit from 5 on", Round_Num(3.57, 1), "3.5"
Check "Round_Num with two digits", Round_Num(3.47, 2), "3.40"
Check "Round_Num of a negative number is odd", Round_Num(-3.2, 1), "-3.6"

text = "abcabc"
Replace_Str text, "b", "xx"
Check "Replace_Str replaces all", text, "axxcaxxc"
Replace_Str text, "", "y"
Check "Replace_Str of nothing changes nothing", text, "axxcaxxc"
Trunc_Last text
Check "Trunc_Last takes the last character", text, "axxcaxx"
Trunc_IfLast text, "xx"
Check "Trunc_IfLast takes a tail", text, "axxca"
Trunc_IfLast text, ""
Check "an empty tail takes nothing", text, "axxca"
text = ""
Trunc_Last text
Check "Trunc_Last of nothing", text, ""
Check "Label_Filter doubles", Label_Filter("a&b"), "a&&b"
Check "Label_Strip removes all", Label_Strip("a&&b"), "ab"
Check "C_2_Str ends before character 0", C_2_Str("ab" & Chr(0) & "c"), "ab"
Check "IsAlphaString knows accented letters", IsAlphaString("perch" & Chr(233)), True
Check "IsAlphaString, strict, does not", IsAlphaString("perch" & Chr(233), True), False
Check "IsAlNumString takes digits", IsAlNumString("a1"), True
Check "IsAlphaString takes none", IsAlphaString("a1"), False
Check "Oem_2_Ansi undoes Ansi_2_Oem", Oem_2_Ansi(Ansi_2_Oem("perch" & Chr(233))), "perch" & Chr(233)

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

On Error Resume Next
Pad_Left "a", -1
CheckError "a length below 0", 5, "Invalid procedure call or argument"
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
