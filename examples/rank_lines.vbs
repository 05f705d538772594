' Which lines of a text answer a query best? Each word's lines are a filter (a posting list): filters
' are combined, walked, saved, loaded, and counters rank the lines by how many query words they hold.
'
'   cscript rank_lines.vbs [text file] [words...]

Option Explicit
Dim rt, fso, fileName, query, lines, i

Set rt = CreateObject("QvRtLibOle.KwRtLib")
Set fso = CreateObject("Scripting.FileSystemObject")
fileName = "LICENSE"
query = Array("software", "without", "warranty", "the")
If WScript.Arguments.Count > 0 Then fileName = WScript.Arguments(0)
If WScript.Arguments.Count > 1 Then
  query = ""
  For i = 1 To WScript.Arguments.Count - 1
    query = Trim(query & " " & LCase(WScript.Arguments(i)))
  Next
  query = Split(query)
End If

lines = Split(Replace(fso.OpenTextFile(fileName).ReadAll, vbCr, ""), vbLf)
WScript.Echo fileName & ": " & (UBound(lines) + 1) & " lines"

' One filter a word; the record number of a line is its number, from 1.
Dim filters, counters
filters = Zeros(UBound(query))
counters = Zeros(UBound(lines))
For i = 0 To UBound(query)
  Set filters(i) = PostingList(query(i))
  WScript.Echo "  '" & query(i) & "' stands in " & filters(i).Count & " lines"
  If rt.Bloom_Sum(filters(i), counters) Then Fail "Bloom_Sum"
Next

' Boolean algebra: lines with the first two words.
Dim both
Set both = PostingList(query(0))
both.BoolAnd filters(1)
WScript.Echo "lines with '" & query(0) & "' and '" & query(1) & "':" & Walk(both)

' A pair of filters survives in a file.
Dim pairName, first, second
pairName = fso.BuildPath(fso.GetSpecialFolder(2).Path, "qvrt_pair.flt")
If rt.BloomSaveExt(pairName, filters(0), both) Then Fail "BloomSaveExt"
Set first = CreateObject("QvRtLibOle.QvtBloomFilter")
Set second = CreateObject("QvRtLibOle.QvtBloomFilter")
If rt.BloomLoadExt(pairName, first, second) Then Fail "BloomLoadExt"
fso.DeleteFile pairName
WScript.Echo "loaded again:" & Walk(second)

' The counters know which lines hold most of the words.
Dim best, most
Set best = PostingList(query(0))
most = rt.Bloom_SumMax(counters, best)
WScript.Echo most & " of " & (UBound(query) + 1) & " words in line" & Walk(best)
i = best.NextBit(-1)
WScript.Echo "  " & Trim(lines(i))
WScript.Echo "done"

Function Zeros(last)
  Dim n, list
  ReDim list(last)
  For n = 0 To last
    list(n) = CInt(0)
  Next
  Zeros = list
End Function

Function PostingList(word)
  Dim list, n
  Set list = CreateObject("QvRtLibOle.QvtBloomFilter")
  If list.Init(UBound(lines) + 1) Then Fail "Init"
  For n = 0 To UBound(lines)
    If InStr(" " & LCase(lines(n)) & " ", " " & word & " ") > 0 Then list.BitSet n, 1
  Next
  Set PostingList = list
End Function

Function Walk(list)
  Dim bit
  Walk = ""
  bit = list.NextBit(-1)
  Do While bit >= 0
    Walk = Walk & " " & list.BitToTid(bit)
    bit = list.NextBit(bit)
  Loop
End Function

Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
