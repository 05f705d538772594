' Sorting and searching, late bound: arrays of Variant and typed ones, a script's own helper.
Dim a, i, n, text, key, helper, box, near, first, buffer, start_from, none, bounds, list
none = Host.Missing

Function Listed(array_of_values)
  Dim element
  Listed = ""
  For Each element In array_of_values
    Listed = Listed & TypeName(element) & " " & element & ";"
  Next
End Function

' The elements of a typed array, which scripts can't index, from its typed buffer.
Function Longs_Of(array_of_longs)
  Dim typed, k, done
  typed = ""
  done = BufferTyped_Put(typed, array_of_longs)
  Longs_Of = ""
  For k = 17 To Len(typed) Step 4
    Longs_Of = Longs_Of & Str_2_Long(Mid(typed, k, 4)) & ";"
  Next
End Function

' --- QuickSort without a helper
a = Array(3, 1, 2)
Check "QuickSort says that it is done", QuickSort(a), False
Check "an array is sorted in place", Listed(a), "Integer 1;Integer 2;Integer 3;"
a = Array("b", 2.5, "B", CLng(2), "", CByte(200), True, "a")
Check "values of all types are sorted together", QuickSort(a), False
Check "numbers come before texts, texts in the order of their codes", Listed(a), _
  "Boolean True;Long 2;Double 2.5;Byte 200;String ;String B;String a;String b;"
a = Host.Longs(5, -3, 4, 70000)
Check "a typed array is sorted", QuickSort(a), False
Check "and stays one", Longs_Of(a), "-3;4;5;70000;"
a = Array(9, 8, 7, 6)
Check "a range is sorted", QuickSort(a, 1, 2), False
Check "and the rest left alone", Listed(a), "Integer 9;Integer 7;Integer 8;Integer 6;"
Check "the last bound may be left out", QuickSort(a, 2), False
Check "the range then runs to the end", Listed(a), "Integer 9;Integer 7;Integer 6;Integer 8;"
Check "the first bound may be left out", QuickSort(a, none, 1), False
Check "the range then runs from the begin", Listed(a), "Integer 7;Integer 9;Integer 6;Integer 8;"
Check "a range that ends before it begins is left alone", QuickSort(a, 3, 1), False
a = Array()
Check "an array without elements is sorted", QuickSort(a), False
Check "nothing is recorded", Check_Error(), False

a = Array(1, Null, 2)
Check "Null does not compare", QuickSort(a), True
CheckRecord "that is recorded", 94, "KwRtLibMod.QuickSort"
a = Array(3, 2, 1)
Check "a range beyond the array fails", QuickSort(a, 0, 3), True
CheckRecord "that is recorded as well", 9, "KwRtLibMod.QuickSort"
Check "and the array is untouched", Listed(a), "Integer 3;Integer 2;Integer 1;"
a = 5
Check "a number is no array", QuickSort(a), True
CheckRecord "a number fails with the language's error", 13, "KwRtLibMod.QuickSort"
a = Host.Empty_Array(3)
Check "an array that is not allocated fails", QuickSort(a), True
CheckRecord "as one without bounds", 9, "KwRtLibMod.QuickSort"

' --- a script's own helper
Class Downwards
  Public Compares
  Public Swaps
  Public Function Compare(v1, v2)
    Compares = Compares + 1
    If v1 > v2 Then
      Compare = -1
    ElseIf v1 < v2 Then
      Compare = 1
    Else
      Compare = 0
    End If
  End Function
  Public Sub Swap(v1, v2)
    Dim held
    Swaps = Swaps + 1
    held = v1: v1 = v2: v2 = held
  End Sub
End Class

Set helper = New Downwards
a = Array(3, 1, 4, 1, 5)
Check "a script's helper sorts", QuickSort(a, none, none, helper), False
Check "in its own order", Listed(a), "Integer 5;Integer 4;Integer 3;Integer 1;Integer 1;"
a = Host.Longs(3, 1, 4, 1, 5)
Check "a script's helper sorts a typed array", QuickSort(a, none, none, helper), False
Check "in place", Longs_Of(a), "5;4;3;1;1;"

Set helper = New Downwards
a = Array(1)
Check "one element is sorted", QuickSort(a, none, none, helper), False
Check "without a call", CLng(helper.Compares + helper.Swaps), CLng(0)
a = Array(2, 1)
Check "two elements in order are sorted", QuickSort(a, none, none, helper), False
Check "they are compared once", CLng(helper.Compares), CLng(1)
Check "and not swapped", CLng(helper.Swaps), CLng(0)
Set helper = New Downwards
a = Array(7, 7, 7, 7, 7)
Check "equal elements are sorted", QuickSort(a, none, none, helper), False
Check "they are swapped twice for every part", CLng(helper.Swaps), CLng(6)
Check "and compared by both scans to the end", CLng(helper.Compares), CLng(16)

