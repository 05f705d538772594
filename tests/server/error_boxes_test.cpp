// The box that shows an error: that of the external form, or else the language's own.
#include <string>
#include <utility>
#include <vector>

#include "server/box_presser.h"
#include "server/error_display_client.h"
#include "server/message_form.h"

namespace qv::tests {
namespace {

using ErrorBoxes = ErrorDisplay;

TEST_F(ErrorBoxes, the_box_shows_text_title_and_icon_and_gives_the_button) {
  set(20000, L"Here", L"Descr");
  BoxPresser presser(IDNO);
  EXPECT_EQ(display(0, Value(L"msg"), Value(MB_YESNO), L"The title"), 7);
  presser.finish();
  EXPECT_EQ(presser.title(), L"The title");
  EXPECT_EQ(presser.text(), L"msg\r\nDescr\r\n[#20000 - Here]");
  EXPECT_EQ(presser.buttons(), 2);
  EXPECT_TRUE(presser.shows_icon(IDI_HAND));
}

TEST_F(ErrorBoxes, a_box_without_error_and_msg_has_a_blank_title_and_the_exclamation_mark) {
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
  EXPECT_EQ(presser.title(), L" ");
  EXPECT_EQ(presser.text(), L"");
  EXPECT_TRUE(presser.shows_icon(IDI_EXCLAMATION));
}

TEST_F(ErrorBoxes, the_short_box_has_the_information_icon) {
  set(20000, L"Here", L"Descr");
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(kShort), 1);
  presser.finish();
  EXPECT_EQ(presser.text(), L"Descr\r\n");
  EXPECT_TRUE(presser.shows_icon(IDI_ASTERISK));
}

TEST_F(ErrorBoxes, title_and_style_recorded_with_the_error_are_used) {
  set(20000, L"Here", L"Descr", 0, L"Recorded", MB_RETRYCANCEL | MB_ICONINFORMATION);
  BoxPresser presser(IDRETRY);
  EXPECT_EQ(display(0), 4);
  presser.finish();
  EXPECT_EQ(presser.title(), L"Recorded");
  EXPECT_EQ(presser.buttons(), 2);
  EXPECT_TRUE(presser.shows_icon(IDI_ASTERISK));
}

TEST_F(ErrorBoxes, a_style_of_0_that_is_given_wins_over_the_recorded_one) {
  set(20000, L"Here", L"Descr", 0, L"", MB_YESNO);
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0, Value::missing(), Value(0)), 1);
  presser.finish();
  EXPECT_EQ(presser.buttons(), 1);
}

TEST_F(ErrorBoxes, showing_resets_the_mouse_pointer) {
  const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
  SetCursor(nullptr);
  EXPECT_EQ(display(kNoShow), 1);
  EXPECT_EQ(GetCursor(), nullptr);
  Value nothing;
  nothing.vt = VT_I4;
  MessageForm form(nothing);
  display(0);
  EXPECT_EQ(GetCursor(), arrow);
}

TEST_F(ErrorBoxes, the_external_form_is_asked_in_order) {
  set(20000, L"Here", L"Descr");
  MessageForm form(Value(4));
  String buffer;
  EXPECT_EQ(display_ex(0, buffer, Value(L"m"), L"app.hlp", L"12"), 4);
  constexpr LONG kStyle = 16 + 65536 + 536870912 + 1073741824;
  EXPECT_EQ(
      form.calls(),
      (std::vector<std::wstring>{
          L"Buttons=" + std::to_wstring(kStyle) + L":3", L"Flags=2:2", L"HelpFile=app.hlp",
          L"HelpId=12", L"Prompt=m\r\nDescr\r\n[#20000 - Here]", L"Title=t", L"QvMessageBox()"}));
}

TEST_F(ErrorBoxes, the_external_form_is_let_go) {
  MessageForm form(Value(1));
  const ULONG before = form.references();
  display(0);
  EXPECT_EQ(form.references(), before);
}

TEST_F(ErrorBoxes, no_saving_and_no_help_have_no_bits) {
  MessageForm form(Value(1));
  display(kNoSave);
  EXPECT_EQ(form.calls()[0], L"Buttons=" + std::to_wstring(48 + 65536) + L":3");
  EXPECT_EQ(form.calls()[5], L"Title= ");
  display(kShort | kNoSave, Value::missing(), Value(MB_ICONHAND));
  EXPECT_EQ(form.calls()[7], L"Buttons=" + std::to_wstring(16 | 64 | 65536) + L":3");
}

TEST_F(ErrorBoxes, what_the_external_form_answers_becomes_a_number) {
  const Value text(L"6");
  MessageForm form(text);
  EXPECT_EQ(display(0), 6);
}

TEST_F(ErrorBoxes, the_language_s_box_takes_over_wherever_the_external_form_fails) {
  for (const wchar_t* member :
       {L"Buttons", L"Flags", L"HelpFile", L"HelpId", L"Prompt", L"Title", L"QvMessageBox"}) {
    MessageForm form(Value(1));
    form.fail_at(member);
    set(20000, L"Here", L"Descr");
    BoxPresser presser(IDIGNORE);
    EXPECT_EQ(display(0, Value::missing(), Value(MB_ABORTRETRYIGNORE), L"x"), 5);
    presser.finish();
    EXPECT_EQ(presser.title(), L"x");
    String source;
    global->Error_Source(&source);
    EXPECT_EQ(source, L"Here");
  }
}

