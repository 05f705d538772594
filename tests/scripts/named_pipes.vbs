' Named pipes, late bound: in this process, with other scripts, with typed clients and servers, and
' with programs that speak the raw pipe.
Const PR_NODATA = 0, PR_NEWDATA = 1, PR_ERROR = -1
Const O_RDWR = 4, SH_DENYNO = 64
Const kName = "\\.\pipe\qvrt_script"
Const kModule = "QvRtLibOle.modNamedPipes."
Dim pipe, pipes, request, room, i, peer, result
ReDim pipes(10)

Set request = CreateObject("QvRtLibOle.kwPipeData")
Set room = CreateObject("QvRtLibOle.kwPipeData")

' The name without its server, and what a failed call leaves.
request.ReqId = 7
request.ReqData = "request"
Check "a request to an absent server fails", NPClientRequest(kName, request), CLng(PR_ERROR)
Check "with the number of the system's error", Error_LastDLLError(), CLng(2)
Check "in the description", Error_Description(), "CallNamedPipe: 2"
CheckRecord "as error 20000", 20000, kModule & "NPClientRequest, 0"
Check "and the request stays", request.ReqId & request.ReqData, "7request"

Check "closing an unknown handle does nothing", NPServerClose(CLng(123456)), False
Check "without an error", Error_Number(), CLng(0)

' Ten instances, each with a handle of its own.
For i = 1 To 10
  pipes(i) = NPServerOpen(kName)
  If pipes(i) = 0 Then Check "instance " & i & " opens", pipes(i), "a handle"
Next
Check "a handle is a Long", VarType(pipes(10)), 3
Host.Press_Button 1
Check "the eleventh does not open", NPServerOpen(kName), CLng(0)
Check "which a box shows", Left(Host.Box_Text, 20), "CreateNamedPipe: 231"
Check "without a title", Host.Box_Title, " "
CheckRecord "and the record keeps", 20000, kModule & "NPServerOpen, 0"
Check "closing all closes none", NPServerCloseAll(), False
Check "each is still open", NPServerWrite(pipes(1), room), True
Check "and has no client", Error_Description(), "WriteFile: 536"
CheckRecord "which is an error", 20000, kModule & "NPServerWrite, 0"
For i = 1 To 10
  If NPServerClose(pipes(i)) Then Check "instance " & i & " closes", True, False
Next
Check "a closed pipe has nothing to close", NPServerClose(pipes(1)), False
Check "nor anything to read", NPServerRead(pipes(1), room), CLng(PR_NODATA)
Check "and closing recorded no error", Error_Number(), CLng(0)
Check "a closed pipe can't be written", NPServerWrite(pipes(1), room), True
Check "since its handle is invalid", Error_Description(), "WriteFile: 6"
Reset_Error
Check "no handle has nothing to read", NPServerRead(CLng(0), room), CLng(PR_NODATA)
Check "nor has a foreign one", NPServerRead(CLng(-1), room), CLng(PR_NODATA)
Check "without an error", Error_Number(), CLng(0)
Check "no handle can be written", NPServerWrite(CLng(0), room), True
CheckRecord "which is an error", 20000, kModule & "NPServerWrite, 0"
Check "Nothing is no request", NPClientRequest(kName, Nothing), CLng(PR_ERROR)
CheckRecord "but an error of the packing", 91, kModule & "PackRequest, 0 < " & kModule & "NPClientRequest, 0"
Check "Nothing is no room", NPServerRead(CLng(0), Nothing), CLng(PR_ERROR)
CheckRecord "but an error of the packing", 91, kModule & "PackRequest, 0 < " & kModule & "NPServerRead, 0"
Check "Nothing is no answer", NPServerWrite(CLng(0), Nothing), True
CheckRecord "but an error of the packing", 91, kModule & "PackRequest, 0 < " & kModule & "NPServerWrite, 0"

' A client that connected before NPServerRead.
pipe = NPServerOpen(kName)
Knock kName, i
Check "a client that was there before is no data", NPServerRead(pipe, room), CLng(PR_NODATA)
Check "also when asked again", NPServerRead(pipe, room), CLng(PR_NODATA)
File_Close32 i
Check "an answer to nobody fails", NPServerWrite(pipe, room), True
CheckRecord "and frees the pipe", 20000, kModule & "NPServerWrite, 0"

