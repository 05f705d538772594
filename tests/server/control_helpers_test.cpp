// The helpers for controls of any kind, check boxes, toolbars and forms.
#include <windows.h>
// commctrl.h needs windows.h before it.
#include <commctrl.h>

#include <cmath>

#include "server/control.h"
#include "server/import_patch.h"

namespace qv::tests {
namespace {

class ControlHelpers : public testing::Test {
 protected:
  Pointer<_KwRtLib> global = create_global();

  LONG error_number() {
    LONG number = 0;
    global->Error_Number(&number);
    return number;
  }
  std::wstring error_source() {
    String source;
    global->Error_Source(&source);
    return std::wstring(source.view());
  }
};

TEST_F(ControlHelpers, CT_InvertColors_swaps_the_two_colours) {
  Control control{L"Static", 0};
  control.form().define(L"BackColor", Value(0xFFFFFF));
  control.form().define(L"ForeColor", Value(0x0000FF));
  EXPECT_EQ(global->CT_InvertColors(control.object()), S_OK);
  EXPECT_EQ(control.form().number(L"BackColor"), 0x0000FF);
  EXPECT_EQ(control.form().number(L"ForeColor"), 0xFFFFFF);
  EXPECT_EQ(global->CT_InvertColors(control.object()), S_OK);
  EXPECT_EQ(control.form().number(L"BackColor"), 0xFFFFFF);
  EXPECT_EQ(control.form().refreshes(), 0);
}

TEST_F(ControlHelpers, CT_InvertColors_passes_errors_over) {
  Control one_colour{L"Static", 0};
  one_colour.form().define(L"ForeColor", Value(5));
  EXPECT_EQ(global->CT_InvertColors(one_colour.object()), S_OK);
  EXPECT_EQ(one_colour.form().number(L"ForeColor"), 5);
  Control windowless{nullptr};
  EXPECT_EQ(global->CT_InvertColors(windowless.object()), S_OK);
  IDispatch* nothing = nullptr;
  EXPECT_EQ(global->CT_InvertColors(&nothing), S_OK);
  EXPECT_EQ(error_number(), 0);
}

POINT twips_at(LONG x, LONG y) {
  const HDC screen = GetDC(nullptr);
  const double per_x = 1440.0 / GetDeviceCaps(screen, LOGPIXELSX);
  const double per_y = 1440.0 / GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return {std::lrint(x * per_x), std::lrint(y * per_y)};
}

TEST_F(ControlHelpers, CT_ScreenPos_is_the_inside_of_the_control_in_twips) {
  Control control{CreateWindowExW(0, L"Static", L"", WS_POPUP, 100, 150, 50, 50, nullptr, nullptr,
                                  nullptr, nullptr)};
  SHORT left = 0;
  SHORT top = 0;
  EXPECT_EQ(global->CT_ScreenPos(control.object(), &left, &top), S_OK);
  EXPECT_EQ(left, twips_at(100, 150).x);
  EXPECT_EQ(top, twips_at(100, 150).y);
  control.form().define(L"BorderStyle", Value(0));
  EXPECT_EQ(global->CT_ScreenPos(control.object(), &left, &top), S_OK);
  EXPECT_EQ(left, twips_at(100, 150).x);
  control.form().define(L"BorderStyle", Value(1));
  EXPECT_EQ(global->CT_ScreenPos(control.object(), &left, &top), S_OK);
  EXPECT_EQ(left, twips_at(99, 149).x);
  EXPECT_EQ(top, twips_at(99, 149).y);
}

TEST_F(ControlHelpers, CT_ScreenPos_without_a_window_is_minus_1) {
  SHORT left = 5;
  SHORT top = 5;
  Control windowless{nullptr};
  EXPECT_EQ(global->CT_ScreenPos(windowless.object(), &left, &top), S_OK);
  EXPECT_EQ(left, -1);
  EXPECT_EQ(top, -1);
  Control gone{L"Static", 0};
  DestroyWindow(gone.window());
  left = top = 5;
  EXPECT_EQ(global->CT_ScreenPos(gone.object(), &left, &top), S_OK);
  EXPECT_EQ(left, -1);
  EXPECT_EQ(top, -1);
  IDispatch* nothing = nullptr;
  left = top = 5;
  EXPECT_EQ(global->CT_ScreenPos(&nothing, &left, &top), S_OK);
  EXPECT_EQ(left, -1);
  EXPECT_EQ(top, -1);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ControlHelpers, CT_ScreenPos_past_an_Integer_raises_6) {
  Control control{CreateWindowExW(0, L"Static", L"", WS_POPUP, 10, 3000, 50, 50, nullptr, nullptr,
                                  nullptr, nullptr)};
  SHORT left = 5;
  SHORT top = 5;
  EXPECT_EQ(global->CT_ScreenPos(control.object(), &left, &top), error_result(6));
  EXPECT_EQ(left, 5);
  EXPECT_EQ(top, 5);
}

TEST_F(ControlHelpers, CT_ScreenPos_passes_an_error_of_BorderStyle_on) {
  Control control{L"Static", 0};
  control.form().define(L"BorderStyle", Value(0));
  control.form().fail(L"BorderStyle");
  SHORT left = 5;
  SHORT top = 5;
  EXPECT_EQ(global->CT_ScreenPos(control.object(), &left, &top),
            error_result(FormControl::kFailureNumber));
}

TEST_F(ControlHelpers, BC_SetReadOnly_takes_away_and_gives_back_the_automatic_check) {
  Control box{L"Button", BS_AUTOCHECKBOX};
  box.form().define(L"Alignment", Value(0));
  VARIANT_BOOL flag = VARIANT_TRUE;
  EXPECT_EQ(global->BC_SetReadOnly(box.object(), &flag), S_OK);
  EXPECT_EQ(GetWindowLongW(box.window(), GWL_STYLE) & 0xFF, BS_CHECKBOX);
  box.send(BM_CLICK);
  EXPECT_EQ(box.send(BM_GETCHECK), BST_UNCHECKED);
  flag = VARIANT_FALSE;
  EXPECT_EQ(global->BC_SetReadOnly(box.object(), &flag), S_OK);
  EXPECT_EQ(GetWindowLongW(box.window(), GWL_STYLE) & 0xFF, BS_AUTOCHECKBOX);
  box.send(BM_CLICK);
  EXPECT_EQ(box.send(BM_GETCHECK), BST_CHECKED);
  EXPECT_EQ(box.form().refreshes(), 0);
}

TEST_F(ControlHelpers, BC_SetReadOnly_keeps_the_text_on_its_side) {
  Control box{L"Button", BS_AUTOCHECKBOX | BS_LEFTTEXT};
  box.form().define(L"Alignment", Value(1));
  const MessageWatch watch(box.window(), BM_SETSTYLE);
  VARIANT_BOOL flag = VARIANT_TRUE;
  EXPECT_EQ(global->BC_SetReadOnly(box.object(), &flag), S_OK);
  flag = VARIANT_FALSE;
  EXPECT_EQ(global->BC_SetReadOnly(box.object(), &flag), S_OK);
  ASSERT_EQ(watch.seen().size(), 2U);
  EXPECT_EQ(watch.seen()[0].word, 34U);
  EXPECT_EQ(watch.seen()[1].word, 35U);
}

TEST_F(ControlHelpers, BC_SetReadOnly_passes_errors_on) {
  VARIANT_BOOL flag = VARIANT_TRUE;
  Control box{L"Button", BS_AUTOCHECKBOX};
  EXPECT_EQ(global->BC_SetReadOnly(box.object(), &flag), error_result(438));
  Control windowless{nullptr};
  windowless.form().define(L"Alignment", Value(0));
  EXPECT_EQ(global->BC_SetReadOnly(windowless.object(), &flag), error_result(438));
  IDispatch* nothing = nullptr;
  EXPECT_EQ(global->BC_SetReadOnly(&nothing, &flag), error_result(91));
}

// A toolbar control: a window with a bar of the system inside.
class ToolBar : public ControlHelpers {
 protected:
  LONG style() const { return static_cast<LONG>(SendMessageW(bar, TB_GETSTYLE, 0, 0)); }

