#include "collections/lemma.h"

#include <utility>

#include "automation/arguments.h"
#include "automation/counted_object.h"

namespace qv::collections {
namespace {

using namespace dispatch;

constexpr ParameterRow kNewValue[] = {{L"Value"}};
constexpr std::span<const ParameterRow> kNone;
// Setting takes objects and other values alike.
constexpr WORD kPut = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
constexpr Operation kValue[] = {{DISPATCH_PROPERTYGET, 7, &invoke_slot<OutVariant>, kNone},
                                {kPut, 9, &invoke_slot<InVariant>, kNewValue}};
constexpr Operation kItem[] = {{DISPATCH_PROPERTYGET, 8, &invoke_slot<OutVariant>, kNone},
                               {kPut, 10, &invoke_slot<InVariant>, kNewValue}};
constexpr Member kMembers[] = {{L"Value", 1, kValue}, {L"Item", 2, kItem}};

MemberTable members() noexcept {
  static const auto buckets = name_buckets(kMembers);
  return {kMembers, buckets};
}

HRESULT copy_out(const Variant& source, VARIANT* result) noexcept {
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  return VariantCopy(result, source.raw());
}

class Lemma final : public CountedObject<_kwLemma, IDispatch> {
 public:
  Lemma(Variant item, Variant value) : value_(std::move(value)), item_(std::move(item)) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info != nullptr) *info = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    return get_ids_of_names(members(), names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    return invoke(members(), static_cast<_kwLemma*>(this), id, flags, parameters, result, exception,
                  bad_argument);
  }

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override { return copy_out(value_, result); }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT* result) override { return copy_out(item_, result); }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override { return take(value_, value); }
  HRESULT STDMETHODCALLTYPE put_Item(VARIANT value) override { return take(item_, value); }

 private:
  static HRESULT take(Variant& member, VARIANT& value) noexcept {
    VARIANT copy;
    VariantInit(&copy);
    const HRESULT status = VariantCopyInd(&copy, &value);
    if (SUCCEEDED(status)) member = Variant::adopt(copy);
    return status;
  }

  Variant value_;
  Variant item_;
};

}  // namespace

Object<IDispatch> make_lemma(const Variant& item, const Variant& value) {
  return Object<IDispatch>::adopt(new Lemma(item, value));
}

}  // namespace qv::collections
