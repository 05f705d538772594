// Measures and colours against the system's own answers.
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "server/error_record_client.h"
#include "server/import_patch.h"

namespace qv::tests {
namespace {

constexpr SHORT kOld = -77;

class SystemMetrics : public WithErrorRecord {
 protected:
  template <class Number>
  using Member = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(Number*);

  template <class Number>
  int ask(Member<Number> member) {
    Number answer = kOld;
    EXPECT_EQ((global_.get()->*member)(&answer), S_OK);
    return answer;
  }
  LONG border_height(LONG style) {
    LONG answer = kOld;
    EXPECT_EQ(global_->Border_Height(&style, &answer), S_OK);
    return answer;
  }
  LONG border_width(LONG style) {
    LONG answer = kOld;
    EXPECT_EQ(global_->Border_Width(&style, &answer), S_OK);
    return answer;
  }
  bool screen_saver_is_active() {
    VARIANT_BOOL active = 1;
    EXPECT_EQ(global_->Get_ScreenSaverStatus(&active), S_OK);
    EXPECT_TRUE(active == VARIANT_TRUE || active == VARIANT_FALSE);
    return active == VARIANT_TRUE;
  }
  void set_screen_saver(bool mode) {
    VARIANT_BOOL flag = mode ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->Set_ScreenSaverStatus(&flag, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
  }
};

TEST_F(SystemMetrics, that_are_Long_are_the_system_s) {
  const std::pair<Member<LONG>, int> members[] = {
      {&_KwRtLib::CaptionSmall_Height, 51},      {&_KwRtLib::CaptionButton_Width, 30},
      {&_KwRtLib::CaptionButton_Height, 31},     {&_KwRtLib::CaptionSmallButton_Height, 53},
      {&_KwRtLib::CaptionSmallButton_Width, 52}, {&_KwRtLib::Minimized_Width, 57},
      {&_KwRtLib::Minimized_Height, 58}};
  for (const auto& [member, index] : members) {
    EXPECT_EQ(ask(member), GetSystemMetrics(index)) << index;
    EXPECT_GT(ask(member), 0) << index;
  }
}

TEST_F(SystemMetrics, that_are_Integer_are_the_system_s) {
  const std::pair<Member<SHORT>, int> members[] = {
      {&_KwRtLib::Caption_Height, 4},          {&_KwRtLib::ControlBox_BitmapHeight, 31},
      {&_KwRtLib::ControlBox_BitmapWidth, 30}, {&_KwRtLib::HScroll_BitmapHeight, 3},
      {&_KwRtLib::HScroll_BitmapWidth, 21},    {&_KwRtLib::HScroll_ThumbWidth, 10},
      {&_KwRtLib::VScroll_BitmapHeight, 20},   {&_KwRtLib::VScroll_BitmapWidth, 2},
      {&_KwRtLib::VScroll_ThumbHeight, 9},     {&_KwRtLib::Menu_Height, 15}};
  for (const auto& [member, index] : members) {
    EXPECT_EQ(ask(member), GetSystemMetrics(index)) << index;
    EXPECT_GT(ask(member), 0) << index;
  }
}

TEST_F(SystemMetrics, follow_what_the_user_sets) {
  NONCLIENTMETRICSW before{};
  before.cbSize = sizeof before;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof before, &before, 0));
  NONCLIENTMETRICSW changed = before;
  changed.iCaptionHeight = 31;
  changed.iCaptionWidth = 32;
  changed.iSmCaptionHeight = 33;
  changed.iSmCaptionWidth = 34;
  changed.iMenuHeight = 35;
  changed.iScrollWidth = 36;
  changed.iScrollHeight = 37;
  ASSERT_TRUE(SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof changed, &changed, 0));
  EXPECT_EQ(ask(&_KwRtLib::Caption_Height), GetSystemMetrics(SM_CYCAPTION));
  EXPECT_EQ(ask(&_KwRtLib::ControlBox_BitmapHeight), 31);
  EXPECT_EQ(ask(&_KwRtLib::ControlBox_BitmapWidth), 32);
  EXPECT_EQ(ask(&_KwRtLib::CaptionButton_Height), 31);
  EXPECT_EQ(ask(&_KwRtLib::CaptionButton_Width), 32);
  EXPECT_EQ(ask(&_KwRtLib::CaptionSmall_Height), GetSystemMetrics(SM_CYSMCAPTION));
  EXPECT_EQ(ask(&_KwRtLib::CaptionSmallButton_Height), 33);
  EXPECT_EQ(ask(&_KwRtLib::CaptionSmallButton_Width), 34);
  EXPECT_EQ(ask(&_KwRtLib::Menu_Height), GetSystemMetrics(SM_CYMENU));
  EXPECT_EQ(ask(&_KwRtLib::VScroll_BitmapWidth), 36);
  EXPECT_EQ(ask(&_KwRtLib::HScroll_BitmapHeight), GetSystemMetrics(SM_CYHSCROLL));
  EXPECT_TRUE(SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof before, &before, 0));
}

