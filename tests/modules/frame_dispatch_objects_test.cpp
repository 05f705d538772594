// Late-bound calls with objects, properties and records.
#include "modules/frame_dispatch_probe.h"

namespace qv::dispatch::tests {
namespace {

TEST_F(LateBound, objects_by_reference_and_by_value) {
  Echo echo;
  {
    Variant held{Object<IDispatch>(&echo)};
    probe.on_object = [&](IDispatch** a) {
      EXPECT_EQ(*a, &echo);
      return S_OK;
    };
    EXPECT_EQ(invoke_with(kObjectRef, {variable(held)}), S_OK);
    EXPECT_EQ(invoke_with(kObjectRef, {*held.raw()}), S_OK);
    EXPECT_EQ(invoke_with(kObjectValue, {variable(held)}), S_OK);
    IDispatch* typed_variable = &echo;
    EXPECT_EQ(invoke_with(kObjectRef, {typed(VT_DISPATCH, &typed_variable)}), S_OK);
    EXPECT_EQ(typed_variable, &echo);
    EXPECT_EQ(echo.references, 2U);
  }
  EXPECT_EQ(echo.references, 1U);
}

TEST_F(LateBound, nothing_and_an_empty_variable_are_no_object) {
  probe.on_object = [](IDispatch** a) {
    EXPECT_EQ(*a, nullptr);
    return S_OK;
  };
  const Variant nothing{Object<IDispatch>()};
  Variant empty;
  IDispatch* none = nullptr;
  EXPECT_EQ(invoke_with(kObjectRef, {*nothing.raw()}), S_OK);
  EXPECT_EQ(invoke_with(kObjectRef, {variable(empty)}), S_OK);
  EXPECT_EQ(invoke_with(kObjectRef, {typed(VT_DISPATCH, &none)}), S_OK);
  EXPECT_TRUE(empty.is_empty());
}

TEST_F(LateBound, an_object_that_the_member_stores_comes_back) {
  Echo echo;
  {
    probe.on_object = [&](IDispatch** a) {
      if (*a != nullptr) (*a)->Release();
      echo.AddRef();
      return *a = &echo, S_OK;
    };
    Echo old;
    Variant held{Object<IDispatch>(&old)};
    EXPECT_EQ(invoke_with(kObjectRef, {variable(held)}), S_OK);
    EXPECT_EQ(held.raw()->pdispVal, &echo);
    EXPECT_EQ(old.references, 1U);
    IDispatch* typed_variable = nullptr;
    EXPECT_EQ(invoke_with(kObjectRef, {typed(VT_DISPATCH, &typed_variable)}), S_OK);
    EXPECT_EQ(typed_variable, &echo);
    typed_variable->Release();
    EXPECT_EQ(invoke_with(kObjectRef, {*Variant(Object<IDispatch>()).raw()}), S_OK);
  }
  EXPECT_EQ(echo.references, 1U);
}

TEST_F(LateBound, what_is_no_object_or_not_the_interface_is_refused) {
  EXPECT_EQ(invoke_with(kObjectRef, {*number(1).raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(invoke_with(kObjectRef, {*Variant::null().raw()}), DISP_E_TYPEMISMATCH);
  Echo echo;
  EXPECT_EQ(invoke_with(kHelper, {*Variant(Object<IDispatch>(&echo)).raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_FALSE(probe.called);
  EXPECT_EQ(echo.references, 1U);
}

TEST_F(LateBound, an_object_gives_its_default_value_where_a_value_is_needed) {
  Echo echo;
  echo.own_value = number(42);
  probe.on_long = [](LONG* a) {
    EXPECT_EQ(*a, 42);
    return S_OK;
  };
  EXPECT_EQ(invoke_with(kLong, {*Variant(Object<IDispatch>(&echo)).raw()}), S_OK);
}

TEST_F(LateBound, nothing_where_a_value_is_needed_is_refused) {
  Variant nothing{Object<IDispatch>()};
  IDispatch* none = nullptr;
  for (const VARIANT& argument :
       {*nothing.raw(), variable(nothing), typed(VT_DISPATCH, &none), typed(VT_UNKNOWN, &none)}) {
    EXPECT_EQ(invoke_with(kLong, {argument}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(bad_argument, 0U);
  }
  EXPECT_FALSE(probe.called);
}

// Properties.

TEST_F(LateBound, a_property_is_read_and_put) {
  const Variant value(L"new");
  EXPECT_EQ(invoke_with(kTextProperty, {*value.raw()}, DISPATCH_PROPERTYPUT, {DISPID_PROPERTYPUT}),
            S_OK);
  EXPECT_EQ(invoke_with(kTextProperty, {}, DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(result.text_view(), L"new");
  EXPECT_EQ(invoke_with(kTextProperty, {}, DISPATCH_PROPERTYGET | DISPATCH_METHOD), S_OK);
  EXPECT_EQ(invoke_with(kTextProperty, {}, DISPATCH_METHOD), S_OK);
  EXPECT_EQ(result.text_view(), L"new");
}

TEST_F(LateBound, a_property_with_an_index_is_put_by_index_and_value) {
  EXPECT_EQ(invoke_with(kItem, {*number(4).raw(), *number(8).raw()}, DISPATCH_PROPERTYPUT,
                        {DISPID_PROPERTYPUT}),
            S_OK);
  EXPECT_EQ(probe.text, L"4=8");
  EXPECT_EQ(invoke_with(kItem, {*number(4).raw()}, DISPATCH_PROPERTYPUT, {DISPID_PROPERTYPUT}),
            DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(LateBound, the_default_member_is_item) {
  EXPECT_EQ(invoke_with(DISPID_VALUE, {*number(4).raw()}, DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(result.to_long(), 4);
}

TEST_F(LateBound, an_object_property_is_put_with_set_or_let) {
  Echo echo;
  {
    const Variant held{Object<IDispatch>(&echo)};
    for (const WORD kind : {WORD{DISPATCH_PROPERTYPUTREF}, WORD{DISPATCH_PROPERTYPUT}}) {
      EXPECT_EQ(invoke_with(kList, {*held.raw()}, kind, {DISPID_PROPERTYPUT}), S_OK);
    }
    EXPECT_EQ(invoke_with(kList, {}, DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(result.raw()->pdispVal, &echo);
    result = Variant();
    probe.list = {};
  }
  EXPECT_EQ(echo.references, 1U);
}

TEST_F(LateBound, arguments_of_a_property_without_any_go_to_the_default_member_of_its_object) {
  Echo echo;
  probe.list = Object<IDispatch>(&echo);
  EXPECT_EQ(invoke_with(kList, {*number(42).raw()}, DISPATCH_PROPERTYGET | DISPATCH_METHOD), S_OK);
  EXPECT_EQ(result.to_long(), 42);
  EXPECT_EQ(echo.flags, DISPATCH_PROPERTYGET | DISPATCH_METHOD);
  probe.list = {};
  EXPECT_EQ(echo.references, 1U);
  EXPECT_EQ(invoke_with(kList, {*number(42).raw()}, DISPATCH_PROPERTYGET), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoke_with(kTextProperty, {*number(1).raw()}, DISPATCH_PROPERTYGET),
            DISP_E_BADPARAMCOUNT);
  EXPECT_TRUE(result.is_empty());
}

// Records.

HRESULT registered_record(IRecordInfo** info) noexcept {
  Object<ITypeLib> library;
  Object<ITypeInfo> description;
  const HRESULT status = LoadRegTypeLib(LIBID_QvRtLibOle, kQvRtLibOleMajor, kQvRtLibOleMinor, 0x409,
                                        library.receive());
  if (FAILED(status)) return status;
  library.get()->GetTypeInfoOfGuid(GUID_BFILTER, description.receive());
  return GetRecordInfoFromTypeInfo(description.get(), info);
}

TEST_F(LateBound, records_come_and_go_by_reference_and_as_results) {
  set_record_finder(&registered_record);
  EXPECT_EQ(invoke_with(kRecordResult, {}, DISPATCH_PROPERTYGET), S_OK);
  ASSERT_EQ(result.type(), VT_RECORD);
  VARIANT record = result.release();
  EXPECT_EQ(static_cast<BFILTER*>(record.pvRecord)->Words, 2);
  probe.on_record = [](BFILTER* a) {
    EXPECT_EQ(a->Bits, 1);
    return a->Bits = 11, S_OK;
  };
  EXPECT_EQ(invoke_with(kRecord, {record}), S_OK);
  EXPECT_EQ(static_cast<BFILTER*>(record.pvRecord)->Bits, 11);
  probe.on_record = [](BFILTER* a) { return a->Bits = 12, S_OK; };
  EXPECT_EQ(invoke_with(kRecord, {typed(VT_VARIANT, &record)}), S_OK);
  EXPECT_EQ(static_cast<BFILTER*>(record.pvRecord)->Bits, 12);
  EXPECT_EQ(invoke_with(kRecord, {*number(1).raw()}), DISP_E_TYPEMISMATCH);
  VariantClear(&record);
}

}  // namespace
}  // namespace qv::dispatch::tests