' On the wire, by a program that knows nothing of the library.
peer = Host.Start("companion.exe raw-client " & kName & " 00*16")
room.ReqData = "r"
Check "a request of 16 bytes fits into a room of one character", NPServerRead(pipe, room), CLng(PR_NEWDATA)
Check "the room stays as it was", room.ReqData, "r"
request.ReqId = &H11223344
request.ReqDate = CDate(2.5)
request.ReqData = "abc"
Check "it is answered", NPServerWrite(pipe, request), False
Check "without the first byte", Host.Output(peer), "332211" & "0000000000000440" & "03000000" & "616263" & vbLf

peer = Host.Start("companion.exe raw-client " & kName & " 00*16")
room.ReqData = ""
Check "a request of 16 bytes does not fit into an empty room", NPServerRead(pipe, room), CLng(PR_ERROR)
Check "since the message is longer", Error_Description(), "ReadFile: 234"
CheckRecord "and the record tells", 20000, kModule & "NPServerRead, 0"
Check "the client is disconnected", Host.Output(peer), "error 233" & vbLf

peer = Host.Start("companion.exe raw-client " & kName & " -")
Check "an empty message is no data", NPServerRead(pipe, room), CLng(PR_NODATA)
Check "and its client is disconnected", Host.Output(peer), "error 233" & vbLf

peer = Host.Start("companion.exe raw-client " & kName & " 00*99+78*99916")
room.ReqData = String(100000, "r")
Check "a request of 100015 bytes fits into a full room", NPServerRead(pipe, room), CLng(PR_NEWDATA)
room.ReqData = ""
NPServerWrite pipe, room
Check "which is answered", Host.Output(peer), String(30, "0") & vbLf
peer = Host.Start("companion.exe raw-client " & kName & " 00*100+78*99916")
room.ReqData = String(100000, "r")
Check "and none of 100016", NPServerRead(pipe, room), CLng(PR_ERROR)
CheckRecord "which is an error", 20000, kModule & "NPServerRead, 0"

Check "a busy pipe fails when the time has passed", NPClientRequest(kName, request, CLng(50)), CLng(PR_ERROR)
Check "with the system's time-out", Error_Description(), "CallNamedPipe: 121"
Reset_Error
Check "the pipe closes", NPServerClose(pipe), False

peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*6+0440+02000000+6162+00")
Check "a request is answered", Asked(kName, "abc"), CLng(PR_NEWDATA)
Check "the packet has been sent whole", Host.Output(peer), _
  "FEFFFFFF" & "0000000000000440" & "03000000" & "616263" & vbLf
Check "the answer's number arrives", request.ReqId, CLng(5)
Check "and its date", request.ReqDate, CDate(2.5)
Check "and its data", request.ReqData, "ab"

peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+000000FF+6162")
Check "an answer of negative length fails", Asked(kName, "abc"), CLng(PR_ERROR)
Check "by an invalid argument", Error_Description(), "Invalid procedure call or argument"
CheckRecord "of the unpacking", 5, kModule & "UnpackRequest, 0 < " & kModule & "NPClientRequest, 0"
Check "the number is replaced", request.ReqId, CLng(5)
Check "the data are not", request.ReqData, "abc"

peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+A1860100+6162")
Check "an answer that tells 100001 characters fails", Asked(kName, "abc"), CLng(PR_ERROR)
Check "since no request holds them", Error_Description(), "Data exceed buffer size."
Reset_Error
Check "the data stay", request.ReqData, "abc"
peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+A0860100+6162")
Check "one that tells 100000 is taken", Asked(kName, "abc"), CLng(PR_NEWDATA)
Check "with zeros for what is missing", Len(request.ReqData), CLng(100000)
Check "behind what is there", Left(request.ReqData, 4), "ab" & Chr(0) & Chr(0)

