' A client; a test of typed servers starts it.
Dim request
Set request = CreateObject("QvRtLibOle.kwPipeData")
request.ReqId = 7
request.ReqDate = CDate(2.5)
request.ReqData = "request"
Check "the answer comes", NPClientRequest("\\.\pipe\qvrt_script_client", request, CLng(10000)), CLng(1)
Check "its number has lost its first byte", request.ReqId, CLng(&H112233)
Check "its date is one byte early", BinToHex(Date_2_Str(request.ReqDate)), "0000000000044000"
Check "it has no data", request.ReqData, ""
Finish
