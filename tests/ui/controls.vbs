' Controls for controls_on_display.sh: a form with one of each kind, and what the helpers make of
' them.
Const ES_MULTILINE = 4, ES_AUTOVSCROLL = 64, WS_BORDER = 8388608, WS_VSCROLL = 2097152
Const LBS_NOTIFY = 1, LBS_MULTIPLE = 8, LBS_TABS = 128, CBS_DROPDOWN = 2, BS_AUTOCHECKBOX = 3
Const LB_GETSEL = 391, LB_GETITEMHEIGHT = 417
Const CB_GETDROPPEDSTATE = 343, BM_GETCHECK = 240, BM_CLICK = 245, TB_GETSTYLE = 1081
Const WM_SETTEXT = 12, WHITE = 16777215
Dim form, text, list, combo, box, holder, bar, paper, fade, files, shell, folder

Set files = CreateObject("Scripting.FileSystemObject")
Set shell = CreateObject("WScript.Shell")
folder = C_2_Str(shell.ExpandEnvironmentStrings("%QVRT_PICTURES%"))

' Has the display photographed; it shows so many colours at least.
Sub Picture(name, colours)
  Dim tries
  Host.Sleep 300
  Host.Echo "picture " & name & " " & colours
  For tries = 1 To 300
    If files.FileExists(folder & "\" & name & ".png") Then Exit Sub
    Host.Sleep 100
  Next
  Host.Echo "FAILED picture " & name & ": not taken"
End Sub

' --- the form
Desk.Form_Size 640, 460
Set form = Desk.Form
Set text = Desk.Control("Edit", ES_MULTILINE + ES_AUTOVSCROLL + WS_BORDER)
Set list = Desk.Control("ListBox", LBS_NOTIFY + LBS_MULTIPLE + LBS_TABS + WS_BORDER + WS_VSCROLL)
Set combo = Desk.Control("ComboBox", CBS_DROPDOWN + WS_VSCROLL)
Set box = Desk.Control("Button", BS_AUTOCHECKBOX)
Set holder = Desk.Control("Static", 0)
Set bar = Desk.Control("ToolbarWindow32", 0, holder)
Set paper = Desk.Control("Static", WS_BORDER)
Set fade = Desk.Control("Static", 0)
Desk.Place holder, 0, 0, 640, 30
Desk.Place text, 10, 40, 300, 90
Desk.Place list, 10, 140, 300, 150
Desk.Place combo, 10, 300, 300, 150
Desk.Place box, 330, 40, 290, 25
Desk.Place fade, 330, 70, 290, 60
Desk.Place paper, 330, 140, 290, 300
Desk.Send box, WM_SETTEXT, 0, "A check box"
text.Text = "The first line of the box" & vbCrLf & vbCrLf & "a" & vbTab & "b" & vbTab & "c"
combo.AddItem "Roma"
combo.AddItem "Torino"
Picture "1_before", 3

' --- the helpers
TX_SetTextWidth text, 12
TX_SetTabStops text, 6
Check "the text box has the lines that it shows", TX_GetLineCount(text) > 3, True
LS_SetTabStops list, Array(120, 200)
LS_InsertItem list, -1, "Milano" & vbTab & "MI" & vbTab & "02", 2, False
LS_InsertItem list, -1, "Roma" & vbTab & "RM" & vbTab & "06", 6, False
LS_InsertItem list, 9, "Torino" & vbTab & "TO" & vbTab & "011", 11, False
LS_SetItemHeight list, 28
LS_SelectAll list, True
Check "every item is selected", Desk.Send(list, LB_GETSEL, 0, 0) > 0 And Desk.Send(list, LB_GETSEL, 2, 0) > 0, True
list.Selected(1) = False
Check "an item's height", Desk.Send(list, LB_GETITEMHEIGHT, 0, 0), CLng(28)
Check "an item of a number", LS_GetIndexFromData(list, 6), CLng(2)
LS_InsertItem combo, 0, "Bari", 80, False
CB_DropDownOpen combo
Check "the list of the combo box is down", Desk.Send(combo, CB_GETDROPPEDSTATE, 0, 0), CLng(1)
box.Define "Alignment", 1
BC_SetReadOnly box, True
Desk.Send box, BM_CLICK, 0, 0
Check "a read-only check box", Desk.Send(box, BM_GETCHECK, 0, 0), CLng(0)
Check "ToolBarFlat", ToolBarFlat(holder, True), False
Check "the bar is flat", Desk.Send(bar, TB_GETSTYLE, 0, 0) And &H1840, CLng(&H1840)
Dim left, top
paper.Define "BorderStyle", 1
CT_ScreenPos paper, left, top
' The window's own border moves its inside by a pixel, for which the helper makes up.
Check "left, in twips", left, CInt(330 * 15)
Check "top, in twips", top, CInt(140 * 15)

' --- a fade
Class PictureBox
  Public Device
  Public ScaleHeight
  Public ScaleWidth
  Public Sub Line(flags, x1, y1, x2, y2, colour)
    Desk.Fill Device, x1, y1, x2, y2, colour
  End Sub
End Class
Dim canvas
Host.Sleep 300
Set canvas = New PictureBox
canvas.Device = Desk.Device(fade)
canvas.ScaleWidth = 290
canvas.ScaleHeight = 60
Gradient canvas
Check "the fade begins blue", Desk.Pixel(canvas.Device, 100, 0), CLng(16711680)
Check "and ends black", Desk.Pixel(canvas.Device, 100, 59) < 65536 * 20, True

' --- a paragraph, and text at angles
Dim device, rest, line, y, tenths
device = Desk.Device(paper)
Desk.Fill device, 0, 0, 290, 300, WHITE
rest = "A paragraph is broken into lines that fit the width of the paper; each of them is drawn " & _
  "where the one before it has ended."
y = 5
Do While Len(rest) > 0
  line = Text_Justify(rest, device, 0, 270)
  Check "a line fits", Text_Extent(device, RTrim(line)) <= 270, True
  Check "a line is drawn", Text_Rotate(device, line, 0, 10, y), False
  y = y + 20
Loop
For tenths = 0 To 3150 Step 450
  Check "text at " & tenths, Text_Rotate(device, "         an angle", tenths, 145, 200), False
Next

Picture "2_after", 20
CB_DropDownClose combo
ShowFloating form, 1
Picture "3_in_front", 20
ShowFloating form, 0
Picture "4_hidden", 1
Finish
