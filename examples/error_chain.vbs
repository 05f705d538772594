' How a failure travels: a function returns True and leaves its error in the record, each caller adds
' its name to the chain, and whoever can deal with it reads, raises or clears the record.

Option Explicit
Dim rt
Set rt = CreateObject("QvRtLibOle.KwRtLib")

If LoadOrders() Then
  WScript.Echo "number      " & rt.Error_Number
  WScript.Echo "description " & rt.Error_Description
  WScript.Echo "source      " & rt.Error_Source
End If

' A locked record outlives the cleaning up after a failure.
rt.Error_Lock
rt.Reset_Error
WScript.Echo "locked: still error " & rt.Error_Number
rt.Error_Unlock

' The record can be raised as the language's own error.
On Error Resume Next
rt.Raise_Error
WScript.Echo "raised: " & Err.Number & " " & Err.Description & " from " & Err.Source
Err.Clear
On Error GoTo 0

rt.Reset_Error
WScript.Echo "cleared: Check_Error is " & CBool(rt.Check_Error)
WScript.Echo "done"

' True = failure, as in the library itself.
Function LoadOrders()
  LoadOrders = True
  If ReadHead() Then
    rt.Error_SetEx , "Orders.LoadOrders", , , , , 4
    Exit Function
  End If
  LoadOrders = False
End Function

Function ReadHead()
  Dim text, offset, version
  text = "ab": offset = CLng(1): version = CLng(0)
  ReadHead = rt.Buffer_Get(text, offset, version)  ' four bytes of a text of two
  If ReadHead Then rt.Error_SetEx , "Orders.ReadHead", , , , , 4
End Function
