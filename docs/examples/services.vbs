' == kwPipeData, kwPipeData.ReqId, kwPipeData.ReqDate, kwPipeData.ReqData, kwPipeData.AppendData, kwPipeData.MaxPacketSize
' A request holds a number, a date and up to 100000 characters.
Dim request
Set request = CreateObject("QvRtLibOle.kwPipeData")
request.ReqId = 7
request.ReqData = "ordine "
Show request.AppendData("4711")                '-> False
Show request.ReqId & " " & request.ReqData     '-> 7 ordine 4711
Show request.MaxPacketSize                     '-> 100000
Show request.AppendData(String(100000, "x"))   '-> True
Show Error_Description()                       '-> Data exceed buffer size.
Show Len(request.ReqData)                      '-> 11

' == NPServerOpen, NPServerClose, NPServerCloseAll, NPServerWrite, NPServerRead, NPClientRequest
' A pipe without its other end: each call says what is missing.
Dim pipe, request
Set request = CreateObject("QvRtLibOle.kwPipeData")
Show NPClientRequest("\\.\pipe\esempio", request)            '-> -1
Show Error_Description()                                     '-> CallNamedPipe: 2

pipe = NPServerOpen("\\.\pipe\esempio")
Show pipe <> 0                                               '-> True
Show NPServerWrite(pipe, request)                            '-> True
Show Error_Description()                                     '-> WriteFile: 536
Show NPServerCloseAll()                                      '-> False
Show NPServerClose(pipe)                                     '-> False
Show NPServerRead(pipe, request)                             '-> 0

' == QvtNotify.NotifyFileChange
' A watch that does not wait ends at once where nothing has changed.
Dim notify
Set notify = CreateObject("QvRtLibOle.QvtNotify")
Show notify.NotifyFileChange(Get_TempPath(), False, 16, 0)   '-> True
Show Error_Description()                                     '-> Unexpected error.

' == Spawn
' A program is waited for, and its exit code stands in the error state. A missing one is told by name.
Show Spawn("cmd.exe", "/c exit 7")                           '-> False
Show Error_LastDLLError()                                    '-> 7
Show Spawn("C:\manca.exe", , , , True)                       '-> True
Show Replace(Error_Description(), vbCrLf, " ")
'-> Impossibile eseguire il processo C:\manca.exe. File non trovato.
Show Spawn("", , , , , , , , , , True)                       '-> True

' == Find_Window, Process_SetFocus, SysTray
' No window has such a class, no focus ever moves, and no icon stands without a window.
Show Find_Window(0, "NessunaClasse")                         '-> 0
Show Process_SetFocus(1234)                                  '-> True
Show SysTray(0, 2, 0, "suggerimento")                        '-> True
Show Error_Description()                                     '-> Impossibile eseguire Shell_NotifyIcon

' == ServiceInstall, ServiceUninstall, ServiceVerify
' Two programs of the system's resource kits must lie in the system folder.
Show ServiceInstall("Esempio", "C:\programma.exe", "")       '-> True
Show Error_Description()                                     '-> Impossibile localizzare instsrv.exe
Show ServiceUninstall("Esempio")                             '-> True
Show ServiceVerify("Esempio")                                '-> True
Show Error_Number()                                          '-> 20000

' == LogEvent
' One entry, of the kind "information".
Show LogEvent("Esempio", "La procedura ha avuto fine.", 4, 1)     '-> False

' == UserCreate
' Without a directory no account is made.
Show UserCreate("", "rossi", "segreto")                      '-> True
Show Check_Error()                                           '-> True
