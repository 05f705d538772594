// Receives the events of an object and calls the script's procedures PREFIX_Event.
#pragma once

#include <windows.h>
// activscp.h needs windows.h before it.
#include <activscp.h>
#include <ocidl.h>

#include <string>

namespace qv::tests {

class EventSink final : public IDispatch {
 public:
  // Connects `source`'s default events; null where it has none. The connection holds the sink.
  static EventSink* connect(IUnknown* source, IActiveScript* script, std::wstring prefix);
  void disconnect();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override;

 private:
  EventSink(IActiveScript* script, std::wstring prefix)
      : script_(script), prefix_(std::move(prefix)) {}

  ULONG references_ = 1;
  IActiveScript* script_;
  std::wstring prefix_;
  IID events_{};
  ITypeInfo* description_ = nullptr;
  IConnectionPoint* point_ = nullptr;
  DWORD cookie_ = 0;
};

}  // namespace qv::tests
