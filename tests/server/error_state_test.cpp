// The error state through the typed interface.
#include "server/client.h"

#include <iterator>
#include <thread>

#include "host_run_time/host_run_time.h"

namespace qv::tests {
namespace {

struct Fields {
  LONG number = 0;
  std::wstring source;
  std::wstring description;
  std::wstring help_file;
  LONG help_context = 0;
  std::wstring help_id;
  LONG last_dll_error = 0;
};

class ErrorState : public testing::Test {
 protected:
  ErrorState() : global(create_global()) { reset(); }
  ~ErrorState() override { reset(); }

  void reset() {
    global->Error_Unlock();
    global->Reset_Error();
    forget_pending();
  }
  // Any function with a handler of its own forgets what was pending before.
  void forget_pending() {
    String buffer;
    LONG offset = 1;
    Value value(1);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    // The system's last error of another test stays with the thread until the next platform call.
    String guid;
    SetLastError(0);
    EXPECT_EQ(global->Guid_String(&guid), S_OK);
  }

  // The record with every field filled.
  void fill() {
    set_explicit(Value(20005), Value(L"here"), Value(L"text"), Value(L"my.hlp"), Value(12),
                 Value(2));
    set_explicit(Value::missing(), Value::missing(), Value::missing(), Value::missing(),
                 Value(L"34"), Value::missing());
  }
  void set_explicit(Value number, Value source, Value description, Value help_file,
                    Value help_context, Value last_dll_error) {
    LONG flags = 8;
    LONG buttons = 0;
    EXPECT_EQ(global->Error_SetEx(&number, &source, &description, &help_file, &help_context,
                                  &last_dll_error, &flags, nullptr, &buttons),
              S_OK);
  }
  HRESULT set_ex(LONG flags, Value number, Value source, Value description) {
    LONG buttons = 0;
    return global->Error_SetEx(&number, &source, &description, nullptr, nullptr, nullptr, &flags,
                               nullptr, &buttons);
  }
  HRESULT set(Value number, Value source = Value::missing(), Value description = Value::missing(),
              Value help_file = Value::missing(), Value help_context = Value::missing(),
              Value last_dll_error = Value::missing()) {
    return global->Error_Set(&number, &source, &description, &help_file, &help_context,
                             &last_dll_error, nullptr);
  }
  HRESULT replace(Value number, Value source = Value::missing(),
                  Value description = Value::missing(), Value help_file = Value::missing(),
                  Value help_context = Value::missing(), Value last_dll_error = Value::missing()) {
    return global->Error_Replace(&number, &source, &description, &help_file, &help_context,
                                 &last_dll_error);
  }

  void expect(const Fields& fields) {
    LONG number = -1;
    LONG help_context = -1;
    LONG last_dll_error = -1;
    String source;
    String description;
    String help_file;
    EXPECT_EQ(global->Error_Number(&number), S_OK);
    EXPECT_EQ(global->Error_Source(&source), S_OK);
    EXPECT_EQ(global->Error_Description(&description), S_OK);
    EXPECT_EQ(global->Error_HelpFile(&help_file), S_OK);
    EXPECT_EQ(global->Error_HelpContext(&help_context), S_OK);
    EXPECT_EQ(global->Error_LastDLLError(&last_dll_error), S_OK);
    EXPECT_EQ(number, fields.number);
    EXPECT_EQ(source, fields.source);
    EXPECT_EQ(description, fields.description);
    EXPECT_EQ(help_file, fields.help_file);
    EXPECT_EQ(help_context, fields.help_context);
    EXPECT_EQ(last_dll_error, fields.last_dll_error);
    Value help_id(L"");
    EXPECT_EQ(global->Get_Error(nullptr, nullptr, nullptr, nullptr, &help_id, nullptr), S_OK);
    EXPECT_EQ(help_id.text(), fields.help_id);
  }
  const Fields kFilled{20005, L"here", L"text", L"my.hlp", 12, L"34", 2};

  bool check() {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global->Check_Error(&failed), S_OK);
    return failed == VARIANT_TRUE;
  }

