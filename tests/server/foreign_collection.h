// A client's own implementation of the collection interface: a list of objects. It stands on the
// stack, so references are not counted.
#pragma once

#include <vector>

#include "server/client.h"

namespace qv::tests {

class ForeignCollection : public _kwCollection {
 public:
  void add(IDispatch* object) {
    Value item;
    item.vt = VT_DISPATCH;
    item.pdispVal = object;
    object->AddRef();
    items_.push_back(item);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
                       IsEqualIID(id, __uuidof(_kwCollection));
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
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

  HRESULT STDMETHODCALLTYPE Add(VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE NewEnum(IUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Remove(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Count(LONG* count) override {
    *count = static_cast<LONG>(items_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* index, VARIANT* item) override {
    EXPECT_EQ(index->vt, VT_I4);
    if (index->lVal < 1 || index->lVal > static_cast<LONG>(items_.size())) return error_result(9);
    return VariantCopy(item, &items_[static_cast<std::size_t>(index->lVal - 1)]);
  }
  HRESULT STDMETHODCALLTYPE ItemAssign(VARIANT*, VARIANT*, VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ItemExist(VARIANT*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clear() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Key(VARIANT*, BSTR*) override { return E_NOTIMPL; }

 private:
  std::vector<Value> items_;
};

}  // namespace qv::tests
