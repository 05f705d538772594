// A caller's sort helper that is no QvSort by interface but has its members: a script's own class
// instance, or any object that answers to the names.
#include <new>

#include "automation/counted_object.h"
#include "automation/late_bound.h"
#include "frame/server/forward.h"
#include "frame/server/server.h"
#include "interfaces.h"

namespace qv::server {
namespace {

// A variable as scripts can take it: they know Variants alone, so of a typed one they get a copy,
// and what they make of it goes back.
class LentVariable {
 public:
  explicit LentVariable(VARIANT* variable) : variable_(reinterpret_cast<Variant&>(*variable)) {
    if (is_typed()) copy_ = variable_;
  }

  Variant reference() { return late_bound::by_reference(is_typed() ? copy_ : variable_); }
  void give_back() {
    if (is_typed()) variable_.assign(std::move(copy_));
  }

 private:
  bool is_typed() const noexcept {
    const VARTYPE type = variable_.raw()->vt;
    return (type & VT_BYREF) != 0 && type != (VT_BYREF | VT_VARIANT);
  }

  Variant& variable_;
  Variant copy_;
};

class SortAdapter final : public CountedObject<_QvSort, IDispatch, _QvSort> {
 public:
  explicit SortAdapter(const Object<IDispatch>& helper)
      : helper_(helper), compare_(helper, L"Compare"), swap_(helper, L"Swap") {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return helper_.get()->GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return helper_.get()->GetTypeInfo(index, locale, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return helper_.get()->GetIDsOfNames(reserved, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    return helper_.get()->Invoke(id, reserved, locale, flags, parameters, result, exception,
                                 bad_argument);
  }

  HRESULT STDMETHODCALLTYPE Compare(VARIANT* a1, VARIANT* a2, LONG* result) override {
    return guarded([&] { *result = call(compare_, a1, a2).to_long(); });
  }
  HRESULT STDMETHODCALLTYPE Swap(VARIANT* a1, VARIANT* a2) override {
    return guarded([&] { call(swap_, a1, a2); });
  }

 private:
  static Variant call(const late_bound::Method& method, VARIANT* a1, VARIANT* a2) {
    LentVariable first(a1);
    LentVariable second(a2);
    Variant answer = method({first.reference(), second.reference()});
    first.give_back();
    second.give_back();
    return answer;
  }
  // What the helper raises is the error of its caller.
  template <class Body>
  HRESULT guarded(Body&& body) noexcept {
    const Hold hold(*this);
    try {
      body();
      return S_OK;
    } catch (...) {
      return report_current_exception(__uuidof(_QvSort));
    }
  }

  Object<IDispatch> helper_;
  late_bound::Method compare_;
  late_bound::Method swap_;
};

}  // namespace

IUnknown* adapt_object(IDispatch* object, const IID& interface_id) noexcept {
  if (!IsEqualIID(interface_id, __uuidof(_QvSort))) return nullptr;
  try {
    return new SortAdapter(Object<IDispatch>(object));
  } catch (...) {
    return nullptr;  // an object without those members is no sort helper
  }
}

}  // namespace qv::server
