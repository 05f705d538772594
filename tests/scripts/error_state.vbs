' The error state, late bound.
Dim number, source, description, helpFile, helpContext, lastDllError, record, copy, buffer, offset

' Forgets what is pending: any function with a handler of its own does.
Sub Forget
  Dim b, o
  o = 1
  Buffer_Put b, o, CInt(1)
End Sub

Sub CheckFields(name, n, s, d, f, c, l)
  Check name & " (Number)", Error_Number(), CLng(n)
  Check name & " (Source)", Error_Source(), s
  Check name & " (Description)", Error_Description(), d
  Check name & " (HelpFile)", Error_HelpFile(), f
  Check name & " (HelpContext)", Error_HelpContext(), CLng(c)
  Check name & " (LastDLLError)", Error_LastDLLError(), CLng(l)
End Sub

Function HelpIdText()
  HelpIdText = ""
  Get_Error , , , , HelpIdText
End Function

Sub Fill
  Error_SetEx 20005, "here", "text", "my.hlp", 12, 2, 8
  Error_SetEx , , , , "34", , 8
End Sub

CheckFields "no error at first", 0, "", "", "", 0, 0
Check "Check_Error without an error", Check_Error(), False
Check "Last_Error without an error", Last_Error(), CLng(0)
Check "Is_UserError without an error", Is_UserError(), False

' Error_Set
Error_Set 20001, "src", "desc", "h.hlp", 7, 3
CheckFields "Error_Set stores each field", 20001, "src", "desc", "h.hlp", 7, 3
Check "Check_Error with an error", Check_Error(), True
Check "Last_Error with an error", Last_Error(), CLng(20001)
Check "Is_UserError with 20001", Is_UserError(), True
Error_Set
CheckFields "Error_Set without arguments stores that nothing is pending", 0, "", "", "", 0, 0
Error_Set , "only the source"
CheckFields "Error_Set with one argument", 0, "only the source", "", "", 0, 0
Error_Set 20000, , , , "12"
Check "HelpContext as text goes to HelpId", HelpIdText(), "12"
Check "Error_HelpId is its number", Error_HelpId(), CLng(12)
Check "and HelpContext is what was pending", Error_HelpContext(), CLng(0)
Reset_Error
Error_Set 20000, , , , 12
Check "HelpContext as a number goes to HelpContext", Error_HelpContext(), CLng(12)
Check "and HelpId is left", HelpIdText(), ""
Error_Set 20000, "s", "d", "f", 1, 2, True
CheckFields "UseODBC is never read", 20000, "s", "d", "f", 1, 2
Reset_Error

On Error Resume Next
number = Error_HelpId()
CheckError "Error_HelpId of an empty HelpId", 13, "Type mismatch"
Error_SetEx , , , , "topic", , 8
number = Error_HelpId()
CheckError "Error_HelpId of a text that is no number", 13, "Type mismatch"
On Error GoTo 0
Forget

' What is pending
Error_Set "no number", "here"
Check "a number that can't be converted leaves the field", Error_Number(), CLng(0)
Check "and the next field is stored", Error_Source(), "here"
Error_Set 20000, , "mine"
Check "an application number takes the text given alone", Error_Description(), "mine"
Error_Set 5, , "mine"
Check "another number puts it before the pending text", Error_Description(), "mine" & vbCrLf & "Type mismatch"
Forget
Error_Set 5, , "mine"
Check "without a pending text it stands alone", Error_Description(), "mine"
On Error Resume Next
Buffer_Right "abc", 3, -1
CheckError "Buffer_Right of -1 characters", 5, "Invalid procedure call or argument"
On Error GoTo 0
Error_Set , "here"
CheckFields "Error_Set takes an error that was raised", 5, "here", "Invalid procedure call or argument", "", 0, 0
Forget
Reset_Error

' Error_SetEx
Fill
Error_SetEx 5, "outer", "new ", "x.hlp", 1, 9, 4
CheckFields "chain mode", 20005, "here < outer", "new text", "my.hlp", 12, 2
Check "chain mode leaves HelpId", HelpIdText(), "34"
Error_SetEx , "outermost", , , , , 4
Check "the chain grows", Error_Source(), "here < outer < outermost"
Reset_Error
Error_SetEx , "here", , , , , 4
CheckFields "a chain on no error", 0, " < here", "", "", 0, 0
Check "a chain on no error is no error", Check_Error(), False
Fill
Error_SetEx 5, , "new", , , , 8
CheckFields "explicit mode stores what is given", 5, "here", "new", "my.hlp", 12, 2
Fill
Error_SetEx 20000, "src"
CheckFields "full mode", 20000, "src", "", "", 0, 0
Error_SetEx 20000, "src", "desc", , , , 2
CheckFields "flag 2 is full mode", 20000, "src", "desc", "", 0, 0
On Error Resume Next
Error_SetEx , Null, , , , , 4
CheckError "a Source that can't be chained", 94, "Invalid use of Null"
Error_SetEx "no number", "unseen", , , , , 8
CheckError "a Number that can't be stored", 13, "Type mismatch"
On Error GoTo 0
CheckFields "they leave the record", 20000, "src", "desc", "", 0, 0
Forget

