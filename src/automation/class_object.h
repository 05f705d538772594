// What every object of the library has in common: its life, its interfaces, late binding, the
// description of its class, and the way back from an interface pointer to the implementation.
#pragma once

#include <ocidl.h>
#include <windows.h>

#include <optional>
#include <span>

#include "automation/connection_points.h"
#include "automation/dispatch.h"
#include "automation/server.h"

namespace qv {

// A class of the type library; the tables are generated.
struct ClassInfo {
  const wchar_t* name;
  CLSID class_id;
  IID interface_id;
  std::span<const IID> aliases;  // ids that earlier releases gave the interface
  const IID* events;             // of the event interface; null where the class raises none
  dispatch::MemberTable members;
};

// Private to the library: how an object of its own is told from a foreign one that implements the
// same interface.
struct OwnObject : IUnknown {
  virtual const ClassInfo& class_info() noexcept = 0;
  virtual void* implementation() noexcept = 0;
};
inline constexpr IID kOwnObjectId = {
    0x5f0f8a46, 0x1d0b, 0x4f6e, {0x9c, 0x71, 0x2b, 0x7d, 0x57, 0x0e, 0xa3, 0x18}};

// The interfaces beyond its own that an object answers to. The event source is there only for
// classes that raise events.
class ObjectCore : public OwnObject, public ISupportErrorInfo, public IProvideClassInfo2 {
 public:
  ObjectCore(const ClassInfo& info, IDispatch* self) noexcept : info_(info), self_(self) {
    if (info.events != nullptr) events_.emplace(self, *info.events);
    server::count_object(1);
  }
  ObjectCore(const ObjectCore&) = delete;
  ObjectCore& operator=(const ObjectCore&) = delete;

  ConnectionPoint* events() noexcept { return events_ ? &*events_ : nullptr; }

  const ClassInfo& class_info() noexcept override { return info_; }
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;

 protected:
  ~ObjectCore() { server::count_object(-1); }
  HRESULT query(REFIID id, void** object) noexcept;
  bool is_own_interface(REFIID id) const noexcept;
  HRESULT type_info(UINT index, ITypeInfo** info) const noexcept;

 private:
  const ClassInfo& info_;
  IDispatch* self_;
  std::optional<ConnectionPoint> events_;
};

// The object behind a dual interface. Objects belong to the thread that made them, so their count
// of references needs no interlocking.
template <class Interface>
class ClassObject : public Interface, public ObjectCore {
 public:
  explicit ClassObject(const ClassInfo& info) noexcept : ObjectCore(info, this) {}
  virtual ~ClassObject() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (is_own_interface(id)) {
      *object = static_cast<Interface*>(this);
      ++references_;
      return S_OK;
    }
    return query(id, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      references_ = 1;  // what ends an object may use it once more
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    return type_info(index, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    return dispatch::get_ids_of_names(class_info().members, names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    return dispatch::invoke(class_info().members, static_cast<Interface*>(this), id, flags,
                            parameters, result, exception, bad_argument);
  }

 private:
  ULONG references_ = 0;
};

// The implementation behind an object of our own; null for a foreign one and for Nothing. The
// object must live on.
template <class Implementation, class Interface>
Implementation* own(const Object<Interface>& object, const ClassInfo& info) noexcept {
  if (!object) return nullptr;
  Object<OwnObject> found;
  if (FAILED(
          object.get()->QueryInterface(kOwnObjectId, reinterpret_cast<void**>(found.receive())))) {
    return nullptr;
  }
  if (&found.get()->class_info() != &info) return nullptr;
  return static_cast<Implementation*>(found.get()->implementation());
}

}  // namespace qv
