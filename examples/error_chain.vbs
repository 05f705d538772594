' A failure travels through the error state: a library function records it, each level of the
' application adds its name, clean-up code can't destroy it, and the top shows it or raises it.
'
'   cscript error_chain.vbs [name of a file that is missing]

Option Explicit
Const O_RDONLY = 1, SH_DENYNO = 64
Const CHAIN = 4  ' add to the record that stands
Const FULL = 0   ' a record of its own
Dim rt, fileName

Set rt = CreateObject("QvRtLibOle.KwRtLib")
fileName = "C:\settings_that_are_missing.bin"
If WScript.Arguments.Count > 0 Then fileName = WScript.Arguments(0)

If StartUp(fileName) Then
  WScript.Echo "the start failed:"
  WScript.Echo "  number       " & rt.Error_Number
  WScript.Echo "  description  " & rt.Error_Description
  WScript.Echo "  source       " & rt.Error_Source
  WScript.Echo "  of the user? " & rt.Is_UserError
End If

' The record waits until it is asked for; here it becomes an error of the language again.
On Error Resume Next
rt.Raise_Error
WScript.Echo "raised: " & Err.Number & ", " & Err.Description & ", from " & Err.Source
Err.Clear
On Error GoTo 0

' An error of the application's own, with a number from 20000 on.
rt.Reset_Error
WScript.Echo "after Reset_Error an error stands: " & rt.Check_Error
rt.Error_SetEx 20123, "Orders", "The order has no customer.", , , , FULL
rt.Error_SetEx , "Invoice", "No invoice can be written. ", , , , CHAIN
WScript.Echo rt.Error_Number & ": " & rt.Error_Description & " (" & rt.Error_Source & ")"
WScript.Echo "of the user? " & rt.Is_UserError
rt.Reset_Error
WScript.Echo "done"

' True on failure, like the library's own functions.
Function StartUp(name)
  StartUp = ReadSettings(name)
  If StartUp Then rt.Error_SetEx , "StartUp", , , , , CHAIN
End Function

Function ReadSettings(name)
  Dim handle
  handle = CLng(0)
  ReadSettings = rt.File_Open32(name, O_RDONLY, SH_DENYNO, 0, handle)
  If ReadSettings Then
    rt.Error_SetEx , "ReadSettings", , , , , CHAIN
    CleanUp
  End If
  rt.File_Close32 handle
End Function

' While the record is locked, what fails in here is not recorded over it.
Sub CleanUp
  Dim buffer, offset
  rt.Error_Lock
  offset = 0
  rt.Buffer_Get buffer, offset, CLng(0)
  rt.Error_Unlock
End Sub
