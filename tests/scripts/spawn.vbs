' Spawn, late bound, with real programs that keep how they were called.
Dim files, folder, recorder, name, document, form, peer, opened

' A form as Spawn sees one.
Class TheForm
  Public Calls
  Private state
  Private isEnabled
  Private Sub Class_Initialize()
    state = 2
    isEnabled = True
  End Sub
  Public Property Get WindowState()
    WindowState = state
  End Property
  Public Property Let WindowState(value)
    state = value
    Calls = Calls & "WindowState=" & value & " "
  End Property
  Public Property Get Enabled()
    Enabled = isEnabled
  End Property
  Public Property Let Enabled(value)
    isEnabled = value
    Calls = Calls & "Enabled=" & CInt(value) & " "
  End Property
  Public Sub SetFocus()
    Calls = Calls & "SetFocus"
  End Sub
End Class

Set files = CreateObject("Scripting.FileSystemObject")
folder = Get_TempPath() & files.GetTempName & "\"
files.CreateFolder folder
recorder = folder & "recorder.exe"
files.CopyFile Host.Folder & "companion.exe", recorder

Check "a program is waited for", Spawn(recorder, "sleep=50 exit=7"), False
Check "and its exit code kept", Error_LastDLLError(), CLng(7)
Check "without an error", Error_Number(), CLng(0)
Check "its parameters stand as they are", Recorded("arguments"), "sleep=50 exit=7"
Check "it shows normally", Recorded("show"), "1"
Reset_Error
Check "NoLock does not wait", Spawn(recorder, "exit=7", , , True), False
Check "and keeps no exit code", Error_LastDLLError(), CLng(0)
Check "NoLock False waits", Spawn(recorder, "exit=8", folder, 3, False), False
Check "for the exit code", Error_LastDLLError(), CLng(8)
Check "the folder is the program's", Recorded("folder") & "\", folder
Check "the window's state too", Recorded("show"), "3"
Check "the ignored arguments are ignored", Spawn(recorder, "exit=9", , , , , Null, Null, Null), False
Check "whatever they are", Error_LastDLLError(), CLng(9)

