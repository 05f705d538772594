' Roman numerals, hexadecimal text and dumps, late bound.
Dim bytes, text, i, wrong

Sub CheckRoman(number, numeral)
  Check "Num_2_Roman of " & number, Num_2_Roman(number), numeral
  Check "Roman_2_Num of " & numeral, Roman_2_Num(numeral), CLng(number)
End Sub
CheckRoman 1, "I"
CheckRoman 3, "III"
CheckRoman 8, "VIII"
CheckRoman 9, "IX"
CheckRoman 40, "XL"
CheckRoman 80, "LXXX"
CheckRoman 90, "XC"
CheckRoman 400, "CD"
CheckRoman 800, "DCCC"
CheckRoman 900, "CM"
CheckRoman 1994, "MCMXCIV"
CheckRoman 4000, "MMMM"
wrong = ""
For i = 1 To 4999 Step 13
  If Roman_2_Num(Num_2_Roman(i)) <> i Then wrong = wrong & i & " "
Next
Check "every numeral reads back", wrong, ""
Check "Num_2_Roman of a negative number is empty", Num_2_Roman(-1), ""
Check "Num_2_Roman rounds, ties to even", Num_2_Roman(2.5), "II"
Check "Roman_2_Num of nothing", Roman_2_Num(""), CLng(0)
Check "Roman_2_Num of another text", Roman_2_Num("hello"), CLng(0)
Check "M repeats", Roman_2_Num("MMMMM"), CLng(5000)
Check "C repeats", Roman_2_Num("CCCC"), CLng(400)
Check "X repeats", Roman_2_Num("XXXX"), CLng(40)
Check "I repeats", Roman_2_Num("IIII"), CLng(4)
Check "D does not", Roman_2_Num("DD"), CLng(500)
Check "L does not", Roman_2_Num("LL"), CLng(50)

Check "Num_2_Roman of 4999", Num_2_Roman(4999), "MMMMCMXCIX"
Check "Num_2_Roman of 4", Num_2_Roman("4"), "IV"
Check "Num_2_Roman of 0 is empty", Num_2_Roman(0), ""
Check "Num_2_Roman of 5000 is empty", Num_2_Roman(5000), ""
Check "Roman_2_Num of either case", Roman_2_Num("mcmXCIV"), CLng(1994)
Check "Roman_2_Num stops out of order", Roman_2_Num("IXX"), CLng(9)
Check "V does not repeat", Roman_2_Num("VV"), CLng(5)
Check "BinToHex of nothing", BinToHex(""), ""
Check "BinToHex", BinToHex(Chr(0) & Chr(15) & "z" & Chr(255)), "000F7AFF"
Check "HexToBin", HexToBin("000f7aFF"), Chr(0) & Chr(15) & "z" & Chr(255)
Check "HexToBin of a digit alone", HexToBin("7"), Chr(7)

Check "BinToHex of the euro sign is its byte", BinToHex(Chr(128)), "80"
Check "HexToBin of nothing", HexToBin(""), ""
Check "HexToBin of three digits", HexToBin("41F"), "A" & Chr(15)
wrong = ""
For i = 0 To 255
  If HexToBin(BinToHex(Chr(i))) <> Chr(i) And i > 0 Then wrong = wrong & i & " "
  If BinToHex(Chr(i)) <> Right("0" & Hex(i), 2) Then wrong = wrong & i & " "
Next
Check "every byte has its two digits and comes back", wrong, ""

Check "HexToByte succeeds", HexToByte("00FF", bytes), False
Check "HexToByte makes an array", IsArray(bytes), True
Check "of the bytes", ByteToHex(bytes, text), False
Check "in their order", text, "00FF"
Check "HexToByte of an empty text succeeds", HexToByte("", bytes), False
Check "its array", ByteToHex(bytes, text), False
Check "has no elements", text, ""
bytes = 5
Check "HexToByte keeps the variable when it fails", HexToByte("0x", bytes), True
Check "as it was", bytes, 5
CheckRecord "HexToByte chains onto no error", 0, " < QvRtLibOle.KwRtLibMod.HexToByte"
Error_Set 20000, "first"
Check "HexToByte fails after another error", HexToByte("0x", bytes), True
CheckRecord "and chains onto it", 20000, "first < QvRtLibOle.KwRtLibMod.HexToByte"
Check "HexToByte of what is no digit fails", HexToByte("0x", bytes), True
CheckRecord "HexToByte leaves a chain", 0, " < QvRtLibOle.KwRtLibMod.HexToByte"
Check "ByteToHex succeeds", ByteToHex(Host.Bytes(0, 255, 122), text), False
Check "ByteToHex", text, "00FF7A"
Check "ByteToHex of an array of Variant", ByteToHex(Array(1, 2), text), False
Check "reads its numbers", text, "0102"
Check "ByteToHex of no array fails", ByteToHex(5, text), True
CheckRecord "ByteToHex leaves a chain", 0, " < QvRtLibOle.KwRtLibMod.ByteToHex"
Check "ByteToHex of a number past a byte fails", ByteToHex(Array(256), text), True
CheckRecord "and leaves a chain", 0, " < QvRtLibOle.KwRtLibMod.ByteToHex"

text = "old"
Check "ByteToHex of an array that is not allocated fails", ByteToHex(Host.Empty_Array(17), text), True
Check "and keeps the text", text, "old"
Reset_Error
Check "Hex_Dump succeeds", Hex_Dump(Chr(1) & Chr(255), text), False
Check "Hex_Dump clears the buffer first", text, " 01 FF"
Check "Hex_Dump in lines", Hex_Dump("abcde", text, 6, "|"), False
Check "ends full lines", text, " 61 62| 63 64| 65"
Check "Hex_Dump with Retain", Hex_Dump("a", text, 0, "", True), False
Check "appends", text, " 61 62| 63 64| 65 61"
Check "Hex_Dump in full lines", Hex_Dump("abcd", text, 6, "|"), False
Check "ends no line at the end", text, " 61 62| 63 64"
Check "Hex_Dump in wider lines", Hex_Dump("abc", text, 8, "|"), False
Check "never exceeds the width", text, " 61 62| 63"
Check "Hex_Dump narrower than a byte", Hex_Dump("ab", text, 2, "|"), False
Check "ends a line before each", text, "| 61| 62"
Check "Hex_Dump of a negative width", Hex_Dump("ab", text, -1, "|"), False
Check "has one line", text, " 61 62"
Check "Hex_Dump past the longest text fails", _
  Hex_Dump(String(100000, "a"), text, 1, String(100000, "-")), True
CheckRecord "and is recorded", 14, "KwRtLibMod.Hex_Dump"
Check "Hex_Dump of nothing", Hex_Dump("", text), False
Check "is empty", text, ""

On Error Resume Next
HexToBin "4G"
CheckError "HexToBin of what is no digit", 13, "Type mismatch"
Num_2_Roman "abc"
CheckError "Num_2_Roman of no number", 13, "Type mismatch"
Num_2_Roman Nothing
CheckError "Num_2_Roman of Nothing", 91, "Object variable or With block variable not set"
Num_2_Roman 1e10
CheckError "Num_2_Roman past a Long", 6, "Overflow"
Num_2_Roman Null
CheckError "Num_2_Roman of Null", 94, ""
On Error GoTo 0
Finish
