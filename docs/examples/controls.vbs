' A form with the controls of the examples.
Dim Form1, Text1, RichText1, List1, List2, Combo1, Check1, Toolbar1, Label1
Set Form1 = Desk.Form
Set Label1 = Desk.Control("Static", 0)
Label1.Define "BackColor", 255
Label1.Define "ForeColor", 65280
Label1.Define "BorderStyle", 0
Set Text1 = Desk.Control("Edit", 4 + 128)
Set RichText1 = Desk.Control("RichEdit20W", 4)
Set List1 = Desk.Control("ListBox", 8 + 128)
Set List2 = Desk.Control("ListBox", 0)
Set Combo1 = Desk.Control("ComboBox", 2)
Combo1.AddItem "Milano"
Set Check1 = Desk.Control("Button", 3)
Check1.Define "Alignment", 0
Set Toolbar1 = Desk.Control("Static", 0)
Desk.Control "ToolbarWindow32", 0, Toolbar1
Dim item
For Each item In Array("Milano", "Roma", "Torino", "Milazzo")
  List1.AddItem item
Next

' == TX_GetLineCount, TX_GetLine
Dim line
Text1.Text = "one" & vbCrLf & vbCrLf & "three"
Show TX_GetLineCount(Text1)                           '-> 3
Show TX_GetLine(Text1, 2, line)                       '-> 0
Show line                                             '-> three
' An empty line is one, a line past the last is none.
Show TX_GetLine(Text1, 1, line)                       '-> 0
Show TX_GetLine(Text1, 3, line)                       '-> -1

' == TX_GetLineNo, TX_GetColNo, TX_GetCharPos
' Where is the caret? Lines, columns and positions count from 0.
Text1.Text = "one" & vbCrLf & "two" & vbCrLf & "three"
Text1.SelStart = 12
Show TX_GetLineNo(Text1)                              '-> 2
Show TX_GetColNo(Text1)                               '-> 2
Show TX_GetCharPos(Text1, 2)                          '-> 10

' == TX_UndoChk, TX_Undo
Const EM_REPLACESEL = 194
Text1.Text = "one"
Text1.SelLength = 3
Desk.Send Text1, EM_REPLACESEL, 1, "typed over"
Show TX_UndoChk(Text1)                                '-> True
TX_Undo Text1
Show Text1.Text                                       '-> one

' == TX_GetTextWidth, TX_GetTextHeight
' Pixels in the default font of the window.
Show TX_GetTextWidth(Text1, "")                       '-> 0
Show TX_GetTextWidth(Text1, "AA") = 2 * TX_GetTextWidth(Text1, "A")   '-> True
Show TX_GetTextHeight(Text1, "A") > 0                 '-> True

' == TX_SetTextWidth, TX_SetTabStops, TX_SetWordWrap
' Lines of 20 letters, a tab stop every 8, breaks of lines as part of the text.
TX_SetTextWidth Text1, 20
TX_SetTabStops Text1, 8
TX_SetWordWrap Text1, 1

' == TX_Find
' In a rich text box: downwards (1), whole words (2), from the beginning to the end.
Dim first, last
RichText1.Text = "the category, then the cat"
first = 0
last = -1
Show TX_Find(RichText1, 1, "cat", first, last)        '-> 4
Show TX_Find(RichText1, 1 + 2, "cat", first, last)    '-> 23
Show TX_Find(RichText1, 1, "dog", first, last)        '-> -1

' == LS_Find
' The beginning of an item, behind the item given (-1: from the top), or the whole of it.
Show LS_Find(List1, "mil", -1, False)                 '-> 0
Show LS_Find(List1, "mil", 0, False)                  '-> 3
Show LS_Find(List1, "mil", -1, True)                  '-> -1
Show LS_Find(Combo1, "milano", -1, True)              '-> 0

' == LS_InsertItem, LS_GetIndexFromData
' At the end with -1, at the top otherwise, with a number.
LS_InsertItem List2, -1, "Bari", 1001, False
LS_InsertItem List2, -1, "Como", 1002, False
LS_InsertItem List2, 5, "Pisa", 1003, False
Show List2.List(0)                                    '-> Pisa
Show LS_GetIndexFromData(List2, 1002)                 '-> 2
Show LS_GetIndexFromData(List2, 7)                    '-> -1

' == LS_GetItemHeight, LS_SetItemHeight
' Pixels of a line.
LS_SetItemHeight List1, 24
Show LS_GetItemHeight(List1)                          '-> 24
Show LS_GetItemHeight(Text1)                          '-> -1

' == LS_SetTabStops
' Columns at 80 and 160 pixels, for texts with tab characters between.
Show LS_SetTabStops(List1, Array(80, 160)) <> 0       '-> True
Show LS_SetTabStops(Combo1, Array(80, 160))           '-> -1

' == LS_SelectAll, LS_GetSelItems
Dim items
LS_SelectAll List1, True
Show LS_GetSelItems(List1, items)                     '-> 4
Show items(1) & " to " & items(4)                     '-> 0 to 3
LS_SelectAll List1, False
Show LS_GetSelItems(List1, items)                     '-> 0
Show items(1)                                         '-> -1

' == LS_SelItemRange
' A negative end is the last item, which the variable then tells.
Dim last
last = -1
LS_SelItemRange List1, 1, last, 1
Show last                                             '-> 3
Show LS_SelItemRange(Combo1, 0, last, 1)              '-> -1

' == LS_GetItemRect
Dim area
Set area = CreateObject("QvRtLibOle.QvtRect")
LS_SetItemHeight List1, 20
LS_GetItemRect List1, area, 1
Show area.RcTop & " to " & area.RcBottom              '-> 20 to 40

' == LS_RedrawOff, LS_RedrawOn
' Many items at once, drawn once.
Dim i
LS_RedrawOff List2
For i = 1 To 100
  List2.AddItem "item " & i
Next
LS_RedrawOn List2
List2.Refresh

' == CB_DropDownOpen, CB_DropDownClose, CB_DropDownCheck
CB_DropDownOpen Combo1
Show CB_DropDownCheck(Combo1)                         '-> 1
CB_DropDownClose Combo1
Show CB_DropDownCheck(Combo1)                         '-> 0
Show CB_DropDownCheck(List1)                          '-> 0

' == CB_MaxLenght
' At most 7 characters can be typed.
CB_MaxLenght Combo1, 7
Show CB_MaxLenght(Text1, 7)                           '-> -1

' == CT_InvertColors
CT_InvertColors Label1
Show Label1.BackColor                                 '-> 65280
Show Label1.ForeColor                                 '-> 255

' == CT_ScreenPos
' In twips; a control without a window has no place.
Dim left, top
CT_ScreenPos Label1, left, top
Show left >= 0 And top >= 0                           '-> True
CT_ScreenPos Nothing, left, top
Show left & " " & top                                 '-> -1 -1

' == BC_SetReadOnly
' A click no longer changes the check.
Const BM_GETCHECK = 240, BM_CLICK = 245
BC_SetReadOnly Check1, True
Desk.Send Check1, BM_CLICK, 0, 0
Show Desk.Send(Check1, BM_GETCHECK, 0, 0)             '-> 0

' == ToolBarFlat
' Flat buttons, with their texts beside the images.
Show ToolBarFlat(Toolbar1, True)                      '-> False
Show ToolBarFlat(Nothing)                             '-> True
Show Error_Number()                                   '-> 91

' == ShowFloating
' In front of all other windows; 0 takes the form away.
ShowFloating Form1, 1
ShowFloating Form1, 0

' == MessageBeep
MessageBeep vbExclamation
