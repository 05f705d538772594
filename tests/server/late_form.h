// A form as late-bound callers see one: keeps what is done to it, in order, and fails where the
// test wants it to.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <iterator>
#include <string>
#include <vector>

namespace qv::tests {

class LateForm final : public IDispatch {
 public:
  LONG window_state = 2;
  bool enabled = true;
  // "get Enabled", "put WindowState 1", "SetFocus"; the number's type behind it where it is not an
  // Integer or a Boolean.
  std::vector<std::wstring> calls;
  // The call that raises an error, without its value: "put Enabled".
  std::wstring failing;
  ULONG references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    for (DISPID id = 0; id < static_cast<DISPID>(std::size(kNames)); ++id) {
      if (lstrcmpiW(names[0], kNames[id]) == 0) {
        ids[0] = id;
        return S_OK;
      }
    }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const std::wstring name = kNames[id];
    const bool is_put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    const std::wstring call = id == kSetFocus ? name : (is_put ? L"put " : L"get ") + name;
    calls.push_back(is_put ? call + L" " + shown(parameters->rgvarg[0]) : call);
    if (call == failing) {
      exception->scode = static_cast<HRESULT>(0x800A0000U | 1234);
      exception->bstrDescription = SysAllocString(L"raised by the form");
      return DISP_E_EXCEPTION;
    }
    if (id == kSetFocus) return S_OK;
    if (is_put) {
      const VARIANT& value = parameters->rgvarg[0];
      if (id == kWindowState) window_state = value.vt == VT_I2 ? value.iVal : value.lVal;
      if (id == kEnabled) enabled = value.boolVal != VARIANT_FALSE;
      return S_OK;
    }
    if (id == kWindowState) {
      result->vt = VT_I2;
      result->iVal = static_cast<SHORT>(window_state);
    } else {
      result->vt = VT_BOOL;
      result->boolVal = enabled ? VARIANT_TRUE : VARIANT_FALSE;
    }
    return S_OK;
  }

 private:
  enum Member : DISPID { kWindowState, kEnabled, kSetFocus };
  static constexpr const wchar_t* kNames[] = {L"WindowState", L"Enabled", L"SetFocus"};

  static std::wstring shown(const VARIANT& value) {
    if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? L"True" : L"False";
    if (value.vt == VT_I2) return std::to_wstring(value.iVal);
    return std::to_wstring(value.lVal) + L" of type " + std::to_wstring(value.vt);
  }
};

}  // namespace qv::tests
