' == QvMsgBox, QvMsgBox.Message_Box, QvMsgBox.Message_BoxEx, QvMsgBox.QueryStatus, QvMsgBox.Close_Box
' No box is behind the class: programs written for it run, see nothing and get 0.
Dim boxes
Set boxes = CreateObject("QvRtLibOle.QvMsgBox")
Show boxes.Message_Box("Delete the order?", vbYesNo, "Orders")      '-> 0
Show boxes.Message_BoxEx("Delete the order?", vbYesNo, "Orders")    '-> 0
Show boxes.QueryStatus                                              '-> False
boxes.Close_Box

' == QvMsgBox.Input_Box, QvMsgBox.Input_BoxEx, QvMsgBox.Input_Text
' Who needs an answer asks with InputBox of the language.
Dim boxes
Set boxes = CreateObject("QvRtLibOle.QvMsgBox")
Show boxes.Input_Box("Name of the customer?", vbOKCancel, "Orders")      '-> 0
Show boxes.Input_BoxEx("Name of the customer?", vbOKCancel, "Orders")    '-> 0
boxes.Input_Text = "Rossi"
Show boxes.Input_Text = ""                                               '-> True

' == QvMsgBox.Progress_Box, QvMsgBox.Progress_BoxEx, QvMsgBox.Progress_Value
Dim boxes
Set boxes = CreateObject("QvRtLibOle.QvMsgBox")
Show boxes.Progress_Box("Saving", 0, "Orders")      '-> 0
Show boxes.Progress_BoxEx("Saving", 0, "Orders")    '-> 0
boxes.Progress_Value = 50
Show boxes.Progress_Value                           '-> 0

' == QvMsgBox.MessageBoxReturn, QvMsgBox.InputBoxReturn, QvMsgBox.ProgressBoxReturn
' The events may be connected, and never arrive.
Dim asking
Set asking = WScript.CreateObject("QvRtLibOle.QvMsgBox", "asking_")
Show asking.Message_Box("Delete the order?", vbYesNo)    '-> 0
Show asking.Input_Box("Name of the customer?")           '-> 0
Show asking.Progress_Box("Saving")                       '-> 0
Sub asking_MessageBoxReturn(button, cancel)
  Show "answered by " & button
End Sub
Sub asking_InputBoxReturn(button, value, cancel)
  Show "entered " & value
End Sub
Sub asking_ProgressBoxReturn(button, cancel)
  Show "stopped by " & button
End Sub
