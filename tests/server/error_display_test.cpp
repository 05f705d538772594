#include <windows.h>

#include <regex>

#include "server/box_presser.h"
#include "server/client.h"
#include "server/file_holder.h"
#include "server/message_form.h"
#include "server/temporary_folder.h"

namespace qv::tests {
namespace {

constexpr LONG kNoShow = 1;
constexpr LONG kTime = 2;
constexpr LONG kCrc = 4;
constexpr LONG kNoSave = 8;
constexpr LONG kShort = 16;

class ErrorDisplay : public testing::Test {
 protected:
  ~ErrorDisplay() override {
    global->Error_Unlock();
    // An empty title and style for the next test: only the explicit mode clears them.
    set(0, L"", L"", 0, L"", 0);
  }

  void set(LONG number, const wchar_t* source, const wchar_t* description, LONG last_dll_error = 0,
           const wchar_t* caption = L"", LONG buttons = 0) {
    Value fields[] = {Value(number), Value(source), Value(description), Value(last_dll_error),
                      Value(caption)};
    LONG flags = 8;
    global->Error_SetEx(&fields[0], &fields[1], &fields[2], nullptr, nullptr, &fields[3], &flags,
                        &fields[4], &buttons);
  }

  std::wstring system_error(LONG code) {
    String text;
    EXPECT_EQ(global->SystemError(&code, &text), S_OK);
    return std::wstring(text.view());
  }

  std::wstring message(Value msg = Value::missing(), LONG flags = 0) {
    String text;
    EXPECT_EQ(global->Error_Message(&msg, &flags, &text), S_OK);
    return std::wstring(text.view());
  }

  LONG display(LONG flags, Value msg = Value::missing(), Value buttons = Value::missing(),
               const wchar_t* given_title = L"") {
    Value log = Value::missing();
    Value prefix = Value::missing();
    String title(given_title);
    LONG result = -1;
    EXPECT_EQ(global->Disp_Error(&msg, &buttons, &log, &flags, &prefix, &title, &result), S_OK);
    return result;
  }

  LONG display_ex(LONG flags, String& buffer, Value msg = Value::missing(),
                  const wchar_t* help_file = L"", const wchar_t* help_id = L"",
                  const wchar_t* log_file = nullptr) {
    Value buttons = Value::missing();
    Value log = log_file != nullptr ? Value(log_file) : Value::missing();
    Value prefix(L"P");
    String title(L"t");
    String file(help_file);
    String id(help_id);
    LONG result = -1;
    EXPECT_EQ(global->Disp_ErrorEx(&msg, &buttons, &log, &flags, &prefix, &title, &buffer, &file,
                                   &id, &result),
              S_OK);
    return result;
  }

  void log(const std::wstring& file, const wchar_t* msg, LONG flags,
           Value prefix = Value::missing()) {
    String name(file);
    String text(msg);
    EXPECT_EQ(global->Log_Write(&name, text, &flags, &prefix), S_OK);
  }

  bool is_locked() {
    set(77, L"probe", L"");
    LONG number = 0;
    global->Error_Number(&number);
    return number != 77;
  }

  Pointer<_KwRtLib> global = create_global();
  TemporaryFolder folder;
  std::wstring path = folder.file(L"test.log");
};

TEST_F(ErrorDisplay, system_texts_are_one_line_with_a_blank_at_the_end) {
  for (const LONG code : {0L, 2L, 5L}) {
    const std::wstring text = system_error(code);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), L' ');
    EXPECT_NE(text[text.size() - 2], L' ');
    EXPECT_EQ(text.find_first_of(L"\r\n"), std::wstring::npos);
  }
}

TEST_F(ErrorDisplay, an_unknown_system_code_has_no_text) {
  EXPECT_EQ(system_error(0x2FFFFFFF), L"");
  EXPECT_EQ(system_error(-2), L"");
}

TEST_F(ErrorDisplay, without_error_and_msg_the_text_is_empty) { EXPECT_EQ(message(), L""); }

TEST_F(ErrorDisplay, a_full_text_has_all_its_lines) {
  set(20000, L"Here", L"Descr", 2);
  EXPECT_EQ(message(Value(L"msg")),
            L"msg\r\nDescr\r\n[#20000 - Here]\r\n[DLL:" + system_error(2) + L"]");
}

