// HTML help: what is asked of the help control.
#include <string>

#include "server/collection_client.h"
#include "server/error_record_client.h"
#include "server/help_control.h"

namespace qv::tests {
namespace {

constexpr UINT kCloseAll = 18;
constexpr UINT kInitialize = 28;
constexpr UINT kUninitialize = 29;
constexpr DWORD kCookie = 0x1234;

class HtmlHelp : public WithErrorRecord {
 protected:
  // Of the object of the test.
  bool show(const wchar_t* file, LONG command = 0, const wchar_t* topic = L"",
            const wchar_t* window_type = L"", Value data = Value::missing(), LONG owner = 0) {
    return show_with(object_, file, command, topic, window_type, data, owner);
  }
  static bool show_with(const Pointer<_KwRtLib>& object, const wchar_t* file, LONG command,
                        const wchar_t* topic, const wchar_t* window_type, Value data, LONG owner) {
    String help_file(file);
    String html_file(topic);
    String type(window_type);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(object->HtmlHelpShow(&help_file, &command, &html_file, &type, &data, &owner, &failed),
              S_OK);
    EXPECT_TRUE(failed == VARIANT_TRUE || failed == VARIANT_FALSE);
    return failed == VARIANT_TRUE;
  }
  // The one call beside those of the session.
  HelpControl::Call shown(HelpControl& control) {
    HelpControl::Call found{};
    int count = 0;
    for (const auto& call : control.calls()) {
      if (call.command == kInitialize) continue;
      found = call;
      ++count;
    }
    EXPECT_EQ(count, 1);
    return found;
  }
  std::string target(const wchar_t* file, const wchar_t* topic, const wchar_t* window_type = L"") {
    HelpControl control;
    const auto object = create_global();
    EXPECT_FALSE(show_with(object, file, 0, topic, window_type, Value::missing(), 0));
    return shown(control).target;
  }
  DWORD_PTR number(Value data) {
    HelpControl control;
    const auto object = create_global();
    EXPECT_FALSE(show_with(object, L"a.chm", 15, L"", L"", data, 0));
    return shown(control).data;
  }

  Pointer<_KwRtLib> object_;
};

TEST_F(HtmlHelp, of_an_object_begins_with_a_session) {
  HelpControl control;
  object_ = create_global();
  EXPECT_FALSE(show(L"a.chm", 1, L"", L"", Value::missing(), 0x40));
  const auto calls = control.calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].owner, reinterpret_cast<HWND>(0x40));
  EXPECT_FALSE(calls[0].has_target);
  EXPECT_EQ(calls[0].command, kInitialize);
  EXPECT_NE(calls[0].data, 0u);
  EXPECT_EQ(calls[1].owner, reinterpret_cast<HWND>(0x40));
  EXPECT_TRUE(calls[1].has_target);
  EXPECT_EQ(calls[1].target, "a.chm");
  EXPECT_EQ(calls[1].command, 1u);
  EXPECT_EQ(calls[1].data, 0u);
  EXPECT_FALSE(show(L"b.chm"));
  EXPECT_EQ(control.calls().size(), 1u);
  EXPECT_EQ(control.times_loaded, 1);
  object_ = Pointer<_KwRtLib>();
  expect_no_error();
}

TEST_F(HtmlHelp, ends_with_its_object) {
  HelpControl control(kCookie);
  object_ = create_global();
  EXPECT_FALSE(show(L"a.chm", 0, L"", L"", Value::missing(), 0x40));
  control.calls();
  object_ = Pointer<_KwRtLib>();
  const auto calls = control.calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].owner, nullptr);
  EXPECT_FALSE(calls[0].has_target);
  EXPECT_EQ(calls[0].command, kCloseAll);
  EXPECT_EQ(calls[0].data, 0u);
  EXPECT_EQ(calls[1].owner, nullptr);
  EXPECT_FALSE(calls[1].has_target);
  EXPECT_EQ(calls[1].command, kUninitialize);
  EXPECT_EQ(calls[1].data, kCookie);
  EXPECT_EQ(control.times_freed, 1);
}

TEST_F(HtmlHelp, has_a_session_in_each_object) {
  HelpControl control;
  object_ = create_global();
  EXPECT_FALSE(show(L"a.chm"));
  {
    const auto other = create_global();
    EXPECT_FALSE(show_with(other, L"b.chm", 0, L"", L"", Value::missing(), 0));
    EXPECT_EQ(control.calls().size(), 4u);
  }
  EXPECT_EQ(control.calls().size(), 2u);
  EXPECT_FALSE(show(L"a.chm"));
  EXPECT_EQ(control.calls().size(), 1u);
  object_ = Pointer<_KwRtLib>();
  EXPECT_EQ(control.calls().size(), 2u);
}

TEST_F(HtmlHelp, of_an_object_that_showed_none_asks_for_nothing) {
  HelpControl control;
  object_ = create_global();
  object_ = Pointer<_KwRtLib>();
  EXPECT_EQ(control.calls().size(), 0u);
  EXPECT_EQ(control.times_loaded, 0);
}

TEST_F(HtmlHelp, of_a_control_without_sessions_is_shown_all_the_same) {
  HelpControl control(0);
  object_ = create_global();
  EXPECT_FALSE(show(L"a.chm"));
  EXPECT_FALSE(show(L"a.chm"));
  EXPECT_EQ(control.calls().size(), 4u);
  EXPECT_EQ(control.times_loaded, 1);
  object_ = Pointer<_KwRtLib>();
  EXPECT_EQ(control.calls().size(), 0u);
  EXPECT_EQ(control.times_freed, 0);
  expect_no_error();
}

