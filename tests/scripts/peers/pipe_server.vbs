' A server that answers two requests; a test of typed clients starts it.
Const O_RDWR = 4, SH_DENYNO = 64
Dim pipe, room, answer, i, knock
Set room = CreateObject("QvRtLibOle.kwPipeData")
Set answer = CreateObject("QvRtLibOle.kwPipeData")
room.ReqData = String(1000, "r")
pipe = NPServerOpen("\\.\pipe\qvrt_script_server")
' A new pipe takes a client at once, which NPServerRead would not see: whoever is the first, we or a
' client, is disconnected.
knock = CLng(0)
File_Open32 "\\.\pipe\qvrt_script_server", O_RDWR, SH_DENYNO, CLng(0), knock
File_Close32 knock
answer.ReqId = &H7F7F7F7F
NPServerWrite pipe, answer
answer.ReqId = &H11223344
answer.ReqDate = CDate(2.5)
For i = 1 To 2
  Check "served", NPServerRead(pipe, room), CLng(1)
  NPServerWrite pipe, answer
Next
NPServerClose pipe
Finish
