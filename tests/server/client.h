// What typed clients need in every test: objects of the server, texts, Variants, expectations about
// failures.
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "interfaces.h"

namespace qv::tests {

// A counted reference to an object.
template <class Interface>
class Pointer {
 public:
  Pointer() = default;
  Pointer(const Pointer& other) : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  Pointer& operator=(Pointer other) {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Pointer() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  // The same object by another interface; empty where it has none.
  static Pointer from(IUnknown* object) {
    Pointer pointer;
    if (object != nullptr) {
      object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&pointer.pointer_));
    }
    return pointer;
  }

  explicit operator bool() const { return pointer_ != nullptr; }
  Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  // For a call that fills in a pointer.
  Interface** receive() {
    *this = Pointer();
    return &pointer_;
  }
  // For a by-reference object argument.
  Interface** variable() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

// A new object of the registered server.
template <class Interface>
Pointer<Interface> create(const CLSID& class_id) {
  Pointer<Interface> object;
  const HRESULT status =
      CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                       reinterpret_cast<void**>(object.receive()));
  EXPECT_EQ(status, S_OK);
  return object;
}

inline Pointer<_KwRtLib> create_global() { return create<_KwRtLib>(CLSID_KwRtLib); }

// A String variable of the client.
class String {
 public:
  String() = default;
  String(std::wstring_view text)
      : bstr_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  String(const wchar_t* text) : String(std::wstring_view(text)) {}
  String(const String&) = delete;
  String& operator=(const String&) = delete;
  ~String() { SysFreeString(bstr_); }

  BSTR* operator&() { return &bstr_; }
  // For a call that fills in a result and frees nothing.
  BSTR* receive() {
    SysFreeString(std::exchange(bstr_, nullptr));
    return &bstr_;
  }
  operator BSTR() const { return bstr_; }
  std::wstring_view view() const {
    return bstr_ == nullptr ? std::wstring_view() : std::wstring_view(bstr_, SysStringLen(bstr_));
  }
  UINT length() const { return SysStringLen(bstr_); }

 private:
  BSTR bstr_ = nullptr;
};
inline bool operator==(const String& a, std::wstring_view b) { return a.view() == b; }
inline bool operator==(const String& a, const wchar_t* b) {
  return a.view() == std::wstring_view(b);
}

// A Variant variable of the client.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  Value(LONG number) : Value() {
    vt = VT_I4;
    lVal = number;
  }
  Value(int number) : Value(static_cast<LONG>(number)) {}
  Value(SHORT number) : Value() {
    vt = VT_I2;
    iVal = number;
  }
  Value(BYTE number) : Value() {
    vt = VT_UI1;
    bVal = number;
  }
  Value(double number) : Value() {
    vt = VT_R8;
    dblVal = number;
  }
  Value(float number) : Value() {
    vt = VT_R4;
    fltVal = number;
  }
  Value(bool truth) : Value() {
    vt = VT_BOOL;
    boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Value(std::wstring_view text) : Value() {
    vt = VT_BSTR;
    bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  Value(const wchar_t* text) : Value(std::wstring_view(text)) {}
  Value(const Value& other) : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
  Value& operator=(const Value& other) {
    if (this != &other) VariantCopy(this, const_cast<Value*>(&other));
    return *this;
  }
  ~Value() { VariantClear(this); }

  static Value missing() {
    Value value;
    value.vt = VT_ERROR;
    value.scode = DISP_E_PARAMNOTFOUND;
    return value;
  }
  std::wstring_view text() const {
    EXPECT_EQ(vt, VT_BSTR);
    return vt == VT_BSTR && bstrVal != nullptr ? std::wstring_view(bstrVal, SysStringLen(bstrVal))
                                               : std::wstring_view();
  }
};

// The HRESULT of a run-time error.
constexpr HRESULT error_result(int number) { return static_cast<HRESULT>(0x800A0000U | number); }

// The description of the thread's error object, which is taken.
inline std::wstring error_description() {
  Pointer<IErrorInfo> info;
  GetErrorInfo(0, info.receive());
  String text;
  if (info) info->GetDescription(&text);
  return std::wstring(text.view());
}

}  // namespace qv::tests
