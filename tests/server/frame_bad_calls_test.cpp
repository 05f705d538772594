// Wrong calls of every member of every class, as the type library lists them: too few and too many
// arguments, of wrong types, by names and references that lead nowhere. None of them reaches the
// member itself.
#include <functional>

#include "server/frame_members.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace qv::tests {
namespace {

std::string narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// A value that every parameter of that kind takes.
Value fitting(const ParameterOf& parameter) {
  Value value;
  if (parameter.is_array || parameter.type == VT_DISPATCH) return value;
  return parameter.type == VT_BSTR ? Value(L"text") : Value(1);
}

Value byte_array() {
  Value value;
  SAFEARRAYBOUND bound{3, 0};
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = SafeArrayCreate(VT_UI1, 1, &bound);
  return value;
}

// Values that no parameter of that kind takes.
std::vector<Value> unfitting(const ParameterOf& parameter) {
  if (parameter.is_array) return {Value(1), Value(L"text")};
  switch (parameter.type) {
    case VT_VARIANT:
      return {};
    case VT_DISPATCH:
    case VT_UNKNOWN:
    case VT_RECORD:
      return {Value(1), Value(L"text"), byte_array()};
    case VT_BSTR:
      return {byte_array()};
    default:
      return {Value(L"no number"), byte_array()};
  }
}

struct Outcome {
  HRESULT status = S_OK;
  HRESULT scode = 0;
  UINT bad_argument = 99;
  Value result;
};

// Arguments in their order, named ones last.
Outcome invoke(IDispatch* object, const MemberOf& member, WORD kind,
               const std::vector<VARIANT>& arguments, std::vector<DISPID> names = {}) {
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  if (member.is_put() && names.empty() && !arguments.empty()) names = {DISPID_PROPERTYPUT};
  DISPPARAMS parameters{reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                        static_cast<UINT>(names.size())};
  Outcome outcome;
  EXCEPINFO exception{};
  outcome.status = object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                  &outcome.result, &exception, &outcome.bad_argument);
  outcome.scode = exception.scode;
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return outcome;
}

class Frame_BadCalls : public testing::Test {
 protected:
  using Check = std::function<void(IDispatch*, const MemberOf&, std::vector<Value>&)>;

  // With fitting arguments for every parameter.
  void for_every_member(const Check& check) {
    int members = 0;
    for (const LibraryClass& description : library_classes()) {
      const auto object = create<IDispatch>(description.class_id);
      for (const MemberOf& member : members_of(object.get())) {
        SCOPED_TRACE(narrow(description.name + L"." + member.name));
        std::vector<Value> arguments;
        for (const ParameterOf& parameter : member.parameters) {
          arguments.push_back(fitting(parameter));
        }
        check(object.get(), member, arguments);
        ++members;
      }
    }
    EXPECT_GT(members, 500);
  }
};

std::vector<VARIANT> raw(const std::vector<Value>& values) {
  return std::vector<VARIANT>(values.begin(), values.end());
}

TEST_F(Frame_BadCalls, too_many_arguments_are_450) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    // More arguments for a property without any are for what it holds.
    if (member.kind == DISPATCH_PROPERTYGET && arguments.empty()) return;
    arguments.emplace_back(1);
    EXPECT_EQ(invoke(object, member, member.kind, raw(arguments)).status, DISP_E_BADPARAMCOUNT);
  });
}

TEST_F(Frame_BadCalls, a_required_argument_left_out_is_449) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    if (member.is_put() && arguments.size() == 1) arguments.clear();
    for (std::size_t p = arguments.size(); p-- > 0;) {
      arguments.resize(p);
      if (member.is_put() || member.parameters[p].is_optional) continue;
      EXPECT_EQ(invoke(object, member, member.kind, raw(arguments)).status, DISP_E_PARAMNOTOPTIONAL)
          << "argument " << p + 1;
    }
    if (!member.is_put()) return;
    EXPECT_EQ(invoke(object, member, member.kind, {}).status, DISP_E_PARAMNOTOPTIONAL);
  });
}

// As a value, as a variable of the caller's, and as a reference to a typed variable.
TEST_F(Frame_BadCalls, an_argument_of_a_wrong_type_is_13) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    for (std::size_t p = 0; p < arguments.size(); ++p) {
      for (Value& wrong : unfitting(member.parameters[p])) {
        std::vector<VARIANT> forms(3);
        forms[0] = wrong;
        forms[1].vt = VT_BYREF | VT_VARIANT;
        forms[1].pvarVal = &wrong;
        forms[2].vt = static_cast<VARTYPE>(VT_BYREF | wrong.vt);
        forms[2].byref = &wrong.llVal;
        const VARTYPE type_before = wrong.vt;
        for (const VARIANT& form : forms) {
          auto list = raw(arguments);
          list[p] = form;
          const Outcome outcome = invoke(object, member, member.kind, list);
          EXPECT_EQ(outcome.status, DISP_E_TYPEMISMATCH) << "argument " << p + 1;
          EXPECT_EQ(outcome.bad_argument, arguments.size() - 1 - p);
          EXPECT_EQ(outcome.result.vt, VT_EMPTY);
          EXPECT_EQ(wrong.vt, type_before);
        }
      }
    }
  });
}

