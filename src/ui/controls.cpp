// The helpers for combo boxes' lists, check boxes, toolbars, forms and controls of any kind.
#include <windows.h>
// commctrl.h needs windows.h before it.
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <optional>

#include "automation/late_bound.h"
#include "frame/error_state.h"
#include "ui/control_helpers.h"
#include "ui/control_window.h"

namespace qv::ui {
namespace {

using frame::attempt;

void show_list(const Object<IDispatch>& control, BOOL open) {
  if (!is_combo_box(control)) return;
  send(window_of(control), CB_SHOWDROPDOWN, static_cast<WPARAM>(open));
  refresh(control);
}

// Where the inside of the control's window begins on the screen, in pixels.
std::optional<POINT> screen_corner(const Object<IDispatch>& control) {
  POINT corner{};
  bool found = false;
  attempt([&] {
    const HWND window = window_of(control);
    found = IsWindow(window) != FALSE && ClientToScreen(window, &corner) != FALSE;
    capture_last_dll_error();
  });
  err().forget_error();
  return found ? std::optional(corner) : std::nullopt;
}

bool has_border(const Object<IDispatch>& control) {
  return late_bound::has_member(control, L"BorderStyle") &&
         late_bound::get(control, L"BorderStyle").to_long() != 0;
}

Integer twips(Long pixels, int resolution) {
  constexpr Single kTwipsPerInch = 1440;
  const HDC screen = GetDC(nullptr);
  const Single per_pixel = kTwipsPerInch / static_cast<Single>(GetDeviceCaps(screen, resolution));
  ReleaseDC(nullptr, screen);
  return Variant(static_cast<Single>(pixels) * per_pixel).to_integer();
}

}  // namespace

Long CB_DropDownCheck(const Object<IDispatch>& Ctl) {
  return is_combo_box(Ctl) ? send(window_of(Ctl), CB_GETDROPPEDSTATE) : 0;
}

void CB_DropDownClose(const Object<IDispatch>& Ctl) { show_list(Ctl, FALSE); }

void CB_DropDownOpen(const Object<IDispatch>& Ctl) { show_list(Ctl, TRUE); }

Long CB_MaxLenght(const Object<IDispatch>& Ctl, Long MaxLen) {
  if (!is_combo_box(Ctl)) return -1;
  return send(window_of(Ctl), CB_LIMITTEXT, static_cast<WPARAM>(MaxLen)) - 1;
}

void CT_InvertColors(const Object<IDispatch>& Ctl) {
  attempt([&] {
    const Variant back = late_bound::get(Ctl, L"BackColor");
    const Variant fore = late_bound::get(Ctl, L"ForeColor");
    attempt([&] { late_bound::put(Ctl, L"BackColor", fore); });
    late_bound::put(Ctl, L"ForeColor", back);
  });
  err().forget_error();
}

void CT_ScreenPos(const Object<IDispatch>& Ctl, Integer& Lft, Integer& Top) {
  const auto corner = screen_corner(Ctl);
  if (!corner) {
    Lft = -1;
    Top = -1;
    return;
  }
  const Long border = has_border(Ctl) ? 1 : 0;
  const Integer left = twips(corner->x - border, LOGPIXELSX);
  const Integer top = twips(corner->y - border, LOGPIXELSY);
  Lft = left;
  Top = top;
}

void BC_SetReadOnly(const Object<IDispatch>& Ctl, Boolean Flag) {
  const HWND window = window_of(Ctl);
  const bool text_is_left = late_bound::get(Ctl, L"Alignment").to_long() != 0;
  const Long style = (Flag ? BS_CHECKBOX : BS_AUTOCHECKBOX) | (text_is_left ? BS_LEFTTEXT : 0);
  send(window, BM_SETSTYLE, static_cast<WPARAM>(style), LPARAM{TRUE});
}

Boolean ToolBarFlat(const Object<IDispatch>& Tlbr, Boolean ListStyle) {
  return frame::handled(L"KwRtLibMod.ToolBarFlat", frame::kTakeError, True, [&] {
    // Behind the two styles that are meant, all that a 16-bit -32768 sets in 32 bits.
    constexpr Long kFlatStyles = TBSTYLE_FLAT | CCS_NODIVIDER | -32768;
    const HWND bar = FindWindowExW(window_of(Tlbr), nullptr, TOOLBARCLASSNAMEW, nullptr);
    capture_last_dll_error();
    const Long style = send(bar, TB_GETSTYLE) | kFlatStyles | (ListStyle ? TBSTYLE_LIST : 0);
    send(bar, TB_SETSTYLE, 0, LPARAM{style});
    refresh(Tlbr);
    return False;
  });
}

void ShowFloating(const Object<IDispatch>& frm, Integer Flag) {
  constexpr UINT kInPlace = SWP_NOSIZE | SWP_NOMOVE;
  SetWindowPos(window_of(frm), Flag != 0 ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               kInPlace | (Flag != 0 ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
  capture_last_dll_error();
}

void MessageBeep(Long uAlert) {
  constexpr std::array<Long, 4> kSounds = {MB_OKCANCEL, MB_ICONHAND, MB_ICONQUESTION,
                                           MB_ICONEXCLAMATION};
  const bool known = std::ranges::find(kSounds, uAlert) != kSounds.end();
  ::MessageBeep(static_cast<UINT>(known ? uAlert : -1));
  capture_last_dll_error();
}

}  // namespace qv::ui