' Cut, huge and overlong answers.
peer = Host.Start("companion.exe raw-server " & kName & " 0500")
Check "a cut answer is taken", Asked(kName, "abc"), CLng(PR_NEWDATA)
Check "with zeros for what is missing", request.ReqId & " " & CDbl(request.ReqDate) & " " & Len(request.ReqData), "5 0 0"
peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+FFFFFF7F+61*100000")
Check "the greatest length fails", Asked(kName, "abc"), CLng(PR_ERROR)
CheckRecord "for no request holds it", 20000, kModule & "UnpackRequest, 0 < " & kModule & "NPClientRequest, 0"
peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+A0860100+61*100001")
Check "a byte behind 100000 is passed over", Asked(kName, "abc"), CLng(PR_NEWDATA)
Check "and the rest arrives", request.ReqData, String(100000, "a")
peer = Host.Start("companion.exe raw-server " & kName & " 05000000+00*8+A0860100+61*100002")
Check "an answer of 100018 bytes is too long", Asked(kName, "abc"), CLng(PR_ERROR)
Check "for the system", Error_Description(), "CallNamedPipe: 234"
Reset_Error
Check "and nothing is replaced", request.ReqId & request.ReqData, "-2abc"
peer = Host.Start("companion.exe raw-server " & kName & " 00*16")
Check "a request of 100000 characters is sent", Asked(kName, String(100000, "x")), CLng(PR_NEWDATA)
Check "whole", Len(Host.Output(peer)), CLng(200033)

' Between processes, by the library on both sides.
peer = Host.Start("script_host.exe tests\scripts\support\checks.vbs tests\scripts\peers\pipe_server.vbs")
CheckServed "script server", "\\.\pipe\qvrt_script_server"
CheckServed "script server again", "\\.\pipe\qvrt_script_server"
Check "the script server has served", Host.Output(peer), "ok served" & vbLf & "ok served" & vbLf & "done" & vbLf
peer = Host.Start("companion.exe server " & kName & " 2")
CheckServed "typed server", kName
CheckServed "typed server again", kName
Check "the typed server has served", Host.Output(peer), "1 0" & vbLf & "1 0" & vbLf

pipe = NPServerOpen(kName)
Knock kName, i
File_Close32 i
NPServerWrite pipe, room
Reset_Error
room.ReqData = String(1000, "r")
request.ReqId = &H11223344
request.ReqDate = CDate(2.5)
request.ReqData = ""
peer = Host.Start("companion.exe client " & kName & " request")
Check "a typed client's request comes", NPServerRead(pipe, room), CLng(PR_NEWDATA)
Check "it is answered", NPServerWrite(pipe, request), False
Check "and sees the answer a byte early", Host.Output(peer), "1 1122867 0000000000044000 0" & vbLf
For i = 1 To 2
  ' What the first character of an answer does to its length.
  request.ReqData = Mid("A" & Chr(200), i, 1) & "bc"
  peer = Host.Start("companion.exe client " & kName & " request")
  Check "a further request comes", NPServerRead(pipe, room), CLng(PR_NEWDATA)
  Check "and is answered", NPServerWrite(pipe, request), False
  Check "but the client can't unpack it", Host.Output(peer), "-1 1122867 0000000000044003 7" & vbLf
Next
Check "the pipe closes at last", NPServerClose(pipe), False
Check "and no error stands", Error_Number(), CLng(0)
Finish

' Connects to a new pipe, which takes a client at once.
Sub Knock(name, handle)
  handle = CLng(0)
  Check "the new pipe takes a client", File_Open32(name, O_RDWR, SH_DENYNO, CLng(0), handle), False
End Sub

' Asks until the server is there.
Function Asked(name, data)
  Dim tries
  For tries = 1 To 1000
    request.ReqId = -2
    request.ReqDate = CDate(2.5)
    request.ReqData = data
    Reset_Error
    Asked = NPClientRequest(name, request)
    If Error_LastDLLError() <> 2 Or Asked = PR_NEWDATA Then Exit For
    Host.Sleep 10
  Next
End Function

' Asks until the server serves.
Sub CheckServed(what, name)
  Dim tries
  For tries = 1 To 1000
    result = Asked(name, "request")
    If request.ReqId <> &H7F7F7F Then Exit For
  Next
  Check what & " answers", result, CLng(PR_NEWDATA)
  Check what & "'s number has lost its first byte", request.ReqId, CLng(&H112233)
  Check what & "'s date is one byte early", BinToHex(Date_2_Str(request.ReqDate)), "0000000000044000"
  Check what & " sends no data", request.ReqData, ""
End Sub