TEST_F(Frame_BadCalls, a_reference_that_leads_nowhere_is_5) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    for (std::size_t p = 0; p < arguments.size(); ++p) {
      for (const VARTYPE type : {VT_I4, VT_BSTR, VT_VARIANT, VT_DISPATCH}) {
        auto list = raw(arguments);
        list[p].vt = static_cast<VARTYPE>(VT_BYREF | type);
        list[p].byref = nullptr;
        const Outcome outcome = invoke(object, member, member.kind, list);
        EXPECT_EQ(outcome.status, DISP_E_EXCEPTION) << "argument " << p + 1;
        EXPECT_EQ(outcome.scode, error_result(5));
        EXPECT_EQ(outcome.bad_argument, arguments.size() - 1 - p);
      }
    }
  });
}

TEST_F(Frame_BadCalls, an_unknown_name_of_an_argument_and_one_given_twice_are_448) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    if (member.is_put() || arguments.empty()) return;
    for (const DISPID name : {static_cast<DISPID>(arguments.size()), DISPID(1000), DISPID(-1),
                              arguments.size() > 1 ? DISPID(0) : DISPID(99)}) {
      EXPECT_EQ(invoke(object, member, member.kind, raw(arguments), {name}).status,
                DISP_E_PARAMNOTFOUND)
          << name;
    }
  });
}

TEST_F(Frame_BadCalls, assigning_to_a_method_and_to_a_read_only_property_are_438) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>& arguments) {
    if (member.kind != DISPATCH_METHOD) return;
    arguments.emplace_back(1);
    EXPECT_EQ(invoke(object, member, DISPATCH_PROPERTYPUT, raw(arguments)).status,
              DISP_E_MEMBERNOTFOUND);
  });
}

TEST_F(Frame_BadCalls, unknown_names_and_numbers_of_members_are_438) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create<IDispatch>(description.class_id);
    for (const wchar_t* name : {L"No_Such_Member", L"", L"Buffer_Pu", L"\x00e8"}) {
      auto* text = const_cast<wchar_t*>(name);
      DISPID id = 5;
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &text, 1, 0, &id), DISP_E_UNKNOWNNAME);
      EXPECT_EQ(id, DISPID_UNKNOWN);
    }
    for (const DISPID id : {-1, -99, 10000, 0x7FFFFFFF}) {
      MemberOf member;
      member.id = id;
      EXPECT_EQ(invoke(object.get(), member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}).status,
                DISP_E_MEMBERNOTFOUND)
          << id;
    }
  }
}

// Early bound, by the slot in the function table. Members that need no variable are left alone:
// they would do what they are for.
TEST_F(Frame_BadCalls, null_pointers_of_an_early_bound_caller_are_5) {
  for_every_member([](IDispatch* object, const MemberOf& member, std::vector<Value>&) {
    bool needs_variable = member.has_result;
    std::vector<VARTYPE> types;
    std::vector<Value> values;
    for (const ParameterOf& parameter : member.parameters) {
      const bool is_pointer = parameter.is_reference || parameter.is_array ||
                              parameter.type == VT_DISPATCH || parameter.type == VT_BSTR;
      needs_variable |= parameter.is_reference && !parameter.is_optional;
      types.push_back(is_pointer ? +VT_PTR : parameter.type);
      values.emplace_back();
      values.back().vt = parameter.type == VT_VARIANT ? +VT_EMPTY : types.back();
    }
    if (member.has_result) {
      types.push_back(VT_PTR);
      values.emplace_back();
    }
    if (!needs_variable) return;
    std::vector<VARIANT> list = raw(values);
    std::vector<VARIANT*> pointers;
    for (VARIANT& value : list) pointers.push_back(&value);
    for (Value& value : values) value.vt = VT_EMPTY;
    Value answer;
    ASSERT_EQ(DispCallFunc(object, member.offset_bytes, CC_STDCALL, VT_I4,
                           static_cast<UINT>(types.size()), types.data(), pointers.data(), &answer),
              S_OK);
    const HRESULT status = answer.lVal;
    EXPECT_TRUE(status == error_result(5) || status == error_result(445))
        << std::hex << static_cast<unsigned>(status);
    SetErrorInfo(0, nullptr);
  });
}

}  // namespace
}  // namespace qv::tests
