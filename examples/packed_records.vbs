' Writes a file of packed records and reads it back: a name with its length in front, a Long, a Double.

Option Explicit
Dim rt, fso, fileName, names, i, buffer, offset, handle, attributes
Dim name, count, price, total

Set rt = CreateObject("QvRtLibOle.KwRtLib")
Set fso = CreateObject("Scripting.FileSystemObject")
fileName = fso.BuildPath(fso.GetSpecialFolder(2).Path, "qvrt_records.bin")
names = Array("apples", "pears", "a third kind of fruit")

' The buffer grows by itself; Offset tells where its content ends.
buffer = "": offset = CLng(1)
Put CLng(UBound(names) + 1)
For i = 0 To UBound(names)
  Put names(i)
  Put CLng((i + 1) * 100)
  Put CDbl(i + 0.25)
Next
rt.Buffer_Complete buffer, offset
WScript.Echo "packed " & (UBound(names) + 1) & " records into " & Len(buffer) & " bytes"

' Read and write (4), made when missing (16), emptied (32), binary (256); others must wait (16).
attributes = CLng(0): handle = CLng(0)
If rt.File_Open32(fileName, 308, 16, attributes, handle) Then Fail "File_Open32"
If rt.File_Write32(handle, buffer) Then Fail "File_Write32"
rt.File_Close32 handle

handle = CLng(0): attributes = CLng(0)
If rt.File_Open32(fileName, 257, 64, attributes, handle) Then Fail "File_Open32"
buffer = Space(fso.GetFile(fileName).Size)
If rt.File_Read32(handle, buffer) Then Fail "File_Read32"
rt.File_Close32 handle
fso.DeleteFile fileName

offset = CLng(1): total = CLng(0)
If rt.Buffer_Get(buffer, offset, total) Then Fail "Buffer_Get"
For i = 1 To total
  name = "": count = CLng(0): price = CDbl(0)
  If rt.Buffer_Get(buffer, offset, name, True) Then Fail "Buffer_Get"
  If rt.Buffer_Get(buffer, offset, count) Then Fail "Buffer_Get"
  If rt.Buffer_Get(buffer, offset, price) Then Fail "Buffer_Get"
  WScript.Echo "  " & rt.Pad_Left(name, 24) & count & " at " & price
Next
WScript.Echo "done"

Sub Put(value)
  If rt.Buffer_Put(buffer, offset, value, True) Then Fail "Buffer_Put"
End Sub

Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
