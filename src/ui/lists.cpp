// The helpers for list boxes and combo boxes.
#include <windows.h>

#include <vector>

#include "automation/foreign_error.h"
#include "automation/late_bound.h"
#include "text/codecs.h"
#include "ui/control_helpers.h"
#include "ui/control_window.h"

namespace qv::ui {
namespace {

constexpr Long kFailure = -1;

struct ListMessages {
  UINT find;
  UINT find_exact;
  UINT get_item_height;
  UINT set_item_height;
  UINT insert;
  UINT add;
  UINT set_item_data;
};
constexpr ListMessages kComboBoxMessages = {CB_FINDSTRING,    CB_FINDSTRINGEXACT, CB_GETITEMHEIGHT,
                                            CB_SETITEMHEIGHT, CB_INSERTSTRING,    CB_ADDSTRING,
                                            CB_SETITEMDATA};
constexpr ListMessages kListBoxMessages = {LB_FINDSTRING,    LB_FINDSTRINGEXACT, LB_GETITEMHEIGHT,
                                           LB_SETITEMHEIGHT, LB_INSERTSTRING,    LB_ADDSTRING,
                                           LB_SETITEMDATA};

// Null where the control is neither.
const ListMessages* messages_of(const Object<IDispatch>& control) {
  if (is_combo_box(control)) return &kComboBoxMessages;
  return is_list_box(control) ? &kListBoxMessages : nullptr;
}

Long list_count(const Object<IDispatch>& control) {
  return late_bound::get(control, L"ListCount").to_long();
}

void set_redraw(const Object<IDispatch>& control, BOOL on) {
  if (is_list_box(control)) send(window_of(control), WM_SETREDRAW, static_cast<WPARAM>(on));
}

std::vector<Long> in_dialog_units(const Array<Long>& pixels) {
  const Single unit = LOWORD(GetDialogBaseUnits()) / 4.0F;
  if (unit == 0) raise(kDivisionByZero);
  std::vector<Long> units;
  const auto elements = pixels.lock();
  units.reserve(elements.size());
  for (const Long stop : elements) units.push_back(Variant(stop / Double{unit}).to_long());
  return units;
}

}  // namespace

Long LS_Find(const Object<IDispatch>& Ctl, const Text& Value, Long StartItem, Boolean Exact) {
  const ListMessages* messages = messages_of(Ctl);
  if (messages == nullptr) return kFailure;
  return send(window_of(Ctl), Exact ? messages->find_exact : messages->find,
              static_cast<WPARAM>(StartItem), Value.c_str());
}

Long LS_GetItemHeight(const Object<IDispatch>& Ctl) {
  const ListMessages* messages = messages_of(Ctl);
  return messages == nullptr ? kFailure : send(window_of(Ctl), messages->get_item_height);
}

Long LS_SetItemHeight(const Object<IDispatch>& Ctl, Long Height) {
  const ListMessages* messages = messages_of(Ctl);
  if (messages == nullptr) return kFailure;
  const Long answer = send(window_of(Ctl), messages->set_item_height, 0, LPARAM{Height});
  refresh(Ctl);
  return answer;
}

Long LS_SetTabStops(const Object<IDispatch>& Ctl, const Array<Long>& TabStops) {
  if (!is_list_box(Ctl)) return kFailure;
  const auto stops = in_dialog_units(TabStops);
  const HWND window = window_of(Ctl);
  // Programs that pass a single stop rely on the number itself going out.
  if (stops.size() == 1) return send(window, LB_SETTABSTOPS, 1, LPARAM{stops[0]});
  return send(window, LB_SETTABSTOPS, stops.size(), stops.data());
}

Long LS_SelItemRange(const Object<IDispatch>& Ctl, Long iFirst, Long& iLast, Long Flag) {
  if (!is_list_box(Ctl)) return kFailure;
  if (iLast < 0) iLast = list_count(Ctl) - 1;
  const Long pair = text::Make_Long(Variant(iFirst).to_integer(), Variant(iLast).to_integer());
  const Long answer = send(window_of(Ctl), LB_SELITEMRANGE, static_cast<WPARAM>(Flag), &pair);
  refresh(Ctl);
  return answer;
}

Long LS_SelectAll(const Object<IDispatch>& Ctl, Long Flag) {
  constexpr LPARAM kAllItems = -1;
  if (!is_list_box(Ctl)) return kFailure;
  const Long answer = send(window_of(Ctl), LB_SETSEL, Flag != 0 ? TRUE : FALSE, kAllItems);
  refresh(Ctl);
  return answer;
}

void LS_RedrawOn(const Object<IDispatch>& Ctl) { set_redraw(Ctl, TRUE); }

void LS_RedrawOff(const Object<IDispatch>& Ctl) { set_redraw(Ctl, FALSE); }

Long LS_InsertItem(const Object<IDispatch>& Ctl, Long ItemNo, const Text& ItemStr, Long ItemData,
                   Boolean Sorted) {
  const ListMessages* messages = messages_of(Ctl);
  if (messages == nullptr) return kFailure;
  const HWND window = window_of(Ctl);
  // ItemNo chooses the message alone: an inserted item goes to the top.
  const UINT store = ItemNo >= 0 && !Sorted ? messages->insert : messages->add;
  Long answer = send(window, store, 0, ItemStr.c_str());
  if (answer >= 0) {
    answer = send(window, messages->set_item_data, static_cast<WPARAM>(answer), LPARAM{ItemData});
  }
  refresh(Ctl);
  return answer;
}

Long LS_GetSelItems(const Object<IDispatch>& Ctl, Array<Long>& SelList) {
  const HWND window = window_of(Ctl);
  const Long count = send(window, LB_GETSELCOUNT);
  if (count == 0 || count == LB_ERR) {
    SelList.redimension(1, 1);
    SelList.lock()[0] = -1;
    return 0;
  }
  if (count < 0) raise(kSubscriptOutOfRange);
  SelList.redimension(1, static_cast<std::size_t>(count));
  send(window, LB_GETSELITEMS, static_cast<WPARAM>(count), SelList.lock().begin());
  return count;
}

Long LS_GetItemRect(const Object<IDispatch>& Ctl, const Object<_QvtRect>& lpRect, Long ItemNo) {
  if (!is_list_box(Ctl)) return kFailure;
  RECT area{};
  const Long answer = send(window_of(Ctl), LB_GETITEMRECT, static_cast<WPARAM>(ItemNo), &area);
  check_foreign(lpRect, lpRect->put_RcLeft(area.left));
  check_foreign(lpRect, lpRect->put_RcTop(area.top));
  check_foreign(lpRect, lpRect->put_RcRight(area.right));
  check_foreign(lpRect, lpRect->put_RcBottom(area.bottom));
  return answer;
}

Long LS_GetIndexFromData(const Object<IDispatch>& Ctl, Long ItemData) {
  const Long count = list_count(Ctl);
  for (Long index = 0; index < count; ++index) {
    if (late_bound::get(Ctl, L"ItemData", {index}).to_long() == ItemData) return index;
  }
  return kFailure;
}

}  // namespace qv::ui