  Pointer<_KwRtLib> global;
};

TEST_F(ErrorState, is_empty_and_unlocked_on_a_fresh_thread) {
  std::thread([] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto fresh = create_global();
      LONG number = -1;
      String source;
      EXPECT_EQ(fresh->Last_Error(&number), S_OK);
      EXPECT_EQ(number, 0);
      EXPECT_EQ(fresh->Error_Source(&source), S_OK);
      EXPECT_EQ(source, L"");
      Value given(5);
      EXPECT_EQ(fresh->Error_Replace(&given, nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
      EXPECT_EQ(fresh->Last_Error(&number), S_OK);
      EXPECT_EQ(number, 5);
    }
    CoUninitialize();
  }).join();
}

TEST_F(ErrorState, is_shared_by_two_objects_of_a_thread_and_not_by_two_threads) {
  set(20000, L"here");
  const auto second = create_global();
  LONG number = 0;
  EXPECT_EQ(second->Error_Number(&number), S_OK);
  EXPECT_EQ(number, 20000);
  std::thread([] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto other = create_global();
      LONG seen = -1;
      EXPECT_EQ(other->Error_Number(&seen), S_OK);
      EXPECT_EQ(seen, 0);
      Value given(7);
      other->Error_Set(&given, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
      other->Error_Lock();
    }
    CoUninitialize();
  }).join();
  EXPECT_EQ(global->Error_Number(&number), S_OK);
  EXPECT_EQ(number, 20000);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  EXPECT_EQ(global->Error_Number(&number), S_OK);
  EXPECT_EQ(number, 0);
}

TEST_F(ErrorState, Error_Set_stores_each_field_given) {
  EXPECT_EQ(set(20001, L"src", L"desc", L"h.hlp", 7, 3), S_OK);
  expect({20001, L"src", L"desc", L"h.hlp", 7, L"", 3});
  EXPECT_TRUE(check());
}

