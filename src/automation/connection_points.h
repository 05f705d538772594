// Event sources: the sinks that clients connect, and the raising of events to them.
#pragma once

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstdint>
#include <vector>

#include "automation/variant.h"

namespace qv {

// The connection point of a class that raises events, and its container in one. It lives inside its
// object and shares that object's life: references to it are references to the object.
class ConnectionPoint final : public IConnectionPoint, public IConnectionPointContainer {
 public:
  ConnectionPoint(IUnknown* owner, const IID& events) noexcept : owner_(owner), events_(events) {}
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;
  ~ConnectionPoint() = default;

  // Calls every sink with arguments in the event's order; by-reference ones as VT_BYREF Variants.
  // What a sink raises is passed over: an event handler can't fail its source. A sink may
  // disconnect itself or others meanwhile.
  void raise_event(DISPID event, std::vector<VARIANT> arguments) noexcept;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return owner_->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return owner_->Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(
      IConnectionPointContainer** container) override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override;

 private:
  struct Connection {
    DWORD cookie;
    Object<IDispatch> sink;
  };

  IUnknown* owner_;
  const IID& events_;
  std::vector<Connection> connections_;
  DWORD last_cookie_ = 0;
};

}  // namespace qv
