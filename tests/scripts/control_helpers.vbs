' The helpers for controls, on controls of the system.
Const ES_MULTILINE = 4, ES_HSCROLL = 128, LBS_MULTIPLE = 8, LBS_TABS = 128, CBS_DROPDOWN = 2
Const WM_SETTEXT = 12, WM_GETTEXT = 13, WM_CLOSE = 16
Const EM_SETSEL = 177, EM_REPLACESEL = 194, EM_GETRECT = 178
Const LB_ADDSTRING = 384, LB_GETTEXT = 393, LB_GETITEMDATA = 409, LB_SETSEL = 389, LB_GETSEL = 391
Const LB_GETCOUNT = 395, LB_SETITEMDATA = 410, LB_GETITEMHEIGHT = 417
Const CB_ADDSTRING = 323, CB_GETLBTEXT = 328, CB_GETITEMDATA = 336, CB_GETDROPPEDSTATE = 343
Const BM_GETCHECK = 240, BM_CLICK = 245
Dim box, list, combo, other, windowless, n, s, first, last, items, rect, l, t, i

' --- text boxes
Set box = Desk.Control("Edit", ES_MULTILINE + ES_HSCROLL)
Check "TX_UndoChk of a new box", TX_UndoChk(box), False
Desk.Send box, WM_SETTEXT, 0, "one" & vbCrLf & vbCrLf & "three"
Desk.Send box, EM_SETSEL, 0, 3
Desk.Send box, EM_REPLACESEL, 1, "two"
Check "TX_UndoChk after a change", TX_UndoChk(box), True
TX_Undo box
Check "TX_Undo", Desk.Text_By(box, WM_GETTEXT, 4096), "one" & vbCrLf & vbCrLf & "three"
Check "TX_GetLineCount", TX_GetLineCount(box), CLng(3)
Desk.Send box, EM_SETSEL, 9, 9
Check "TX_GetLineNo of the caret", TX_GetLineNo(box), CLng(2)
Check "TX_GetColNo", TX_GetColNo(box), CLng(2)
Desk.Send box, EM_SETSEL, 0, 8
Check "TX_GetLineNo of a selection's end", TX_GetLineNo(box), CLng(2)
Check "TX_GetColNo of a selection's end", TX_GetColNo(box), CLng(1)
Check "TX_GetCharPos", TX_GetCharPos(box, 2), CLng(7)
Check "TX_GetCharPos of no line", TX_GetCharPos(box, 3), CLng(-1)
s = "before"
Check "TX_GetLine", TX_GetLine(box, 2, s), CInt(0)
Check "TX_GetLine's line", s, "three"
Check "TX_GetLine of an empty line", TX_GetLine(box, 1, s), CInt(0)
Check "TX_GetLine's empty line", s, ""
s = "before"
Check "TX_GetLine of no line", TX_GetLine(box, 3, s), CInt(-1)
Check "TX_GetLine of no line empties", s, ""
Check "TX_GetTextWidth of nothing", TX_GetTextWidth(box, ""), CLng(0)
Check "TX_GetTextWidth grows", TX_GetTextWidth(box, "AA") > TX_GetTextWidth(box, "A"), True
Check "TX_GetTextHeight", TX_GetTextHeight(box, "A") > 0, True
TX_SetWordWrap box, 1
TX_SetTextWidth box, 5
Check "TX_SetTextWidth refreshes", box.Refreshes, CLng(1)
TX_SetTabStops box, 0
Check "TX_SetTabStops of no letters", box.Refreshes, CLng(1)
TX_SetTabStops box, 8
Check "TX_SetTabStops refreshes", box.Refreshes, CLng(2)
On Error Resume Next
TX_SetTextWidth box, -1
CheckError "TX_SetTextWidth of fewer than no letters", 5, "Invalid procedure call or argument"
TX_SetTabStops box, -1
CheckError "TX_SetTabStops of fewer than no letters", 5, "Invalid procedure call or argument"
Set windowless = Desk.Control("", 0)
n = TX_GetLineCount(windowless)
CheckError "a control without a window", 438, ""
n = TX_GetLineCount(Nothing)
CheckError "Nothing", 91, ""
box.Fail "hwnd"
n = TX_GetLineCount(box)
CheckError "an error of the control", 7777, "the control refuses"
On Error GoTo 0

