' Array variables with their size in the Dim, late bound: they arrive as references to arrays. Those
' of a class have a size that can change.
Dim fixed(4), i, text, held

For i = 0 To 4: fixed(i) = 9 - i: Next
Check "an array variable of a script is sorted", QuickSort(fixed), False
For i = 0 To 4: text = text & fixed(i): Next
Check "in the script's own variable", text, "56789"
Check "its elements keep their type", VarType(fixed(0)), VarType(CInt(5))
Check "GetArrayDims does not follow the reference that it is", GetArrayDims(fixed), CLng(0)
Host.Unfix fixed

Class Holder
  Dim elements(4)
  Sub Fill()
    Dim n
    For n = 0 To 4: elements(n) = 9 - n: Next
  End Sub
  Function Text()
    Dim n
    For n = LBound(elements) To UBound(elements): Text = Text & elements(n) & " ": Next
  End Function
  Sub Checked()
    Check "an array variable of an object is sorted", QuickSort(elements), False
    Check "in the object's own variable", Text(), "5 6 7 8 9 "
    Str_2_Byte "abcd", elements
    Check "and takes new bounds", Text(), "97 98 99 100 "
  End Sub
End Class
Set held = New Holder
held.Fill
held.Checked
Set held = Nothing
Finish
