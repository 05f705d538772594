// A client's own sort helper: it writes down what it is asked, and answers by a function of the
// client's. It stands on the stack, so references are not counted.
#pragma once

#include <functional>
#include <string>

#include "server/client.h"

namespace qv::tests {

class SortHelper : public _QvSort {
 public:
  // Both do what a QvSort of the server does, unless the test puts something else in their place.
  std::function<HRESULT(VARIANT*, VARIANT*, LONG*)> on_compare =
      [this](VARIANT* a, VARIANT* b, LONG* result) { return standard_->Compare(a, b, result); };
  std::function<HRESULT(VARIANT*, VARIANT*)> on_swap = [this](VARIANT* a, VARIANT* b) {
    return standard_->Swap(a, b);
  };
  int compares = 0;
  int swaps = 0;

  _QvSort** variable() {
    pointer_ = this;
    return &pointer_;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
                       IsEqualIID(id, __uuidof(_QvSort));
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

  HRESULT STDMETHODCALLTYPE Compare(VARIANT* a, VARIANT* b, LONG* result) override {
    ++compares;
    return on_compare(a, b, result);
  }
  HRESULT STDMETHODCALLTYPE Swap(VARIANT* a, VARIANT* b) override {
    ++swaps;
    return on_swap(a, b);
  }

 private:
  Pointer<_QvSort> standard_ = create<_QvSort>(CLSID_QvSort);
  _QvSort* pointer_ = nullptr;
};

// The error of a helper: 513 with texts of its own.
inline HRESULT raise_helper_error() {
  Pointer<ICreateErrorInfo> info;
  CreateErrorInfo(info.receive());
  info->SetGUID(__uuidof(_QvSort));
  info->SetSource(const_cast<wchar_t*>(L"Client.Helper"));
  info->SetDescription(const_cast<wchar_t*>(L"no more"));
  SetErrorInfo(0, Pointer<IErrorInfo>::from(info.get()).get());
  return error_result(513);
}

}  // namespace qv::tests