Class Refusing
  Public Calls
  Public Function Compare(v1, v2)
    Calls = Calls + 1
    Compare = 0
    If v1 > v2 Then Compare = 1
    If v1 < v2 Then Compare = -1
    If Calls = 3 Then Compare = "no number"
  End Function
  Public Sub Swap(v1, v2)
    Dim held
    held = v1: v1 = v2: v2 = held
  End Sub
End Class

Set helper = New Refusing
a = Array(5, 4, 3, 2, 1)
Check "an answer that is no number stops the sort", QuickSort(a, none, none, helper), True
Check "at once", CLng(helper.Calls), CLng(3)
CheckRecord "and is recorded", 13, "KwRtLibMod.QuickSort"
n = 0
For i = 0 To 4: n = n + a(i): Next
Check "no element is lost", CLng(n), CLng(15)

Set helper = CreateObject("QvRtLibOle.QvSort")
a = Array("b", "a")
Check "a QvSort may be the helper", QuickSort(a, none, none, helper), False
Check "it sorts upwards", Listed(a), "String a;String b;"
Check "QvSort compares numbers by value", helper.Compare(2, 10), CLng(-1)
Check "QvSort compares texts by code", helper.Compare("2", "10"), CLng(1)
Check "QvSort finds equal what is equal by value", helper.Compare(2, 2.0), CLng(0)
first = "one": key = 2
helper.Swap first, key
Check "QvSort exchanges two variables", first, CInt(2)
Check "with their types", key, "one"

' --- what can be indexed
Class Shelf
  Public Things
  Public Default Property Get Item(index)
    Item = Things(index)
  End Property
End Class
Set box = New Shelf
box.Things = Array(0, 5, 3, 4)
Check "an object without both bounds is no array", QuickSort(box), True
CheckRecord "that fails with the language's error", 13, "KwRtLibMod.QuickSort"
Check "an object with both bounds is sorted by copies", QuickSort(box, 1, 3), False
Check "so it stays as it is", Listed(box.Things), "Integer 0;Integer 5;Integer 3;Integer 4;"
Set box = CreateObject("QvRtLibOle.kwCollection")
list = Array(5, 3, 9, 1)
For Each i In list: box.Add i: Next
Check "a collection is sorted by copies too", QuickSort(box, 1, 4), False
Check "and stays as it is", box(1), CInt(5)
Check "a range beyond a collection fails", QuickSort(box, 1, 5), True
CheckRecord "with the collection's error", 9, "KwRtLibMod.QuickSort"

Class Record_Of
  Public Number
End Class
Class By_Number
  Public Function Compare(v1, v2)
    Compare = v1.Number - v2.Number
  End Function
  Public Sub Swap(v1, v2)
    Dim held
    held = v1.Number: v1.Number = v2.Number: v2.Number = held
  End Sub
End Class
Sub Add_Record(number)
  Dim new_record
  Set new_record = New Record_Of
  new_record.Number = number
  box.Add new_record
End Sub
Set box = CreateObject("QvRtLibOle.kwCollection")
list = Array(5, 3, 9, 1)
For Each i In list: Add_Record i: Next
Check "objects of a collection are sorted by what they hold", QuickSort(box, 1, 4, New By_Number), False
text = ""
For Each i In box: text = text & i.Number & ";": Next
Check "when the helper exchanges that", text, "1;3;5;9;"

' Objects are compared by their default values and stay objects.
Class Weighed
  Public Weight
  Public Default Property Get Value()
    Value = Weight
  End Property
End Class
Function Weights(numbers)
  Dim k, objects
  objects = ArrayCreate(1, Array(UBound(numbers) + 1, 0), 12)
  For k = 0 To UBound(numbers)
    Set objects(k) = New Weighed
    objects(k).Weight = numbers(k)
  Next
  Weights = objects
End Function
Function Weights_Of(objects)
  Dim k
  Weights_Of = ""
  For k = 0 To UBound(objects)
    Weights_Of = Weights_Of & IsObject(objects(k)) & " " & objects(k).Weight & ";"
  Next
End Function
a = Weights(Array(3, 1, 2, 1))
Check "objects are sorted by their default values", QuickSort(a), False
Check "and stay objects", Weights_Of(a), "True 1;True 1;True 2;True 3;"
a = Weights(Array(3, 1, 2, 1))
Check "ShellSort sorts objects as well", ShellSort(a), False
Check "and leaves them objects", Weights_Of(a), "True 1;True 1;True 2;True 3;"
Check "BinarySearch compares by default values too", BinarySearch(a, 2), CLng(2)
Set a(0) = New Record_Of
Check "an object without a default value does not compare", QuickSort(a), True
CheckRecord "as one without the member", 438, "KwRtLibMod.QuickSort"

' --- ShellSort
a = Array(5, 3, "x", 9, 1, 7.5)
Check "ShellSort says that it is done", ShellSort(a), False
Check "ShellSort sorts an array based at 0", Listed(a), _
  "Integer 1;Integer 3;Integer 5;Double 7.5;Integer 9;String x;"
