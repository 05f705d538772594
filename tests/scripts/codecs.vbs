' Values and their bytes, late bound, on a system of code page 1252.
Dim text, i, all, bytes, value, name, list

' The characters of a list of byte values.
Function Characters(codes)
  Dim result, code
  For Each code In codes
    result = result & Chr(code)
  Next
  Characters = result
End Function

Sub CheckBytes(name, actual, codes)
  Check name, actual, Characters(codes)
End Sub

all = ""
For i = 0 To 255
  all = all & Chr(i)
Next

' Golden bytes
CheckBytes "Int_2_Str of 0", Int_2_Str(0), Array(0, 0)
CheckBytes "Int_2_Str of 4660", Int_2_Str(4660), Array(&H34, &H12)
CheckBytes "Int_2_Str of -1", Int_2_Str(-1), Array(255, 255)
CheckBytes "Int_2_Str of -32768", Int_2_Str(CInt(-32768)), Array(0, 128)
CheckBytes "Long_2_Str of 305419896", Long_2_Str(305419896), Array(&H78, &H56, &H34, &H12)
CheckBytes "Long_2_Str of -1", Long_2_Str(-1), Array(255, 255, 255, 255)
Check "Long_2_Str has 4 characters", Len(Long_2_Str(-1)), CLng(4)
CheckBytes "Single_2_Str of 1.5", Single_2_Str(1.5), Array(0, 0, &HC0, &H3F)
CheckBytes "Single_2_Str of -2", Single_2_Str(-2), Array(0, 0, 0, &HC0)
CheckBytes "Double_2_Str of 1", Double_2_Str(1), Array(0, 0, 0, 0, 0, 0, &HF0, &H3F)
CheckBytes "Double_2_Str of -0.1", Double_2_Str(-0.1), Array(&H9A, &H99, &H99, &H99, &H99, &H99, &HB9, &HBF)
CheckBytes "Date_2_Str of 1 January 2000, 18:00", Date_2_Str(DateSerial(2000, 1, 1) + TimeSerial(18, 0, 0)), _
  Array(0, 0, 0, 0, &HD8, &HD5, &HE1, &H40)
CheckBytes "Currency_2_Str of 1", Currency_2_Str(CCur(1)), Array(&H10, &H27, 0, 0, 0, 0, 0, 0)
CheckBytes "Currency_2_Str of -0.0001", Currency_2_Str(CCur("-0.0001")), Array(255, 255, 255, 255, 255, 255, 255, 255)

' There and back
Check "Str_2_Int", Str_2_Int(Int_2_Str(-12345)), CInt(-12345)
Check "Str_2_Long", Str_2_Long(Long_2_Str(-1234567)), CLng(-1234567)
Check "Str_2_Single", Str_2_Single(Single_2_Str(1.5)), CSng(1.5)
Check "Str_2_Double", Str_2_Double(Double_2_Str(0.1)), CDbl(0.1)
Check "Str_2_Date", Str_2_Date(Date_2_Str(DateSerial(1999, 12, 31))), DateSerial(1999, 12, 31)
Check "Str_2_Currency", Str_2_Currency(Currency_2_Str(CCur("12.3456"))), CCur("12.3456")

' Short and long texts
Check "Str_2_Int of one character", Str_2_Int("a"), CInt(0)
Check "Str_2_Long of three characters", Str_2_Long("abc"), CLng(0)
Check "Str_2_Long of no characters", Str_2_Long(""), CLng(0)
Check "Str_2_Single of three characters", Str_2_Single("abc"), CSng(0)
Check "Str_2_Double of seven characters", Str_2_Double("abcdefg"), CDbl(0)
Check "Str_2_Date of seven characters", Str_2_Date("abcdefg"), CDate(0)
Check "Str_2_Currency of seven characters", Str_2_Currency("abcdefg"), CCur(0)
Check "Str_2_Long passes extra characters over", Str_2_Long(Long_2_Str(7) & "xyz"), CLng(7)

' The round trip is written back
text = Host.ChrW(&H100) & Host.ChrW(&H4E2D) & Chr(128) & "a" & Host.ChrW(&H100)
Check "Str_2_Long takes the ANSI form", Str_2_Long(text), CLng(&H61803F41)
Check "Str_2_Long writes it back", text, "A?" & Chr(128) & "aA"
text = Host.ChrW(&H4E2D)
Check "a text too short is 0", Str_2_Double(text), CDbl(0)
Check "and is written back as well", text, "?"
text = all
Check "all bytes stand for a number", Str_2_Long(text), CLng(&H03020100)
Check "all bytes stay as they are", text, all

