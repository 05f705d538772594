#include "automation/connection_points.h"

#include <algorithm>

#include "automation/enumerator.h"
#include "automation/foreign_error.h"

namespace qv {
namespace {

struct Connections {
  using Item = CONNECTDATA;
  using Interface = IEnumConnections;
  static HRESULT copy(Item* target, const Item& source) noexcept {
    *target = source;
    target->pUnk->AddRef();
    return S_OK;
  }
  static void drop(Item& item) noexcept { item.pUnk->Release(); }
};

struct Points {
  using Item = LPCONNECTIONPOINT;
  using Interface = IEnumConnectionPoints;
  static HRESULT copy(Item* target, const Item& source) noexcept {
    *target = source;
    source->AddRef();
    return S_OK;
  }
  static void drop(Item& item) noexcept { item->Release(); }
};

}  // namespace

template <class Call>
void ConnectionPoint::for_each_sink(std::vector<VARIANT> arguments, Call&& call) {
  const Object<IUnknown> hold(owner_);    // a sink may hold the last other reference
  const auto connections = connections_;  // sinks may come and go while they are called
  std::ranges::reverse(arguments);
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  for (const Connection& connection : connections) call(*connection.sink.get(), parameters);
}

void ConnectionPoint::raise_event(DISPID event, std::vector<VARIANT> arguments) noexcept {
  try {
    for_each_sink(std::move(arguments), [event](IDispatch& sink, DISPPARAMS& parameters) {
      sink.Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                  nullptr, nullptr);
    });
  } catch (const std::bad_alloc&) {
    return;  // an event is news, not a promise
  }
}

void ConnectionPoint::raise_failing_event(DISPID event, std::vector<VARIANT> arguments) {
  for_each_sink(std::move(arguments), [event](IDispatch& sink, DISPPARAMS& parameters) {
    EXCEPINFO exception{};
    const HRESULT result = sink.Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                       &parameters, nullptr, &exception, nullptr);
    const bool has_no_handler =
        result == DISP_E_MEMBERNOTFOUND || result == DISP_E_UNKNOWNNAME || result == E_NOTIMPL;
    if (!has_no_handler) check_invoke(result, exception);
  });
}

HRESULT ConnectionPoint::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IConnectionPoint)) {
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* id) {
  if (id == nullptr) return E_POINTER;
  *id = events_;
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = &container_;
  AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  // A sink answers to the event interface or, as scripts' sinks do, to IDispatch alone.
  Object<IDispatch> dispatch;
  if (FAILED(sink->QueryInterface(events_, reinterpret_cast<void**>(dispatch.receive())))) {
    dispatch = Object<IDispatch>::from(sink);
  }
  if (!dispatch) return CONNECT_E_CANNOTCONNECT;
  try {
    connections_.push_back({last_cookie_ + 1, std::move(dispatch)});
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  *cookie = ++last_cookie_;
  return S_OK;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
  const auto found = std::ranges::find(connections_, cookie, &Connection::cookie);
  if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
  // Taken out first: letting the sink go may run its owner's code, which may call here again.
  const Connection leaving = std::move(*found);
  connections_.erase(found);
  return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (connections == nullptr) return E_POINTER;
  std::vector<CONNECTDATA> items;
  try {
    items.reserve(connections_.size());
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  for (const Connection& connection : connections_) {
    connection.sink.get()->AddRef();
    items.push_back({connection.sink.get(), connection.cookie});
  }
  return make_enumerator<Connections>(std::move(items), connections);
}

HRESULT ConnectionPoint::Container::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points == nullptr) return E_POINTER;
  AddRef();
  try {
    return make_enumerator<Points>({static_cast<IConnectionPoint*>(&point_)}, points);
  } catch (const std::bad_alloc&) {
    Release();
    return E_OUTOFMEMORY;
  }
}

HRESULT ConnectionPoint::Container::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  if (!IsEqualIID(id, point_.events_)) return CONNECT_E_NOCONNECTION;
  *point = &point_;
  AddRef();
  return S_OK;
}

}  // namespace qv
