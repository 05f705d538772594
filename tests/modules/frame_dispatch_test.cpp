// Late-bound calls: how arguments are placed, converted and given back, and what fails.
#include "modules/frame_dispatch_probe.h"

namespace qv::dispatch::tests {
namespace {

TEST_F(LateBound, a_variable_of_the_very_type_is_worked_on_in_place) {
  Variant text(L"abc");
  const BSTR before = text.raw()->bstrVal;
  probe.on_text = [&](BSTR* a) {
    EXPECT_EQ(*a, before);
    return SysReAllocString(a, L"longer text"), S_OK;
  };
  EXPECT_EQ(invoke_with(kText, {variable(text)}), S_OK);
  EXPECT_EQ(text.type(), VT_BSTR);
  EXPECT_EQ(text.text_view(), L"longer text");
}

TEST_F(LateBound, a_variable_handed_over_twice_is_one_variable) {
  Variant text(L"abc");
  Variant other = number(1);
  probe.on_two = [&](LONG*, BSTR* b) { return SysReAllocString(b, L"changed"), S_OK; };
  EXPECT_EQ(invoke_with(kTwoArguments, {variable(other), variable(text)}), S_OK);
  EXPECT_EQ(text.text_view(), L"changed");

  Variant twice = number(7);
  LONG* seen = nullptr;
  probe.on_long = [&](LONG* a) {
    seen = a;
    // While the call lasts the variable is a reference to the value.
    VARIANT again = variable(twice);
    DISPPARAMS parameters{&again, nullptr, 1, 0};
    probe.on_long = [&](LONG* inner) {
      EXPECT_EQ(inner, seen);
      return ++*inner, S_OK;
    };
    return invoke(kTable, &probe, kLong, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(invoke_with(kLong, {variable(twice)}), S_OK);
  EXPECT_EQ(twice.type(), VT_I4);
  EXPECT_EQ(twice.to_long(), 8);
}

TEST_F(LateBound, a_variable_may_get_another_type_while_the_call_lasts) {
  Variant text(L"abc");
  probe.on_text = [&](BSTR* a) {
    text = number(5);  // what an event handler of the caller may do
    EXPECT_EQ(characters(*a), L"abc");
    return SysReAllocString(a, L"still a text"), S_OK;
  };
  EXPECT_EQ(invoke_with(kText, {variable(text)}), S_OK);
  EXPECT_EQ(text.type(), VT_I4);
  EXPECT_EQ(text.to_long(), 5);
}

TEST_F(LateBound, a_variable_lent_for_a_call_that_does_not_take_place_comes_back) {
  Variant value = number(3);
  EXPECT_EQ(invoke_with(kTwoArguments, {variable(value)}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(value.type(), VT_I4);
  EXPECT_EQ(value.to_long(), 3);
}

TEST_F(LateBound, a_variable_of_another_type_is_converted_and_gets_the_new_value) {
  Variant value(L"41");
  probe.on_long = [](LONG* a) {
    EXPECT_EQ(*a, 41);
    return *a = 70000, S_OK;
  };
  EXPECT_EQ(invoke_with(kLong, {variable(value)}), S_OK);
  EXPECT_EQ(value.type(), VT_I4);
  EXPECT_EQ(value.to_long(), 70000);
}

TEST_F(LateBound, a_converted_variable_keeps_its_subtype_when_nothing_changed) {
  Variant small(Integer{5});
  EXPECT_EQ(invoke_with(kLong, {variable(small)}), S_OK);
  EXPECT_EQ(small.type(), VT_I2);
  Variant digits = number(12);
  EXPECT_EQ(invoke_with(kText, {variable(digits)}), S_OK);
  EXPECT_EQ(digits.type(), VT_I4);
}

TEST_F(LateBound, an_empty_variable_gets_the_argument_type) {
  Variant empty;
  EXPECT_EQ(invoke_with(kLong, {variable(empty)}), S_OK);
  EXPECT_EQ(empty.type(), VT_I4);
  EXPECT_EQ(empty.to_long(), 0);
}

TEST_F(LateBound, what_a_failing_member_stored_stays_stored) {
  Variant value(Integer{1});
  probe.on_long = [](LONG* a) { return *a = 9, to_hresult(5); };
  EXPECT_EQ(invoke_with(kLong, {variable(value)}), DISP_E_EXCEPTION);
  EXPECT_EQ(value.to_long(), 9);
}

TEST_F(LateBound, a_typed_reference_is_worked_on_in_place) {
  LONG value = 5;
  probe.on_long = [&](LONG* a) {
    EXPECT_EQ(a, &value);
    return *a = 6, S_OK;
  };
  EXPECT_EQ(invoke_with(kLong, {typed(VT_I4, &value)}), S_OK);
  EXPECT_EQ(value, 6);
}

TEST_F(LateBound, a_typed_reference_inside_a_variable_is_worked_on_in_place) {
  LONG value = 5;
  VARIANT inside = typed(VT_I4, &value);
  probe.on_long = [&](LONG* a) {
    EXPECT_EQ(a, &value);
    return *a = 6, S_OK;
  };
  EXPECT_EQ(invoke_with(kLong, {typed(VT_VARIANT, &inside)}), S_OK);
  EXPECT_EQ(inside.vt, VT_BYREF | VT_I4);
  EXPECT_EQ(value, 6);
}

TEST_F(LateBound, a_typed_reference_of_another_type_is_converted_both_ways) {
  SHORT value = 5;
  probe.on_long = [](LONG* a) { return *a += 1, S_OK; };
  EXPECT_EQ(invoke_with(kLong, {typed(VT_I2, &value)}), S_OK);
  EXPECT_EQ(value, 6);
  VARIANT inside = typed(VT_I2, &value);
  EXPECT_EQ(invoke_with(kLong, {typed(VT_VARIANT, &inside)}), S_OK);
  EXPECT_EQ(inside.vt, VT_BYREF | VT_I2);
  EXPECT_EQ(value, 7);
}

TEST_F(LateBound, a_value_too_large_for_the_typed_reference_overflows_on_its_way_back) {
  SHORT value = 5;
  probe.on_long = [](LONG* a) { return *a = 70000, S_OK; };
  EXPECT_EQ(invoke_with(kLong, {typed(VT_I2, &value)}), DISP_E_OVERFLOW);
  EXPECT_EQ(bad_argument, 0U);
  EXPECT_EQ(value, 5);
}

TEST_F(LateBound, every_scalar_by_reference) {
  Variant byte(Byte{1});
  Variant integer(Integer{2});
  Variant single(Single{3});
  Variant real(Double{4});
  Variant currency(Currency{50000});
  Variant date(Date{6});
  Variant truth(True);
  EXPECT_EQ(
      invoke_with(kScalars, {variable(byte), variable(integer), variable(single), variable(real),
                             variable(currency), variable(date), variable(truth)}),
      S_OK);
  EXPECT_EQ(byte.type(), VT_UI1);
  EXPECT_EQ(byte.to_byte(), 2);
  EXPECT_EQ(integer.type(), VT_I2);
  EXPECT_EQ(integer.to_integer(), 3);
  EXPECT_EQ(single.type(), VT_R4);
  EXPECT_EQ(single.to_single(), 4);
  EXPECT_EQ(real.type(), VT_R8);
  EXPECT_EQ(real.to_double(), 5);
  EXPECT_EQ(currency.type(), VT_CY);
  EXPECT_EQ(currency.to_currency().ten_thousandths, 60000);
  EXPECT_EQ(date.type(), VT_DATE);
  EXPECT_EQ(date.to_date().days, 7);
  EXPECT_EQ(truth.type(), VT_BOOL);
  EXPECT_FALSE(truth.to_boolean());

  BYTE b = 1;
  SHORT i = 2;
  FLOAT s = 3;
  DOUBLE d = 4;
  CY c;
  c.int64 = 50000;
  DATE t = 6;
  VARIANT_BOOL yes = VARIANT_TRUE;
  EXPECT_EQ(invoke_with(kScalars,
                        {typed(VT_UI1, &b), typed(VT_I2, &i), typed(VT_R4, &s), typed(VT_R8, &d),
                         typed(VT_CY, &c), typed(VT_DATE, &t), typed(VT_BOOL, &yes)}),
            S_OK);
  EXPECT_EQ(b, 2);
  EXPECT_EQ(i, 3);
  EXPECT_EQ(s, 4);
  EXPECT_EQ(d, 5);
  EXPECT_EQ(c.int64, 60000);
  EXPECT_EQ(t, 7);
  EXPECT_EQ(yes, VARIANT_FALSE);
}

TEST_F(LateBound, values_are_converted_and_the_result_comes_back) {
  Variant text = number(77);
  Variant truth(Integer{1});
  EXPECT_EQ(invoke_with(kValues, {*Variant(L" 12 ").raw(), variable(text), *truth.raw()}), S_OK);
  EXPECT_EQ(result.type(), VT_I4);
  EXPECT_EQ(result.to_long(), 12);
  EXPECT_EQ(probe.text, L"77");
  EXPECT_EQ(text.type(), VT_I4);
}

TEST_F(LateBound, named_arguments_come_in_any_order) {
  const Variant a = number(3);
  const Variant b(L"text");
  const Variant c(True);
  // The list runs backwards: the last of these is the first of the list.
  EXPECT_EQ(invoke_with(kValues, {*b.raw(), *a.raw(), *c.raw()}, DISPATCH_METHOD, {2, 0, 1}), S_OK);
  EXPECT_EQ(result.to_long(), 3);
  EXPECT_EQ(probe.text, L"text");
  EXPECT_EQ(invoke_with(kValues, {*a.raw(), *b.raw(), *c.raw()}, DISPATCH_METHOD, {2, 1}), S_OK);
  EXPECT_EQ(result.to_long(), 3);
}

TEST_F(LateBound, an_unknown_or_doubled_named_argument_is_refused) {
  const Variant a = number(3);
  const Variant b(L"text");
  const Variant c(True);
  EXPECT_EQ(invoke_with(kValues, {*a.raw(), *b.raw(), *c.raw()}, DISPATCH_METHOD, {7}),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(bad_argument, 0U);
  EXPECT_EQ(invoke_with(kValues, {*a.raw(), *b.raw(), *c.raw()}, DISPATCH_METHOD, {0}),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(
      invoke_with(kValues, {*a.raw(), *b.raw(), *c.raw()}, DISPATCH_METHOD, {DISPID_PROPERTYPUT}),
      DISP_E_PARAMNOTFOUND);
  EXPECT_FALSE(probe.called);
}

TEST_F(LateBound, wrong_counts_of_arguments) {
  const Variant a = number(3);
  EXPECT_EQ(invoke_with(kLong, {*a.raw(), *a.raw()}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke_with(kLong, {}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kLong, {*Variant::missing().raw()}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(bad_argument, 0U);
  EXPECT_EQ(invoke_with(kAny, {}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kAny, {*Variant::missing().raw()}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kAnyValue, {*Variant::missing().raw()}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kBytes, {}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kObjectRef, {}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(invoke_with(kRecord, {}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_FALSE(probe.called);
}

TEST_F(LateBound, the_bad_argument_is_told_by_its_place_in_the_list) {
  const Variant a = number(3);
  const Variant text(L"abc");
  const Variant truth(True);
  // The list runs backwards, so the first of three is number 2.
  EXPECT_EQ(invoke_with(kValues, {*text.raw(), *text.raw(), *truth.raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(bad_argument, 2U);
  EXPECT_EQ(invoke_with(kValues, {*a.raw(), *text.raw(), *text.raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(bad_argument, 0U);
  EXPECT_EQ(invoke_with(kValues, {*Variant(Double{3e9}).raw(), *text.raw(), *truth.raw()}),
            DISP_E_OVERFLOW);
  EXPECT_EQ(bad_argument, 2U);
}

TEST_F(LateBound, null_where_a_number_or_text_is_needed_is_error_94) {
  expect_exception(invoke_with(kLong, {*Variant::null().raw()}), 94, L"Invalid use of Null");
  EXPECT_EQ(bad_argument, 0U);
  Variant null = Variant::null();
  expect_exception(invoke_with(kText, {variable(null)}), 94, L"Invalid use of Null");
  EXPECT_TRUE(null.is_null());
}

TEST_F(LateBound, a_stale_error_object_does_not_describe_an_argument) {
  Object<ICreateErrorInfo> info;
  ASSERT_EQ(CreateErrorInfo(info.receive()), S_OK);
  wchar_t stale[] = L"stale";
  info->SetDescription(stale);
  SetErrorInfo(0, Object<IErrorInfo>::from(info.get()).get());
  expect_exception(invoke_with(kLong, {*Variant::null().raw()}), 94, L"Invalid use of Null");
  SetErrorInfo(0, nullptr);
}

TEST_F(LateBound, a_failed_member_without_error_object_is_described_by_its_number) {
  probe.on_long = [](LONG*) { return to_hresult(7); };
  expect_exception(invoke_with(kLong, {*number(1).raw()}), 7, L"Out of memory");
}

TEST_F(LateBound, a_failed_member_is_described_by_its_error_object) {
  probe.on_long = [](LONG*) {
    Object<ICreateErrorInfo> info;
    CreateErrorInfo(info.receive());
    wchar_t source[] = L"here";
    wchar_t description[] = L"what";
    wchar_t help[] = L"help.chm";
    info->SetSource(source);
    info->SetDescription(description);
    info->SetHelpFile(help);
    info->SetHelpContext(12);
    SetErrorInfo(0, Object<IErrorInfo>::from(info.get()).get());
    return to_hresult(20000);
  };
  EXPECT_EQ(invoke_with(kLong, {*number(1).raw()}), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, to_hresult(20000));
  EXPECT_EQ(characters(exception.bstrSource), L"here");
  EXPECT_EQ(characters(exception.bstrDescription), L"what");
  EXPECT_EQ(characters(exception.bstrHelpFile), L"help.chm");
  EXPECT_EQ(exception.dwHelpContext, 12U);
}

TEST_F(LateBound, references_that_lead_nowhere_are_error_5) {
  constexpr const wchar_t* kText5 = L"Invalid procedure call or argument";
  for (const VARTYPE type : {VT_I4, VT_BSTR, VT_VARIANT, VT_DISPATCH, VT_R8}) {
    expect_exception(invoke_with(kLong, {typed(type, nullptr)}), 5, kText5);
  }
  VARIANT inside = typed(VT_I4, nullptr);
  expect_exception(invoke_with(kLong, {typed(VT_VARIANT, &inside)}), 5, kText5);
  VARIANT deeper = typed(VT_VARIANT, &inside);
  expect_exception(invoke_with(kLong, {typed(VT_VARIANT, &deeper)}), 5, kText5);
  EXPECT_FALSE(probe.called);
}

TEST_F(LateBound, odd_calls_are_refused) {
  DISPPARAMS no_list{nullptr, nullptr, 1, 0};
  EXPECT_EQ(invoke(kTable, &probe, kLong, DISPATCH_METHOD, &no_list, nullptr, nullptr, nullptr),
            E_POINTER);
  EXPECT_EQ(invoke(kTable, &probe, kLong, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            E_POINTER);
  VARIANT one = *number(1).raw();
  DISPPARAMS no_names{&one, nullptr, 1, 1};
  EXPECT_EQ(invoke(kTable, &probe, kLong, DISPATCH_METHOD, &no_names, nullptr, nullptr, nullptr),
            E_POINTER);
  DISPID names[2] = {0, 1};
  DISPPARAMS too_many_names{&one, names, 1, 2};
  EXPECT_EQ(
      invoke(kTable, &probe, kLong, DISPATCH_METHOD, &too_many_names, nullptr, nullptr, nullptr),
      DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke_with(1234, {}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(invoke_with(kLong, {*number(1).raw()}, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(invoke_with(kLong, {*number(1).raw()}, 0), DISP_E_MEMBERNOTFOUND);
  EXPECT_FALSE(probe.called);
}

TEST_F(LateBound, result_and_failure_details_may_be_left_out) {
  VARIANT arguments[3] = {*Variant(True).raw(), *Variant(Text()).raw(), *number(2).raw()};
  DISPPARAMS parameters{arguments, nullptr, 3, 0};
  EXPECT_EQ(
      invoke(kTable, &probe, kValues, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
      S_OK);
  arguments[2] = *Variant::null().raw();
  EXPECT_EQ(
      invoke(kTable, &probe, kValues, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
      DISP_E_EXCEPTION);
}

TEST_F(LateBound, omitted_arguments_take_their_defaults) {
  probe.on_defaults = [](LONG* a, BSTR* b, VARIANT* c, VARIANT* d, VARIANT_BOOL* e) {
    EXPECT_EQ(*a, -1);
    EXPECT_EQ(characters(*b), std::wstring(L"x\0y", 3));
    EXPECT_EQ(c->vt, VT_ERROR);
    EXPECT_EQ(c->scode, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(d->vt, VT_BSTR);
    EXPECT_EQ(characters(d->bstrVal), L" '");
    EXPECT_EQ(*e, VARIANT_TRUE);
  };
  EXPECT_EQ(invoke_with(kDefaultsOf, {}), S_OK);
  const VARIANT missing = *Variant::missing().raw();
  EXPECT_EQ(invoke_with(kDefaultsOf, {missing, missing, missing, missing, missing}), S_OK);
}

TEST_F(LateBound, arguments_in_the_middle_may_be_left_out) {
  probe.on_defaults = [](LONG* a, BSTR* b, VARIANT* c, VARIANT*, VARIANT_BOOL* e) {
    EXPECT_EQ(*a, 4);
    EXPECT_EQ(characters(*b), std::wstring(L"x\0y", 3));
    EXPECT_EQ(c->vt, VT_I4);
    EXPECT_EQ(*e, VARIANT_FALSE);
  };
  const VARIANT missing = *Variant::missing().raw();
  EXPECT_EQ(invoke_with(kDefaultsOf, {*number(4).raw(), missing, *number(5).raw(), missing,
                                      *Variant(False).raw()}),
            S_OK);
  EXPECT_EQ(invoke_with(kDefaultsOf, {*number(4).raw(), *number(5).raw(), *Variant(False).raw()},
                        DISPATCH_METHOD, {4, 2}),
            S_OK);
}

TEST_F(LateBound, a_variant_argument_is_the_callers_variable) {
  Variant value = number(1);
  probe.on_any = [&](VARIANT* a) {
    EXPECT_EQ(a, value.raw());
    return S_OK;
  };
  EXPECT_EQ(invoke_with(kAny, {variable(value)}), S_OK);
}

TEST_F(LateBound, a_typed_variable_travels_through_a_variant_argument) {
  LONG value = 1;
  probe.on_any = [](VARIANT* a) {
    auto& target = *reinterpret_cast<Variant*>(a);
    EXPECT_EQ(target.type(), VT_I4);
    target.assign(Variant(L"12"));
    return S_OK;
  };
  EXPECT_EQ(invoke_with(kAny, {typed(VT_I4, &value)}), S_OK);
  EXPECT_EQ(value, 12);
}

TEST_F(LateBound, a_variant_argument_that_is_no_variable_is_a_copy) {
  const Variant text(L"abc");
  probe.on_any = [&](VARIANT* a) {
    EXPECT_NE(a->bstrVal, text.raw()->bstrVal);
    VariantClear(a);
    return S_OK;
  };
  EXPECT_EQ(invoke_with(kAny, {*text.raw()}), S_OK);
  EXPECT_EQ(text.text_view(), L"abc");
}

TEST_F(LateBound, a_variant_by_value_is_no_reference) {
  Variant value = number(5);
  probe.on_any = [](VARIANT* a) {
    EXPECT_EQ(a->vt, VT_I4);
    EXPECT_EQ(a->lVal, 5);
    return S_OK;
  };
  EXPECT_EQ(invoke_with(kAnyValue, {variable(value)}), S_OK);
  LONG number_of_client = 5;
  EXPECT_EQ(invoke_with(kAnyValue, {typed(VT_I4, &number_of_client)}), S_OK);
}

TEST_F(LateBound, names_of_members_and_arguments_are_found_without_regard_to_case) {
  // With the table of names that the build makes.
  wchar_t name[] = L"lOnG";
  constexpr std::uint16_t kBuckets[] = {1, 1};
  const MemberTable named{kMembers, kBuckets};
  LPOLESTR names[2] = {name, nullptr};
  DISPID ids[2] = {};
  EXPECT_EQ(get_ids_of_names(named, names, 1, ids), S_OK);
  EXPECT_EQ(ids[0], kLong);
  wchar_t argument[] = L"A";
  names[1] = argument;
  EXPECT_EQ(get_ids_of_names(named, names, 2, ids), S_OK);
  EXPECT_EQ(ids[1], 0);
  wchar_t unknown[] = L"nope";
  names[1] = unknown;
  EXPECT_EQ(get_ids_of_names(named, names, 2, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], kLong);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  names[1] = nullptr;
  EXPECT_EQ(get_ids_of_names(named, names, 2, ids), E_POINTER);
  EXPECT_EQ(get_ids_of_names(named, nullptr, 1, ids), E_POINTER);
  EXPECT_EQ(get_ids_of_names(named, names, 1, nullptr), E_POINTER);
}

}  // namespace
}  // namespace qv::dispatch::tests