TEST_F(ErrorDisplay, parts_that_are_missing_leave_no_line) {
  set(5, L"", L"");
  EXPECT_EQ(message(), L"[#5 - ]");
  set(-7, L"S", L"D");
  EXPECT_EQ(message(), L"D\r\n[#-7 - S]");
  set(0, L"S", L"");
  EXPECT_EQ(message(), L"[S]");
  set(0, L"S", L"D", 2);
  EXPECT_EQ(message(), L"D\r\n[S]");
  set(0, L"", L"D");
  EXPECT_EQ(message(), L"D\r\n");
  set(0, L"", L"");
  EXPECT_EQ(message(Value(L"m")), L"m\r\n\r\n");
  EXPECT_EQ(message(Value(L"")), L"");
}

TEST_F(ErrorDisplay, msg_is_any_value_with_a_text) {
  EXPECT_EQ(message(Value(12)), L"12\r\n\r\n");
  Value null;
  null.vt = VT_NULL;
  set(0, L"", L"D");
  EXPECT_EQ(message(null), L"D\r\n");
}

TEST_F(ErrorDisplay, the_short_form_has_neither_number_nor_system_text) {
  set(20000, L"Here", L"Descr", 2);
  EXPECT_EQ(message(Value(L"msg"), kShort), L"msg\r\nDescr\r\n");
}

TEST_F(ErrorDisplay, error_message_leaves_the_flags_variable_alone) {
  Value msg = Value::missing();
  LONG flags = kShort;
  String text;
  EXPECT_EQ(global->Error_Message(&msg, &flags, &text), S_OK);
  EXPECT_EQ(flags, kShort);
}

TEST_F(ErrorDisplay, every_way_unlocks_the_record_and_keeps_it) {
  set(20000, L"S", L"D");
  global->Error_Lock();
  EXPECT_TRUE(is_locked());
  message();
  LONG number = 0;
  global->Error_Number(&number);
  EXPECT_EQ(number, 20000);
  EXPECT_FALSE(is_locked());

  global->Error_Lock();
  EXPECT_EQ(display(kNoShow), 1);
  EXPECT_FALSE(is_locked());
}

TEST_F(ErrorDisplay, the_box_shows_text_title_and_icon_and_gives_the_button) {
  set(20000, L"Here", L"Descr");
  BoxPresser presser(IDNO);
  EXPECT_EQ(display(0, Value(L"msg"), Value(MB_YESNO), L"The title"), 7);
  presser.finish();
  EXPECT_EQ(presser.title(), L"The title");
  EXPECT_EQ(presser.text(), L"msg\r\nDescr\r\n[#20000 - Here]");
  EXPECT_EQ(presser.buttons(), 2);
  EXPECT_TRUE(presser.shows_icon(IDI_HAND));
}

TEST_F(ErrorDisplay, a_box_without_error_and_msg_has_a_blank_title_and_the_exclamation_mark) {
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
  EXPECT_EQ(presser.title(), L" ");
  EXPECT_EQ(presser.text(), L"");
  EXPECT_TRUE(presser.shows_icon(IDI_EXCLAMATION));
}

TEST_F(ErrorDisplay, the_short_box_has_the_information_icon) {
  set(20000, L"Here", L"Descr");
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(kShort), 1);
  presser.finish();
  EXPECT_EQ(presser.text(), L"Descr\r\n");
  EXPECT_TRUE(presser.shows_icon(IDI_ASTERISK));
}

TEST_F(ErrorDisplay, title_and_style_recorded_with_the_error_are_used) {
  set(20000, L"Here", L"Descr", 0, L"Recorded", MB_RETRYCANCEL | MB_ICONINFORMATION);
  BoxPresser presser(IDRETRY);
  EXPECT_EQ(display(0), 4);
  presser.finish();
  EXPECT_EQ(presser.title(), L"Recorded");
  EXPECT_EQ(presser.buttons(), 2);
  EXPECT_TRUE(presser.shows_icon(IDI_ASTERISK));
}

TEST_F(ErrorDisplay, a_style_of_0_that_is_given_wins_over_the_recorded_one) {
  set(20000, L"Here", L"Descr", 0, L"", MB_YESNO);
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0, Value::missing(), Value(0)), 1);
  presser.finish();
  EXPECT_EQ(presser.buttons(), 1);
}

