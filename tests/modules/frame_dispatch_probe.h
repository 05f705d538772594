// An object that has a member for every kind of late-bound argument, and what tests of late binding
// share.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <cguid.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "automation/arguments.h"
#include "interfaces.h"

namespace qv::dispatch::tests {

// What the member that was called does; it tests and changes what it was given.
struct ProbeMethods {
  virtual HRESULT STDMETHODCALLTYPE Long_(LONG* a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Text_(BSTR* a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Two(LONG* a, BSTR* b) = 0;
  virtual HRESULT STDMETHODCALLTYPE Values(LONG a, BSTR b, VARIANT_BOOL c, LONG* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE Any(VARIANT* a) = 0;
  virtual HRESULT STDMETHODCALLTYPE AnyValue(VARIANT a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Defaults(LONG* a, BSTR* b, VARIANT* c, VARIANT* d,
                                             VARIANT_BOOL* e) = 0;
  virtual HRESULT STDMETHODCALLTYPE Bytes(SAFEARRAY** a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Texts(SAFEARRAY** a) = 0;
  virtual HRESULT STDMETHODCALLTYPE ObjectRef(IDispatch** a) = 0;
  virtual HRESULT STDMETHODCALLTYPE ObjectValue(IDispatch* a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Helper(_QvSort** a) = 0;
  virtual HRESULT STDMETHODCALLTYPE Record(BFILTER* a) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Record(BFILTER* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Text(BSTR* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Text(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT* index, VARIANT* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Item(VARIANT* index, VARIANT value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_List(IDispatch** result) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_List(IDispatch* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Scalars(BYTE* a, SHORT* b, FLOAT* c, DOUBLE* d, CY* e, DATE* f,
                                            VARIANT_BOOL* g) = 0;
};

inline constexpr ParameterRow kOne[] = {{L"a"}};
inline constexpr ParameterRow kTwo[] = {{L"a"}, {L"b"}};
inline constexpr ParameterRow kThree[] = {{L"a"}, {L"b"}, {L"c"}};
inline constexpr ParameterRow kIndex[] = {{L"index"}};
inline constexpr ParameterRow kIndexValue[] = {{L"index"}, {L"value"}};
inline constexpr ParameterRow kValue[] = {{L"value"}};
inline constexpr ParameterRow kSeven[] = {{L"a"}, {L"b"}, {L"c"}, {L"d"}, {L"e"}, {L"f"}, {L"g"}};
inline constexpr ParameterRow kDefaults[] = {{L"a", true, {Default::Kind::number, -1, {}}},
                                             {L"b", true, {Default::Kind::text, 0, {L"x\0y", 3}}},
                                             {L"c", true, {}},
                                             {L"d", true, {Default::Kind::text, 0, {L" '", 2}}},
                                             {L"e", true, {Default::Kind::number, -1, {}}}};

using L = Ref<VT_I4>;
inline constexpr Operation kLongRows[] = {{DISPATCH_METHOD, 0, &invoke_slot<L>, kOne}};
inline constexpr Operation kTextRows[] = {{DISPATCH_METHOD, 1, &invoke_slot<Ref<VT_BSTR>>, kOne}};
inline constexpr Operation kTwoRows[] = {{DISPATCH_METHOD, 2, &invoke_slot<L, Ref<VT_BSTR>>, kTwo}};
inline constexpr Operation kValuesRows[] = {
    {DISPATCH_METHOD, 3, &invoke_slot<In<VT_I4>, In<VT_BSTR>, In<VT_BOOL>, Out<VT_I4>>, kThree}};
inline constexpr Operation kAnyRows[] = {{DISPATCH_METHOD, 4, &invoke_slot<RefVariant>, kOne}};
inline constexpr Operation kAnyValueRows[] = {{DISPATCH_METHOD, 5, &invoke_slot<InVariant>, kOne}};
inline constexpr Operation kDefaultsRows[] = {
    {DISPATCH_METHOD, 6, &invoke_slot<L, Ref<VT_BSTR>, RefVariant, RefVariant, Ref<VT_BOOL>>,
     kDefaults}};
inline constexpr Operation kBytesRows[] = {
    {DISPATCH_METHOD, 7, &invoke_slot<RefArray<VT_UI1>>, kOne}};
inline constexpr Operation kTextsRows[] = {
    {DISPATCH_METHOD, 8, &invoke_slot<RefArray<VT_BSTR>>, kOne}};
inline constexpr Operation kObjectRefRows[] = {
    {DISPATCH_METHOD, 9, &invoke_slot<RefObject<IDispatch>>, kOne}};
inline constexpr Operation kObjectValueRows[] = {
    {DISPATCH_METHOD, 10, &invoke_slot<InObject<IDispatch>>, kOne}};
inline constexpr Operation kHelperRows[] = {
    {DISPATCH_METHOD, 11, &invoke_slot<RefObject<_QvSort>>, kOne}};
inline constexpr Operation kRecordRows[] = {
    {DISPATCH_METHOD, 12, &invoke_slot<RefRecord<BFILTER>>, kOne}};
inline constexpr Operation kRecordResultRows[] = {
    {DISPATCH_PROPERTYGET, 13, &invoke_slot<OutRecord<BFILTER>>, {}}};
inline constexpr Operation kTextPropertyRows[] = {
    {DISPATCH_PROPERTYGET, 14, &invoke_slot<Out<VT_BSTR>>, {}},
    {DISPATCH_PROPERTYPUT, 15, &invoke_slot<In<VT_BSTR>>, kValue}};
inline constexpr Operation kItemRows[] = {
    {DISPATCH_PROPERTYGET, 16, &invoke_slot<RefVariant, OutVariant>, kIndex},
    {DISPATCH_PROPERTYPUT, 17, &invoke_slot<RefVariant, InVariant>, kIndexValue}};
inline constexpr Operation kListRows[] = {
    {DISPATCH_PROPERTYGET, 18, &invoke_slot<OutObject<IDispatch>>, {}},
    {DISPATCH_PROPERTYPUTREF, 19, &invoke_slot<InObject<IDispatch>>, kValue}};
inline constexpr Operation kScalarsRows[] = {
    {DISPATCH_METHOD, 20,
     &invoke_slot<Ref<VT_UI1>, Ref<VT_I2>, Ref<VT_R4>, Ref<VT_R8>, Ref<VT_CY>, Ref<VT_DATE>,
                  Ref<VT_BOOL>>,
     kSeven}};

enum Id : DISPID {
  kItem = 0,
  kLong = 1,
  kText,
  kTwoArguments,
  kValues,
  kAny,
  kAnyValue,
  kDefaultsOf,
  kBytes,
  kTexts,
  kObjectRef,
  kObjectValue,
  kHelper,
  kRecord,
  kRecordResult,
  kTextProperty,
  kList,
  kScalars,
};
inline constexpr Member kMembers[] = {
    {L"Long", kLong, kLongRows},
    {L"Text", kText, kTextRows},
    {L"Two", kTwoArguments, kTwoRows},
    {L"Values", kValues, kValuesRows},
    {L"Any", kAny, kAnyRows},
    {L"AnyValue", kAnyValue, kAnyValueRows},
    {L"Defaults", kDefaultsOf, kDefaultsRows},
    {L"Bytes", kBytes, kBytesRows},
    {L"Texts", kTexts, kTextsRows},
    {L"ObjectRef", kObjectRef, kObjectRefRows},
    {L"ObjectValue", kObjectValue, kObjectValueRows},
    {L"Helper", kHelper, kHelperRows},
    {L"Record", kRecord, kRecordRows},
    {L"RecordResult", kRecordResult, kRecordResultRows},
    {L"TextProperty", kTextProperty, kTextPropertyRows},
    {L"List", kList, kListRows},
    {L"Scalars", kScalars, kScalarsRows},
    {L"Item", kItem, kItemRows},
};
inline const MemberTable kTable{kMembers, {}};

inline std::wstring characters(BSTR text) { return std::wstring(text, SysStringLen(text)); }

// An object that answers to Item(index) with its index, as a collection's default member.
struct Echo final : IDispatch {
  ULONG references = 1;
  WORD flags = 0;
  Variant own_value;  // the default member without an index
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD how, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    flags = how;
    if (id == DISPID_VALUE && parameters->cArgs == 0) return VariantCopy(result, own_value.raw());
    if (id != DISPID_VALUE || parameters->cArgs != 1) return DISP_E_MEMBERNOTFOUND;
    return VariantCopyInd(result, &parameters->rgvarg[0]);
  }
};

struct Probe final : ProbeMethods {
  std::function<HRESULT(LONG*)> on_long = [](LONG*) { return S_OK; };
  std::function<HRESULT(BSTR*)> on_text = [](BSTR*) { return S_OK; };
  std::function<HRESULT(LONG*, BSTR*)> on_two = [](LONG*, BSTR*) { return S_OK; };
  std::function<HRESULT(VARIANT*)> on_any = [](VARIANT*) { return S_OK; };
  std::function<HRESULT(SAFEARRAY**)> on_array = [](SAFEARRAY**) { return S_OK; };
  std::function<HRESULT(IDispatch**)> on_object = [](IDispatch**) { return S_OK; };
  std::function<HRESULT(BFILTER*)> on_record = [](BFILTER*) { return S_OK; };
  std::function<void(LONG*, BSTR*, VARIANT*, VARIANT*, VARIANT_BOOL*)> on_defaults;
  std::wstring text;
  Object<IDispatch> list;
  bool called = false;

  HRESULT STDMETHODCALLTYPE Long_(LONG* a) override { return called = true, on_long(a); }
  HRESULT STDMETHODCALLTYPE Text_(BSTR* a) override { return called = true, on_text(a); }
  HRESULT STDMETHODCALLTYPE Two(LONG* a, BSTR* b) override { return called = true, on_two(a, b); }
  HRESULT STDMETHODCALLTYPE Values(LONG a, BSTR b, VARIANT_BOOL c, LONG* result) override {
    called = true;
    text = characters(b);
    *result = c == VARIANT_TRUE ? a : -a;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Any(VARIANT* a) override { return called = true, on_any(a); }
  HRESULT STDMETHODCALLTYPE AnyValue(VARIANT a) override { return called = true, on_any(&a); }
  HRESULT STDMETHODCALLTYPE Defaults(LONG* a, BSTR* b, VARIANT* c, VARIANT* d,
                                     VARIANT_BOOL* e) override {
    on_defaults(a, b, c, d, e);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Bytes(SAFEARRAY** a) override { return called = true, on_array(a); }
  HRESULT STDMETHODCALLTYPE Texts(SAFEARRAY** a) override { return called = true, on_array(a); }
  HRESULT STDMETHODCALLTYPE ObjectRef(IDispatch** a) override {
    return called = true, on_object(a);
  }
  HRESULT STDMETHODCALLTYPE ObjectValue(IDispatch* a) override {
    return called = true, on_object(&a);
  }
  HRESULT STDMETHODCALLTYPE Helper(_QvSort** a) override {
    called = true;
    return a != nullptr ? S_OK : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE Record(BFILTER* a) override { return called = true, on_record(a); }
  HRESULT STDMETHODCALLTYPE get_Record(BFILTER* result) override {
    *result = {1, 2, 3, 4};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Text(BSTR* result) override {
    *result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_Text(BSTR value) override { return text = characters(value), S_OK; }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* index, VARIANT* result) override {
    return VariantCopyInd(result, index);
  }
  HRESULT STDMETHODCALLTYPE put_Item(VARIANT* index, VARIANT value) override {
    text = std::to_wstring(index->lVal) + L"=" + std::to_wstring(value.lVal);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_List(IDispatch** result) override {
    *result = Object<IDispatch>(list).release();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE putref_List(IDispatch* value) override {
    list = Object<IDispatch>(value);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scalars(BYTE* a, SHORT* b, FLOAT* c, DOUBLE* d, CY* e, DATE* f,
                                    VARIANT_BOOL* g) override {
    ++*a, ++*b, ++*c, ++*d, e->int64 += 10000, ++*f, *g = static_cast<VARIANT_BOOL>(~*g);
    return S_OK;
  }
};

inline Variant number(Long value) { return Variant(value); }

inline VARIANT variable(Variant& target) {
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = target.raw();
  return reference;
}

inline VARIANT typed(VARTYPE type, void* target) {
  VARIANT reference{};
  reference.vt = VT_BYREF | type;
  reference.byref = target;
  return reference;
}

class LateBound : public testing::Test {
 protected:
  HRESULT invoke_with(DISPID id, std::vector<VARIANT> arguments, WORD flags = DISPATCH_METHOD,
                      std::vector<DISPID> named = {}) {
    std::reverse(arguments.begin(), arguments.end());
    DISPPARAMS parameters{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(named.size())};
    exception = EXCEPINFO{};
    bad_argument = 99;
    result = Variant();
    return invoke(kTable, &probe, id, flags, &parameters, result.raw(), &exception, &bad_argument);
  }
  void TearDown() override { free_exception(); }
  void free_exception() {
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    exception = EXCEPINFO{};
  }
  void expect_exception(HRESULT status, Long error, const wchar_t* description) {
    EXPECT_EQ(status, DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, to_hresult(error));
    EXPECT_EQ(exception.wCode, 0);
    EXPECT_EQ(characters(exception.bstrDescription), description);
    EXPECT_EQ(characters(exception.bstrSource), L"QvRtLibOle");
    free_exception();
  }

  Probe probe;
  Variant result;
  EXCEPINFO exception{};
  UINT bad_argument = 99;
};

}  // namespace qv::dispatch::tests
