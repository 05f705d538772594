// The helpers for text boxes.
#include <windows.h>
// richedit.h needs windows.h before it.
#include <richedit.h>

#include <algorithm>

#include "automation/late_bound.h"
#include "runtime/characters.h"
#include "runtime/err.h"
#include "ui/control_helpers.h"
#include "ui/control_window.h"

namespace qv::ui {
namespace {

constexpr Long kCaretLine = -1;

Text letters(Integer count) {
  if (count < 0) raise(kInvalidProcedureCall);
  return Text::filled(static_cast<std::size_t>(count), L'A');
}

SIZE extent(HWND window, const Text& text) {
  SIZE size{};
  const HDC device = GetDC(window);
  capture_last_dll_error();
  if (device == nullptr) return size;
  if (GetTextExtentPoint32W(device, text.c_str(), static_cast<int>(text.size()), &size) == FALSE) {
    size = {};
  }
  capture_last_dll_error();
  ReleaseDC(window, device);
  return size;
}

// Where the selection ends, which is where the caret is without one.
WORD selection_end(HWND window) { return HIWORD(send(window, EM_GETSEL)); }

// Pixels of one unit of a dialog's coordinates.
Long dialog_unit() {
  const Long pixels = LOWORD(GetDialogBaseUnits()) / 4;
  if (pixels == 0) raise(kDivisionByZero);
  return pixels;
}

template <class Record, class Character>
Long find_text(HWND window, Long flags, const Character* text, Long& start, Long& end) {
  Record record{{start, end}, text};
  const Long found = send(window, EM_FINDTEXT, static_cast<WPARAM>(flags), &record);
  start = record.chrg.cpMin;
  end = record.chrg.cpMax;
  return found;
}

}  // namespace

Boolean TX_UndoChk(const Object<IDispatch>& Ctl) { return send(window_of(Ctl), EM_CANUNDO) != 0; }

void TX_Undo(const Object<IDispatch>& Ctl) { send(window_of(Ctl), EM_UNDO); }

void TX_SetWordWrap(const Object<IDispatch>& Ctl, Long AddEOL) {
  send(window_of(Ctl), EM_FMTLINES, static_cast<WPARAM>(AddEOL));
}

void TX_SetTextWidth(const Object<IDispatch>& Ctl, Integer cTab) {
  const HWND window = window_of(Ctl);
  RECT area{};
  send(window, EM_GETRECT, 0, &area);
  area.right = extent(window, letters(cTab)).cx;
  send(window, EM_SETRECT, 0, &area);
  refresh(Ctl);
  // A box is asked what it made of the area, by the last message that it gets.
  send(window, EM_GETRECT, 0, &area);
}

void TX_SetTabStops(const Object<IDispatch>& Ctl, Integer cTab) {
  const HWND window = window_of(Ctl);
  const Long width = extent(window, letters(cTab)).cx;
  if (width <= 0) return;
  const Long distance = width / dialog_unit();
  send(window, EM_SETTABSTOPS, 1, &distance);
  refresh(Ctl);
}

Long TX_GetTextWidth(const Object<IDispatch>& Ctl, const Text& sText) {
  return extent(window_of(Ctl), sText).cx;
}

Long TX_GetTextHeight(const Object<IDispatch>& Ctl, const Text& sText) {
  return extent(window_of(Ctl), sText).cy;
}

Long TX_GetLineNo(const Object<IDispatch>& Ctl) {
  const bool has_selection = late_bound::get(Ctl, L"SelLength").to_long() != 0;
  const HWND window = window_of(Ctl);
  const Long position = has_selection ? selection_end(window) : kCaretLine;
  return send(window, EM_LINEFROMCHAR, static_cast<WPARAM>(position));
}

Long TX_GetColNo(const Object<IDispatch>& Ctl) {
  const HWND window = window_of(Ctl);
  const WORD position = selection_end(window);
  const Long line = send(window, EM_LINEFROMCHAR, position);
  return position - send(window, EM_LINEINDEX, static_cast<WPARAM>(line));
}

Long TX_GetCharPos(const Object<IDispatch>& Ctl, Long LineNo) {
  return send(window_of(Ctl), EM_LINEINDEX, static_cast<WPARAM>(LineNo));
}

Long TX_GetLineCount(const Object<IDispatch>& Ctl) {
  return LOWORD(send(window_of(Ctl), EM_GETLINECOUNT));
}

Long TX_Find(const Object<IDispatch>& Ctl, Long Flags, const Text& SrcText, Long& StartPos,
             Long& EndPos) {
  const HWND window = window_of(Ctl);
  // A message of the control's own, which the system hands over as it is: the text has to be in the
  // window's own form.
  return IsWindowUnicode(window) != FALSE
             ? find_text<FINDTEXTW>(window, Flags, SrcText.c_str(), StartPos, EndPos)
             : find_text<FINDTEXTA>(window, Flags, narrow_text(SrcText).c_str(), StartPos, EndPos);
}

Integer TX_GetLine(const Object<IDispatch>& Ctl, Long LineNo, Text& Buffer) {
  constexpr Integer kNoSuchLine = -1;
  const HWND window = window_of(Ctl);
  Buffer = Text();
  const Long start = send(window, EM_LINEINDEX, static_cast<WPARAM>(LineNo));
  if (start < 0) return kNoSuchLine;
  const Long length = send(window, EM_LINELENGTH, static_cast<WPARAM>(start));
  if (length < 0) return kNoSuchLine;
  if (length > 0) {
    // The first word tells the box how much it may write.
    Text line = Text::filled(static_cast<std::size_t>(length) + 2, L'\r');
    line[0] = static_cast<wchar_t>(Variant(length + 2).to_integer());
    const auto written = static_cast<std::size_t>(
        send(window, EM_GETLINE, static_cast<WPARAM>(LineNo), line.data()));
    const std::wstring_view taken = line.view().substr(0, std::min(written, line.size()));
    Buffer = taken.substr(0, taken.find(L'\r'));
  }
  return 0;
}

}  // namespace qv::ui
