// Event sources: the sinks that clients connect, and the raising of events to them.
#pragma once

#include <ocidl.h>
#include <olectl.h>
#include <windows.h>

#include <cstdint>
#include <vector>

#include "automation/variant.h"

namespace qv {

// The connection point of a class that raises events. It lives inside its object and shares that
// object's life: references to it are references to the object. It is an object of its own
// nevertheless; its container is another face of the owner.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IUnknown* owner, const IID& events) noexcept
      : owner_(owner), events_(events), container_(*this) {}
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;
  ~ConnectionPoint() = default;

  // Calls every sink with arguments in the event's order; by-reference ones as VT_BYREF Variants.
  // What a sink raises is passed over: an event handler can't fail its source. A sink may
  // disconnect itself or others meanwhile.
  void raise_event(DISPID event, std::vector<VARIANT> arguments) noexcept;
  // The same for a source whose handlers can fail it: what a sink raises goes on as a run-time
  // error, and no further sink is called. A sink that has no handler is passed over.
  void raise_failing_event(DISPID event, std::vector<VARIANT> arguments);

  IConnectionPointContainer* container() noexcept { return &container_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return owner_->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return owner_->Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
  HRESULT STDMETHODCALLTYPE
  GetConnectionPointContainer(IConnectionPointContainer** container) override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

 private:
  class Container final : public IConnectionPointContainer {
   public:
    explicit Container(ConnectionPoint& point) noexcept : point_(point) {}
    ~Container() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
      return point_.owner_->QueryInterface(id, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return point_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return point_.Release(); }
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override;

   private:
    ConnectionPoint& point_;
  };
  struct Connection {
    DWORD cookie;
    Object<IDispatch> sink;
  };

  template <class Call>
  void for_each_sink(std::vector<VARIANT> arguments, Call&& call);

  IUnknown* owner_;
  const IID& events_;
  Container container_;
  std::vector<Connection> connections_;
  DWORD last_cookie_ = 0;
};

}  // namespace qv
