#include "automation/late_bound.h"

#include <dispex.h>

#include <algorithm>
#include <vector>

#include "automation/foreign_error.h"

namespace qv::late_bound {
namespace {

HRESULT find_member(IDispatch* object, const wchar_t* name, DISPID* id) noexcept {
  if (const auto extended = Object<IDispatchEx>::from(object)) {
    const BSTR text = SysAllocString(name);
    const HRESULT result = extended.get()->GetDispID(text, fdexNameCaseInsensitive, id);
    SysFreeString(text);
    if (SUCCEEDED(result)) return result;
  }
  auto* text = const_cast<wchar_t*>(name);
  const HRESULT result = object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, id);
  // An object that has names only by way of the other interface lacks this one.
  return result == E_NOTIMPL ? DISP_E_UNKNOWNNAME : result;
}

DISPID member_id(const Object<IDispatch>& object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  check(find_member(object.operator->(), name, &id));
  return id;
}

Variant invoke(const Object<IDispatch>& object, DISPID id, WORD kind,
               std::initializer_list<Variant> arguments) {
  std::vector<VARIANT> reversed;
  reversed.reserve(arguments.size());
  for (const Variant& argument : arguments) reversed.push_back(*argument.raw());
  std::ranges::reverse(reversed);

  DISPID put_id = DISPID_PROPERTYPUT;
  const bool is_put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS parameters{reversed.data(), is_put ? &put_id : nullptr,
                        static_cast<UINT>(reversed.size()), is_put ? 1U : 0U};
  Variant answer;
  EXCEPINFO exception{};
  const HRESULT result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                        is_put ? nullptr : answer.raw(), &exception, nullptr);
  check_invoke(result, exception);
  return answer;
}

}  // namespace

Variant get(const Object<IDispatch>& object, const wchar_t* property,
            std::initializer_list<Variant> arguments) {
  // A property may be written as a method, and the caller can't tell.
  return invoke(object, member_id(object, property), DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                arguments);
}

void put(const Object<IDispatch>& object, const wchar_t* property, const Variant& value) {
  invoke(object, member_id(object, property),
         value.is_object() ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, {value});
}

Variant call(const Object<IDispatch>& object, const wchar_t* method,
             std::initializer_list<Variant> arguments) {
  return invoke(object, member_id(object, method), DISPATCH_METHOD, arguments);
}

Variant get_default(const Object<IDispatch>& object, std::initializer_list<Variant> arguments) {
  return invoke(object, DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
}

Method::Method(Object<IDispatch> object, const wchar_t* name)
    : object_(std::move(object)), id_(member_id(object_, name)) {}

Variant Method::operator()(std::initializer_list<Variant> arguments) const {
  return invoke(object_, id_, DISPATCH_METHOD, arguments);
}

Variant by_reference(Variant& variable) noexcept {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = variable.raw();
  return Variant::adopt(reference);
}

bool has_member(const Object<IDispatch>& object, const wchar_t* name) noexcept {
  DISPID id = DISPID_UNKNOWN;
  return object && SUCCEEDED(find_member(object.get(), name, &id));
}

}  // namespace qv::late_bound
