// A stand-in for a form's control: an object with late-bound members around a window of the system.
//   hwnd                       the window
//   Refresh, Refreshes         a method, and how often it was called
//   ListCount, ItemData(i)     of the list box or combo box that the window is
//   List(i), AddItem text      likewise
//   Selected(i)                of the list box; can be set
//   SelStart, SelLength        of the text box that the window is; can be set
//   Text                       of the window; can be set
//   Define name, value         adds a property that can be read and written, or gives it a value
//   Lack name                  makes the object answer that it has no such member
//   Fail name                  makes that member raise error 7777, "the control refuses"
#pragma once

#include <windows.h>
// ocidl.h needs windows.h before it.
#include <ocidl.h>

#include <cwchar>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qv::tests {

// The form: it shows where a test shows it.
inline HWND form_window() {
  static const HWND form = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 400, 300, nullptr,
                                           nullptr, nullptr, nullptr);
  return form;
}

// A window of one of the system's classes, on the form unless it has another parent. Narrow ones
// are what the controls of the language are.
inline HWND create_control_window(const std::wstring& window_class, DWORD style,
                                  bool is_narrow = false, HWND parent = form_window()) {
  const DWORD all = style | WS_CHILD | WS_VISIBLE;
  if (!is_narrow) {
    return CreateWindowExW(0, window_class.c_str(), L"", all, 10, 20, 200, 100, parent, nullptr,
                           nullptr, nullptr);
  }
  const std::string narrow(window_class.begin(), window_class.end());
  return CreateWindowExA(0, narrow.c_str(), "", all, 10, 20, 200, 100, parent, nullptr, nullptr,
                         nullptr);
}

class FormControl final : public IDispatch {
 public:
  // Begins with one reference. Without a window the object has no "hwnd".
  explicit FormControl(HWND window, ITypeInfo* type = nullptr) : window_(window), type_(type) {
    if (window == nullptr) lack(L"hwnd");
    if (type_ != nullptr) type_->AddRef();
  }
  FormControl(const FormControl&) = delete;
  FormControl& operator=(const FormControl&) = delete;

  void define(const std::wstring& name, const VARIANT& value) {
    VariantCopyInd(&properties_[lower(name)], const_cast<VARIANT*>(&value));
  }
  void lack(const std::wstring& name) { lacking_.insert(lower(name)); }
  void fail(const std::wstring& name) { failing_ = lower(name); }
  HWND window() const { return window_; }
  LONG refreshes() const { return refreshes_; }
  LONG number(const std::wstring& name) { return long_of(properties_[lower(name)]); }
  static constexpr LONG kFailureNumber = 7777;
  static constexpr const wchar_t* kFailureText = L"the control refuses";

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = type_ != nullptr ? 1 : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    *info = type_;
    if (type_ == nullptr) return E_NOTIMPL;
    type_->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    const std::wstring name = lower(names[0]);
    ids[0] = DISPID_UNKNOWN;
    if (lacking_.contains(name) || (!is_standard(name) && !properties_.contains(name))) {
      return DISP_E_UNKNOWNNAME;
    }
    names_.push_back(name);
    ids[0] = static_cast<DISPID>(names_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const std::wstring name = names_[static_cast<std::size_t>(id - 1)];
    if (name == failing_) {
      exception->scode = static_cast<SCODE>(0x800A0000U | kFailureNumber);
      exception->bstrSource = SysAllocString(L"FormControl");
      exception->bstrDescription = SysAllocString(kFailureText);
      return DISP_E_EXCEPTION;
    }
    VARIANT answer;
    VariantInit(&answer);
    if ((kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
      if (properties_.contains(name) || !set_standard(name, *parameters)) {
        define(name, parameters->rgvarg[0]);
      }
    } else if (properties_.contains(name)) {
      VariantCopy(&answer, &properties_[name]);
    } else {
      answer_standard(name, *parameters, answer);
    }
    if (result != nullptr) {
      *result = answer;
    } else {
      VariantClear(&answer);
    }
    return S_OK;
  }

 private:
  ~FormControl() {
    for (auto& [name, value] : properties_) VariantClear(&value);
    if (type_ != nullptr) type_->Release();
  }

  static std::wstring lower(std::wstring name) {
    CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
    return name;
  }
  static LONG long_of(const VARIANT& value) {
    VARIANT number;
    VariantInit(&number);
    VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I4);
    return number.vt == VT_I4 ? number.lVal : 0;
  }
  static std::wstring text_of(const VARIANT& value) {
    const VARIANT& inner = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
    return inner.vt == VT_BSTR ? std::wstring(inner.bstrVal, SysStringLen(inner.bstrVal)) : L"";
  }
  static bool is_standard(const std::wstring& name) {
    static const std::set<std::wstring> kNames = {
        L"hwnd",    L"refresh",  L"refreshes", L"listcount", L"itemdata", L"sellength", L"list",
        L"additem", L"selected", L"selstart",  L"text",      L"define",   L"lack",      L"fail"};
    return kNames.contains(name);
  }
  bool is_combo_box() const {
    wchar_t name[32];
    GetClassNameW(window_, name, 32);
    return lstrcmpiW(name, L"ComboBox") == 0;
  }