' --- list boxes
Set list = Desk.Control("ListBox", LBS_MULTIPLE + LBS_TABS)
Check "LS_InsertItem adds", LS_InsertItem(list, -1, "one", 11, False) >= 0, True
Check "LS_InsertItem adds at the end", LS_InsertItem(list, -1, "two", 22, False) >= 0, True
Check "LS_InsertItem inserts at the top", LS_InsertItem(list, 3, "three", 33, False) >= 0, True
Check "the item at the top", Desk.Text_By(list, LB_GETTEXT, 0), "three"
Check "its data", Desk.Send(list, LB_GETITEMDATA, 0, 0), CLng(33)
Check "LS_InsertItem refreshes", list.Refreshes, CLng(3)
Check "LS_InsertItem sorted", LS_InsertItem(list, 0, "four", 44, True) >= 0, True
Check "the item at the end", Desk.Text_By(list, LB_GETTEXT, 3), "four"
Check "LS_Find", LS_Find(list, "T", -1, False), CLng(0)
Check "LS_Find behind an item", LS_Find(list, "T", 0, False), CLng(2)
Check "LS_Find exact", LS_Find(list, "TWO", -1, True), CLng(2)
Check "LS_Find exact without a hit", LS_Find(list, "t", -1, True), CLng(-1)
Check "LS_GetIndexFromData", LS_GetIndexFromData(list, 11), CLng(1)
Check "LS_GetIndexFromData without a hit", LS_GetIndexFromData(list, 12), CLng(-1)
Check "LS_GetSelItems without a selection", LS_GetSelItems(list, items), CLng(0)
Check "its one element", items(1), CLng(-1)
Check "LS_SelectAll", LS_SelectAll(list, 1) >= 0, True
Check "an item is selected", Desk.Send(list, LB_GETSEL, 2, 0) <> 0, True
Check "LS_GetSelItems", LS_GetSelItems(list, items), CLng(4)
Check "from index 1", LBound(items), CLng(1)
Check "its first element", items(1), CLng(0)
Check "its last element", items(4), CLng(3)
LS_SelectAll list, 0
Check "no item is selected", Desk.Send(list, LB_GETSEL, 2, 0), CLng(0)
first = 1
last = -1
n = LS_SelItemRange(list, first, last, 0)
Check "LS_SelItemRange puts the last item for a negative number", last, CLng(3)
Check "LS_SetTabStops", LS_SetTabStops(list, Host.Longs(20, 40, 60)) <> 0, True
Check "LS_SetTabStops of an array of Variant", LS_SetTabStops(list, Array(20, 40)) <> 0, True
Check "LS_SetItemHeight", LS_SetItemHeight(list, 30) >= 0, True
Check "the height", Desk.Send(list, LB_GETITEMHEIGHT, 0, 0), CLng(30)
Check "LS_GetItemHeight", LS_GetItemHeight(list), CLng(30)
Set rect = CreateObject("QvRtLibOle.QvtRect")
Check "LS_GetItemRect", LS_GetItemRect(list, rect, 1) >= 0, True
Check "an item's upper edge", rect.RcTop, CLng(30)
Check "an item's lower edge", rect.RcBottom, CLng(60)
Check "LS_GetItemRect of no item", LS_GetItemRect(list, rect, 9), CLng(-1)
LS_RedrawOff list
LS_RedrawOn list
On Error Resume Next
n = LS_SetTabStops(list, Host.Empty_Array(3))
CheckError "LS_SetTabStops of an array that is not allocated", 9, "Subscript out of range"
n = LS_SelItemRange(list, 40000, 1, 1)
CheckError "LS_SelItemRange past an Integer", 6, "Overflow"
n = LS_Find(Nothing, "a", -1, False)
CheckError "LS_Find of Nothing", 91, ""
n = LS_GetItemRect(list, Nothing, 0)
CheckError "LS_GetItemRect into Nothing", 91, ""
list.Lack "ListCount"
n = LS_GetIndexFromData(list, 11)
CheckError "LS_GetIndexFromData without ListCount", 438, ""
On Error GoTo 0
Set other = Desk.Control("ListBox", 0)
Desk.Send other, LB_ADDSTRING, 0, "one"
Desk.Send other, 390, 0, 0
Check "LS_GetSelItems of a single selection", LS_GetSelItems(other, items), CLng(0)
Check "the element of a single selection", items(1), CLng(-1)

