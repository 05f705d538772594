#include "host/event_sink.h"

#include <vector>

namespace qv::tests {

EventSink* EventSink::connect(IUnknown* source, IActiveScript* script, std::wstring prefix) {
  IProvideClassInfo2* classes = nullptr;
  IConnectionPointContainer* points = nullptr;
  ITypeInfo* class_info = nullptr;
  ITypeLib* library = nullptr;
  UINT index = 0;
  auto* sink = new EventSink(script, std::move(prefix));
  const bool connected =
      SUCCEEDED(
          source->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&classes))) &&
      SUCCEEDED(classes->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &sink->events_)) &&
      SUCCEEDED(classes->GetClassInfo(&class_info)) &&
      SUCCEEDED(class_info->GetContainingTypeLib(&library, &index)) &&
      SUCCEEDED(library->GetTypeInfoOfGuid(sink->events_, &sink->description_)) &&
      SUCCEEDED(source->QueryInterface(IID_IConnectionPointContainer,
                                       reinterpret_cast<void**>(&points))) &&
      SUCCEEDED(points->FindConnectionPoint(sink->events_, &sink->point_)) &&
      SUCCEEDED(sink->point_->Advise(sink, &sink->cookie_));
  if (library != nullptr) library->Release();
  if (class_info != nullptr) class_info->Release();
  if (points != nullptr) points->Release();
  if (classes != nullptr) classes->Release();
  if (connected) return sink;
  sink->Release();
  return nullptr;
}

void EventSink::disconnect() {
  if (point_ == nullptr) return;
  IConnectionPoint* point = point_;
  point_ = nullptr;
  point->Unadvise(cookie_);
  point->Release();
}

HRESULT EventSink::QueryInterface(REFIID id, void** object) {
  if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, events_)) {
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG EventSink::Release() {
  const ULONG left = --references_;
  if (left == 0) {
    if (description_ != nullptr) description_->Release();
    delete this;
  }
  return left;
}

HRESULT EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                          EXCEPINFO*, UINT*) {
  BSTR event = nullptr;
  UINT names = 0;
  if (FAILED(description_->GetNames(id, &event, 1, &names))) return DISP_E_MEMBERNOTFOUND;
  std::wstring name = prefix_ + L"_" + event;
  SysFreeString(event);
  IDispatch* procedures = nullptr;
  if (FAILED(script_->GetScriptDispatch(nullptr, &procedures))) return E_FAIL;
  DISPID procedure = DISPID_UNKNOWN;
  LPOLESTR text = name.data();
  HRESULT status = procedures->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &procedure);
  if (SUCCEEDED(status)) {
    // The script engine takes by-reference arguments as Variants only.
    const UINT count = parameters->cArgs;
    std::vector<VARIANT> values(count);
    std::vector<VARIANT> references(count);
    for (UINT i = 0; i < count; ++i) {
      VariantInit(&values[i]);
      VariantCopyInd(&values[i], &parameters->rgvarg[i]);
      references[i].vt = VT_BYREF | VT_VARIANT;
      references[i].pvarVal = &values[i];
    }
    DISPPARAMS forwarded{references.data(), nullptr, count, 0};
    status = procedures->Invoke(procedure, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                &forwarded, nullptr, nullptr, nullptr);
    for (UINT i = 0; i < count; ++i) {
      VARIANT& original = parameters->rgvarg[i];
      if (original.vt == (VT_BYREF | VT_BOOL)) {
        VariantChangeType(&values[i], &values[i], 0, VT_BOOL);
        *original.pboolVal = values[i].boolVal;
      } else if (original.vt == (VT_BYREF | VT_I4)) {
        VariantChangeType(&values[i], &values[i], 0, VT_I4);
        *original.plVal = values[i].lVal;
      } else if (original.vt == (VT_BYREF | VT_BSTR)) {
        VariantChangeType(&values[i], &values[i], 0, VT_BSTR);
        std::swap(*original.pbstrVal, values[i].bstrVal);
      }
      VariantClear(&values[i]);
    }
  }
  procedures->Release();
  return status;
}

}  // namespace qv::tests