TEST_F(ErrorState, Error_Set_without_arguments_stores_that_nothing_is_pending) {
  fill();
  EXPECT_EQ(global->Error_Set(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
  expect({0, L"", L"", L"", 0, L"34", 0});
}

TEST_F(ErrorState, Error_Set_with_help_context_text_stores_HelpId_and_with_a_number_the_reverse) {
  set(20000, Value::missing(), Value::missing(), Value::missing(), L"12");
  expect({20000, L"", L"", L"", 0, L"12", 0});
  reset();
  set(20000, Value::missing(), Value::missing(), Value::missing(), 12);
  expect({20000, L"", L"", L"", 12, L"", 0});
}

TEST_F(ErrorState, Error_Set_never_reads_UseODBC) {
  Value number(20000);
  VARIANT_BOOL odbc = VARIANT_TRUE;
  EXPECT_EQ(global->Error_Set(&number, nullptr, nullptr, nullptr, nullptr, nullptr, &odbc), S_OK);
  expect({20000, L"", L"", L"", 0, L"", 0});
  EXPECT_EQ(odbc, VARIANT_TRUE);
}

TEST_F(ErrorState, arguments_of_any_numeric_type_are_converted) {
  EXPECT_EQ(set(L"20001", 5, 6.5, Value(SHORT{3}), Value(2.5), L"3"), S_OK);
  expect({20001, L"5", L"6.5", L"3", 2, L"", 3});
}

TEST_F(ErrorState, typed_variables_by_reference_are_read_and_filled) {
  LONG number_variable = 20001;
  BSTR source_variable = SysAllocString(L"src");
  Value number;
  number.vt = VT_BYREF | VT_I4;
  number.plVal = &number_variable;
  Value source;
  source.vt = VT_BYREF | VT_BSTR;
  source.pbstrVal = &source_variable;
  EXPECT_EQ(global->Error_Set(&number, &source, nullptr, nullptr, &source, nullptr, nullptr), S_OK);
  expect({20001, L"src", L"", L"", 0, L"src", 0});
  replace(20002, L"other");
  EXPECT_EQ(global->Get_Error(&number, &source, nullptr, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(number_variable, 20002);
  EXPECT_STREQ(source_variable, L"other");
  EXPECT_EQ(number.vt, VT_BYREF | VT_I4);
  SysFreeString(source_variable);
}

TEST_F(ErrorState, Error_SetEx_chains) {
  fill();
  EXPECT_EQ(set_ex(4, 5, L"outer", L"new "), S_OK);
  Fields chained = kFilled;
  chained.source = L"here < outer";
  chained.description = L"new text";
  expect(chained);
  EXPECT_EQ(set_ex(4, Value::missing(), L"outermost", Value::missing()), S_OK);
  chained.source = L"here < outer < outermost";
  expect(chained);
}

TEST_F(ErrorState, Error_SetEx_chain_begins_with_the_separator_on_an_empty_source) {
  EXPECT_EQ(set_ex(4, Value::missing(), L"here", Value::missing()), S_OK);
  expect({0, L" < here", L"", L"", 0, L"", 0});
  EXPECT_FALSE(check());
}

TEST_F(ErrorState, Error_SetEx_flag_4_wins_over_8_and_2) {
  EXPECT_EQ(set_ex(14, 5, L"here", L"text"), S_OK);
  expect({0, L" < here", L"text", L"", 0, L"", 0});
}

TEST_F(ErrorState, Error_SetEx_explicit_stores_only_what_is_given) {
  fill();
  EXPECT_EQ(set_ex(8, 5, Value::missing(), L"new"), S_OK);
  Fields changed = kFilled;
  changed.number = 5;
  changed.description = L"new";
  expect(changed);
}

TEST_F(ErrorState, Error_SetEx_full_takes_the_rest_from_what_is_pending) {
  fill();
  EXPECT_EQ(set_ex(0, 20000, L"src", Value::missing()), S_OK);
  expect({20000, L"src", L"", L"", 0, L"34", 0});
  fill();
  EXPECT_EQ(set_ex(2, 20000, L"src", L"desc"), S_OK);
  expect({20000, L"src", L"desc", L"", 0, L"34", 0});
}

TEST_F(ErrorState, Error_SetEx_without_flags_and_buttons_is_full_mode) {
  Value number(20000);
  EXPECT_EQ(global->Error_SetEx(&number, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr),
            S_OK);
  expect({20000, L"", L"", L"", 0, L"", 0});
}

TEST_F(ErrorState, a_conversion_that_fails_in_chain_and_explicit_mode_reaches_the_caller) {
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(set_ex(4, Value::missing(), null, Value::missing()), error_result(94));
  EXPECT_EQ(set_ex(8, L"no number", L"unseen", Value::missing()), error_result(13));
  expect({0, L"", L"", L"", 0, L"", 0});
}

TEST_F(ErrorState, a_conversion_that_fails_in_full_mode_leaves_its_field_and_goes_on) {
  EXPECT_EQ(set(L"no number", L"here"), S_OK);
  LONG number = -1;
  String source;
  global->Error_Number(&number);
  global->Error_Source(&source);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(source, L"here");
  // The failed conversion is what is pending now, as after any step that was passed over.
  EXPECT_EQ(set(5, L"here", L"mine"), S_OK);
  expect({5, L"here", L"mine\r\nType mismatch", L"", 0, L"", 0});
  EXPECT_EQ(set(20000, L"here", L"mine"), S_OK);
  expect({20000, L"here", L"mine", L"", 0, L"", 0});
  forget_pending();
  EXPECT_EQ(set(5, L"here", L"mine"), S_OK);
  expect({5, L"here", L"mine", L"", 0, L"", 0});
}

TEST_F(ErrorState, an_error_that_reached_the_caller_is_pending_until_a_function_forgets_it) {
  String buffer(L"abc");
  LONG offset = 3;
  LONG count = -1;
  String right;
  EXPECT_EQ(global->Buffer_Right(&buffer, &offset, &count, &right), error_result(5));
  EXPECT_EQ(set(Value::missing(), L"here"), S_OK);
  expect({5, L"here", L"Invalid procedure call or argument", L"", 0, L"", 0});
  forget_pending();
  EXPECT_EQ(set(Value::missing(), L"here"), S_OK);
  expect({0, L"here", L"", L"", 0, L"", 0});
}

TEST_F(ErrorState, Error_Replace_stores_as_it_stands_and_reads_nothing_pending) {
  fill();
  EXPECT_EQ(replace(5, L"there"), S_OK);
  Fields changed = kFilled;
  changed.number = 5;
  changed.source = L"there";
  expect(changed);
  EXPECT_EQ(replace(Value::missing(), Value::missing(), L"new", L"new.hlp", L"99", 3), S_OK);
  changed.description = L"new";
  changed.help_file = L"new.hlp";
  changed.help_context = 99;  // never HelpId
  changed.last_dll_error = 3;
  expect(changed);
}

TEST_F(ErrorState, Error_Replace_raises_what_can_not_be_converted) {
  fill();
  EXPECT_EQ(replace(7, L"there", L"new", L"new.hlp", L"no number", 3), error_result(13));
  EXPECT_EQ(error_description(), L"Type mismatch");
  expect({7, L"there", L"new", L"new.hlp", 12, L"34", 2});
  EXPECT_EQ(replace(3e9), error_result(6));
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  EXPECT_EQ(replace(nothing), error_result(91));
}

TEST_F(ErrorState, locked_refuses_every_change_and_allows_reading) {
  fill();
  EXPECT_EQ(global->Error_Lock(), S_OK);
  EXPECT_EQ(set(5, L"x", L"y", L"z", 1, 1), S_OK);
  EXPECT_EQ(set(5, L"x", L"y", L"z", L"1", 1), S_OK);
  for (const LONG flags : {0, 2, 4, 8}) EXPECT_EQ(set_ex(flags, 5, L"x", L"y"), S_OK);
  EXPECT_EQ(replace(5, L"x", L"y", L"z", 1, 1), S_OK);
  EXPECT_EQ(replace(L"no number"), S_OK);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  expect(kFilled);
  EXPECT_EQ(global->Error_Unlock(), S_OK);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  expect({});
}

TEST_F(ErrorState, one_unlock_undoes_any_number_of_locks) {
  global->Error_Lock();
  global->Error_Lock();
  global->Error_Unlock();
  EXPECT_EQ(set(5), S_OK);
  expect({5, L"", L"", L"", 0, L"", 0});
}

TEST_F(ErrorState, a_failing_function_leaves_a_locked_record_alone) {
  fill();
  global->Error_Lock();
  String buffer;
  LONG offset = 1;
  Value empty;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &empty, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect(kFilled);
}

TEST_F(ErrorState, Is_UserError_is_true_from_20000_to_29999) {
  const std::pair<LONG, bool> rows[] = {{0, false},    {19999, false}, {20000, true},
                                        {29999, true}, {30000, false}, {65535, false},
                                        {-1, false}};
  for (const auto& [number, expected] : rows) {
    replace(number);
    VARIANT_BOOL answer = VARIANT_FALSE;
    EXPECT_EQ(global->Is_UserError(&answer), S_OK);
    EXPECT_EQ(answer, expected ? VARIANT_TRUE : VARIANT_FALSE) << number;
    LONG last = 0;
    EXPECT_EQ(global->Last_Error(&last), S_OK);
    EXPECT_EQ(last, number);
    EXPECT_EQ(check(), number != 0);
  }
}

TEST_F(ErrorState, Error_HelpId_is_the_number_of_the_text) {
  const std::pair<const wchar_t*, HRESULT> rows[] = {{L"34", S_OK},
                                                     {L"", error_result(13)},
                                                     {L"topic", error_result(13)},
                                                     {L"9999999999", error_result(6)}};
  for (const auto& [text, expected] : rows) {
    set_explicit(Value::missing(), Value::missing(), Value::missing(), Value::missing(),
                 Value(text), Value::missing());
    LONG id = 0;
    EXPECT_EQ(global->Error_HelpId(&id), expected) << text;
    EXPECT_EQ(id, expected == S_OK ? 34 : 0) << text;
  }
}

TEST_F(ErrorState, Get_Error_fills_what_is_given_with_each_fields_own_type) {
  fill();
  global->Error_Lock();
  Value number;
  Value source;
  Value description;
  Value help_file;
  Value help_context;
  Value last_dll_error;
  EXPECT_EQ(
      global->Get_Error(&number, &source, &description, &help_file, &help_context, &last_dll_error),
      S_OK);
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(number.lVal, 20005);
  EXPECT_EQ(source.text(), L"here");
  EXPECT_EQ(description.text(), L"text");
  EXPECT_EQ(help_file.text(), L"my.hlp");
  EXPECT_EQ(help_context.vt, VT_I4);
  EXPECT_EQ(help_context.lVal, 12);
  EXPECT_EQ(last_dll_error.vt, VT_I4);
  EXPECT_EQ(last_dll_error.lVal, 2);
}

TEST_F(ErrorState, Get_Error_gives_HelpId_to_a_variable_that_holds_a_text) {
  fill();
  Value help_context(L"any");
  EXPECT_EQ(global->Get_Error(nullptr, nullptr, nullptr, nullptr, &help_context, nullptr), S_OK);
  EXPECT_EQ(help_context.text(), L"34");
}

TEST_F(ErrorState, Get_Error_leaves_missing_arguments_missing) {
  fill();
  Value missing = Value::missing();
  Value last_dll_error;
  EXPECT_EQ(global->Get_Error(&missing, &missing, &missing, &missing, &missing, &last_dll_error),
            S_OK);
  EXPECT_EQ(missing.vt, VT_ERROR);
  EXPECT_EQ(missing.scode, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(last_dll_error.lVal, 2);
}

TEST_F(ErrorState, Get_Error_passes_over_a_variable_that_can_not_hold_the_field) {
  fill();
  replace(100000);
  SHORT small = 7;
  LONG text_wanted = 7;
  Value number;
  number.vt = VT_BYREF | VT_I2;
  number.piVal = &small;
  Value source;
  source.vt = VT_BYREF | VT_I4;
  source.plVal = &text_wanted;
  Value description;
  EXPECT_EQ(global->Get_Error(&number, &source, &description, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(small, 7);
  EXPECT_EQ(text_wanted, 7);
  EXPECT_EQ(description.text(), L"text");
}

TEST_F(ErrorState, Raise_Error_raises_the_record_and_keeps_it) {
  fill();
  EXPECT_EQ(global->Raise_Error(), error_result(20005));
  Pointer<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, info.receive()), S_OK);
  String source;
  String description;
  String help_file;
  DWORD help_context = 0;
  info->GetSource(&source);
  info->GetDescription(&description);
  info->GetHelpFile(&help_file);
  info->GetHelpContext(&help_context);
  EXPECT_EQ(source, L"here");
  EXPECT_EQ(description, L"text");
  EXPECT_EQ(help_file, L"my.hlp");
  EXPECT_EQ(help_context, 12U);
  expect(kFilled);
}

TEST_F(ErrorState, Raise_Error_without_an_error_or_with_a_number_out_of_range_is_error_5) {
  EXPECT_EQ(global->Raise_Error(), error_result(5));
  replace(65536);
  EXPECT_EQ(global->Raise_Error(), error_result(5));
  replace(65535);
  EXPECT_EQ(global->Raise_Error(), error_result(65535));
}

TEST_F(ErrorState, Raise_Error_raises_a_negative_number_as_the_result_it_is) {
  replace(static_cast<LONG>(E_ACCESSDENIED));
  EXPECT_EQ(global->Raise_Error(), E_ACCESSDENIED);
}

TEST_F(ErrorState, texts_keep_character_0_and_characters_outside_the_code_page) {
  const std::wstring text(L"a\0\x4E2D", 3);
  replace(5, std::wstring_view(text), std::wstring_view(text), std::wstring_view(text));
  expect({5, text, text, text, 0, L"", 0});
}

TEST_F(ErrorState, takes_what_is_pending_in_the_host_and_does_not_clear_it) {
  HostRunTime host;
  ASSERT_TRUE(host);
  host.raise(58, L"File already exists", L"Project1", L"vb.hlp", 1000058, 80);
  EXPECT_EQ(global->Error_Set(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
  expect({58, L"Project1", L"File already exists", L"vb.hlp", 1000058, L"", 80});
  EXPECT_EQ(set_ex(0, Value::missing(), L"mine", L"text"), S_OK);
  expect({58, L"mine", L"text\r\nFile already exists", L"vb.hlp", 1000058, L"", 80});
  EXPECT_EQ(set(20000, Value::missing(), L"text"), S_OK);
  expect({20000, L"Project1", L"text", L"vb.hlp", 1000058, L"", 80});
  EXPECT_EQ(set(5, Value::missing(), L"text", Value::missing(), 12), S_OK);
  expect({5, L"Project1", L"text\r\nFile already exists", L"vb.hlp", 12, L"", 80});
  EXPECT_EQ(set(5, Value::missing(), L"text", Value::missing(), L"12"), S_OK);
  expect({5, L"Project1", L"text\r\nFile already exists", L"vb.hlp", 1000058, L"12", 80});
  EXPECT_EQ(host.number(), 58);
  EXPECT_EQ(host.kept_references(), 0U);
}

TEST_F(ErrorState, a_function_that_fails_in_the_library_clears_what_the_host_has_pending) {
  HostRunTime host;
  ASSERT_TRUE(host);
  host.raise(58, L"File already exists", L"Project1", L"vb.hlp", 1000058, 80);
  String buffer;
  LONG offset = 1;
  Value empty;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &empty, nullptr, &failed), S_OK);
  expect({13, L"KwRtLibMod.Buffer_Put", L"Type mismatch", L"", 0, L"0", 0});
  EXPECT_EQ(host.number(), 0);
}

// QVtError, the record as a class of its own.

// Another implementation of the record; it notes which fields are stored, in their order.
class ForeignRecord final : public _QVtError {
 public:
  std::wstring stored;
  LONG number = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Description(BSTR) override { return note(L"Description"); }
  HRESULT STDMETHODCALLTYPE get_HelpContext(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_HelpContext(LONG) override { return note(L"HelpContext"); }
  HRESULT STDMETHODCALLTYPE get_HelpFile(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_HelpFile(BSTR) override { return note(L"HelpFile"); }
  HRESULT STDMETHODCALLTYPE get_HelpId(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_HelpId(BSTR) override { return note(L"HelpId"); }
  HRESULT STDMETHODCALLTYPE get_LastDLLError(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LastDLLError(LONG) override { return note(L"LastDLLError"); }
  HRESULT STDMETHODCALLTYPE get_Number(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Number(LONG value) override {
    number = value;
    return note(L"Number");
  }
  HRESULT STDMETHODCALLTYPE get_Source(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Source(BSTR) override { return note(L"Source"); }
  HRESULT STDMETHODCALLTYPE get_Locked(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Locked(VARIANT_BOOL) override { return note(L"Locked"); }
  HRESULT STDMETHODCALLTYPE get_Caption(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Caption(BSTR) override { return note(L"Caption"); }
  HRESULT STDMETHODCALLTYPE get_Buttons(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Buttons(LONG) override { return note(L"Buttons"); }
  HRESULT STDMETHODCALLTYPE CopyTo(_QVtError**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UserId(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_UserId(BSTR) override { return note(L"UserId"); }

 private:
  HRESULT note(const wchar_t* field) {
    stored += field;
    stored += L' ';
    return S_OK;
  }
};

Pointer<_QVtError> create_record() { return create<_QVtError>(CLSID_QVtError); }

void fill(_QVtError& record, const wchar_t* text, LONG number, VARIANT_BOOL locked) {
  const String value(text);
  EXPECT_EQ(record.put_Description(value), S_OK);
  EXPECT_EQ(record.put_HelpContext(number), S_OK);
  EXPECT_EQ(record.put_HelpFile(value), S_OK);
  EXPECT_EQ(record.put_HelpId(value), S_OK);
  EXPECT_EQ(record.put_LastDLLError(number), S_OK);
  EXPECT_EQ(record.put_Number(number), S_OK);
  EXPECT_EQ(record.put_Source(value), S_OK);
  EXPECT_EQ(record.put_Locked(locked), S_OK);
  EXPECT_EQ(record.put_Caption(value), S_OK);
  EXPECT_EQ(record.put_Buttons(number), S_OK);
  EXPECT_EQ(record.put_UserId(value), S_OK);
}

void expect_copied(_QVtError& record, const std::wstring& text, LONG number, VARIANT_BOOL locked) {
  using GetText = HRESULT (STDMETHODCALLTYPE _QVtError::*)(BSTR*);
  using GetNumber = HRESULT (STDMETHODCALLTYPE _QVtError::*)(LONG*);
  for (const GetText get :
       {&_QVtError::get_Description, &_QVtError::get_HelpFile, &_QVtError::get_HelpId,
        &_QVtError::get_Source, &_QVtError::get_UserId}) {
    String value;
    EXPECT_EQ((record.*get)(&value), S_OK);
    EXPECT_EQ(value, text);
  }
  for (const GetNumber get :
       {&_QVtError::get_HelpContext, &_QVtError::get_LastDLLError, &_QVtError::get_Number}) {
    LONG value = -1;
    EXPECT_EQ((record.*get)(&value), S_OK);
    EXPECT_EQ(value, number);
  }
  VARIANT_BOOL value = VARIANT_FALSE;
  EXPECT_EQ(record.get_Locked(&value), S_OK);
  EXPECT_EQ(value, locked);
}

void expect_display(_QVtError& record, const std::wstring& caption, LONG buttons) {
  String text;
  LONG number = -1;
  EXPECT_EQ(record.get_Caption(&text), S_OK);
  EXPECT_EQ(record.get_Buttons(&number), S_OK);
  EXPECT_EQ(text, caption);
  EXPECT_EQ(number, buttons);
}

TEST(ErrorRecord, begins_empty_and_unlocked) {
  const auto record = create_record();
  expect_copied(*record.get(), L"", 0, VARIANT_FALSE);
  expect_display(*record.get(), L"", 0);
}

TEST(ErrorRecord, keeps_each_field_as_it_was_put) {
  const auto record = create_record();
  fill(*record.get(), L"text", 7, VARIANT_TRUE);
  expect_copied(*record.get(), L"text", 7, VARIANT_TRUE);
  expect_display(*record.get(), L"text", 7);
}

TEST(ErrorRecord, a_locked_record_takes_its_own_properties_all_the_same) {
  const auto record = create_record();
  record->put_Locked(VARIANT_TRUE);
  EXPECT_EQ(record->put_Number(5), S_OK);
  LONG number = 0;
  record->get_Number(&number);
  EXPECT_EQ(number, 5);
}

TEST(ErrorRecord, CopyTo_leaves_the_targets_caption_and_buttons) {
  const auto source = create_record();
  auto target = create_record();
  fill(*source.get(), L"from", 7, VARIANT_TRUE);
  fill(*target.get(), L"to", 9, VARIANT_FALSE);
  EXPECT_EQ(source->CopyTo(target.variable()), S_OK);
  expect_copied(*target.get(), L"from", 7, VARIANT_TRUE);
  expect_display(*target.get(), L"to", 9);
}

TEST(ErrorRecord, CopyTo_itself_changes_nothing) {
  auto record = create_record();
  fill(*record.get(), L"text", 7, VARIANT_TRUE);
  EXPECT_EQ(record->CopyTo(record.variable()), S_OK);
  expect_copied(*record.get(), L"text", 7, VARIANT_TRUE);
}

TEST(ErrorRecord, CopyTo_assigns_the_fields_in_their_order_to_any_record) {
  const auto source = create_record();
  fill(*source.get(), L"from", 7, VARIANT_TRUE);
  ForeignRecord target;
  _QVtError* variable = &target;
  EXPECT_EQ(source->CopyTo(&variable), S_OK);
  EXPECT_EQ(target.stored,
            L"Description HelpContext HelpFile HelpId LastDLLError Number Source Locked UserId ");
  EXPECT_EQ(target.number, 7);
}

TEST(ErrorRecord, CopyTo_nothing_is_error_91) {
  const auto source = create_record();
  _QVtError* nothing = nullptr;
  EXPECT_EQ(source->CopyTo(&nothing), error_result(91));
}

TEST(ErrorRecord, answers_to_the_interface_of_its_earlier_version) {
  constexpr IID kEarlier = {
      0xa768c919, 0x2db0, 0x48cc, {0x97, 0x7e, 0x27, 0x58, 0x01, 0xcf, 0xda, 0xa4}};
  const auto record = create_record();
  Pointer<_QVtError> earlier;
  EXPECT_EQ(record->QueryInterface(kEarlier, reinterpret_cast<void**>(earlier.receive())), S_OK);
  EXPECT_EQ(earlier.get(), record.get());
}

}  // namespace
}  // namespace qv::tests
