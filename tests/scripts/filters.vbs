' Filters, late bound.
Dim f, g, top, name, h, text, counter, path

Function Bits(filter)
  Dim b
  Bits = ""
  b = filter.NextBit(-1)
  Do While b >= 0
    Bits = Bits & b & " "
    b = filter.NextBit(b)
  Loop
End Function

Set f = CreateObject("QvRtLibOle.QvtBloomFilter")
Check "a new filter has no bits", f.Bits, CLng(0)
Check "BitSet without a map is -1", f.BitSet(0, 1), -1
Check "Init", f.Init(100), False
Check "Bits", f.Bits, CLng(100)
Check "Words", f.Words, CLng(4)
Check "BitSet gives the old value", f.BitSet(5, 1), 0
Check "BitSet again", f.BitSet(5, 1), 1
f.BitSet 99, 1
Check "BitTest", f.BitTest(99), 1
Check "BitTest out of range", f.BitTest(100), 0
Check "Count", f.Count, CLng(2)
Check "NextBit walks", Bits(f), "5 99 "
Check "PrevBit from the end", f.PrevBit(100), CLng(99)
Check "NextZeroBit", f.NextZeroBit(4), CLng(6)
Check "BitToTid", f.BitToTid(5), CLng(6)
Check "TidToBit", f.TidToBit(6), CLng(5)
Check "TidSkip", f.TidSkip(6, 1), CLng(100)

Set g = CreateObject("QvRtLibOle.QvtBloomFilter")
g.Init 100
g.BitSet 5, 1
g.BitSet 7, 1
f.BoolOr g
Check "BoolOr", Bits(f), "5 7 99 "
f.BoolExcl g
Check "BoolExcl", Bits(f), "99 "
f.BoolXor g
Check "BoolXor", Bits(f), "5 7 99 "
f.BoolAnd g
Check "BoolAnd", Bits(f), "5 7 "
g.Resize 101
On Error Resume Next
f.BoolOr g
Check "a different extension raises from BoolAnd", Err.Source, "BoolAnd"
CheckError "with 20000", 20000, "Filtri con diversa estensione."
f.BoolOr Nothing
CheckError "Nothing as second filter", 91, ""
f.BoolOr "text"
CheckError "a text as second filter", 13, ""
On Error GoTo 0
f.BoolNot
Check "BoolNot", f.Count, CLng(98)
Check "Fill", f.Fill(3), False
Check "Fill sets the first", Bits(f), "0 1 2 "
Check "Fill beyond the end", f.Fill(101), True
Set top = CreateObject("QvRtLibOle.QvtBloomFilter")
top.Init 4
Check "TopBits", f.TopBits(top), False
Check "TopBits sets a bit a word", Bits(top), "0 "

f.IndexReadStr Long_2_Str(50) & Long_2_Str(0) & Long_2_Str(101), 3
Check "IndexReadStr", Bits(f), "0 1 2 49 "

path = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path & "\qvrt_filters.flt"
Check "Save", f.Save(path), False
Set g = CreateObject("QvRtLibOle.QvtBloomFilter")
Check "Load", g.Load(path), False
Check "the bits come back", Bits(g), "0 1 2 49 "
h = Bloom_Open(path, False)
Check "Bloom_Load", Bloom_Load(g, h), 0
Check "a second image is not there", Bloom_Load(g, h), -1
Check "Bloom_Close", Bloom_Close(h), False
Check "BloomSaveExt", BloomSaveExt(path, f, top), False
Check "BloomLoadExt", BloomLoadExt(path, top, g), False
Check "the first of the pair", Bits(top), "0 1 2 49 "
Check "the second of the pair", Bits(g), "0 "
CreateObject("Scripting.FileSystemObject").DeleteFile path
Check "Load of a missing file", g.Load(path), True
CheckRecord "records -1", -1, "QvtBloomFilter.Load"

Check "Bloom_CopyBufferSize", Bloom_CopyBufferSize(f), CLng(13)
Check "Bloom_CopyToString", Bloom_CopyToString(f, text), CLng(13)
Check "the raw image", Host.Same(text, Chr(7) & String(5, Chr(0)) & Chr(2) & String(6, Chr(0))), True
f.BoolNot
Check "Bloom_CopyFromString", Bloom_CopyFromString(f, text), CLng(13)
Check "gives the bits back", Bits(f), "0 1 2 49 "
counter = Empty
Check "Bloom_CopyTo makes an array", Bloom_CopyTo(f, counter), CLng(13)
Check "that a script can index", counter(0), CByte(7)
Check "Bloom_CopyFrom takes it", Bloom_CopyFrom(g, counter), CLng(13)
Check "8 bits a byte", g.Bits, CLng(104)

Dim sums
ReDim sums(99)
Dim i
For i = 0 To 99: sums(i) = CInt(0): Next
counter = sums
Check "Bloom_Sum", Bloom_Sum(f, counter), False
Check "adds to the counters", counter(49), 1
Check "Bloom_SumMax", Bloom_SumMax(counter, f), 1
Check "keeps the greatest", Bits(f), "0 1 2 49 "
text = String(200, Chr(0))
Check "Bloom_Sum_Ex", Bloom_Sum_Ex(f, text), 0
Check "counts in the text", Asc(Mid(text, 99, 1)), 1
Check "Bloom_Sum_Ex with a short text", Bloom_Sum_Ex(f, "ab"), -1
Set g = CreateObject("QvRtLibOle.QvtBloomFilter")
g.Init 256
Check "Bloom_Merge", Bloom_Merge(f, g), 0
Check "Bloom_Result", Bloom_Result(f, g), 0
Check "MSG_BLOOMSAVE", MSG_BLOOMSAVE, "Errore durante il salvataggio del filtro-b."
On Error Resume Next
g.Struct = f.Struct
If Err.Number = 0 Then Check "a record travels from filter to filter", g.hFilter, f.hFilter
Err.Clear
g.Struct = 7
CheckError "a number is no record", 13, ""
On Error GoTo 0
f.Free
Check "Free clears the record", f.Bits, CLng(0)
f.Free
Finish
