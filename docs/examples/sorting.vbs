' == QuickSort, ShellSort
Dim towns
towns = Array("Rome", "Bari", "Turin")
Show QuickSort(towns)                         '-> False
Show towns(0) & " " & towns(1) & " " & towns(2)    '-> Bari Rome Turin
towns = Array(3, 1, 2)
Show ShellSort(towns)                         '-> False
Show towns(0) & " " & towns(1) & " " & towns(2)    '-> 1 2 3

' == QvSort, QvSort.Compare, QvSort.Swap
' The comparison that sorts by itself, and an order of one's own in its place.
Dim order, first, second, numbers
Set order = CreateObject("QvRtLibOle.QvSort")
Show order.Compare(2, 10)                     '-> -1
Show order.Compare("2", "10")                 '-> 1
first = "one"
second = 2
order.Swap first, second
Show first                                    '-> 2
numbers = Array(3, 1, 2)
Show QuickSort(numbers, 0, 2, New Downwards)  '-> False
Show numbers(0) & " " & numbers(1) & " " & numbers(2)    '-> 3 2 1
Class Downwards
  Function Compare(v1, v2)
    Compare = 0
    If v1 > v2 Then Compare = -1
    If v1 < v2 Then Compare = 1
  End Function
  Sub Swap(v1, v2)
    Dim held
    held = v1
    v1 = v2
    v2 = held
  End Sub
End Class

' == BinarySearch
' Elements from 1 on: a hit at 0 would read as not found.
Dim towns, near
towns = Array("", "Bari", "Rome", "Turin")
Show BinarySearch(towns, "Rome", 1, 3, near)  '-> 2
Show near                                     '-> -2
Show BinarySearch(towns, "Pisa", 1, 3, near)  '-> 0
Show near                                     '-> 1

' == GetWordIndex
' A text as a list of items of two characters; StartFrom goes on behind each hit.
Dim list, from
list = "TORMBATO"
from = CLng(1)
Show GetWordIndex(list, "TO", from)           '-> 1
Show from                                     '-> 2
Show GetWordIndex(list, "TO", from)           '-> 4
Show GetWordIndex(list, "MI")                 '-> 0

' == ArrayCreate, GetArrayDims
' Three rows from 1 on and two columns from 0 on.
Dim cells
cells = ArrayCreate(2, Array(3, 1, 2, 0), vbVariant)
Show GetArrayDims(cells)                      '-> 2
Show LBound(cells, 1) & " to " & UBound(cells, 1)    '-> 1 to 3
Show LBound(cells, 2) & " to " & UBound(cells, 2)    '-> 0 to 1

' == CommandLineParmsExtr, CommandLineParmGet
Dim arguments, number, name, value
Set arguments = CreateObject("QvRtLibOle.kwCollection")
Show CommandLineParmsExtr("/quiet /out=""C:\My Files"" a.txt b.txt", arguments)    '-> False
Show CommandLineParmGet(arguments, "out", 1, value)       '-> 0
Show value                                                '-> C:\My Files
Show CommandLineParmGet(arguments, "NONAME", 2, value)    '-> 0
Show value                                                '-> b.txt
Show CommandLineParmGet(arguments, "loud")                '-> 1
' Without a name: all of them, one after the other.
number = 1
name = ""
Do While CommandLineParmGet(arguments, name, number, value) = 0
  Show name & "=" & value
  number = number + 1
  name = ""
Loop
'-> QUIET=
'-> OUT=C:\My Files
'-> NONAME=a.txt
'-> NONAME=b.txt

' == QvCmdArg, QvCmdArg.Name, QvCmdArg.Desc, QvCmdArg.List, QvCmdArg.Ordinal
Dim arguments, argument, occurrence
Set arguments = CreateObject("QvRtLibOle.kwCollection")
CommandLineParmsExtr "/in=a.txt /quiet /in=b.txt", arguments
Set argument = arguments("in")
Show argument.Name & " " & argument.Desc & " " & argument.Ordinal    '-> IN a.txt 1
For Each occurrence In argument.List
  Show occurrence.Desc & " " & occurrence.Ordinal
Next
'-> a.txt 1
'-> b.txt 3
Set argument = arguments("quiet")
Show argument.List.Count                      '-> 0
