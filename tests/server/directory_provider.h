// A stand-in for the directory, whose objects are late bound: while it lives, the paths "LDAP:..."
// and "WinNT:..." lead to its objects, which keep what is done to them. The system of the tests has
// a provider for the first that can't make objects, and none for the second.
#pragma once

#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>
#include <oleauto.h>

#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace qv::tests {

class DirectoryProvider {
 public:
  DirectoryProvider() : parser_(*this) {
    for (std::size_t i = 0; i < std::size(kKeys); ++i) {
      wchar_t text[64];
      DWORD bytes = sizeof text;
      if (RegGetValueW(HKEY_CLASSES_ROOT, kKeys[i], nullptr, RRF_RT_REG_SZ, nullptr, text,
                       &bytes) == ERROR_SUCCESS) {
        before_[i] = text;
      }
      RegSetKeyValueW(HKEY_CLASSES_ROOT, kKeys[i], nullptr, REG_SZ, kClassText, sizeof kClassText);
    }
    CoRegisterClassObject(kClass, &parser_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                          &registration_);
  }
  DirectoryProvider(const DirectoryProvider&) = delete;
  DirectoryProvider& operator=(const DirectoryProvider&) = delete;
  ~DirectoryProvider() {
    CoRevokeClassObject(registration_);
    for (std::size_t i = 0; i < std::size(kKeys); ++i) {
      if (before_[i].empty()) {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, kRoots[i]);
      } else {
        RegSetKeyValueW(HKEY_CLASSES_ROOT, kKeys[i], nullptr, REG_SZ, before_[i].c_str(),
                        static_cast<DWORD>((before_[i].size() + 1) * sizeof(wchar_t)));
      }
    }
  }

  // In order: "bind PATH", "PATH Method(argument,...)", "PATH get Property", "PATH Property=value".
  // Numbers and dates have their type's number in front.
  std::vector<std::wstring> calls;
  // The call that raises error 1234; all that begin with this text.
  std::wstring failing;

 private:
  static constexpr const wchar_t* kRoots[] = {L"LDAP", L"WinNT"};
  static constexpr const wchar_t* kKeys[] = {L"LDAP\\CLSID", L"WinNT\\CLSID"};
  static constexpr wchar_t kClassText[] = L"{2C6D3B62-9F5E-4A39-9F13-6E3F0C1B7D42}";
  static constexpr CLSID kClass = {
      0x2c6d3b62, 0x9f5e, 0x4a39, {0x9f, 0x13, 0x6e, 0x3f, 0x0c, 0x1b, 0x7d, 0x42}};

  bool keep(const std::wstring& call) {
    calls.push_back(call);
    return failing.empty() || !call.starts_with(failing);
  }

  class Entry final : public IDispatch {
   public:
    Entry(DirectoryProvider& provider, std::wstring path)
        : provider_(provider), path_(std::move(path)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
      const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
      *object = known ? this : nullptr;
      if (known) AddRef();
      return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
      const ULONG left = --references_;
      if (left == 0) delete this;
      return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* ids) override {
      if (names[0][0] == L'\0') return DISP_E_UNKNOWNNAME;
      names_.emplace_back(names[0]);
      ids[0] = static_cast<DISPID>(names_.size());
      return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT*) override {
      const std::wstring name = names_[static_cast<std::size_t>(id - 1)];
      std::wstring call = path_ + L" ";
      if ((kind & DISPATCH_PROPERTYPUT) != 0) {
        call += name + L"=" + shown(parameters->rgvarg[0]);
      } else if ((kind & DISPATCH_PROPERTYGET) != 0) {
        call += L"get " + name;
      } else {
        call += name + L"(";
        for (UINT i = parameters->cArgs; i > 0; --i) {
          call += shown(parameters->rgvarg[i - 1]) + (i > 1 ? L"," : L"");
        }
        call += L")";
      }
      if (!provider_.keep(call)) {
        exception->scode = static_cast<HRESULT>(0x800A0000U | 1234);
        exception->bstrDescription = SysAllocString(L"refused by the directory");
        return DISP_E_EXCEPTION;
      }
      if (result == nullptr) return S_OK;
      if (name == L"Create") {
        result->vt = VT_DISPATCH;
        result->pdispVal = new Entry(provider_, path_ + L"/" + shown(parameters->rgvarg[0]));
      } else if (name == L"ADsPath") {
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(path_.c_str());
      }
      return S_OK;
    }

   private:
    static std::wstring shown(const VARIANT& value) {
      if (value.vt == VT_BSTR) return std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
      return L"of type " + std::to_wstring(value.vt);
    }

    ULONG references_ = 1;
    DirectoryProvider& provider_;
    std::wstring path_;
    std::vector<std::wstring> names_;
  };

  // Makes an object of a path; lives inside the provider.
  class Parser final : public IParseDisplayName {
   public:
    explicit Parser(DirectoryProvider& provider) : provider_(provider) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
      const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IParseDisplayName);
      *object = known ? this : nullptr;
      return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR name, ULONG* eaten,
                                               IMoniker** moniker) override {
      const std::wstring path = name;
      if (!provider_.keep(L"bind " + path)) return MK_E_NOOBJECT;
      *eaten = static_cast<ULONG>(path.size());
      auto* entry = new Entry(provider_, path);
      const HRESULT result = CreatePointerMoniker(entry, moniker);
      entry->Release();
      return result;
    }

   private:
    DirectoryProvider& provider_;
  };

  Parser parser_;
  DWORD registration_ = 0;
  std::wstring before_[std::size(kKeys)];
};

// A system without any provider for "LDAP:...", as long as this lives.
class NoDirectory {
 public:
  NoDirectory() {
    DWORD bytes = sizeof class_;
    RegGetValueW(HKEY_CLASSES_ROOT, kKey, nullptr, RRF_RT_REG_SZ, nullptr, class_, &bytes);
    RegDeleteKeyW(HKEY_CLASSES_ROOT, kKey);
  }
  NoDirectory(const NoDirectory&) = delete;
  NoDirectory& operator=(const NoDirectory&) = delete;
  ~NoDirectory() {
    RegSetKeyValueW(HKEY_CLASSES_ROOT, kKey, nullptr, REG_SZ, class_,
                    static_cast<DWORD>((wcslen(class_) + 1) * sizeof(wchar_t)));
  }

 private:
  static constexpr const wchar_t* kKey = L"LDAP\\CLSID";
  wchar_t class_[64] = L"";
};

}  // namespace qv::tests
