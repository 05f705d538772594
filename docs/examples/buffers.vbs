' == Int_2_Str, Str_2_Int
Dim packed
packed = Int_2_Str(258)
Show Len(packed)              '-> 2
Show Asc(Mid(packed, 1, 1))   '-> 2
Show Str_2_Int(packed)        '-> 258

' == Long_2_Str, Str_2_Long
Show BinToHex(Long_2_Str(258))   '-> 02010000
Show Str_2_Long("abc")           '-> 0

' == Single_2_Str, Str_2_Single
Show Str_2_Single(Single_2_Str(1.5))   '-> 1.5

' == Double_2_Str, Str_2_Double
Show Str_2_Double(Double_2_Str(0.25))   '-> 0.25

' == Currency_2_Str, Str_2_Currency
Show BinToHex(Currency_2_Str(CCur(1)))        '-> 1027000000000000
Show Str_2_Currency(Currency_2_Str(12.3456))  '-> 12.3456

' == Date_2_Str, Str_2_Date
Show Year(Str_2_Date(Date_2_Str(DateSerial(2026, 11, 21))))   '-> 2026

' == Byte_2_Str, Str_2_Byte
Dim bytes
Str_2_Byte "AZ", bytes
Show UBound(bytes)        '-> 1
Show bytes(1)             '-> 90
Show Byte_2_Str(bytes)    '-> AZ

' == Str_2_ZStr
Show Len(Str_2_ZStr("abc"))   '-> 4

' == Hi_Byte, Lo_Byte
Show Hi_Byte(&H1234)   '-> 18
Show Lo_Byte(&H1234)   '-> 52
Show Hi_Byte(-1)       '-> 0
Show Lo_Byte(-1)       '-> 255

' == Hi_Word, Lo_Word
Show Hi_Word(&H12345678)   '-> 4660
Show Lo_Word(&H1234FFFF)   '-> -1

' == Make_Int, Make_Long
Show Make_Int(&H34, &H12)   '-> 4660
Show Make_Long(1, 2)        '-> 131073

' == Buffer_Put, Buffer_Get, Buffer_Complete
' Two values behind each other, and back.
Dim buffer, offset, number, text
buffer = ""
offset = 1
Show Buffer_Put(buffer, offset, CLng(7))         '-> False
Show Buffer_Put(buffer, offset, "seven", True)   '-> False
Buffer_Complete buffer, offset
Show Len(buffer)                                 '-> 13
offset = 1
number = CLng(0)
text = ""
Show Buffer_Get(buffer, offset, number)          '-> False
Show Buffer_Get(buffer, offset, text, True)      '-> False
Show number                                      '-> 7
Show text                                        '-> seven

' == Buffer_LTrim, Buffer_RTrim
Dim buffer, offset
buffer = ""
offset = 1
Buffer_Put buffer, offset, "  text  "
Buffer_RTrim buffer, offset
Buffer_LTrim buffer, offset
Buffer_Complete buffer, offset
Show "[" & buffer & "]"   '-> [text]

' == Buffer_Right, Buffer_TruncIfLast
Dim buffer, offset
buffer = ""
offset = 1
Buffer_Put buffer, offset, "a, b, "
Show Buffer_Right(buffer, offset, 2)        '-> ,
Buffer_TruncIfLast buffer, offset, ", "
Buffer_Complete buffer, offset
Show buffer                                 '-> a, b

' == BufferTyped_Put, BufferTyped_Get
' Each value tells its own type: the reader needs to know nothing.
Dim buffer, offset
buffer = ""
Show BufferTyped_Put(buffer, CLng(70000))     '-> 0
Show BufferTyped_Put(buffer, "ciao")          '-> 0
Show BufferTyped_Put(buffer, True)            '-> 0
offset = CLng(1)
Show BufferTyped_Get(buffer, offset)          '-> 70000
Show BufferTyped_Get(buffer, offset)          '-> ciao
Show BufferTyped_Get(buffer, offset)          '-> True
Show offset = Len(buffer) + 1                 '-> True
On Error Resume Next
offset = BufferTyped_Get(buffer, offset)
Show Err.Number                               '-> 9