' Str_2_ZStr
Check "Str_2_ZStr adds a character 0", Str_2_ZStr("abc"), "abc" & Chr(0)
Check "Str_2_ZStr of an empty text", Str_2_ZStr(""), Chr(0)
Check "Str_2_ZStr leaves a text with a final 0", Str_2_ZStr("abc" & Chr(0)), "abc" & Chr(0)
Check "Str_2_ZStr leaves a text with a 0 inside", Str_2_ZStr("a" & Chr(0) & "bc"), "a" & Chr(0) & "bc"

' Byte arrays: a script's variable receives an array of Variant, which it can index.
bytes = Empty
Str_2_Byte all, bytes
Check "Str_2_Byte begins at 0", LBound(bytes), CLng(0)
Check "Str_2_Byte ends at length - 1", UBound(bytes), CLng(255)
Check "Str_2_Byte gives Bytes", bytes(200), CByte(200)
Check "Byte_2_Str gives all bytes back", Byte_2_Str(bytes), all
Str_2_Byte "", bytes
Check "Str_2_Byte of an empty text has one element", UBound(bytes), CLng(0)
Check "which is 0", bytes(0), CByte(0)
text = Host.ChrW(&H4E2D)
Str_2_Byte text, bytes
Check "Str_2_Byte takes the ANSI form", bytes(0), CByte(63)
Check "Str_2_Byte writes it back", text, "?"
Check "Byte_2_Str of an array of Byte", Byte_2_Str(Host.Bytes(65, 0, 255)), "A" & Chr(0) & Chr(255)
Check "Byte_2_Str of a script's array", Byte_2_Str(Array(65, 66, 67)), "ABC"
On Error Resume Next
value = Byte_2_Str(Host.Empty_Array(vbByte))
CheckError "Byte_2_Str of an array that is not allocated", 9, "Subscript out of range"
value = Byte_2_Str(Array(65, 256))
CheckError "Byte_2_Str of a number that is no Byte", 6, ""
value = Int_2_Str(40000)
CheckError "Int_2_Str of 40000", 6, ""
value = Long_2_Str("no number")
CheckError "Long_2_Str of a text", 13, ""
On Error GoTo 0

' Bytes and words
Check "Hi_Byte of 4660", Hi_Byte(4660), CInt(&H12)
Check "Hi_Byte of -1", Hi_Byte(-1), CInt(0)
Check "Hi_Byte of -255", Hi_Byte(-255), CInt(0)
Check "Hi_Byte of -256", Hi_Byte(-256), CInt(-1)
Check "Hi_Byte of -32768", Hi_Byte(CInt(-32768)), CInt(-128)
Check "Lo_Byte of 4660", Lo_Byte(4660), CInt(&H34)
Check "Lo_Byte of -1", Lo_Byte(-1), CInt(255)
Check "Lo_Byte of -256", Lo_Byte(-256), CInt(0)
Check "Hi_Word of 305419896", Hi_Word(305419896), CInt(&H1234)
Check "Lo_Word of 305419896", Lo_Word(305419896), CInt(&H5678)
Check "Hi_Word of -1", Hi_Word(-1), CInt(-1)
Check "Lo_Word of 65535", Lo_Word(CLng(65535)), CInt(-1)
Check "Hi_Word of 65535", Hi_Word(CLng(65535)), CInt(0)
Check "Make_Int", Make_Int(&H34, &H12), CInt(&H1234)
Check "Make_Int takes the low bytes only", Make_Int(&H7734, &H7712), CInt(&H1234)
Check "Make_Int of -1 and -1", Make_Int(-1, -1), CInt(-1)
Check "Make_Int of 0 and 128", Make_Int(0, 128), CInt(-32768)
Check "Make_Long", Make_Long(&H5678, &H1234), CLng(305419896)
Check "Make_Long of -1 and 0", Make_Long(-1, 0), CLng(65535)
Check "Make_Long of 0 and -1", Make_Long(0, -1), CLng(-65536)
list = Array(0, 1, -1, 305419896, -305419896)
For Each value In list
  Check "Make_Long puts " & value & " together", Make_Long(Lo_Word(value), Hi_Word(value)), CLng(value)
Next
Finish
