// Loads the stand-in for a Visual Basic host's run-time library into the test's process, as such a
// host would have it loaded, and reads and writes its error object.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <string>

namespace qv::tests {

class HostRunTime {
 public:
  HostRunTime() : library_(LoadLibraryW(file().c_str())) {
    using GetErrorObject = IUnknown*(__stdcall*)();
    if (library_ == nullptr) return;
    const auto get = reinterpret_cast<GetErrorObject>(
        reinterpret_cast<void*>(GetProcAddress(library_, "rtcErrObj")));
    IUnknown* object = get();
    object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&error_));
    object->Release();
  }
  HostRunTime(const HostRunTime&) = delete;
  HostRunTime& operator=(const HostRunTime&) = delete;
  ~HostRunTime() {
    // Only the test's own reference may be left.
    if (error_ != nullptr) error_->Release();
    if (library_ != nullptr) FreeLibrary(library_);
  }

  explicit operator bool() const { return error_ != nullptr; }
  // How many references the library under test has kept.
  ULONG kept_references() const {
    error_->AddRef();
    return error_->Release() - 1;
  }

  void put(const wchar_t* property, LONG number) {
    VARIANT value;
    value.vt = VT_I4;
    value.lVal = number;
    put(property, value);
  }
  void put(const wchar_t* property, const wchar_t* text) {
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(text);
    put(property, value);
    SysFreeString(value.bstrVal);
  }
  // Every property of the error object.
  void raise(LONG number, const wchar_t* description, const wchar_t* source,
             const wchar_t* help_file, LONG help_context, LONG last_dll_error) {
    put(L"Number", number);
    put(L"Description", description);
    put(L"Source", source);
    put(L"HelpFile", help_file);
    put(L"HelpContext", help_context);
    put(L"LastDllError", last_dll_error);
  }
  LONG number() {
    VARIANT value;
    VariantInit(&value);
    DISPPARAMS none{};
    error_->Invoke(id_of(L"Number"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                   &value, nullptr, nullptr);
    return value.lVal;
  }

 private:
  // Beside the test program.
  static std::wstring file() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return path.substr(0, path.rfind(L'\\') + 1) + L"msvbvm60.dll";
  }
  DISPID id_of(const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    auto* text = const_cast<wchar_t*>(name);
    error_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
  }
  void put(const wchar_t* property, VARIANT& value) {
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&value, &named, 1, 1};
    error_->Invoke(id_of(property), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                   &parameters, nullptr, nullptr, nullptr);
  }

  HMODULE library_;
  IDispatch* error_ = nullptr;
};

}  // namespace qv::tests
