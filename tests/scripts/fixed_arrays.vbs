' Array variables with their size in the Dim, late bound: they arrive as references to arrays.
' Not watched: the platform's engine never frees them.
Dim fixed(4), i, text

For i = 0 To 4: fixed(i) = 9 - i: Next
Check "an array variable of a script is sorted", QuickSort(fixed), False
For i = 0 To 4: text = text & fixed(i): Next
Check "in the script's own variable", text, "56789"
Check "its elements keep their type", VarType(fixed(0)), VarType(CInt(5))
Check "GetArrayDims does not follow the reference that it is", GetArrayDims(fixed), CLng(0)
Finish
