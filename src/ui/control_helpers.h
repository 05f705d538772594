// What the language's control objects do not offer of the standard controls behind them. Each
// helper reads the control's window from its late-bound "hwnd" and sends messages to it. A helper
// for one kind of control sends nothing to another. Errors of the control's members reach the
// caller unless said otherwise; a window that is gone answers every message with 0.
#pragma once

#include "automation/array.h"
#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::ui {

// Text boxes. Lines, columns and positions count from 0; positions past 65535 are beyond what the
// control tells in one answer. Widths and heights are in pixels of the window's default font,
// whatever font the control shows.
Boolean TX_UndoChk(const Object<IDispatch>& Ctl);
void TX_Undo(const Object<IDispatch>& Ctl);
void TX_SetWordWrap(const Object<IDispatch>& Ctl, Long AddEOL);
// cTab counts letters "A"; run-time error 5 for a negative number.
void TX_SetTextWidth(const Object<IDispatch>& Ctl, Integer cTab);
void TX_SetTabStops(const Object<IDispatch>& Ctl, Integer cTab);
// 0 where the system can't measure.
Long TX_GetTextWidth(const Object<IDispatch>& Ctl, const Text& sText);
Long TX_GetTextHeight(const Object<IDispatch>& Ctl, const Text& sText);
Long TX_GetLineNo(const Object<IDispatch>& Ctl);
Long TX_GetColNo(const Object<IDispatch>& Ctl);
Long TX_GetCharPos(const Object<IDispatch>& Ctl, Long LineNo);
Long TX_GetLineCount(const Object<IDispatch>& Ctl);
// For rich text boxes alone: others do not know the message.
Long TX_Find(const Object<IDispatch>& Ctl, Long Flags, const Text& SrcText, Long& StartPos,
             Long& EndPos);
// 0 = done, -1 = no such line. A line of more than 32765 characters is run-time error 6.
Integer TX_GetLine(const Object<IDispatch>& Ctl, Long LineNo, Text& Buffer);

// Lists: -1 where Ctl is another control than the helper is for. An item's text ends at a character
// 0.
Long LS_Find(const Object<IDispatch>& Ctl, const Text& Value, Long StartItem, Boolean Exact);
Long LS_GetItemHeight(const Object<IDispatch>& Ctl);
Long LS_SetItemHeight(const Object<IDispatch>& Ctl, Long Height);
// One stop is sent as a number, not as a list of one. Run-time error 9 for an array that is not
// allocated.
Long LS_SetTabStops(const Object<IDispatch>& Ctl, const Array<Long>& TabStops);
// The list box is sent the address of the pair, not the pair.
Long LS_SelItemRange(const Object<IDispatch>& Ctl, Long iFirst, Long& iLast, Long Flag);
Long LS_SelectAll(const Object<IDispatch>& Ctl, Long Flag);
void LS_RedrawOn(const Object<IDispatch>& Ctl);
void LS_RedrawOff(const Object<IDispatch>& Ctl);
Long LS_InsertItem(const Object<IDispatch>& Ctl, Long ItemNo, const Text& ItemStr, Long ItemData,
                   Boolean Sorted);
Long LS_GetSelItems(const Object<IDispatch>& Ctl, Array<Long>& SelList);
Long LS_GetItemRect(const Object<IDispatch>& Ctl, const Object<_QvtRect>& lpRect, Long ItemNo);
Long LS_GetIndexFromData(const Object<IDispatch>& Ctl, Long ItemData);

// Combo boxes.
Long CB_DropDownCheck(const Object<IDispatch>& Ctl);
void CB_DropDownClose(const Object<IDispatch>& Ctl);
void CB_DropDownOpen(const Object<IDispatch>& Ctl);
Long CB_MaxLenght(const Object<IDispatch>& Ctl, Long MaxLen);

// Any control. Colours that can't be read both, or not be set, stay.
void CT_InvertColors(const Object<IDispatch>& Ctl);
// In twips. -1 where there is no such window; a control without "BorderStyle" has no border.
// Run-time error 6 past an Integer.
void CT_ScreenPos(const Object<IDispatch>& Ctl, Integer& Lft, Integer& Top);
// A check box.
void BC_SetReadOnly(const Object<IDispatch>& Ctl, Boolean Flag);
// True = failure. Where the object holds no toolbar window, nothing is done and nothing fails.
Boolean ToolBarFlat(const Object<IDispatch>& Tlbr, Boolean ListStyle);
void ShowFloating(const Object<IDispatch>& frm, Integer Flag);
void MessageBeep(Long uAlert);

}  // namespace qv::ui
