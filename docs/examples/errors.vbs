' == Error_Set, Error_Number, Error_Source, Error_Description, Error_HelpFile, Error_HelpContext, Error_LastDLLError, Last_Error
Error_Set 20100, "Orders.Check", "The order has no customer.", "orders.hlp", 42, 2
Show Error_Number()          '-> 20100
Show Error_Source()          '-> Orders.Check
Show Error_Description()     '-> The order has no customer.
Show Error_HelpFile()        '-> orders.hlp
Show Error_HelpContext()     '-> 42
Show Error_LastDLLError()    '-> 2
Show Last_Error()            '-> 20100

' == Error_HelpId
' A help context given as text has a field of its own.
Dim context
Error_Set 20100, "Orders.Check", "The order has no customer.", "orders.hlp", "77"
Show Error_HelpId()         '-> 77
Show Error_HelpContext()    '-> 0
Reset_Error
On Error Resume Next
context = Error_HelpId()
Show Err.Number             '-> 13

' == Error_SetEx
Const ES_CHAIN = 4
Const ES_EXPLICIT = 8
' Explicit mode stores what is given, and nothing else.
Error_SetEx 20005, "Orders.Save", "The disk is full.", , , 112, ES_EXPLICIT
' Chain mode tells where else it went wrong, and puts a text in front of the text.
Error_SetEx , "Orders.Close", "Order 4711: ", , , , ES_CHAIN
Show Error_Number()         '-> 20005
Show Error_Source()         '-> Orders.Save < Orders.Close
Show Error_Description()    '-> Order 4711: The disk is full.
Show Error_LastDLLError()   '-> 112

' == Error_Replace
Error_Set 20100, "Orders.Check", "The order has no customer."
Error_Replace 20101, , "The customer is unknown."
Show Error_Number()         '-> 20101
Show Error_Source()         '-> Orders.Check
Show Error_Description()    '-> The customer is unknown.

' == Error_Lock, Error_Unlock
' What clean-up code records does not cover the failure that made it necessary.
Error_Set 20100, "Orders.Check", "The order has no customer."
Error_Lock
Error_Set 20000, "Orders.Cleanup", "A file stayed open."
Reset_Error
Show Error_Number()         '-> 20100
Error_Unlock
Reset_Error
Show Error_Number()         '-> 0

' == Check_Error, Reset_Error, Is_UserError
Show Check_Error()          '-> False
Error_Set 11
Show Check_Error()          '-> True
Show Is_UserError()         '-> False
Error_Set 20100
Show Is_UserError()         '-> True
Reset_Error
Show Check_Error()          '-> False

' == Raise_Error
Error_Set 20100, "Orders.Check", "The order has no customer."
On Error Resume Next
Raise_Error
Show Err.Number             '-> 20100
Show Err.Source             '-> Orders.Check
Show Err.Description        '-> The order has no customer.
Show Check_Error()          '-> True

' == Get_Error
' A variable that holds a text gets the help context that was recorded as text.
Dim number, source, context
Error_Set 20100, "Orders.Check", "The order has no customer.", "orders.hlp", "topic"
Get_Error number, source
Show number                 '-> 20100
Show source                 '-> Orders.Check
context = ""
Get_Error , , , , context
Show context                '-> topic
context = 0
Get_Error , , , , context
Show context                '-> 0

' == SystemError
Dim text
text = SystemError(2)
Show text <> ""             '-> True
Show Right(text, 1) = " "   '-> True
Show SystemError(&H2FFFFFFF) = ""    '-> True

' == SetSvrError
' A server that publishes LastError hands its last failure over.
Dim server
Set server = New OrderServer
SetSvrError server
Show Error_Number()         '-> 20100
Show Error_Source()         '-> Orders.Check
Class OrderServer
  Sub LastError(number, source, description, help_file, help_context, last_error)
    number = CLng(20100)
    source = "Orders.Check"
    description = "The order has no customer."
    help_file = ""
    help_context = CLng(0)
    last_error = CLng(0)
  End Sub