TEST_F(SystemMetrics, of_borders_go_by_the_form_s_style) {
  for (const auto& [style, height, width] :
       {std::tuple{1, SM_CYBORDER, SM_CXBORDER}, std::tuple{2, SM_CYFRAME, SM_CXFRAME},
        std::tuple{3, SM_CYDLGFRAME, SM_CXDLGFRAME}, std::tuple{4, SM_CYDLGFRAME, SM_CXDLGFRAME},
        std::tuple{5, SM_CYFRAME, SM_CXFRAME}}) {
    EXPECT_EQ(border_height(style), GetSystemMetrics(height));
    EXPECT_EQ(border_width(style), GetSystemMetrics(width));
    EXPECT_GT(border_height(style), 0);
  }
}

TEST_F(SystemMetrics, of_no_border_are_0) {
  for (const LONG style : {0L, 6L, -1L, std::numeric_limits<LONG>::min()}) {
    EXPECT_EQ(border_height(style), 0);
    EXPECT_EQ(border_width(style), 0);
  }
}

TEST_F(SystemMetrics, of_a_double_click_fill_two_variables) {
  const int before_width = GetSystemMetrics(SM_CXDOUBLECLK);
  const int before_height = GetSystemMetrics(SM_CYDOUBLECLK);
  SHORT width = kOld;
  SHORT height = kOld;
  EXPECT_EQ(global_->DblClick_Rect(&width, &height), S_OK);
  EXPECT_EQ(width, before_width);
  EXPECT_EQ(height, before_height);
  SystemParametersInfoW(SPI_SETDOUBLECLKWIDTH, 7, nullptr, 0);
  SystemParametersInfoW(SPI_SETDOUBLECLKHEIGHT, 9, nullptr, 0);
  EXPECT_EQ(global_->DblClick_Rect(&width, &height), S_OK);
  EXPECT_EQ(width, 7);
  EXPECT_EQ(height, 9);
  SystemParametersInfoW(SPI_SETDOUBLECLKWIDTH, static_cast<UINT>(before_width), nullptr, 0);
  SystemParametersInfoW(SPI_SETDOUBLECLKHEIGHT, static_cast<UINT>(before_height), nullptr, 0);
}

