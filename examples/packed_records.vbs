' Records packed into a binary file and read back. A record has no marks: writer and reader agree on
' its fields.
'
'   number   Long, 4 bytes
'   made     Date, 8 bytes
'   price    Double, 8 bytes (a Currency is stored as a Double and is not read back as one)
'   name     its length as a Long, then its characters
'
'   cscript packed_records.vbs [count of records]

Option Explicit
Const O_RDONLY = 1, O_CREAT = 16, O_TRUNC = 32, SH_DENYRD = 48, SH_DENYNO = 64
Dim rt, fso, fileName, count, buffer, offset, handle, i

Set rt = CreateObject("QvRtLibOle.KwRtLib")
Set fso = CreateObject("Scripting.FileSystemObject")
fileName = fso.BuildPath(fso.GetSpecialFolder(2).Path, "qvrt_records.bin")
count = 1000
If WScript.Arguments.Count > 0 Then count = CLng(WScript.Arguments(0))

' The buffer grows by steps while it is built: only Offset tells where its content ends.
buffer = ""
offset = CLng(1)
For i = 1 To count
  PutField CLng(i), False
  PutField DateSerial(2001, 1, 1) + i, False
  PutField CDbl(i) * 1.25, False
  PutField "article " & i, True
Next
WScript.Echo count & " records: " & offset - 1 & " bytes in a buffer of " & Len(buffer)
rt.Buffer_Complete buffer, offset
WScript.Echo "completed: " & Len(buffer) & " bytes"

handle = CLng(0)
If rt.File_Open32(fileName, O_CREAT + O_TRUNC, SH_DENYRD, 0, handle) Then Fail "File_Open32"
If rt.File_Write32(handle, buffer) Then Fail "File_Write32"
rt.File_Close32 handle
WScript.Echo "the file has " & fso.GetFile(fileName).Size & " bytes"

' Read back: a variable's subtype tells what is read.
Dim number, made, price, name, total
If rt.File_Open32(fileName, O_RDONLY, SH_DENYNO, 0, handle) Then Fail "File_Open32"
buffer = String(fso.GetFile(fileName).Size, " ")
If rt.File_Read32(handle, buffer) Then Fail "File_Read32"
rt.File_Close32 handle
fso.DeleteFile fileName

offset = CLng(1)
total = 0
For i = 1 To count
  number = CLng(0): made = CDate(0): price = CDbl(0): name = ""
  If rt.Buffer_Get(buffer, offset, number) Then Fail "Buffer_Get"
  If rt.Buffer_Get(buffer, offset, made) Then Fail "Buffer_Get"
  If rt.Buffer_Get(buffer, offset, price) Then Fail "Buffer_Get"
  If rt.Buffer_Get(buffer, offset, name, True) Then Fail "Buffer_Get"
  If number <> i Or name <> "article " & i Then
    WScript.Echo "record " & i & " is damaged"
    WScript.Quit 1
  End If
  total = total + price
Next
WScript.Echo "last record: " & number & ", " & Year(made) & "-" & Month(made) & "-" & Day(made) & ", " & price & ", " & name
WScript.Echo "sum of the prices: " & total

' Behind the last record nothing is left, and the failure says so.
If rt.Buffer_Get(buffer, offset, number) Then
  WScript.Echo "one more: error " & rt.Error_Number & ", " & rt.Error_Description & " (" & rt.Error_Source & ")"
  rt.Reset_Error
End If
WScript.Echo "done"

Sub PutField(value, prefix)
  If rt.Buffer_Put(buffer, offset, value, prefix) Then Fail "Buffer_Put"
End Sub


Sub Fail(what)
  WScript.Echo what & " failed: " & rt.Error_Number & " " & rt.Error_Description & " (" & rt.Error_Source & ")"
  WScript.Quit 1
End Sub
