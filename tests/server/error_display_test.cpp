// The text of an error, and errors that come over from another server.
#include "server/error_display_client.h"

namespace qv::tests {
namespace {

TEST_F(ErrorDisplay, system_texts_are_one_line_with_a_blank_at_the_end) {
  for (const LONG code : {0L, 2L, 5L}) {
    const std::wstring text = system_error(code);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), L' ');
    EXPECT_NE(text[text.size() - 2], L' ');
    EXPECT_EQ(text.find_first_of(L"\r\n"), std::wstring::npos);
  }
}

TEST_F(ErrorDisplay, a_system_text_is_what_the_system_says) {
  int known = 0;
  for (LONG code = 0; code < 300; ++code) {
    char buffer[4096];
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(code), 0, buffer, sizeof buffer, nullptr);
    std::wstring expected;
    for (const char c : std::string(buffer, length)) {
      if (c != '\n') expected += c == '\r' ? L' ' : static_cast<wchar_t>(c);
    }
    EXPECT_EQ(system_error(code), expected) << code;
    known += length > 0 ? 1 : 0;
  }
  EXPECT_GT(known, 100);
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

TEST_F(ErrorDisplay, the_text_goes_behind_what_the_buffer_held_unless_a_msg_is_given) {
  set(5, L"S", L"D");
  String buffer(L"before ");
  EXPECT_EQ(display_ex(kNoShow, buffer), 1);
  EXPECT_EQ(buffer, L"before D\r\n[#5 - S]");
  EXPECT_EQ(display_ex(kNoShow, buffer, Value(L"m")), 1);
  EXPECT_EQ(buffer, L"m\r\nD\r\n[#5 - S]");
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