' Error_Replace
Fill
Error_Replace 5, "there"
CheckFields "Error_Replace stores what is given", 5, "there", "text", "my.hlp", 12, 2
Error_Replace , , "new", "new.hlp", "99", 3
CheckFields "Error_Replace stores HelpContext as a Long", 5, "there", "new", "new.hlp", 99, 3
Check "and never as HelpId", HelpIdText(), "34"
On Error Resume Next
Error_Replace "no number"
CheckError "Error_Replace raises what can't be converted", 13, "Type mismatch"
On Error GoTo 0
Forget

' Named arguments are for other callers; omitted ones in the middle work everywhere.
Fill
Error_Replace 65535
Check "65535 given stays", Error_Number(), CLng(65535)
Check "65535 is no application error", Is_UserError(), False
Error_Replace 19999
Check "19999 is no application error", Is_UserError(), False
Error_Replace 20000
Check "20000 is one", Is_UserError(), True
Error_Replace 29999
Check "29999 is one", Is_UserError(), True
Error_Replace 30000
Check "30000 is none", Is_UserError(), False

' Lock
Fill
Error_Lock
Error_Lock
Error_Set 5, "x", "y", "z", 1, 1
Error_SetEx 5, "x", "y", "z", 1, 1, 4
Error_SetEx 5, "x", "y", "z", "1", 1, 8
Error_SetEx 5, "x", "y", "z", "1", 1
Error_Replace 5, "x", "y", "z", 1, 1
Reset_Error
buffer = "": offset = 1
Check "a failing function fails with a locked record too", Buffer_Put(buffer, offset, Null), True
CheckFields "locked: nothing changes", 20005, "here", "text", "my.hlp", 12, 2
Check "locked: HelpId stays", HelpIdText(), "34"
Error_Unlock
Reset_Error
CheckFields "one unlock undoes two locks", 0, "", "", "", 0, 0
Check "Reset_Error clears HelpId", HelpIdText(), ""

' Get_Error
Fill
Get_Error number, source, description, helpFile, helpContext, lastDllError
Check "Get_Error gives Number", number, CLng(20005)
Check "Get_Error gives Source", source, "here"
Check "Get_Error gives Description", description, "text"
Check "Get_Error gives HelpFile", helpFile, "my.hlp"
Check "Get_Error gives HelpContext", helpContext, CLng(12)
Check "Get_Error gives LastDLLError", lastDllError, CLng(2)
helpContext = "any"
Get_Error , , , , helpContext
Check "Get_Error gives HelpId to a variable with a text", helpContext, "34"
Get_Error , , description
Check "Get_Error with omitted arguments", description, "text"

' Raise_Error
On Error Resume Next
Raise_Error
Check "Raise_Error raises the Source", Err.Source, "here"
CheckError "Raise_Error raises the record", 20005, "text"
On Error GoTo 0
CheckFields "Raise_Error keeps the record", 20005, "here", "text", "my.hlp", 12, 2
Reset_Error
On Error Resume Next
Raise_Error
CheckError "Raise_Error without an error", 5, "Invalid procedure call or argument"
On Error GoTo 0
Forget

' The record as a class
Set record = CreateObject("QvRtLibOle.QVtError")
Check "a new record has Number 0", record.Number, CLng(0)
Check "a new record has no Description", record.Description, ""
Check "a new record is not locked", record.Locked, False
record.Description = "d": record.HelpContext = 1: record.HelpFile = "f": record.HelpId = "i"
record.LastDLLError = 2: record.Number = 3: record.Source = "s": record.Locked = True
record.Caption = "c": record.Buttons = 48: record.UserId = "u"
Set copy = CreateObject("QvRtLibOle.QVtError")
copy.Caption = "kept": copy.Buttons = 16
record.CopyTo copy
Check "CopyTo copies Description", copy.Description, "d"
Check "CopyTo copies HelpContext", copy.HelpContext, CLng(1)
Check "CopyTo copies HelpFile", copy.HelpFile, "f"
Check "CopyTo copies HelpId", copy.HelpId, "i"
Check "CopyTo copies LastDLLError", copy.LastDLLError, CLng(2)
Check "CopyTo copies Number", copy.Number, CLng(3)
Check "CopyTo copies Source", copy.Source, "s"
Check "CopyTo copies Locked", copy.Locked, True
Check "CopyTo copies UserId", copy.UserId, "u"
Check "CopyTo leaves Caption", copy.Caption, "kept"
Check "CopyTo leaves Buttons", copy.Buttons, CLng(16)
On Error Resume Next
record.CopyTo Nothing
CheckError "CopyTo Nothing", 91, "Object variable or With block variable not set"
Finish