TEST_F(ErrorBoxes, an_answer_that_is_no_number_makes_the_language_s_box_take_over) {
  const Value text(L"none");
  MessageForm form(text);
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
}

struct Style {
  LONG style;
  std::vector<int> buttons;
};

TEST_F(ErrorBoxes, every_button_of_every_style_gives_its_number) {
  const std::vector<Style> styles = {{MB_OK, {1}},
                                     {MB_OKCANCEL, {1, 2}},
                                     {MB_ABORTRETRYIGNORE, {3, 4, 5}},
                                     {MB_YESNOCANCEL, {6, 7, 2}},
                                     {MB_YESNO, {6, 7}},
                                     {MB_RETRYCANCEL, {4, 2}}};
  for (const auto& [style, buttons] : styles) {
    for (const int button : buttons) {
      BoxPresser presser(button);
      EXPECT_EQ(display(0, Value(L"m"), Value(style)), button) << style;
      presser.finish();
      EXPECT_EQ(presser.buttons(), static_cast<int>(buttons.size())) << style;
    }
  }
}

TEST_F(ErrorBoxes, the_icon_of_a_given_style_wins) {
  set(20000, L"Here", L"Descr");
  for (const auto& [style, icon] :
       {std::pair{MB_ICONQUESTION, IDI_QUESTION}, std::pair{MB_ICONEXCLAMATION, IDI_EXCLAMATION},
        std::pair{MB_ICONINFORMATION, IDI_ASTERISK}}) {
    BoxPresser presser(IDOK);
    EXPECT_EQ(display(0, Value::missing(), Value(static_cast<LONG>(style))), 1);
    presser.finish();
    EXPECT_TRUE(presser.shows_icon(icon)) << style;
  }
}

TEST_F(ErrorBoxes, a_given_title_wins_over_the_recorded_one) {
  set(5, L"S", L"D", 0, L"Recorded");
  BoxPresser presser(IDOK);
  display(0, Value::missing(), Value::missing(), L"Given");
  presser.finish();
  EXPECT_EQ(presser.title(), L"Given");
}

TEST_F(ErrorBoxes, a_long_text_is_shown_whole) {
  std::wstring text;
  for (int line = 0; line < 60; ++line)
    text += L"line " + std::to_wstring(line) + L", and more\r\n";
  BoxPresser presser(IDOK);
  display(0, Value(text.c_str()));
  presser.finish();
  EXPECT_EQ(presser.text(), text + L"\r\n\r\n");
}

// The help file is for the external form alone.
TEST_F(ErrorBoxes, the_language_s_box_has_no_help_button) {
  BoxPresser presser(IDOK);
  String buffer;
  EXPECT_EQ(display_ex(0, buffer, Value(L"m"), L"app.hlp", L"12"), 1);
  presser.finish();
  EXPECT_EQ(presser.buttons(), 1);
}

TEST_F(ErrorBoxes, what_is_shown_is_logged_too) {
  set(5, L"S", L"D");
  BoxPresser presser(IDOK);
  String buffer;
  EXPECT_EQ(display_ex(0, buffer, Value(L"m"), L"", L"", path.c_str()), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
  EXPECT_EQ(bytes_of_file(path), "P>m - D - [#5 - S]\r\n");
}

TEST_F(ErrorBoxes, showing_leaves_the_record_as_it_is) {
  set(20000, L"Here", L"Descr", 2, L"Caption", MB_OKCANCEL);
  BoxPresser presser(IDCANCEL);
  EXPECT_EQ(display(0), 2);
  presser.finish();
  LONG number = 0;
  LONG last_dll_error = 0;
  String description;
  global->Error_Number(&number);
  global->Error_LastDLLError(&last_dll_error);
  global->Error_Description(&description);
  EXPECT_EQ(number, 20000);
  EXPECT_EQ(last_dll_error, 2);
  EXPECT_EQ(description, L"Descr");
}

TEST_F(ErrorBoxes, numbers_of_any_type_are_answers_of_the_external_form) {
  for (const auto& [answer, button] : {std::pair{Value(SHORT{2}), 2}, std::pair{Value(6.5), 6},
                                       std::pair{Value(true), -1}, std::pair{Value(), 0}}) {
    MessageForm form(answer);
    EXPECT_EQ(display(0), button);
  }
}

TEST_F(ErrorBoxes, an_external_form_that_cannot_be_made_is_passed_over) {
  MessageForm form(Value(4));
  form.refuse();
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
  EXPECT_TRUE(form.calls().empty());
}

TEST_F(ErrorBoxes, no_box_is_shown_where_none_is_asked_for) {
  MessageForm form(Value(4));
  EXPECT_EQ(display(kNoShow), 1);
  String buffer;
  EXPECT_EQ(display_ex(kNoShow, buffer), 1);
  message();
  EXPECT_TRUE(form.calls().empty());
}

}  // namespace
}  // namespace qv::tests
