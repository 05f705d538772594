' kwPipeData, late bound.
Dim request, full, text
Set request = CreateObject("QvRtLibOle.kwPipeData")
Check "a new object has number 0", request.ReqId, CLng(0)
Check "and the date 0", request.ReqDate, CDate(0)
Check "and no data", request.ReqData, ""
Check "its greatest size is 100000", request.MaxPacketSize, CLng(100000)

request.ReqId = -1
Check "a number is kept", request.ReqId, CLng(-1)
request.ReqDate = CDate(36955.5)
Check "a date is kept", request.ReqDate, CDate(36955.5)
request.ReqData = "ab" & Chr(0) & "c"
Check "data are kept", request.ReqData, "ab" & Chr(0) & "c"
text = "de"
Check "AppendData succeeds", request.AppendData(text), False
Check "and adds behind", request.ReqData, "ab" & Chr(0) & "cde"

full = String(100000, "x")
request.ReqData = full
Check "100000 characters are taken", Len(request.ReqData), CLng(100000)
On Error Resume Next
request.ReqData = full & "y"
CheckError "one more raises error 20000", 20000, "Data exceed buffer size."
On Error GoTo 0
Check "and the data stay", Len(request.ReqData), CLng(100000)
Check "and no error is recorded", Error_Number(), CLng(0)

Check "a full object takes an empty text", request.AppendData(""), False
Check "and no character more", request.AppendData("y"), True
Check "for it would be too much", Error_Description(), "Data exceed buffer size."
CheckRecord "which is error 20000", 20000, "QvRtLibOle.kwPipeData.AppendData, 0"
request.ReqData = String(99999, "x")
Check "the last character fits", request.AppendData("y"), False
Check "to the end", Right(request.ReqData, 2), "xy"
Finish
