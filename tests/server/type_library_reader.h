// A stand-in for the type-library reader, the outside component that setup descriptions ask: it is
// registered in this process while it lives.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "server/client.h"

namespace qv::tests {

// What all of it has in common: an object on the stack, called late bound.
class LateBoundObject : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    static const std::map<std::wstring, DISPID> kMembers = {
        {L"TypeLibInfoFromFile", kFromFile}, {L"Name", kName}, {L"GUID", kGuid}};
    const auto found = kMembers.find(*names);
    if (found == kMembers.end()) return DISP_E_UNKNOWNNAME;
    *ids = found->second;
    return S_OK;
  }

 protected:
  ~LateBoundObject() = default;
  enum : DISPID { kFromFile = 1, kName, kGuid };
  static void put_text(VARIANT* result, const std::wstring& text) {
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(text.c_str());
  }
};

// A type library as the reader describes it. An empty text is one that can't be read.
class DescribedLibrary final : public LateBoundObject {
 public:
  std::wstring name;
  std::wstring guid;

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const std::wstring& text = id == kName ? name : guid;
    if (text.empty()) return E_FAIL;
    put_text(result, text);
    return S_OK;
  }
};

class TypeLibraryReader final : public LateBoundObject, public IClassFactory {
 public:
  TypeLibraryReader() {
    constexpr CLSID kClass = {
        0x8b217745, 0x717d, 0x11ce, {0xab, 0x5b, 0xd4, 0x12, 0x03, 0xc1, 0x00, 0x00}};
    EXPECT_EQ(CoRegisterClassObject(kClass, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &registration_),
              S_OK);
  }
  ~TypeLibraryReader() { CoRevokeClassObject(registration_); }

  // The one library that it knows; none where `fails`.
  DescribedLibrary library;
  bool fails = false;
  // What it was asked for.
  int times_made = 0;
  std::vector<std::wstring> files;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (!IsEqualIID(id, IID_IClassFactory)) return LateBoundObject::QueryInterface(id, object);
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    ++times_made;
    return LateBoundObject::QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    EXPECT_EQ(id, kFromFile);
    EXPECT_EQ(parameters->cArgs, 1u);
    files.emplace_back(Value(static_cast<Value&>(parameters->rgvarg[0])).text());
    if (fails) return error_result(429);
    result->vt = VT_DISPATCH;
    result->pdispVal = &library;
    return S_OK;
  }

 private:
  DWORD registration_ = 0;
};

}  // namespace qv::tests