TEST_F(ErrorDisplay, showing_resets_the_mouse_pointer) {
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

TEST_F(ErrorDisplay, the_external_form_is_asked_in_order) {
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

TEST_F(ErrorDisplay, the_external_form_is_let_go) {
  MessageForm form(Value(1));
  const ULONG before = form.references();
  display(0);
  EXPECT_EQ(form.references(), before);
}

TEST_F(ErrorDisplay, no_saving_and_no_help_have_no_bits) {
  MessageForm form(Value(1));
  display(kNoSave);
  EXPECT_EQ(form.calls()[0], L"Buttons=" + std::to_wstring(48 + 65536) + L":3");
  EXPECT_EQ(form.calls()[5], L"Title= ");
  display(kShort | kNoSave, Value::missing(), Value(MB_ICONHAND));
  EXPECT_EQ(form.calls()[7], L"Buttons=" + std::to_wstring(16 | 64 | 65536) + L":3");
}

TEST_F(ErrorDisplay, what_the_external_form_answers_becomes_a_number) {
  const Value text(L"6");
  MessageForm form(text);
  EXPECT_EQ(display(0), 6);
}

TEST_F(ErrorDisplay, the_language_s_box_takes_over_wherever_the_external_form_fails) {
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

TEST_F(ErrorDisplay, an_answer_that_is_no_number_makes_the_language_s_box_take_over) {
  const Value text(L"none");
  MessageForm form(text);
  BoxPresser presser(IDOK);
  EXPECT_EQ(display(0), 1);
  presser.finish();
  EXPECT_TRUE(presser.has_pressed());
}

TEST_F(ErrorDisplay, the_text_goes_behind_what_the_buffer_held_unless_a_msg_is_given) {
  set(5, L"S", L"D");
  String buffer(L"before ");
  EXPECT_EQ(display_ex(kNoShow, buffer), 1);
  EXPECT_EQ(buffer, L"before D\r\n[#5 - S]");
  EXPECT_EQ(display_ex(kNoShow, buffer, Value(L"m")), 1);
  EXPECT_EQ(buffer, L"m\r\nD\r\n[#5 - S]");
}

TEST_F(ErrorDisplay, the_text_is_logged_on_one_line) {
  set(5, L"S", L"D");
  String buffer;
  display_ex(kNoShow, buffer, Value(L"m"), L"", L"", path.c_str());
  set(0, L"", L"D");
  SysReAllocStringLen(&buffer, L"", 0);
  display_ex(kNoShow, buffer, Value::missing(), L"", L"", path.c_str());
  EXPECT_EQ(bytes_of_file(path), "P>m - D - [#5 - S]\r\nP>D - \r\n");
}

TEST_F(ErrorDisplay, an_empty_log_name_logs_nothing) {
  String buffer;
  EXPECT_EQ(display_ex(kNoShow, buffer, Value(L"m"), L"", L"", L""), 1);
  EXPECT_EQ(buffer, L"m\r\n\r\n");
}

TEST_F(ErrorDisplay, a_log_line_is_the_message_and_a_line_end) {
  log(path, L"first", 0);
  log(path, L"", 0);
  log(path, L"\x20AC", 0);
  EXPECT_EQ(bytes_of_file(path), "first\r\n\r\n\x80\r\n");
}

TEST_F(ErrorDisplay, a_prefix_begins_the_line) {
  log(path, L"text", 0, Value(L"A"));
  log(path, L"text", 0, Value(L""));
  log(path, L"text", 0, Value(7));
  EXPECT_EQ(bytes_of_file(path), "A>text\r\n>text\r\n7>text\r\n");
}

// The digits 1 to 9 are the check value's usual sample: 29B1 from a start of FFFF.
TEST_F(ErrorDisplay, the_check_value_covers_the_message_alone_without_a_time) {
  log(path, L"123456789", kCrc, Value(L"A"));
  EXPECT_EQ(bytes_of_file(path), "A>123456789 [29B1]\r\n");
}

TEST_F(ErrorDisplay, the_check_value_of_no_text_is_the_start) {
  log(path, L"", kCrc);
  EXPECT_EQ(bytes_of_file(path), " [FFFF]\r\n");
}

TEST_F(ErrorDisplay, date_and_time_stand_in_front_of_the_message) {
  log(path, L"text", kTime, Value(L"A"));
  const std::string line = bytes_of_file(path);
  EXPECT_TRUE(
      std::regex_match(line, std::regex("A>\\d\\d-\\d\\d-\\d\\d\\d\\d \\d\\d:\\d\\d text\r\n")))
      << line;
}

std::uint16_t slow_crc(const std::string& text) {
  unsigned crc = 0xFFFF;
  for (const char c : text) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(c)) << 8;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc << 1 ^ ((crc & 0x8000) != 0 ? 0x1021 : 0)) & 0xFFFF;
  }
  return static_cast<std::uint16_t>(crc);
}

TEST_F(ErrorDisplay, the_check_value_covers_date_time_and_message_and_not_the_prefix) {
  log(path, L"text", kTime | kCrc, Value(L"A"));
  const std::string line = bytes_of_file(path);
  ASSERT_EQ(line.size(), std::string("A>05-03-2001 14:07 text [3F0A]\r\n").size());
  char expected[8];
  std::snprintf(expected, sizeof expected, "[%04X]", slow_crc(line.substr(2, 21)));
  EXPECT_EQ(line.substr(24, 6), expected);
}

