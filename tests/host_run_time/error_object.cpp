// A stand-in for the run-time library of a Visual Basic host: it bears that library's name, exports
// its function for the error object, and gives an error object with the members that matter here.
// The real library is no part of the test machine.
#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <array>
#include <iterator>

namespace {

constexpr const wchar_t* kNames[] = {L"Number",      L"Description",  L"Source", L"HelpFile",
                                     L"HelpContext", L"LastDllError", L"Clear"};
constexpr std::size_t kProperties = std::size(kNames) - 1;
constexpr std::array<VARTYPE, kProperties> kTypes = {VT_I4,   VT_BSTR, VT_BSTR,
                                                     VT_BSTR, VT_I4,   VT_I4};
constexpr DISPID kClear = static_cast<DISPID>(kProperties) + 1;

class ErrorObject final : public IDispatch {
 public:
  ErrorObject() { clear(); }
  ErrorObject(const ErrorObject&) = delete;
  ErrorObject& operator=(const ErrorObject&) = delete;
  ~ErrorObject() { clear(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  // It lives as long as its library.
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
      if (lstrcmpiW(names[0], kNames[i]) != 0) continue;
      ids[0] = static_cast<DISPID>(i) + 1;
      return S_OK;
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    if (id == kClear) {
      clear();
      return S_OK;
    }
    if (id < 1 || id > kClear) return DISP_E_MEMBERNOTFOUND;
    const auto index = static_cast<std::size_t>(id) - 1;
    if ((flags & DISPATCH_PROPERTYPUT) != 0) {
      return VariantChangeType(&values_[index], &parameters->rgvarg[0], 0, kTypes[index]);
    }
    VariantInit(result);
    return VariantCopy(result, &values_[index]);
  }

 private:
  void clear() {
    for (std::size_t i = 0; i < kProperties; ++i) {
      VariantClear(&values_[i]);
      values_[i].vt = kTypes[i];
      values_[i].bstrVal = nullptr;
    }
  }

  ULONG references_ = 0;
  std::array<VARIANT, kProperties> values_{};
};

ErrorObject error_object;

}  // namespace

extern "C" __declspec(dllexport) IUnknown* __stdcall rtcErrObj() {
  error_object.AddRef();
  return &error_object;
}
