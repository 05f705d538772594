' Checks for test scripts: each prints a line "ok NAME" or "FAILED NAME: ...". The runner puts this
' file before every script; a script ends with Finish. Scripts are watched for what the library
' leaves allocated, so none uses what the platform's own engine forgets to free: Split, an array
' with its size in the Dim (but for one that ends in Host.Unfix), For Each over an array that is no
' variable.

Sub Check(name, actual, expected)
  Dim same
  If VarType(actual) <> VarType(expected) Then
    Host.Echo "FAILED " & name & ": type " & TypeName(actual) & " instead of " & TypeName(expected) & _
      ", " & Shown(actual) & " instead of " & Shown(expected)
    Exit Sub
  End If
  If IsNull(actual) Or IsEmpty(actual) Then
    same = True
  ElseIf VarType(actual) = vbString Then
    same = Host.Same(actual, expected)
  Else
    same = (actual = expected)
  End If
  If same Then
    Host.Echo "ok " & name
  Else
    Host.Echo "FAILED " & name & ": " & Shown(actual) & " instead of " & Shown(expected)
  End If
End Sub

' The run-time error that a statement before it (under On Error Resume Next) has left.
Sub CheckError(name, number, description)
  Dim n, d
  n = Err.Number
  d = Err.Description
  Err.Clear
  If n = number And (description = "" Or d = description) Then
    Host.Echo "ok " & name
  Else
    Host.Echo "FAILED " & name & ": error " & n & " (" & d & ") instead of " & number & " (" & _
      description & ")"
  End If
End Sub

' The state that a failed function leaves in the error record; clears it.
Sub CheckRecord(name, number, source)
  If Error_Number() = number And Error_Source() = source Then
    Host.Echo "ok " & name
  Else
    Host.Echo "FAILED " & name & ": record " & Error_Number() & " '" & Error_Source() & "' '" & _
      Error_Description() & "' instead of " & number & " '" & source & "'"
  End If
  Reset_Error
End Sub

Function Shown(value)
  If IsNull(value) Then
    Shown = "Null"
  ElseIf IsEmpty(value) Then
    Shown = "Empty"
  ElseIf IsObject(value) Then
    Shown = "an object"
  ElseIf IsArray(value) Then
    Shown = "an array"
  Else
    Shown = "'" & Replace(CStr(value), Chr(0), "\0") & "'"
  End If
End Function

Function Occurrences(wanted, text)
  Occurrences = CLng((Len(text) - Len(Replace(text, wanted, ""))) / Len(wanted))
End Function

Sub Finish()
  Host.Echo "done"
End Sub