TEST_F(HtmlHelp, without_a_control_is_a_failure_that_nothing_tells) {
  HelpControl control;
  object_ = create_global();
  control.is_installed = false;
  EXPECT_TRUE(show(L"a.chm"));
  control.is_installed = true;
  control.has_entry = false;
  EXPECT_TRUE(show(L"a.chm"));
  EXPECT_EQ(control.times_loaded, control.times_freed);
  EXPECT_EQ(control.calls().size(), 0u);
  expect_no_error();
  control.has_entry = true;
  EXPECT_FALSE(show(L"a.chm"));
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, names_file_topic_and_window_type) {
  EXPECT_EQ(target(L"a.chm", L""), "a.chm");
  EXPECT_EQ(target(L"C:\\Aiuto\\a.chm", L"sub\\topic.htm"), "C:\\Aiuto\\a.chm::/sub/topic.htm");
  EXPECT_EQ(target(L"a.chm", L"/sub/topic.htm"), "a.chm::/sub/topic.htm");
  EXPECT_EQ(target(L"a.chm", L"\\sub\\topic.htm"), "a.chm::/sub/topic.htm");
  EXPECT_EQ(target(L"a.chm", L"a\\\\b.htm"), "a.chm::/a//b.htm");
  EXPECT_EQ(target(L"a.chm", L"topic.htm#mark"), "a.chm::/topic.htm#mark");
  EXPECT_EQ(target(L"a.chm", L"", L"main"), "a.chm>main");
  EXPECT_EQ(target(L"a.chm", L"topic.htm", L"main"), "a.chm::/topic.htm>main");
  EXPECT_EQ(target(L"", L"topic.htm"), "::/topic.htm");
  EXPECT_EQ(target(L"\x00E8.chm", L"\x20AC.htm"), "\xE8.chm::/\x80.htm");
}

TEST_F(HtmlHelp, without_any_name_has_no_target) {
  HelpControl control;
  object_ = create_global();
  EXPECT_FALSE(show(L"", 18));
  const auto call = shown(control);
  EXPECT_FALSE(call.has_target);
  EXPECT_EQ(call.command, 18u);
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, passes_numbers_as_a_Long) {
  EXPECT_EQ(number(Value(42)), 42u);
  EXPECT_EQ(number(Value::missing()), 0u);
  EXPECT_EQ(number(Value(SHORT{7})), 7u);
  EXPECT_EQ(number(Value(41.5)), 42u);
  EXPECT_EQ(number(Value(true)), static_cast<DWORD_PTR>(-1));
  EXPECT_EQ(number(Value()), 0u);  // Empty
}

TEST_F(HtmlHelp, passes_a_text_as_its_address) {
  HelpControl control;
  object_ = create_global();
  EXPECT_FALSE(show(L"a.chm", 2, L"", L"", Value(L"citt\x00E0")));
  EXPECT_EQ(shown(control).text, "citt\xE0");
  EXPECT_FALSE(show(L"a.chm", 2, L"", L"", Value(L"42")));
  EXPECT_EQ(shown(control).text, "42");
  EXPECT_FALSE(show(L"a.chm", 2, L"", L"", Value(L"")));
  const auto call = shown(control);
  EXPECT_EQ(call.text, "");
  EXPECT_NE(call.data, 0u);
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, takes_the_kind_of_the_data_from_a_variable) {
  HelpControl control;
  object_ = create_global();
  String text(L"argomento");
  Value data;
  data.vt = VT_BYREF | VT_BSTR;
  data.pbstrVal = &text;
  EXPECT_FALSE(show(L"a.chm", 2, L"", L"", data));
  EXPECT_EQ(shown(control).text, "argomento");
  SHORT number = 42;
  data.vt = VT_BYREF | VT_I2;
  data.piVal = &number;
  EXPECT_FALSE(show(L"a.chm", 15, L"", L"", data));
  EXPECT_EQ(shown(control).data, 42u);
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, with_data_that_are_no_number_is_a_failure) {
  HelpControl control;
  object_ = create_global();
  Value null;
  null.vt = VT_NULL;
  EXPECT_TRUE(show(L"a.chm", 15, L"", L"", null));
  expect_error(94, L"KwRtLibMod.HtmlHelpShow");
  EXPECT_TRUE(show(L"a.chm", 15, L"", L"", Value(3e9)));
  expect_error(6, L"KwRtLibMod.HtmlHelpShow");
  CountedObject object;
  EXPECT_TRUE(show(L"a.chm", 15, L"", L"", object.as_value()));
  expect_error(13, L"KwRtLibMod.HtmlHelpShow");
  // The session is open by then.
  EXPECT_EQ(control.calls().size(), 1u);
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, needs_no_more_than_a_file_and_a_command) {
  HelpControl control;
  object_ = create_global();
  String file(L"a.chm");
  LONG command = 0;
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(object_->HtmlHelpShow(&file, &command, nullptr, nullptr, nullptr, nullptr, &failed),
            S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  const auto call = shown(control);
  EXPECT_EQ(call.target, "a.chm");
  EXPECT_EQ(call.owner, nullptr);
  EXPECT_EQ(call.data, 0u);
  object_ = Pointer<_KwRtLib>();
}

TEST_F(HtmlHelp, of_the_system_s_own_control_is_no_failure) {
  object_ = create_global();
  EXPECT_FALSE(show(L"C:\\no such file.chm"));
  object_ = Pointer<_KwRtLib>();
  expect_no_error();
}

}  // namespace
}  // namespace qv::tests
