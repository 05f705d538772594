#include "collections/lemma.h"

#include "automation/arguments.h"
#include "automation/class_object.h"

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

class Lemma final : public _kwLemma {
 public:
  Lemma(const Variant& item, const Variant& value) : value_(value), item_(item) {
    server::count_object(1);
  }
  Lemma(const Lemma&) = delete;
  Lemma& operator=(const Lemma&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
    *object = static_cast<_kwLemma*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

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
  ~Lemma() { server::count_object(-1); }

  static HRESULT take(Variant& member, VARIANT& value) noexcept {
    VARIANT copy;
    VariantInit(&copy);
    const HRESULT status = VariantCopyInd(&copy, &value);
    if (SUCCEEDED(status)) member = Variant::adopt(copy);
    return status;
  }

  ULONG references_ = 1;
  Variant value_;
  Variant item_;
};

}  // namespace

Object<IDispatch> make_lemma(const Variant& item, const Variant& value) {
  return Object<IDispatch>::adopt(new Lemma(item, value));
}

}  // namespace qv::collections
