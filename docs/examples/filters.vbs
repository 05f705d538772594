' == QvtBloomFilter, QvtBloomFilter.Init, QvtBloomFilter.Bits, QvtBloomFilter.Words, QvtBloomFilter.BitSet, QvtBloomFilter.BitTest, QvtBloomFilter.Count
' One bit for each of a million records.
Dim found
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
Show found.Init(1000000)        '-> False
Show found.Bits                 '-> 1000000
Show found.Words                '-> 31250
Show found.BitSet(41, 1)        '-> 0
Show found.BitSet(41, 1)        '-> 1
Show found.BitTest(41)          '-> 1
Show found.BitSet(1000000, 1)   '-> -1
Show found.Count                '-> 1

' == QvtBloomFilter.BitToTid, QvtBloomFilter.TidToBit, QvtBloomFilter.TidSkip
' Records count from 1, bits from 0.
Dim found, record
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 100
Show found.BitToTid(41)         '-> 42
Show found.TidToBit(42)         '-> 41
found.BitSet found.TidToBit(10), 1
found.BitSet found.TidToBit(20), 1
found.BitSet found.TidToBit(30), 1
Show found.TidSkip(10, 2)       '-> 30
Show found.TidSkip(30, -1)      '-> 20
Show found.TidSkip(30, 1)       '-> 0

' == QvtBloomFilter.NextBit, QvtBloomFilter.PrevBit, QvtBloomFilter.NextZeroBit, QvtBloomFilter.Fill
' The walk over what is set.
Dim found, bit
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 100
Show found.Fill(3)              '-> False
bit = found.NextBit(-1)
Do While bit >= 0
  Show bit
  bit = found.NextBit(bit)
Loop
'-> 0
'-> 1
'-> 2
Show found.PrevBit(found.Bits)  '-> 2
Show found.NextZeroBit(-1)      '-> 3
Show found.Fill(101)            '-> True

' == QvtBloomFilter.BoolAnd, QvtBloomFilter.BoolOr, QvtBloomFilter.BoolXor, QvtBloomFilter.BoolExcl, QvtBloomFilter.BoolNot
Dim first, second
Set first = CreateObject("QvRtLibOle.QvtBloomFilter")
Set second = CreateObject("QvRtLibOle.QvtBloomFilter")
first.Init 10
second.Init 10
first.Fill 6                    ' records 1 to 6
second.BitSet 5, 1              ' record 6
second.BitSet 9, 1              ' record 10
first.BoolOr second
Show first.Count                '-> 7
first.BoolExcl second
Show first.Count                '-> 5
first.BoolXor second
Show first.Count                '-> 7
first.BoolAnd second
Show first.Count                '-> 2
first.BoolNot
Show first.Count                '-> 8
second.Resize 11
On Error Resume Next
first.BoolOr second
Show Err.Number                 '-> 20000
Show Err.Description            '-> Filtri con diversa estensione.

' == QvtBloomFilter.Resize, QvtBloomFilter.Free
Dim found
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 10
found.Fill 10
Show found.Resize(4)            '-> False
Show found.Count                '-> 4
Show found.Resize(100)          '-> False
Show found.Count                '-> 4
found.Free
Show found.Bits                 '-> 0

' == QvtBloomFilter.IndexRead, QvtBloomFilter.IndexReadStr
' Lists of record numbers, as an index file holds them, 4 bytes each.
Dim found
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 100
found.IndexReadStr Long_2_Str(7) & Long_2_Str(42) & Long_2_Str(5000), 3
Show found.Count                '-> 2
found.IndexRead CLng(43), 1
Show found.BitTest(42)          '-> 1

' == QvtBloomFilter.TopBits
' Which words of 32 bits hold anything at all?
Dim found, top
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
Set top = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 1000
found.BitSet 70, 1
top.Init found.Words
Show found.TopBits(top)         '-> False
Show top.NextBit(-1)            '-> 2

' == QvtBloomFilter.Save, QvtBloomFilter.Load
Dim found, again, name
name = Get_TempPath() & "examples.flt"
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 1000
found.Fill 10
Show found.Save(name)           '-> False
Set again = CreateObject("QvRtLibOle.QvtBloomFilter")
Show again.Load(name)           '-> False
Show again.Count                '-> 10
File_Kill name
Show again.Load(name)           '-> True
Show Error_Source()             '-> QvtBloomFilter.Load
Show again.Count                '-> 10

' == QvtBloomFilter.Struct, QvtBloomFilter.hFilter, QvtBloomFilter.Filter
' The record of a filter names its bit map: a copy of the record shares the bits.
Dim found, same
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
Set same = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 100
same.Struct = found.Struct
Show same.Bits                          '-> 100
Show same.hFilter = found.hFilter       '-> True
found.BitSet 5, 1
Show same.BitTest(5)                    '-> 1
Show found.Filter <> 0                  '-> True
found.Free
Show same.BitTest(5)                    '-> 0