  // Makes the class of the bars known.
  const HMODULE library = LoadLibraryW(L"comctl32.dll");
  Control holder{L"Static", 0};
  HWND bar = CreateWindowExW(0, L"ToolbarWindow32", L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 30,
                             holder.window(), nullptr, nullptr, nullptr);
};

TEST_F(ToolBar, ToolBarFlat_turns_on_flat_buttons_and_all_upper_styles) {
  const MessageWatch watch(bar, TB_SETSTYLE);
  const LONG before = style();
  VARIANT_BOOL list = VARIANT_FALSE;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->ToolBarFlat(holder.object(), &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  ASSERT_EQ(watch.seen().size(), 1U);
  const auto expected = before | 0x800 | 0x40 | -32768;
  EXPECT_EQ(static_cast<LONG>(watch.seen()[0].value), expected);
  EXPECT_EQ(style() & 0x840, 0x840);
  EXPECT_EQ(style() & TBSTYLE_LIST, 0);
  EXPECT_EQ(holder.form().refreshes(), 1);
}

TEST_F(ToolBar, ToolBarFlat_puts_text_beside_the_images_when_asked) {
  VARIANT_BOOL list = VARIANT_TRUE;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->ToolBarFlat(holder.object(), &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(style() & TBSTYLE_LIST, TBSTYLE_LIST);
}

TEST_F(ToolBar, ToolBarFlat_by_default_puts_no_text_beside) {
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->ToolBarFlat(holder.object(), nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(style() & TBSTYLE_LIST, 0);
}

TEST_F(ToolBar, ToolBarFlat_of_an_object_without_a_bar_does_nothing) {
  Control empty{L"Static", 0};
  VARIANT_BOOL list = VARIANT_FALSE;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->ToolBarFlat(empty.object(), &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(empty.form().refreshes(), 1);
}

TEST_F(ToolBar, ToolBarFlat_records_errors_and_gives_True) {
  VARIANT_BOOL list = VARIANT_FALSE;
  VARIANT_BOOL failed = VARIANT_FALSE;
  Control windowless{nullptr};
  EXPECT_EQ(global->ToolBarFlat(windowless.object(), &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_number(), 438);
  EXPECT_EQ(error_source(), L"KwRtLibMod.ToolBarFlat");
  global->Reset_Error();
  IDispatch* nothing = nullptr;
  failed = VARIANT_FALSE;
  EXPECT_EQ(global->ToolBarFlat(&nothing, &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_number(), 91);
  global->Reset_Error();
  holder.form().fail(L"Refresh");
  failed = VARIANT_FALSE;
  EXPECT_EQ(global->ToolBarFlat(holder.object(), &list, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(error_number(), FormControl::kFailureNumber);
  global->Reset_Error();
}

TEST_F(ControlHelpers, ShowFloating_shows_a_form_in_front_and_clearing_it_hides_the_form) {
  Control form{CreateWindowExW(0, L"Static", L"", WS_POPUP, 30, 40, 50, 60, nullptr, nullptr,
                               nullptr, nullptr)};
  const auto is_topmost = [&] {
    return (GetWindowLongW(form.window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  };
  for (const SHORT flag : {SHORT{1}, SHORT{0}, SHORT{-1}, SHORT{0}}) {
    EXPECT_EQ(global->ShowFloating(form.object(), flag), S_OK);
    EXPECT_EQ(IsWindowVisible(form.window()) != FALSE, flag != 0);
    EXPECT_EQ(is_topmost(), flag != 0);
    RECT place{};
    GetWindowRect(form.window(), &place);
    EXPECT_EQ(place.left, 30);
    EXPECT_EQ(place.top, 40);
    EXPECT_EQ(place.right, 80);
    EXPECT_EQ(place.bottom, 100);
  }
  EXPECT_EQ(form.form().refreshes(), 0);
}

TEST_F(ControlHelpers, ShowFloating_of_a_form_without_a_window_raises_438_and_Nothing_91) {
  Control windowless{nullptr};
  EXPECT_EQ(global->ShowFloating(windowless.object(), 1), error_result(438));
  IDispatch* nothing = nullptr;
  EXPECT_EQ(global->ShowFloating(&nothing, 1), error_result(91));
}

TEST_F(ControlHelpers, A_window_that_is_gone_is_no_failure) {
  Control gone{L"Static", 0};
  gone.form().define(L"Alignment", Value(0));
  DestroyWindow(gone.window());
  VARIANT_BOOL flag = VARIANT_TRUE;
  EXPECT_EQ(global->BC_SetReadOnly(gone.object(), &flag), S_OK);
  EXPECT_EQ(global->ShowFloating(gone.object(), 1), S_OK);
  EXPECT_EQ(global->ShowFloating(gone.object(), 0), S_OK);
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->ToolBarFlat(gone.object(), &flag, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(gone.form().refreshes(), 1);
  EXPECT_EQ(error_number(), 0);
}

std::vector<UINT> beeps;
BOOL WINAPI take_beep(UINT sound) {
  beeps.push_back(sound);
  return TRUE;
}

TEST_F(ControlHelpers, MessageBeep_knows_four_sounds_and_plays_the_plain_one_otherwise) {
  const ImportPatch patch("MessageBeep", take_beep);
  ASSERT_TRUE(patch.is_in_place());
  beeps.clear();
  for (const LONG alert : {1, 16, 32, 48, 64, 0, -1, 17}) {
    EXPECT_EQ(global->MessageBeep(alert), S_OK);
  }
  constexpr UINT kPlain = 0xFFFFFFFF;
  EXPECT_EQ(beeps, (std::vector<UINT>{1, 16, 32, 48, kPlain, kPlain, kPlain, kPlain}));
}

}  // namespace
}  // namespace qv::tests