TEST_F(ErrorDisplay, other_flags_do_not_matter_to_the_log) {
  log(path, L"text", ~(kTime | kCrc));
  EXPECT_EQ(bytes_of_file(path), "text\r\n");
}

TEST_F(ErrorDisplay, a_log_that_cant_be_opened_is_passed_over) {
  log(folder.file(L"no\\folder.log"), L"text", 0);
  log(L"", L"text", 0);
  log(folder.file(L""), L"text", 0);
  LONG number = -1;
  global->Error_Number(&number);
  EXPECT_EQ(number, 0);
}

TEST_F(ErrorDisplay, a_log_that_another_process_holds_is_waited_for) {
  write_file(path, "old\r\n");
  const FileHolder holder(path.c_str(), 700);
  log(path, L"text", 0);
  EXPECT_EQ(bytes_of_file(path), "old\r\ntext\r\n");
}

TEST_F(ErrorDisplay, a_log_that_stays_held_is_given_up_after_31_pauses) {
  write_file(path, "old\r\n");
  const DWORD start_ms = GetTickCount();
  {
    const FileHolder holder(path.c_str(), 60000);
    log(path, L"text", 0);
    EXPECT_TRUE(holder.is_running());
  }
  EXPECT_GE(GetTickCount() - start_ms, 31U * 250);
  EXPECT_EQ(bytes_of_file(path), "old\r\n");
}

// A server that hands its last error over.
class Server final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    ids[0] = 1;
    return has_method && lstrcmpiW(names[0], L"LastError") == 0 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    if (parameters->cArgs != 6) return DISP_E_BADPARAMCOUNT;
    const Value values[] = {
        Value(20011), Value(L"Their.Source"), Value(L"their text"), Value(L"their.hlp"), Value(31),
        Value(5)};
    for (UINT i = 0; i < 6; ++i) {
      const VARIANT& argument = parameters->rgvarg[5 - i];
      if (argument.vt != (VT_BYREF | VT_VARIANT) || argument.pvarVal->vt != VT_EMPTY) {
        return DISP_E_TYPEMISMATCH;
      }
      VariantCopy(argument.pvarVal, const_cast<Value*>(&values[i]));
    }
    return S_OK;
  }
  bool has_method = true;
};

Value object_value(IDispatch& object) {
  Value value;
  value.vt = VT_DISPATCH;
  value.pdispVal = &object;
  return value;
}

TEST_F(ErrorDisplay, the_last_error_of_a_server_is_taken_over) {
  Server server;
  Value variable = object_value(server);
  EXPECT_EQ(global->SetSvrError(&variable), S_OK);
  variable.vt = VT_EMPTY;
  LONG number = 0;
  LONG last_dll_error = 0;
  LONG help_context = -1;
  LONG help_id = 0;
  String source;
  String description;
  String help_file;
  global->Error_Number(&number);
  global->Error_Source(&source);
  global->Error_Description(&description);
  global->Error_HelpFile(&help_file);
  global->Error_HelpContext(&help_context);
  global->Error_HelpId(&help_id);
  global->Error_LastDLLError(&last_dll_error);
  EXPECT_EQ(number, 20011);
  EXPECT_EQ(source, L"Their.Source");
  EXPECT_EQ(description, L"their text");
  EXPECT_EQ(help_file, L"their.hlp");
  // The context goes on as text.
  EXPECT_EQ(help_id, 31);
  EXPECT_EQ(help_context, 0);
  EXPECT_EQ(last_dll_error, 5);
}

TEST_F(ErrorDisplay, a_server_without_a_last_error_leaves_the_record_empty) {
  Server server;
  server.has_method = false;
  Value variable = object_value(server);
  set(20000, L"S", L"D", 5);
  EXPECT_EQ(global->SetSvrError(&variable), S_OK);
  variable.vt = VT_EMPTY;
  EXPECT_EQ(message(), L"");
  set(20000, L"S", L"D", 5);
  Value number(7);
  EXPECT_EQ(global->SetSvrError(&number), S_OK);
  EXPECT_EQ(message(), L"");
}

TEST_F(ErrorDisplay, a_locked_record_takes_no_server_error) {
  set(20000, L"S", L"D");
  global->Error_Lock();
  Server server;
  Value variable = object_value(server);
  EXPECT_EQ(global->SetSvrError(&variable), S_OK);
  variable.vt = VT_EMPTY;
  EXPECT_EQ(message(), L"D\r\n[#20000 - S]");
}

}  // namespace
}  // namespace qv::tests