' --- combo boxes
Set combo = Desk.Control("ComboBox", CBS_DROPDOWN)
Check "LS_InsertItem into a combo box", LS_InsertItem(combo, 3, "one", 11, False) >= 0, True
Check "its item", Desk.Text_By(combo, CB_GETLBTEXT, 0), "one"
Check "its item's data", Desk.Send(combo, CB_GETITEMDATA, 0, 0), CLng(11)
Check "LS_Find in a combo box", LS_Find(combo, "ONE", -1, True), CLng(0)
Check "LS_GetIndexFromData of a combo box", LS_GetIndexFromData(combo, 11), CLng(0)
Check "LS_GetItemHeight of a combo box", LS_GetItemHeight(combo) > 0, True
Check "CB_DropDownCheck closed", CB_DropDownCheck(combo), CLng(0)
CB_DropDownOpen combo
Check "CB_DropDownOpen", Desk.Send(combo, CB_GETDROPPEDSTATE, 0, 0) <> 0, True
Check "CB_DropDownCheck open", CB_DropDownCheck(combo) <> 0, True
CB_DropDownClose combo
Check "CB_DropDownClose", Desk.Send(combo, CB_GETDROPPEDSTATE, 0, 0), CLng(0)
Check "both refresh", combo.Refreshes, CLng(3)
n = CB_MaxLenght(combo, 7)
Check "CB_MaxLenght's type", VarType(n), CInt(vbLong)
Check "CB_MaxLenght of another control", CB_MaxLenght(list, 7), CLng(-1)
Check "CB_MaxLenght of no window", CB_MaxLenght(windowless, 7), CLng(-1)

' --- the wrong kind is sent nothing
Set box = Desk.Control("Edit", ES_MULTILINE)
Check "LS_Find", LS_Find(box, "a", -1, False), CLng(-1)
Check "LS_GetItemHeight", LS_GetItemHeight(box), CLng(-1)
Check "LS_SetItemHeight", LS_SetItemHeight(box, 20), CLng(-1)
Check "LS_InsertItem", LS_InsertItem(box, 0, "a", 0, False), CLng(-1)
Check "LS_SetTabStops", LS_SetTabStops(combo, Host.Longs(1, 2)), CLng(-1)
Check "LS_SelItemRange", LS_SelItemRange(combo, 0, 1, 1), CLng(-1)
Check "LS_SelectAll", LS_SelectAll(combo, 1), CLng(-1)
Check "LS_GetItemRect", LS_GetItemRect(combo, rect, 0), CLng(-1)
LS_RedrawOn combo
LS_RedrawOff combo
CB_DropDownOpen list
CB_DropDownClose list
Check "CB_DropDownCheck", CB_DropDownCheck(list), CLng(0)
Check "none was refreshed", box.Refreshes, CLng(0)

' --- any control
Set other = Desk.Control("Static", 0)
other.Define "BackColor", CLng(255)
other.Define "ForeColor", CLng(65280)
CT_InvertColors other
Check "CT_InvertColors, back", other.BackColor, CLng(65280)
Check "CT_InvertColors, fore", other.ForeColor, CLng(255)
CT_InvertColors windowless
CT_InvertColors Nothing
l = 5
t = 5
CT_ScreenPos other, l, t
Check "CT_ScreenPos", l >= 0 And t >= 0, True
other.Define "BorderStyle", 1
first = l
CT_ScreenPos other, l, t
Check "CT_ScreenPos with a border", l < first, True
CT_ScreenPos windowless, l, t
Check "CT_ScreenPos without a window, left", l, CInt(-1)
Check "CT_ScreenPos without a window, top", t, CInt(-1)
Set box = Desk.Control("Button", 3)
box.Define "Alignment", 0
BC_SetReadOnly box, True
Desk.Send box, BM_CLICK, 0, 0
Check "a read-only box stays as it is", Desk.Send(box, BM_GETCHECK, 0, 0), CLng(0)
BC_SetReadOnly box, False
Desk.Send box, BM_CLICK, 0, 0
Check "another is checked", Desk.Send(box, BM_GETCHECK, 0, 0), CLng(1)
Check "ToolBarFlat without a bar", ToolBarFlat(other), False
Check "ToolBarFlat of Nothing", ToolBarFlat(Nothing, True), True
CheckRecord "its record", 91, "KwRtLibMod.ToolBarFlat"
Check "ToolBarFlat of a control without a window", ToolBarFlat(windowless), True
CheckRecord "the record of that", 438, "KwRtLibMod.ToolBarFlat"
ShowFloating other, 1
ShowFloating other, 0
On Error Resume Next
ShowFloating windowless, 1
CheckError "ShowFloating without a window", 438, ""
BC_SetReadOnly other, True
CheckError "BC_SetReadOnly without Alignment", 438, ""
On Error GoTo 0
MessageBeep 64
Finish