TEST_F(SystemMetrics, of_colour_are_the_system_s) {
  const std::pair<Member<LONG>, int> members[] = {{&_KwRtLib::BorderActive_BackColor, 10},
                                                  {&_KwRtLib::BorderInActive_BackColor, 11},
                                                  {&_KwRtLib::CaptionActive_BackColor, 2},
                                                  {&_KwRtLib::CaptionActive_ForeColor, 9},
                                                  {&_KwRtLib::CaptionInActive_BackColor, 3},
                                                  {&_KwRtLib::CaptionInActive_ForeColor, 19},
                                                  {&_KwRtLib::Frame_BackColor, 6},
                                                  {&_KwRtLib::Menu_BackColor, 4},
                                                  {&_KwRtLib::Menu_ForeColor, 7},
                                                  {&_KwRtLib::Scroll_BackColor, 0},
                                                  {&_KwRtLib::TextGray_ForeColor, 17},
                                                  {&_KwRtLib::TextHigh_BackColor, 13},
                                                  {&_KwRtLib::TextHigh_ForeColor, 14}};
  std::vector<int> indices;
  std::vector<COLORREF> before;
  std::vector<COLORREF> distinct;
  for (const auto& [member, index] : members) {
    EXPECT_EQ(ask(member), static_cast<LONG>(GetSysColor(index))) << index;
    indices.push_back(index);
    before.push_back(GetSysColor(index));
    distinct.push_back(RGB(200 + index, 2 * index, 255 - index));
  }
  const int count = static_cast<int>(indices.size());
  ASSERT_TRUE(SetSysColors(count, indices.data(), distinct.data()));
  for (const auto& [member, index] : members) {
    EXPECT_EQ(ask(member), static_cast<LONG>(RGB(200 + index, 2 * index, 255 - index))) << index;
  }
  EXPECT_TRUE(SetSysColors(count, indices.data(), before.data()));
}

TEST_F(SystemMetrics, switch_the_screen_saver) {
  BOOL before = FALSE;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETSCREENSAVEACTIVE, 0, &before, 0));
  EXPECT_EQ(screen_saver_is_active(), before != FALSE);
  for (const bool mode : {true, false, true}) {
    set_screen_saver(mode);
    BOOL active = mode ? FALSE : TRUE;
    ASSERT_TRUE(SystemParametersInfoW(SPI_GETSCREENSAVEACTIVE, 0, &active, 0));
    EXPECT_EQ(active != FALSE, mode);
    EXPECT_EQ(screen_saver_is_active(), mode);
  }
  set_screen_saver(before != FALSE);
  expect_no_error();
}

// What the server asks of the system, which refuses it.
struct ParameterCall {
  UINT action;
  UINT value;
  bool has_data;
  UINT flags;
};
std::vector<ParameterCall> parameter_calls;
BOOL WINAPI record_parameters(UINT action, UINT value, void* data, UINT flags) {
  parameter_calls.push_back({action, value, data != nullptr, flags});
  return FALSE;
}

TEST_F(SystemMetrics, tell_the_system_that_a_screen_saver_runs) {
  const ImportPatch patch("SystemParametersInfoW", record_parameters);
  for (const auto& [passed, expected] :
       {std::pair{VARIANT_TRUE, 0u}, std::pair{VARIANT_FALSE, 0xFFFFFFFFu}}) {
    parameter_calls.clear();
    VARIANT_BOOL mode = passed;
    EXPECT_EQ(global_->Taskman_Enable(&mode), S_OK);
    EXPECT_EQ(mode, passed);
    ASSERT_EQ(parameter_calls.size(), 1u);
    EXPECT_EQ(parameter_calls[0].action, 97u);
    EXPECT_EQ(parameter_calls[0].value, expected);
    EXPECT_TRUE(parameter_calls[0].has_data);
    EXPECT_EQ(parameter_calls[0].flags, 2u);
  }
  expect_no_error();
}

TEST_F(SystemMetrics, take_a_system_s_refusal_for_an_answer) {
  const ImportPatch patch("SystemParametersInfoW", record_parameters);
  parameter_calls.clear();
  set_screen_saver(true);
  EXPECT_FALSE(screen_saver_is_active());
  ASSERT_EQ(parameter_calls.size(), 2u);
  EXPECT_EQ(parameter_calls[0].action, 17u);
  EXPECT_NE(parameter_calls[0].value, 0u);
  EXPECT_FALSE(parameter_calls[0].has_data);
  EXPECT_EQ(parameter_calls[0].flags, 2u);
  EXPECT_EQ(parameter_calls[1].action, 16u);
  EXPECT_TRUE(parameter_calls[1].has_data);
  EXPECT_EQ(parameter_calls[1].flags, 0u);
  expect_no_error();
}

}  // namespace
}  // namespace qv::tests
