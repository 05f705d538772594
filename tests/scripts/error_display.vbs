' Texts, boxes and log lines of failures, late bound.
Const DE_NOSHOW = 1, DE_TIME = 2, DE_CRC = 4, DE_NOSAVE = 8, DE_SHORT = 16
Dim files, path, text, line, i

Set files = CreateObject("Scripting.FileSystemObject")
path = CreateObject("WScript.Shell").ExpandEnvironmentStrings("%TEMP%")
' The platform's text ends in a character 0 here and there.
path = Replace(path, Chr(0), "") & "\qv_error_display.log"

' The content of the log, which is taken away.
Function Logged()
  Dim stream
  Logged = ""
  If Not files.FileExists(path) Then Exit Function
  Set stream = files.OpenTextFile(path, 1)
  If Not stream.AtEndOfStream Then Logged = stream.ReadAll
  stream.Close
  files.DeleteFile path
End Function
text = Logged()

' A record with all that belongs to it.
Sub SetRecord(number, source, description, last_error)
  Error_SetEx number, source, description, "", 0, last_error, 8, "", 0
End Sub

text = SystemError(0)
Check "SystemError(0) ends with a blank", Right(text, 1), " "
Check "and is more than that", Len(text) > 1, True
Check "SystemError of an unknown code", SystemError(&H2FFFFFFF), ""

Check "no error and no msg", Error_Message(), ""
Check "a msg alone", Error_Message("m"), "m" & vbCrLf & vbCrLf
SetRecord 20000, "Here", "Descr", 2
text = "msg" & vbCrLf & "Descr" & vbCrLf & "[#20000 - Here]" & vbCrLf & "[DLL:" & SystemError(2) & "]"
Check "the full text", Error_Message("msg"), text
Check "the short text", Error_Message("msg", DE_SHORT), "msg" & vbCrLf & "Descr" & vbCrLf
Check "the record stays", Error_Number(), CLng(20000)

Error_Lock
i = Error_Message()
SetRecord 5, "S", "D", 0
Check "Error_Message unlocks", Error_Number(), CLng(5)
Check "Disp_Error without a box gives 1", Disp_Error("m", 4, Host.Missing, DE_NOSHOW), CLng(1)

Host.Press_Button 7
Check "Disp_Error gives the button", Disp_Error("m", 4, "", 0, "", "The title"), CLng(7)
Check "under its title", Host.Box_Title, "The title"
Check "with the text", Host.Box_Text, "m" & vbCrLf & "D" & vbCrLf & "[#5 - S]"

SetRecord 0, "", "", 0
Host.Press_Button 1
Check "a box of nothing is shown too", Disp_Error(), CLng(1)
Check "with a blank title", Host.Box_Title, " "

SetRecord 5, "S", "D", 0
text = "before "
Check "Disp_ErrorEx gives 1 without a box", Disp_ErrorEx(, , path, DE_NOSHOW, "P", "", text), CLng(1)
Check "its text goes behind what was there", text, "before D" & vbCrLf & "[#5 - S]"
Check "the log has it on one line", Logged(), "P>before D - [#5 - S]" & vbCrLf
i = Disp_ErrorEx("m", , path, DE_NOSHOW, "P", "", text)
Check "with a msg the text begins anew", text, "m" & vbCrLf & "D" & vbCrLf & "[#5 - S]"
text = Logged()

SetRecord 0, "", "D", 0
i = Disp_Error(, , path, DE_NOSHOW)
Check "a description alone is logged with its line end", Logged(), "D - " & vbCrLf

Log_Write path, "first", 0
Log_Write path, "second", 0, "A"
Check "log lines are appended", Logged(), "first" & vbCrLf & "A>second" & vbCrLf
Log_Write path, "123456789", DE_CRC, "A"
Check "a check value covers the message", Logged(), "A>123456789 [29B1]" & vbCrLf
Log_Write path, "text", DE_TIME + DE_CRC, "A"
line = Logged()
Check "date and time stand in front", Mid(line, 19, 5), " text"
Check "in their picture", Mid(line, 5, 1) & Mid(line, 8, 1) & Mid(line, 13, 1) & Mid(line, 16, 1), "-- :"
Check "the check value covers both", Mid(line, 24), _
  " [" & Pad_HexLeft(CRC(Mid(line, 3, 21)), 4) & "]" & vbCrLf
Log_Write path & "\no\folder", "text", 0
Check "a log that can't be opened is no error", Check_Error(), False

' A server hands its last error over.
Class Server
  Sub LastError(number, source, description, help_file, help_context, last_error)
    number = CLng(20011)
    source = "Their.Source"
    description = "their text"
    help_file = "their.hlp"
    help_context = CLng(31)
    last_error = CLng(5)
  End Sub
End Class
SetSvrError New Server
Check "its number", Error_Number(), CLng(20011)
Check "its text", Error_Description(), "their text"
Check "its help file", Error_HelpFile(), "their.hlp"
Check "its help context goes on as text", Error_HelpId(), CLng(31)
Check "its system error", Error_LastDLLError(), CLng(5)
CheckRecord "its source", 20011, "Their.Source"
SetRecord 5, "S", "D", 0
SetSvrError CreateObject("Scripting.FileSystemObject")
CheckRecord "a server that has none leaves the record empty", 0, ""
Finish
