// Run-time errors on their way to typed and late-bound callers.
#include "server/client.h"

// Needs the platform's types before it.
#include <cguid.h>

#include <vector>

namespace qv::tests {
namespace {

struct ErrorObject {
  std::wstring source;
  std::wstring description;
  std::wstring help_file;
  DWORD help_context = 0;
  IID interface_id{};
  bool exists = false;
};

// The thread's error object, which is taken.
ErrorObject take_error() {
  ErrorObject error;
  Pointer<IErrorInfo> info;
  GetErrorInfo(0, info.receive());
  if (!info) return error;
  error.exists = true;
  String source;
  String description;
  String help_file;
  info->GetSource(&source);
  info->GetDescription(&description);
  info->GetHelpFile(&help_file);
  info->GetHelpContext(&error.help_context);
  info->GetGUID(&error.interface_id);
  error.source = source.view();
  error.description = description.view();
  error.help_file = help_file.view();
  return error;
}

struct LateCall {
  HRESULT status = S_OK;
  HRESULT scode = 0;
  std::wstring source;
  std::wstring description;
  std::wstring help_file;
  DWORD help_context = 0;
};

LateCall call_late(IDispatch* object, const wchar_t* name, std::vector<Value> arguments = {}) {
  LateCall call;
  DISPID id = DISPID_UNKNOWN;
  auto* text = const_cast<wchar_t*>(name);
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  std::vector<VARIANT> list(arguments.rbegin(), arguments.rend());
  DISPPARAMS parameters{list.data(), nullptr, static_cast<UINT>(list.size()), 0};
  EXCEPINFO exception{};
  Value result;
  call.status = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                               &result, &exception, nullptr);
  EXPECT_EQ(exception.wCode, 0);
  call.scode = exception.scode;
  const auto taken = [](BSTR bstr) {
    std::wstring copy(bstr, SysStringLen(bstr));
    SysFreeString(bstr);
    return copy;
  };
  call.source = taken(exception.bstrSource);
  call.description = taken(exception.bstrDescription);
  call.help_file = taken(exception.bstrHelpFile);
  call.help_context = exception.dwHelpContext;
  return call;
}

TEST(Frame_Failure, a_run_time_error_arrives_with_number_source_and_description) {
  const auto global = create_global();
  String buffer(L"abc");
  LONG offset = 1;
  LONG characters = -1;
  String result;
  EXPECT_EQ(global->Buffer_Right(&buffer, &offset, &characters, &result), error_result(5));
  const ErrorObject error = take_error();
  EXPECT_EQ(error.source, L"QvRtLibOle");
  EXPECT_EQ(error.description, L"Invalid procedure call or argument");
  EXPECT_TRUE(IsEqualIID(error.interface_id, __uuidof(_KwRtLib)));
}

TEST(Frame_Failure, a_late_bound_caller_gets_the_same) {
  const auto global = create_global();
  const LateCall call = call_late(global.get(), L"Buffer_Right", {L"abc", 1, -1});
  EXPECT_EQ(call.status, DISP_E_EXCEPTION);
  EXPECT_EQ(call.scode, error_result(5));
  EXPECT_EQ(call.source, L"QvRtLibOle");
  EXPECT_EQ(call.description, L"Invalid procedure call or argument");
  EXPECT_FALSE(take_error().exists);
}

TEST(Frame_Failure, null_pointers_are_error_5) {
  const auto global = create_global();
  String text;
  LONG number = 1;
  EXPECT_EQ(global->Long_2_Str(nullptr, &text), error_result(5));
  EXPECT_EQ(take_error().description, L"Invalid procedure call or argument");
  EXPECT_EQ(global->Long_2_Str(&number, nullptr), error_result(5));
  const auto record = create<_QVtError>(CLSID_QVtError);
  EXPECT_EQ(record->get_Number(nullptr), error_result(5));
  EXPECT_TRUE(IsEqualIID(take_error().interface_id, __uuidof(_QVtError)));
}

class Frame_RaiseError : public testing::Test {
 protected:
  // Stores the record in explicit mode and raises it, typed and late-bound.
  void expect_raised(LONG number, HRESULT result, const wchar_t* source,
                     const wchar_t* description) {
    Value number_value(number);
    Value source_value(L"there");
    Value description_value(L"what");
    Value help_file(L"app.chm");
    Value help_context(12);
    LONG flags = 8;
    ASSERT_EQ(global_->Error_SetEx(&number_value, &source_value, &description_value, &help_file,
                                   &help_context, nullptr, &flags, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(global_->Raise_Error(), result) << number;
    const ErrorObject error = take_error();
    EXPECT_EQ(error.source, source) << number;
    EXPECT_EQ(error.description, description) << number;
    const LateCall call = call_late(global_.get(), L"Raise_Error");
    EXPECT_EQ(call.status, DISP_E_EXCEPTION) << number;
    EXPECT_EQ(call.scode, result) << number;
    EXPECT_EQ(call.source, source) << number;
    EXPECT_EQ(call.description, description) << number;
    EXPECT_EQ(call.help_file, error.help_file) << number;
    EXPECT_EQ(call.help_context, error.help_context) << number;
    EXPECT_EQ(global_->Reset_Error(), S_OK);
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(Frame_RaiseError, raises_application_and_run_time_numbers) {
  expect_raised(20000, error_result(20000), L"there", L"what");
  expect_raised(5, error_result(5), L"there", L"what");
  expect_raised(65535, error_result(65535), L"there", L"what");
}

TEST_F(Frame_RaiseError, numbers_that_the_language_cannot_raise_are_error_5) {
  for (const LONG number : {0L, 65536L, 2147483647L}) {
    expect_raised(number, error_result(5), L"QvRtLibOle", L"Invalid procedure call or argument");
  }
}

TEST_F(Frame_RaiseError, negative_numbers_are_the_results_themselves) {
  expect_raised(E_FAIL, E_FAIL, L"there", L"what");
  expect_raised(DISP_E_TYPEMISMATCH, DISP_E_TYPEMISMATCH, L"there", L"what");
  expect_raised(error_result(13), error_result(13), L"there", L"what");
}

TEST_F(Frame_RaiseError, hands_help_on) {
  Value number(20001);
  Value help_file(L"app.chm");
  Value help_context(12);
  ASSERT_EQ(global_->Error_Replace(&number, nullptr, nullptr, &help_file, &help_context, nullptr),
            S_OK);
  EXPECT_EQ(global_->Raise_Error(), error_result(20001));
  const ErrorObject error = take_error();
  EXPECT_EQ(error.help_file, L"app.chm");
  EXPECT_EQ(error.help_context, 12U);
  EXPECT_EQ(global_->Reset_Error(), S_OK);
}

TEST(Frame_Failure, a_buffer_beyond_all_memory_is_an_error_and_no_crash) {
  const auto global = create_global();
  String buffer(L"abc");
  LONG offset = 2147483000;
  Value value(1);
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  LONG number = 0;
  EXPECT_EQ(global->Error_Number(&number), S_OK);
  EXPECT_TRUE(number == 7 || number == 14) << number;
  EXPECT_EQ(buffer.view(), L"abc");
  EXPECT_EQ(global->Reset_Error(), S_OK);
}

TEST(Frame_Failure, error_numbers_of_automation_reach_a_late_bound_caller) {
  const auto global = create_global();
  EXPECT_EQ(call_late(global.get(), L"Long_2_Str", {L"no number"}).status, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(call_late(global.get(), L"Long_2_Str", {3e10}).status, DISP_E_OVERFLOW);
  EXPECT_EQ(call_late(global.get(), L"Long_2_Str").status, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(call_late(global.get(), L"Long_2_Str", {1, 2}).status, DISP_E_BADPARAMCOUNT);
  Value null;
  null.vt = VT_NULL;
  const LateCall call = call_late(global.get(), L"Long_2_Str", {null});
  EXPECT_EQ(call.status, DISP_E_EXCEPTION);
  EXPECT_EQ(call.scode, error_result(94));
  EXPECT_EQ(call.description, L"Invalid use of Null");
}

}  // namespace
}  // namespace qv::tests
