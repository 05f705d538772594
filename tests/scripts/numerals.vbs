' Roman numerals, hexadecimal text and dumps, late bound.
Dim bytes, text

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

Check "HexToByte succeeds", HexToByte("00FF", bytes), False
Check "HexToByte makes an array", IsArray(bytes), True
Check "of the bytes", ByteToHex(bytes, text), False
Check "in their order", text, "00FF"
Check "HexToByte of an empty text succeeds", HexToByte("", bytes), False
Check "its array", ByteToHex(bytes, text), False
Check "has no elements", text, ""
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
Check "Hex_Dump succeeds", Hex_Dump(Chr(1) & Chr(255), text), False
Check "Hex_Dump clears the buffer first", text, " 01 FF"
Check "Hex_Dump in lines", Hex_Dump("abcde", text, 6, "|"), False
Check "ends full lines", text, " 61 62| 63 64| 65"
Check "Hex_Dump with Retain", Hex_Dump("a", text, 0, "", True), False
Check "appends", text, " 61 62| 63 64| 65 61"
Check "Hex_Dump of nothing", Hex_Dump("", text), False
Check "is empty", text, ""

On Error Resume Next
HexToBin "4G"
CheckError "HexToBin of what is no digit", 13, "Type mismatch"
Num_2_Roman "abc"
CheckError "Num_2_Roman of no number", 13, "Type mismatch"
Num_2_Roman Null
CheckError "Num_2_Roman of Null", 94, ""
On Error GoTo 0
Finish
