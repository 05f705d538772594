' Measuring, breaking and drawing text; a fade.
Dim n, s, line, canvas, lines, text, box, i

Check "Text_Extent of no device", Text_Extent(0, "abc"), CInt(3)
Check "Text_Extent of nothing", Text_Extent(0, ""), CInt(0)
Check "Text_Extent of what is no device", Text_Extent(1, "abc"), CInt(0)
canvas = Desk.Canvas(200, 200)
Check "Text_Extent of a device", Text_Extent(canvas, "MM") > Text_Extent(canvas, "M"), True
On Error Resume Next
n = Text_Extent(0, String(32768, "x"))
CheckError "Text_Extent past an Integer", 6, "Overflow"
On Error GoTo 0

s = "two words "
Check "Text_Justify of a text that fits", Text_Justify(s, 0, 1, 11), Chr(160) & "two words "
Check "leaves nothing", s, ""
s = "one two   three"
Check "Text_Justify at a blank", Text_Justify(s, 0, 0, 7), "one two "
Check "the rest is trimmed", s, "three"
Check "Text_Justify inside a word", Text_Justify(s, 0, 0, 2), "th"
Check "the rest of the word", s, "ree"
Check "Text_Justify without width", Text_Justify(s, 0, 0, 0), ""
Check "takes a character away", s, "ee"
On Error Resume Next
line = Text_Justify(s, 0, -1, 3)
CheckError "Text_Justify with a negative indent", 5, "Invalid procedure call or argument"
On Error GoTo 0
Check "a failure changes nothing", s, "ee"
text = "A paragraph that goes over a few lines of a narrow column."
s = text
lines = ""
n = 0
Do While Len(s) > 0
  line = Text_Justify(s, canvas, 0, 90)
  If Text_Extent(canvas, RTrim(line)) > 90 Then Check "a line is too wide", line, ""
  lines = lines & line
  n = n + 1
Loop
Check "a paragraph loses nothing", lines, text
Check "and has several lines", n > 2, True

Check "Text_Rotate", Text_Rotate(canvas, "HHHHHH", 0, 20, 20), False
n = 0
For i = 20 To 60
  If Desk.Pixel(canvas, i, 28) <> 16777215 Then n = n + 1
Next
Check "draws", n > 3, True
Check "Text_Rotate of nothing", Text_Rotate(canvas, "", 900, 50, 50), False
Check "Text_Rotate on what is no device", Text_Rotate(0, "text", 900, 50, 50), True
Check "tells why", Error_Description(), "GetCurrentObject=NULL"
CheckRecord "in the record", 20000, "KwRtLibMod.Text_Rotate"

Class PictureBox
  Public ScaleHeight
  Public ScaleWidth
  Public Boxes
  Public Last
  Public Sub Line(flags, x1, y1, x2, y2, colour)
    Boxes = Boxes + 1
    Last = flags & " " & x1 & " " & y1 & " " & x2 & " " & y2 & " " & colour
  End Sub
End Class
Set box = New PictureBox
box.ScaleHeight = 10
box.ScaleWidth = 7
Check "Gradient", Gradient(box), Empty
Check "its boxes", box.Boxes, CInt(6)
Check "its last box", box.Last, "38 -1 9 7 12 0"
box.ScaleHeight = 1
Check "Gradient of little height", Gradient(box, 1, 2), Empty
Check "is one box", box.Boxes, CInt(7)
Check "of blue", box.Last, "38 -1 -1 7 2 16711680"
On Error Resume Next
box.ScaleHeight = 0
n = Gradient(box)
CheckError "Gradient without height", 11, "Division by zero"
n = Gradient(5)
CheckError "Gradient of a number", 424, ""
n = Gradient(Host)
CheckError "Gradient of an object without ScaleHeight", 438, ""
On Error GoTo 0
Finish
