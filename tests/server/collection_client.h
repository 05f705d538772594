// A collection of the server as a typed client uses it.
#pragma once

#include <string>
#include <vector>

#include "server/client.h"

namespace qv::tests {

using Texts = std::vector<std::wstring>;

// What a value says, for comparing rows of values: the text, or the number.
inline std::wstring shown(const VARIANT& value) {
  Value text;
  const HRESULT status = VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), LOCALE_INVARIANT,
                                             VARIANT_ALPHABOOL, VT_BSTR);
  return SUCCEEDED(status) ? std::wstring(text.text()) : L"?";
}

// Any object whose references are counted by itself, so that a test sees whether it is held.
class CountedObject final : public IDispatch {
 public:
  ULONG references = 1;
  Value as_value() {
    Value value;
    value.vt = VT_DISPATCH;
    value.pdispVal = this;
    AddRef();
    return value;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }  // lives on the stack
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
};

// What kwCollection and kwDictionary have in common. Failures are HRESULTs, answers are checked to
// have come without one.
template <class Interface>
class KeyedClient {
 public:
  explicit KeyedClient(const CLSID& class_id) : object(create<Interface>(class_id)) {}

  HRESULT remove(Value index) { return object->Remove(&index); }
  LONG count() {
    LONG result = -1;
    EXPECT_EQ(object->Count(&result), S_OK);
    return result;
  }
  HRESULT get(Value index, Value& item) { return object->get_Item(&index, &item); }
  Value item(Value index) {
    Value result;
    EXPECT_EQ(get(index, result), S_OK);
    return result;
  }
  HRESULT item_error(Value index) {
    Value result;
    const HRESULT status = get(index, result);
    EXPECT_EQ(result.vt, VT_EMPTY);
    return status;
  }
  bool exists(Value index) {
    VARIANT_BOOL result = 1;
    EXPECT_EQ(object->ItemExist(&index, &result), S_OK);
    EXPECT_TRUE(result == VARIANT_TRUE || result == VARIANT_FALSE);
    return result != VARIANT_FALSE;
  }
  void clear() { EXPECT_EQ(object->Clear(), S_OK); }
  Pointer<IEnumVARIANT> enumerator() {
    Pointer<IUnknown> unknown;
    EXPECT_EQ(object->NewEnum(unknown.receive()), S_OK);
    return Pointer<IEnumVARIANT>::from(unknown.get());
  }

  Pointer<Interface> object;
};

class Collection : public KeyedClient<_kwCollection> {
 public:
  Collection() : KeyedClient(CLSID_kwCollection) {}

  HRESULT add(Value item, Value key = Value::missing(), Value before = Value::missing(),
              Value after = Value::missing()) {
    return object->Add(&item, &key, &before, &after);
  }
  void fill(const Texts& keys) {
    for (const auto& key : keys) EXPECT_EQ(add((L"item " + key).c_str(), key.c_str()), S_OK);
  }
  HRESULT key(Value index, String& key) { return object->get_Key(&index, &key); }
  std::wstring key(Value index) {
    String result;
    EXPECT_EQ(key(index, result), S_OK);
    return std::wstring(result.view());
  }
  HRESULT key_error(Value index) {
    String result;
    const HRESULT status = key(index, result);
    EXPECT_EQ(result.view(), L"");
    return status;
  }
  // True = not found.
  bool assign(Value index, Value& item) {
    VARIANT_BOOL result = 1;
    EXPECT_EQ(object->ItemAssign(&index, &item, &result), S_OK);
    EXPECT_TRUE(result == VARIANT_TRUE || result == VARIANT_FALSE);
    return result != VARIANT_FALSE;
  }
  Texts items() {
    Texts texts;
    for (LONG i = 1; i <= count(); ++i) texts.push_back(shown(item(i)));
    return texts;
  }
  Texts keys() {
    Texts texts;
    for (LONG i = 1;; ++i) {
      String text;
      if (FAILED(key(i, text))) break;
      texts.emplace_back(text.view());
    }
    return texts;
  }
};

class Dictionary : public KeyedClient<_kwDictionary> {
 public:
  Dictionary() : KeyedClient(CLSID_kwDictionary) {}

  HRESULT add(Value item, Value key = Value::missing(), Value before = Value::missing(),
              Value after = Value::missing(), Value value = Value::missing()) {
    return object->Add(&item, &key, &before, &after, &value);
  }
};

// The number of the run-time error that is pending.
inline LONG pending_error(const Pointer<_KwRtLib>& global) {
  EXPECT_EQ(global->Error_Set(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
  LONG number = -1;
  EXPECT_EQ(global->Error_Number(&number), S_OK);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  return number;
}

}  // namespace qv::tests
