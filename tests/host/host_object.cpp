#include "host/host_object.h"

#include <cstdio>
#include <iterator>
#include <string>

namespace qv::tests {
namespace {

enum Member : DISPID {
  kEcho = 1,
  kConnect,
  kDisconnect,
  kChrW,
  kAscW,
  kSleep,
  kBytes,
  kLongs,
  kStrings,
  kEmptyArray,
  kSame,
  kVarType,
  kMissing,
  kPressButton,
  kBoxTitle,
  kBoxText,
  kStart,
  kOutput,
  kFolder,
  kEnd,
  kDirectoryBegin,
  kDirectoryEnd,
  kUnfix,
};
constexpr const wchar_t* kNames[] = {
    L"Echo",    L"Connect",      L"Disconnect",      L"ChrW",          L"AscW",  L"Sleep",
    L"Bytes",   L"Longs",        L"Strings",         L"Empty_Array",   L"Same",  L"VarType",
    L"Missing", L"Press_Button", L"Box_Title",       L"Box_Text",      L"Start", L"Output",
    L"Folder",  L"End",          L"Directory_Begin", L"Directory_End", L"Unfix"};

std::wstring text_of(const VARIANT& value) {
  VARIANT text;
  VariantInit(&text);
  VariantChangeType(&text, const_cast<VARIANT*>(&value), VARIANT_ALPHABOOL, VT_BSTR);
  std::wstring result;
  if (text.vt == VT_BSTR && text.bstrVal != nullptr) {
    result.assign(text.bstrVal, SysStringLen(text.bstrVal));
  }
  VariantClear(&text);
  return result;
}

LONG long_of(const VARIANT& value) {
  VARIANT number;
  VariantInit(&number);
  VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I4);
  return number.vt == VT_I4 ? number.lVal : 0;
}

IUnknown* object_of(const VARIANT& value) {
  const VARIANT& inner = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
  if (inner.vt == VT_DISPATCH || inner.vt == VT_UNKNOWN) return inner.punkVal;
  return nullptr;
}

void print_line(const std::wstring& text) {
  std::string bytes;
  for (const wchar_t unit : text) {
    // One character a byte, so that output compares with the scripts' own bytes.
    bytes += unit < 256 ? static_cast<char>(unit) : '?';
  }
  std::printf("%s\n", bytes.c_str());
}

SAFEARRAY* array_of(VARTYPE type, const DISPPARAMS& parameters) {
  SAFEARRAYBOUND bound{parameters.cArgs, 0};
  SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
  for (UINT i = 0; i < parameters.cArgs; ++i) {
    VARIANT element;
    VariantInit(&element);
    VariantChangeType(&element, &parameters.rgvarg[parameters.cArgs - 1 - i], 0, type);
    LONG index = static_cast<LONG>(i);
    SafeArrayPutElement(array, &index,
                        type == VT_BSTR ? static_cast<void*>(element.bstrVal) : &element.llVal);
    VariantClear(&element);
  }
  return array;
}

}  // namespace

void HostObject::set_script(IActiveScript* script) {
  script_ = script;
  if (script != nullptr) return;
  for (EventSink* sink : sinks_) {
    sink->disconnect();
    sink->Release();
  }
  sinks_.clear();
}