name = """" & recorder & """"
Check "a quoted name starts", Spawn(name & " one", "first  "), False
Check "with what follows it behind the parameters", Recorded("arguments"), "first one"
Check "a quoted name without parameters starts", Spawn("""" & recorder, "first"), False
Check "with a blank behind them", Recorded("arguments"), "first "
Check "what follows is cut", Spawn(name & " " & String(Len(recorder) + 5, "x")), False
Check "to the length of the name", Recorded("arguments"), String(Len(recorder), "x")

name = folder & "missing.exe"
Reset_Error
Check "a missing program fails", Spawn(name), True
Check "with its name and the shell's reason", Error_Description(), _
  "Impossibile eseguire il processo " & name & "." & vbCrLf & "File non trovato."
CheckRecord "as error 20000", 20000, "KwRtLibMod.Spawn"
document = folder & "document.qvnone"
files.CreateTextFile(document, True).Close
Check "a document without an application fails", Spawn(document), True
Check "for want of one", Right(Error_Description(), 28), "Nessuna associazione valida."
CheckRecord "as error 20000 too", 20000, "KwRtLibMod.Spawn"
Check "a missing folder fails", Spawn(folder & "missing\missing.exe"), True
Check "as a missing file", Reason(), "File non trovato."
Check "a path that can't be one fails", Spawn(folder & "a|b?.exe", , , , True), True
Check "as a missing file too", Reason(), "File non trovato."
Check "a scheme that nobody knows fails", Spawn("qvnone://x"), True
Check "for want of an association", Reason(), "Nessuna associazione valida."
files.CreateTextFile(folder & "none.exe", True).Close
Check "a file that is no program fails", Spawn(folder & "none.exe"), True
Check "with the shell's code", Left(Reason(), 18), "Errore di shell #1"
Check "and the system's", Error_LastDLLError(), CLng(193)
Check "no name at all fails", Spawn(""), True
Check "with the shell's code too", Left(Reason(), 17), "Errore di shell #"
CheckRecord "as error 20000", 20000, "KwRtLibMod.Spawn"
Check "a state that is no number fails", Spawn(recorder, "", "", "big"), True
Check "with the reason of the language", Reason(), "Type mismatch"
CheckRecord "and its number", 13, "KwRtLibMod.Spawn"
Check "Null is no folder", Spawn(recorder, "", Null), True
CheckRecord "but an error", 94, "KwRtLibMod.Spawn"

' The form.
Set form = New TheForm
Check "with a form a program runs", Spawn(recorder, "exit=3", , , , form), False
Check "the form is put away and back", form.Calls, "Enabled=0 WindowState=1 WindowState=2 Enabled=-1 SetFocus"
Check "with its exit code", Error_LastDLLError(), CLng(3)
form.Calls = ""
Reset_Error
Check "with a form a failure is one", Spawn(name, "", , , , form), True
Check "the form is put back then too", form.Calls, "Enabled=0 WindowState=1 WindowState=2 Enabled=-1 SetFocus"
Check "and the error stands", Error_Number(), CLng(20000)
Reset_Error
form.Calls = ""
Check "without a wait", Spawn(recorder, "", , , True, form), False
Check "it is put back at once", form.Calls, "Enabled=0 WindowState=1 WindowState=2 Enabled=-1 SetFocus"
Check "Nothing is no form", Spawn(recorder, "", , , , Nothing), True
CheckRecord "but an error", 91, "KwRtLibMod.Spawn"

form.Calls = ""
Check "StopProc gives True", Spawn(name, Null, , , , form, , , , , True), True
Check "looks at nothing else", form.Calls, ""
Check "and records nothing", Error_Number(), CLng(0)
Check "StopProc False starts the program", Spawn(recorder, "exit=2", , , , , , , , , False), False
Check "and waits", Error_LastDLLError(), CLng(2)

' A document that an application takes over that already runs.
document = folder & "document.qvscript"
files.CreateTextFile(document, True).Close
Register ".qvscript", "qvscript.document"
Register "qvscript.document\shell\open\command", """" & recorder & """ open ""%1"" exit=6"
Register "qvscript.document\shell\prova\command", """" & recorder & """ prova"
Check "a document opens with its application", Spawn(document), False
Check "which is waited for", Error_LastDLLError(), CLng(6)
Check "and is told the document", Recorded("arguments"), "open """ & document & """ exit=6"
Check "another verb is another command", Spawn(document, , , , , , , , , "prova"), False
Check "of its own", Recorded("arguments"), "prova"
Register "qvscript.document\shell\open\command", """" & folder & "gone.exe"" ""%1"""
Check "a document whose application is gone fails", Spawn(document), True
Check "as a missing file", Reason(), "File non trovato."
Register "qvscript.document\shell\open\command", """" & recorder & """ open ""%1"" exit=6"
Register "qvscript.document\shell\open\ddeexec", "[open(%1)]"
Register "qvscript.document\shell\open\ddeexec\application", "QVRTSCRIPT"
Register "qvscript.document\shell\open\ddeexec\topic", "System"
peer = Host.Start("companion.exe dde QVRTSCRIPT")
For opened = 1 To 500
  If Find_Window(0, "QvDdeReady") <> 0 Then Exit For
  Host.Sleep 10
Next
Check "an open document is a failure when waited for", Spawn(document), True
Check "since no process is left to wait for", Right(Error_Description(), 38), "Il processo " & Chr(232) & " terminato prima di idle."
CheckRecord "as error 20000 again", 20000, "KwRtLibMod.Spawn"
Check "without a wait it is none", Spawn(document, , , , True), False
Check "it was opened, though", Recorded("arguments"), "prova"
Host.End peer
Forget "qvscript.document\shell\open\ddeexec\application"
Forget "qvscript.document\shell\open\ddeexec\topic"
Forget "qvscript.document\shell\open\ddeexec"
Forget "qvscript.document\shell\open\command"
Forget "qvscript.document\shell\open"
Forget "qvscript.document\shell\prova\command"
Forget "qvscript.document\shell\prova"
Forget "qvscript.document\shell"
Forget "qvscript.document"
Forget ".qvscript"

On Error Resume Next
For opened = 1 To 500
  Err.Clear
  files.DeleteFolder Left(folder, Len(folder) - 1), True
  If Err.Number = 0 Then Exit For
  Host.Sleep 10
Next
Finish

' The last value that the recorder has kept under a name.
Function Recorded(key)
  Dim text, at
  text = files.OpenTextFile(folder & "recorder.log").ReadAll
  at = InStrRev(text, key & "=") + Len(key) + 1
  Recorded = Mid(text, at, InStr(at, text, vbLf) - at)
End Function

' What follows the name in the description of a failure.
Function Reason()
  Reason = Mid(Error_Description(), InStr(Error_Description(), vbCrLf) + 2)
End Function

Sub Register(key, text)
  RegistryWrite "Software\Classes\" & key, "", text
End Sub

Sub Forget(path)
  RegistryDeleteKey "Software\Classes\" & path
End Sub
