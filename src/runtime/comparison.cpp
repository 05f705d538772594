#include "runtime/comparison.h"

#include <compare>

namespace qv {
namespace {

using Order = std::partial_ordering;

// What the comparison of an object is about.
Variant default_value(const Object<IDispatch>& object) {
  if (!object) raise(kObjectVariableNotSet);
  DISPPARAMS none{};
  Variant value;
  const HRESULT status =
      object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                     DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, value.raw(), nullptr, nullptr);
  if (FAILED(status)) raise(kObjectDoesNotSupportMember);
  return value;
}

void require_comparable(const Variant& value) {
  if (value.is_null()) raise(kInvalidUseOfNull);
  if (value.is_array() || value.type() == VT_ERROR) raise(kTypeMismatch);
}

bool is_whole(VARTYPE type) noexcept {
  return type == VT_EMPTY || type == VT_UI1 || type == VT_I2 || type == VT_I4 || type == VT_BOOL;
}

// By way of a Long, since the system's services do not agree about True as a Decimal.
Variant as_decimal(const Variant& number) {
  return is_whole(number.type()) ? converted(number.to_long(), VT_DECIMAL)
                                 : converted(number, VT_DECIMAL);
}

Order compare_as_decimals(const Variant& a, const Variant& b) {
  const Variant left = as_decimal(a);
  const Variant right = as_decimal(b);
  const HRESULT result = VarDecCmp(&left.raw()->decVal, &right.raw()->decVal);
  check(result);
  return static_cast<int>(result) <=> static_cast<int>(VARCMP_EQ);
}

bool is_single_or_double(VARTYPE type) noexcept { return type == VT_R4 || type == VT_R8; }

// The language brings the two to one type: a Double beside a Single is rounded to it, a number with
// a fraction beside a Currency or a Decimal becomes one of these.
Order compare_numbers(const Variant& a, const Variant& b) {
  const VARTYPE left = a.type();
  const VARTYPE right = b.type();
  const auto either_is = [&](VARTYPE type) { return left == type || right == type; };
  if (is_whole(left) && is_whole(right)) return a.to_long() <=> b.to_long();
  if (either_is(VT_DECIMAL)) return compare_as_decimals(a, b);
  if (either_is(VT_CY)) {
    return a.to_currency().ten_thousandths <=> b.to_currency().ten_thousandths;
  }
  if (either_is(VT_R4) && is_single_or_double(left) && is_single_or_double(right)) {
    return a.to_single() <=> b.to_single();
  }
  return a.to_double() <=> b.to_double();
}

// Neither is an object, and both are of a type that compares.
Order compare_plain(const Variant& a, const Variant& b) {
  if (a.is_text() && b.is_text()) return a.text_view() <=> b.text_view();
  if (a.is_text())
    return b.is_empty() && a.text_view().empty() ? Order::equivalent : Order::greater;
  if (b.is_text()) return a.is_empty() && b.text_view().empty() ? Order::equivalent : Order::less;
  return compare_numbers(a, b);
}

Order order_of(const Variant& a, const Variant& b) {
  if (a.is_object()) return order_of(default_value(a.to_object()), b);
  if (b.is_object()) return order_of(a, default_value(b.to_object()));
  require_comparable(a);
  require_comparable(b);
  return compare_plain(a, b);
}

}  // namespace

int compare(const Variant& a, const Variant& b) {
  const Order order = order_of(a, b);
  return std::is_lt(order) ? -1 : std::is_eq(order) ? 0 : 1;
}

bool is_greater(const Variant& a, const Variant& b) { return std::is_gt(order_of(a, b)); }

}  // namespace qv