' == BloomSaveExt, BloomLoadExt
' A pair of filters in one file.
Dim first, second, name
name = Get_TempPath() & "examples.flt"
Set first = CreateObject("QvRtLibOle.QvtBloomFilter")
Set second = CreateObject("QvRtLibOle.QvtBloomFilter")
first.Init 100
second.Init 100
first.Fill 10
second.Fill 20
Show BloomSaveExt(name, first, second)    '-> False
first.Free
second.Free
Show BloomLoadExt(name, first, second)    '-> False
Show first.Count & " " & second.Count     '-> 10 20
File_Kill name
Show BloomLoadExt(name, first, second)    '-> True
Show Error_Number()                       '-> -1

' == Bloom_Open, Bloom_Close, Bloom_Save, Bloom_Load
' Filters follow each other in a file.
Dim found, name, handle
name = Get_TempPath() & "examples.flt"
Log_Write name, "", 0                     ' makes the file
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 100
found.Fill 7
handle = Bloom_Open(name, True)
Show Bloom_Save(found, handle)            '-> 0
found.BoolNot
Show Bloom_Save(found, handle)            '-> 0
Show Bloom_Close(handle)                  '-> False
handle = Bloom_Open(name, False)
Show Bloom_Load(found, handle)            '-> 0
Show found.Count                          '-> 7
Show Bloom_Load(found, handle)            '-> 0
Show found.Count                          '-> 93
Show Bloom_Load(found, handle)            '-> -1
Bloom_Close handle
File_Kill name

' == Bloom_Write, Bloom_Read, Bloom_LoadOld
' A filter of the older layout: its bits as a Long, then the raw bits.
Dim found, name, handle, buffer
name = Get_TempPath() & "examples.flt"
Log_Write name, "", 0
handle = Bloom_Open(name, True)
Show Bloom_Write(handle, Long_2_Str(10) & Chr(5) & Chr(2), 6)    '-> 6
Bloom_Close handle
handle = Bloom_Open(name, False)
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
Show Bloom_LoadOld(found, handle)         '-> 0
Show found.Bits & " " & found.Count       '-> 10 3
Bloom_Close handle
handle = Bloom_Open(name, False)
buffer = Space(4)
Show Bloom_Read(handle, buffer, 4)        '-> 4
Show Str_2_Long(buffer)                   '-> 10
Bloom_Close handle
File_Kill name

' == Bloom_CopyBufferSize, Bloom_CopyToString, Bloom_CopyFromString
' The raw bits in a text, for a database field.
Dim found, image
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 20
found.Fill 9
Show Bloom_CopyBufferSize(found)          '-> 3
Show Bloom_CopyToString(found, image)     '-> 3
Show BinToHex(image)                      '-> FF0100
found.BoolNot
Show Bloom_CopyFromString(found, image)   '-> 3
Show found.Count                          '-> 9

' == Bloom_CopyTo, Bloom_CopyFrom
' The same in bytes; a filter made from bytes has 8 bits for each.
Dim found, image
Set found = CreateObject("QvRtLibOle.QvtBloomFilter")
found.Init 20
found.Fill 9
Show Bloom_CopyTo(found, image)           '-> 3
Show image(0) & " " & image(1)            '-> 255 1
Show Bloom_CopyFrom(found, image)         '-> 3
Show found.Bits                           '-> 24

' == Bloom_Sum, Bloom_SumMax
' Which records match most of the words that were searched for?
Dim word, counters, i, best
Set word = CreateObject("QvRtLibOle.QvtBloomFilter")
word.Init 4
counters = Array(0, 0, 0, 0)
word.Fill 3
Show Bloom_Sum(word, counters)            '-> False
word.Fill 2
Bloom_Sum word, counters
Show counters(0) & counters(1) & counters(2) & counters(3)    '-> 2210
Show Bloom_SumMax(counters, word)         '-> 2
Show word.Count                           '-> 2

' == Bloom_Sum_Ex
' The counters in a text, 2 bytes each.
Dim word, counters
Set word = CreateObject("QvRtLibOle.QvtBloomFilter")
word.Init 4
word.Fill 3
counters = String(8, Chr(0))
Show Bloom_Sum_Ex(word, counters)         '-> 0
Show BinToHex(counters)                   '-> 0100010001000000
counters = String(4, Chr(0))
Show Bloom_Sum_Ex(word, counters)         '-> -1

' == Bloom_Merge, Bloom_Result
' Counters of two bits for each record: room for counts up to 3.
Dim word, counter
Set word = CreateObject("QvRtLibOle.QvtBloomFilter")
Set counter = CreateObject("QvRtLibOle.QvtBloomFilter")
word.Init 32
counter.Init 2 * 32
word.Fill 10
Show Bloom_Merge(word, counter)           '-> 0
word.Fill 4
Bloom_Merge word, counter
Show Bloom_Result(word, counter)          '-> 0
Show word.Count                           '-> 4