  void select(DWORD start, DWORD end) const {
    SendMessageW(window_, EM_SETSEL, start, static_cast<LPARAM>(end));
  }
  std::pair<DWORD, DWORD> selection() const {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(window_, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    return {start, end};
  }
  std::wstring window_text() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
  }
  std::wstring item_text(WPARAM index) const {
    const bool is_combo = is_combo_box();
    const LRESULT length =
        SendMessageW(window_, is_combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, index, 0);
    if (length < 0) return L"";
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(window_, is_combo ? CB_GETLBTEXT : LB_GETTEXT, index,
                 reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
  }

  bool set_standard(const std::wstring& name, const DISPPARAMS& parameters) const {
    const VARIANT& value = parameters.rgvarg[0];
    if (name == L"text") {
      SetWindowTextW(window_, text_of(value).c_str());
    } else if (name == L"selstart") {
      const auto start = static_cast<DWORD>(long_of(value));
      select(start, start);
    } else if (name == L"sellength") {
      const DWORD start = selection().first;
      select(start, start + static_cast<DWORD>(long_of(value)));
    } else if (name == L"selected") {
      SendMessageW(window_, LB_SETSEL, long_of(value) != 0 ? TRUE : FALSE,
                   LPARAM{long_of(parameters.rgvarg[1])});
    } else {
      return false;
    }
    return true;
  }

  void answer_standard(const std::wstring& name, const DISPPARAMS& parameters, VARIANT& answer) {
    const auto argument = [&](UINT i) -> const VARIANT& {
      return parameters.rgvarg[parameters.cArgs - 1 - i];
    };
    const auto give = [&](LRESULT number) {
      answer.vt = VT_I4;
      answer.lVal = static_cast<LONG>(number);
    };
    const auto give_text = [&](const std::wstring& text) {
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    };
    if (name == L"hwnd") {
      give(static_cast<LRESULT>(reinterpret_cast<LONG_PTR>(window_)));
    } else if (name == L"refresh") {
      ++refreshes_;
    } else if (name == L"refreshes") {
      give(refreshes_);
    } else if (name == L"listcount") {
      give(SendMessageW(window_, is_combo_box() ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    } else if (name == L"itemdata") {
      give(SendMessageW(window_, is_combo_box() ? CB_GETITEMDATA : LB_GETITEMDATA,
                        static_cast<WPARAM>(long_of(argument(0))), 0));
    } else if (name == L"sellength") {
      give(static_cast<LRESULT>(selection().second - selection().first));
    } else if (name == L"selstart") {
      give(static_cast<LRESULT>(selection().first));
    } else if (name == L"text") {
      give_text(window_text());
    } else if (name == L"list") {
      give_text(item_text(static_cast<WPARAM>(long_of(argument(0)))));
    } else if (name == L"selected") {
      answer.vt = VT_BOOL;
      answer.boolVal =
          SendMessageW(window_, LB_GETSEL, static_cast<WPARAM>(long_of(argument(0))), 0) > 0
              ? VARIANT_TRUE
              : VARIANT_FALSE;
    } else if (name == L"additem") {
      SendMessageW(window_, is_combo_box() ? CB_ADDSTRING : LB_ADDSTRING, 0,
                   reinterpret_cast<LPARAM>(text_of(argument(0)).c_str()));
    } else if (name == L"define") {
      define(text_of(argument(0)), argument(1));
    } else if (name == L"lack") {
      lack(text_of(argument(0)));
    } else if (name == L"fail") {
      fail(text_of(argument(0)));
    }
  }

  ULONG references_ = 1;
  HWND window_;
  ITypeInfo* type_;
  LONG refreshes_ = 0;
  std::map<std::wstring, VARIANT> properties_;
  std::set<std::wstring> lacking_;
  std::wstring failing_;
  std::vector<std::wstring> names_;
};

}  // namespace qv::tests
