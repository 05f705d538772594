#include "automation/class_object.h"

#include <cguid.h>

#include <algorithm>

namespace qv {

bool ObjectCore::is_own_interface(REFIID id) const noexcept {
  return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
         IsEqualIID(id, info_.interface_id) ||
         std::ranges::any_of(info_.aliases,
                             [&](const IID& alias) { return IsEqualIID(id, alias); });
}

HRESULT ObjectCore::query(REFIID id, void** object) noexcept {
  *object = nullptr;
  if (IsEqualIID(id, IID_ISupportErrorInfo)) {
    *object = static_cast<ISupportErrorInfo*>(this);
  } else if (IsEqualIID(id, IID_IProvideClassInfo) || IsEqualIID(id, IID_IProvideClassInfo2)) {
    *object = static_cast<IProvideClassInfo2*>(this);
  } else if (IsEqualIID(id, IID_IConnectionPointContainer) && events_) {
    *object = events_->container();
  } else if (IsEqualIID(id, kOwnObjectId)) {
    *object = static_cast<OwnObject*>(this);
  } else {
    return E_NOINTERFACE;
  }
  self_->AddRef();
  return S_OK;
}

HRESULT ObjectCore::InterfaceSupportsErrorInfo(REFIID id) {
  const bool own = is_own_interface(id) && !IsEqualIID(id, IID_IUnknown);
  return own ? S_OK : S_FALSE;
}

HRESULT ObjectCore::GetClassInfo(ITypeInfo** info) {
  return server::type_info_of(info_.class_id, info);
}

HRESULT ObjectCore::GetGUID(DWORD kind, GUID* id) {
  if (id == nullptr) return E_POINTER;
  *id = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || info_.events == nullptr) return E_INVALIDARG;
  *id = *info_.events;
  return S_OK;
}

HRESULT ObjectCore::type_info(UINT index, ITypeInfo** info) const noexcept {
  if (index != 0) {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
  }
  return server::type_info_of(info_.interface_id, info);
}

}  // namespace qv
