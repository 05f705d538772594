// A stand-in for the external form "QvAsycFrm.QvAsyncForm": registered with the system as long as
// this lives, it keeps what is done to it.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <string>
#include <vector>

namespace qv::tests {

class MessageForm final : public IDispatch, public IClassFactory {
 public:
  explicit MessageForm(VARIANT answer) : answer_(answer) {
    // Programs of one bitness find the object by this key; none else does.
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CLASSES_ROOT, kClassKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(kClassText),
                   sizeof kClassText);
    RegCloseKey(key);
    CoRegisterClassObject(kClass, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                          REGCLS_MULTIPLEUSE, &registration_);
  }
  MessageForm(const MessageForm&) = delete;
  MessageForm& operator=(const MessageForm&) = delete;
  ~MessageForm() {
    CoRevokeClassObject(registration_);
    RegDeleteKeyW(HKEY_CLASSES_ROOT, kClassKey);
    RegDeleteKeyW(HKEY_CLASSES_ROOT, kProgramKey);
  }

  // What was done, in order: "Title=text" for a property, "QvMessageBox()" for the method; numbers
  // with their type's number behind.
  const std::vector<std::wstring>& calls() const { return calls_; }
  // The member that raises an error, by its name.
  void fail_at(std::wstring name) { failing_ = std::move(name); }
  // No form is made any more.
  void refuse() { refuses_ = true; }
  ULONG references() const { return references_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (IsEqualIID(id, IID_IClassFactory)) {
      *object = static_cast<IClassFactory*>(this);
    } else if (IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, IID_IUnknown)) {
      *object = static_cast<IDispatch*>(this);
    } else {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    if (refuses_) return E_OUTOFMEMORY;
    return QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    names_.emplace_back(names[0]);
    ids[0] = static_cast<DISPID>(names_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    const std::wstring name = names_[static_cast<std::size_t>(id - 1)];
    if (name == failing_) return E_FAIL;
    if (kind == DISPATCH_METHOD) {
      calls_.push_back(name + L"()");
      VariantCopy(result, &answer_);
      return S_OK;
    }
    calls_.push_back(name + L"=" + shown(parameters->rgvarg[0]));
    return S_OK;
  }

 private:
  static constexpr const wchar_t* kProgramKey = L"QvAsycFrm.QvAsyncForm";
  static constexpr const wchar_t* kClassKey = L"QvAsycFrm.QvAsyncForm\\CLSID";
  static constexpr wchar_t kClassText[] = L"{7B0E1A36-5C6F-4E0B-9B0C-41D9A3F1C501}";
  static constexpr CLSID kClass = {
      0x7b0e1a36, 0x5c6f, 0x4e0b, {0x9b, 0x0c, 0x41, 0xd9, 0xa3, 0xf1, 0xc5, 0x01}};

  static std::wstring shown(const VARIANT& value) {
    if (value.vt == VT_BSTR) return std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
    const LONG number = value.vt == VT_I2 ? value.iVal : value.lVal;
    return std::to_wstring(number) + L":" + std::to_wstring(value.vt);
  }

  VARIANT answer_;
  DWORD registration_ = 0;
  ULONG references_ = 0;
  std::wstring failing_;
  bool refuses_ = false;
  std::vector<std::wstring> names_;
  std::vector<std::wstring> calls_;
};

}  // namespace qv::tests