End Class

' == Log_Write
' Each line can carry a prefix, the time and a check value.
Const DE_CRC = 4
Dim name, files
name = Get_TempPath() & "examples.log"
File_Kill name
Log_Write name, "Backup begins", 0
Log_Write name, "Backup done", DE_CRC, "MAIN"
Set files = CreateObject("Scripting.FileSystemObject")
Show Replace(files.OpenTextFile(name).ReadAll, vbCrLf, ";")    '-> Backup begins;MAIN>Backup done [1AFC];
File_Kill name

' == Error_Message
Const DE_SHORT = 16
Dim text
Error_Set 20100, "Orders.Check", "The order has no customer.", , , 0
text = Error_Message("The order was not saved.")
Show Get_Token(text, vbCrLf, 1)    '-> The order was not saved.
Show Get_Token(text, vbCrLf, 2)    '-> The order has no customer.
Show Get_Token(text, vbCrLf, 3)    '-> [#20100 - Orders.Check]
text = Error_Message(, DE_SHORT)
Show Replace(text, vbCrLf, ";")    '-> The order has no customer.;

' == Disp_Error
' DE_NOSHOW writes the log alone; without it a message box shows the same text.
Const DE_NOSHOW = 1
Dim name, files
name = Get_TempPath() & "examples.log"
File_Kill name
Error_Set 20100, "Orders.Check", "The order has no customer.", , , 0
Show Disp_Error("Not saved.", vbExclamation, name, DE_NOSHOW)    '-> 1
Set files = CreateObject("Scripting.FileSystemObject")
Show Replace(files.OpenTextFile(name).ReadAll, vbCrLf, "")
'-> Not saved. - The order has no customer. - [#20100 - Orders.Check]
Show Check_Error()                                               '-> True
File_Kill name

' == Disp_ErrorEx
' The text comes back as well, behind what the variable held.
Const DE_NOSHOW = 1
Dim text
Error_Set 20100, "Orders.Check", "The order has no customer.", , , 0
text = ""
Show Disp_ErrorEx(, , , DE_NOSHOW, , "Orders", text)    '-> 1
Show Replace(text, vbCrLf, ";")    '-> The order has no customer.;[#20100 - Orders.Check]

' == QVtError, QVtError.Number, QVtError.Source, QVtError.Description, QVtError.HelpFile, QVtError.HelpContext, QVtError.HelpId, QVtError.LastDLLError
' A record of one failure, to keep or to pass on.
Dim failure
Set failure = CreateObject("QvRtLibOle.QVtError")
failure.Number = 20100
failure.Source = "Orders.Check"
failure.Description = "The order has no customer."
failure.HelpFile = "orders.hlp"
failure.HelpContext = 42
failure.HelpId = "topic"
failure.LastDLLError = 2
Show failure.Number & " " & failure.Source               '-> 20100 Orders.Check
Show failure.Description                                 '-> The order has no customer.
Show failure.HelpFile & " " & failure.HelpContext        '-> orders.hlp 42
Show failure.HelpId & " " & failure.LastDLLError         '-> topic 2

' == QVtError.CopyTo, QVtError.Caption, QVtError.Buttons
' Title and style of the message box belong to the record that shows them: they are not copied.
Dim failure, copy
Set failure = CreateObject("QvRtLibOle.QVtError")
Set copy = CreateObject("QvRtLibOle.QVtError")
failure.Number = 20100
failure.Caption = "Orders"
failure.Buttons = vbExclamation
copy.Caption = "Copy"
failure.CopyTo copy
Show copy.Number     '-> 20100
Show copy.Caption    '-> Copy
Show copy.Buttons    '-> 0

' == QVtError.Locked, QVtError.UserId
' The lock is a mark: the fields of an object can be written all the same.
Dim failure
Set failure = CreateObject("QvRtLibOle.QVtError")
failure.UserId = "anna"
failure.Locked = True
failure.Number = 20100
Show failure.UserId & " " & failure.Number    '-> anna 20100
Show failure.Locked                           '-> True