HRESULT HostObject::QueryInterface(REFIID id, void** object) {
  const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
  *object = known ? static_cast<IDispatch*>(this) : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

HRESULT HostObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  for (DISPID id = 1; id <= static_cast<DISPID>(std::size(kNames)); ++id) {
    if (count == 1 && lstrcmpiW(names[0], kNames[id - 1]) == 0) {
      ids[0] = id;
      return S_OK;
    }
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT HostObject::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO*, UINT*) {
  VARIANT dropped;
  VARIANT& answer = result != nullptr ? *result : dropped;
  VariantInit(&answer);
  const UINT count = parameters->cArgs;
  const auto argument = [&](UINT i) -> const VARIANT& { return parameters->rgvarg[count - 1 - i]; };
  switch (id) {
    case kEcho:
      if (const std::wstring line = text_of(argument(0));
          shows_all_ || line.starts_with(L"FAILED")) {
        print_line(line);
      }
      break;
    case kConnect: {
      IUnknown* source = object_of(argument(0));
      EventSink* sink =
          source != nullptr ? EventSink::connect(source, script_, text_of(argument(1))) : nullptr;
      if (sink != nullptr) sinks_.push_back(sink);
      answer.vt = VT_BOOL;
      answer.boolVal = sink != nullptr ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    }
    case kDisconnect: {
      IActiveScript* script = script_;
      set_script(nullptr);
      script_ = script;
      break;
    }
    case kChrW: {
      const auto unit = static_cast<wchar_t>(long_of(argument(0)));
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(&unit, 1);
      break;
    }
    case kAscW: {
      const std::wstring text = text_of(argument(0));
      answer.vt = VT_I4;
      answer.lVal = text.empty() ? -1 : text[0];
      break;
    }
    case kSleep: {
      const DWORD end_ms = GetTickCount() + static_cast<DWORD>(long_of(argument(0)));
      MSG message;
      while (static_cast<LONG>(end_ms - GetTickCount()) > 0) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
          DispatchMessageW(&message);
        }
        Sleep(1);
      }
      break;
    }
    case kBytes:
      answer.vt = VT_ARRAY | VT_UI1;
      answer.parray = array_of(VT_UI1, *parameters);
      break;
    case kLongs:
      answer.vt = VT_ARRAY | VT_I4;
      answer.parray = array_of(VT_I4, *parameters);
      break;
    case kStrings:
      answer.vt = VT_ARRAY | VT_BSTR;
      answer.parray = array_of(VT_BSTR, *parameters);
      break;
    case kEmptyArray:
      answer.vt = static_cast<VARTYPE>(VT_ARRAY | long_of(argument(0)));
      answer.parray = nullptr;
      break;
    case kSame:
      answer.vt = VT_BOOL;
      answer.boolVal = text_of(argument(0)) == text_of(argument(1)) ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case kVarType: {
      const VARIANT& value = argument(0);
      answer.vt = VT_I4;
      answer.lVal = value.vt == (VT_BYREF | VT_VARIANT) ? value.pvarVal->vt : value.vt;
      break;
    }
    case kMissing:
      answer.vt = VT_ERROR;
      answer.scode = DISP_E_PARAMNOTFOUND;
      break;
    case kPressButton:
      presser_ = std::make_unique<BoxPresser>(static_cast<int>(long_of(argument(0))));
      break;
    case kBoxTitle:
    case kBoxText: {
      presser_->finish();
      const std::wstring& text = id == kBoxTitle ? presser_->title() : presser_->text();
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
      break;
    }
    case kStart:
      processes_.push_back(std::make_unique<Process>(text_of(argument(0))));
      answer.vt = VT_I4;
      answer.lVal = static_cast<LONG>(processes_.size());
      break;
    case kOutput: {
      const auto index = static_cast<std::size_t>(long_of(argument(0)) - 1);
      const std::string bytes = processes_[index]->output();
      const std::wstring text(bytes.begin(), bytes.end());
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
      break;
    }
    case kFolder: {
      const std::wstring folder = program_folder();
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(folder.data(), static_cast<UINT>(folder.size()));
      break;
    }
    case kEnd:
      processes_[static_cast<std::size_t>(long_of(argument(0)) - 1)].reset();
      break;
    case kDirectoryBegin:
      directory_ = std::make_unique<DirectoryProvider>();
      break;
    case kDirectoryEnd: {
      std::wstring text;
      for (const auto& call : directory_->calls) text += call + L"\n";
      directory_.reset();
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
      break;
    }
    case kUnfix: {
      const VARIANT& value = argument(0);
      const VARIANT& array = value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
      if (array.vt != (VT_BYREF | VT_ARRAY | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
      (*array.pparray)->fFeatures &= static_cast<USHORT>(~(FADF_STATIC | FADF_FIXEDSIZE));
      break;
    }
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
  if (result == nullptr) VariantClear(&dropped);
  return S_OK;
}

}  // namespace qv::tests
