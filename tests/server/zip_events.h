// A client's sink for the events of ZipFile.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "server/client.h"

namespace qv::tests {

// An event: its number and its arguments but for Cancel.
struct ZipEvent {
  DISPID id;
  std::vector<LONG> arguments;
  friend bool operator==(const ZipEvent&, const ZipEvent&) = default;
};

// Connected to its source as long as it lives.
class ZipEvents final : public IDispatch {
 public:
  // What is done at each event; true cancels.
  using Action = std::function<bool(const ZipEvent&)>;

  explicit ZipEvents(IUnknown* source, Action action = nullptr) : action_(std::move(action)) {
    const auto container = Pointer<IConnectionPointContainer>::from(source);
    container->FindConnectionPoint(DIID___ZipFile, point_.receive());
    EXPECT_EQ(point_->Advise(this, &cookie_), S_OK);
  }
  ZipEvents(const ZipEvents&) = delete;
  ZipEvents& operator=(const ZipEvents&) = delete;
  ~ZipEvents() { point_->Unadvise(cookie_); }

  const std::vector<ZipEvent>& told() const { return told_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
                       IsEqualIID(id, DIID___ZipFile);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on a test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    ZipEvent event{id, {}};
    // In reverse: the last argument, Cancel, is the first here.
    for (UINT i = parameters->cArgs - 1; i > 0; --i) {
      EXPECT_EQ(parameters->rgvarg[i].vt, VT_BYREF | VT_I4);
      event.arguments.push_back(*parameters->rgvarg[i].plVal);
    }
    EXPECT_EQ(parameters->rgvarg[0].vt, VT_BYREF | VT_BOOL);
    EXPECT_EQ(*parameters->rgvarg[0].pboolVal, VARIANT_FALSE);
    told_.push_back(event);
    if (action_ && action_(event)) *parameters->rgvarg[0].pboolVal = VARIANT_TRUE;
    return S_OK;
  }

 private:
  Action action_;
  std::vector<ZipEvent> told_;
  Pointer<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace qv::tests
