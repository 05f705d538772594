' The class that stands for message boxes: every member does nothing.
Dim box, events
Set box = CreateObject("QvRtLibOle.QvMsgBox")
events = 0
Sub Box_MessageBoxReturn(button, cancel)
  events = events + 1
End Sub
Check "its events can be connected", Host.Connect(box, "Box"), True
Check "QueryStatus", box.QueryStatus, False
Check "Message_Box with its prompt alone", box.Message_Box("prompt"), CLng(0)
Check "Message_Box with Modal False", box.Message_Box("prompt", 4, "title", 0, Nothing, Nothing, 0, 0, True, 0, 6, False), CLng(0)
Check "Message_BoxEx", box.Message_BoxEx("prompt", 4, "title"), CLng(0)
Check "Progress_Box", box.Progress_Box("prompt"), CLng(0)
Check "Progress_BoxEx", box.Progress_BoxEx("prompt"), CLng(0)
Check "Input_Box", box.Input_Box("prompt"), CLng(0)
Check "Input_BoxEx", box.Input_BoxEx("prompt"), CLng(0)
box.Progress_Value = 50
Check "Progress_Value is dropped", box.Progress_Value, CLng(0)
box.Input_Text = "text"
Check "Input_Text is dropped", box.Input_Text, ""
box.Close_Box
Check "QueryStatus after all that", box.QueryStatus, False
Check "no event came", events, CInt(0)
Host.Disconnect
Finish