a = ArrayCreate(1, Array(8, 2), 12)
For i = 2 To 9: a(i) = 10 - i: Next
Check "ShellSort of an array based at 2 is done", ShellSort(a), False
Check "but leaves order in steps of 2 only", Listed(a), "Integer 1;Integer 3;Integer 2;Integer 5;" & _
  "Integer 4;Integer 7;Integer 6;Integer 8;"
a = ArrayCreate(1, Array(5, -1), 3)
Check "ShellSort of an array based below 0 fails", ShellSort(a), True
CheckRecord "with an overflow", 6, "KwRtLibMod.ShellSort"
a = 5
Check "ShellSort of a number fails", ShellSort(a), True
CheckRecord "ShellSort fails with the language's error", 13, "KwRtLibMod.ShellSort"
a = Array(2, 1, Null)
Check "ShellSort of what does not compare fails", ShellSort(a), True
CheckRecord "ShellSort records it", 94, "KwRtLibMod.ShellSort"
a = Array(Null)
Check "a single Null based at 0 is compared with itself", ShellSort(a), True
CheckRecord "so it fails", 94, "KwRtLibMod.ShellSort"

' --- BinarySearch; arrays of a script are based at 0
a = Array("-", "B", "a", "b")
near = CLng(99)
Check "BinarySearch finds the index", BinarySearch(a, "a", 1, 3, near), CLng(2)
Check "Nearest is minus the index", near, CLng(-2)
Check "BinarySearch of what is not there gives 0", BinarySearch(a, "A", 1, 3, near), CLng(0)
Check "Nearest is the index next to it", near, CLng(1)
Check "an element at 0 reads as not found", BinarySearch(a, "-", none, none, near), CLng(0)
Check "with Nearest 0", near, CLng(0)
near = CLng(99)
Check "an empty range gives 0", BinarySearch(a, "a", 3, 1, near), CLng(0)
Check "with Nearest 0 as well", near, CLng(0)
a = Array(9, 9, 7, 5)
Check "a script's helper decides in BinarySearch", BinarySearch(a, 5, 1, 3, near, New Downwards), CLng(3)
Check "BinarySearch of a collection", BinarySearch(Host.Longs(1, 2, 3), 3), CLng(2)
a = Array(1, Null, 3)
Check "BinarySearch fails with -1", BinarySearch(a, 1), CLng(-1)
CheckRecord "BinarySearch records it", 94, "KwRtLibMod.BinarySearch"
Check "BinarySearch of a number fails", BinarySearch(5, 1), CLng(-1)
CheckRecord "BinarySearch records that as well", 13, "KwRtLibMod.BinarySearch"

' --- GetWordIndex
start_from = CLng(1): text = ""
Do
  n = GetWordIndex("aabbxbbxbb", "bb", start_from)
  text = text & n & "," & start_from & ";"
Loop While start_from > 0
Check "a loop visits each item once and ends with StartFrom 0", text, "2,3;5,6;0,0;"
Check "StartFrom is 1 when it is left out", GetWordIndex("aabb", "bb"), CLng(2)
Check "a word of one character is never found", GetWordIndex("aa", "a"), CLng(0)
start_from = CLng(-5)
Check "StartFrom below 1 fails", GetWordIndex("aabb", "aa", start_from), CLng(0)
Check "a negative one becomes 0", start_from, CLng(0)
CheckRecord "StartFrom below 1 is recorded", 5, "KwRtLibMod.GetWordIndex (4-6161-0--2"
Check "an empty word fails", GetWordIndex("aabb", ""), CLng(0)
CheckRecord "an empty word divides by zero", 11, "KwRtLibMod.GetWordIndex (4--1-1"

' --- ArrayCreate, GetArrayDims
a = ArrayCreate(1, Array(3, 1, 2, -4), 12)
Check "ArrayCreate makes an array of the type asked for", CLng(VarType(a)), CLng(8204)
Check "its first dimension has the bounds of the first pair", UBound(a, 1), CLng(3)
Check "its second dimension those of the second", UBound(a, 2), CLng(-3)
Check "GetArrayDims counts its dimensions", GetArrayDims(a), CLng(2)
a = ArrayCreate(1, Array(3, 1, 2), 12)
Check "ArrayCreate with three entries gives Empty", a, Empty
CheckRecord "and records error 13", 13, "KwRtLibMod.ArrayCreate"
a = ArrayCreate(1, Array(3, 1), 1)
Check "an array of a type that has none is Empty", a, Empty
Check "and nothing is recorded for it", Check_Error(), False
Check "GetArrayDims of a number is 0", GetArrayDims(5), CLng(0)
Check "GetArrayDims of an array that is not allocated is 0", GetArrayDims(Host.Empty_Array(3)), CLng(0)

Finish
