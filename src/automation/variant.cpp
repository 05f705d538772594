#include "automation/variant.h"

#include <algorithm>

namespace qv {
namespace {

constexpr Long kObjectRequired = 424;

// The Variant that a Variant by reference leads to; Automation allows one such step.
const VARIANT& inner(const VARIANT& value) noexcept {
  return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
}

IUnknown* object_in(const VARIANT& value) noexcept {
  return (value.vt & VT_BYREF) != 0 ? *value.ppunkVal : value.punkVal;
}

VARIANT convert(const VARIANT& value, VARTYPE type) {
  VARIANT result;
  VariantInit(&result);
  const VARIANT& held = inner(value);
  const VARTYPE from = held.vt & ~VT_BYREF;
  if (from == VT_NULL) raise(kInvalidUseOfNull);
  if ((from == VT_DISPATCH || from == VT_UNKNOWN) && object_in(held) == nullptr) {
    raise(kObjectVariableNotSet);
  }
  // Text of a Boolean is "True", not "-1".
  const USHORT flags = type == VT_BSTR ? VARIANT_ALPHABOOL : 0;
  check(
      VariantChangeTypeEx(&result, const_cast<VARIANT*>(&value), LOCALE_USER_DEFAULT, flags, type));
  return result;
}

// How wide what a VARIANT holds is, by its type.
std::size_t width_bytes(VARTYPE type) noexcept {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_R8:
    case VT_DATE:
    case VT_CY:
    case VT_I8:
    case VT_UI8:
      return 8;
    default:
      return sizeof(void*);  // text, objects, arrays
  }
}

}  // namespace

void store_by_reference(const VARIANT& reference, VARIANT& value) noexcept {
  if (value.vt == VT_DECIMAL) {
    // A decimal lies across the whole VARIANT, its type number included.
    std::swap(*reference.pdecVal, value.decVal);
    value.vt = VT_DECIMAL;
    return;
  }
  auto* held = reinterpret_cast<unsigned char*>(&value.llVal);
  std::swap_ranges(held, held + width_bytes(value.vt),
                   static_cast<unsigned char*>(reference.byref));
}

VARTYPE Variant::type() const noexcept { return inner(value_).vt & ~VT_BYREF; }

bool Variant::is_missing() const noexcept {
  const VARIANT& value = inner(value_);
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

Variant converted(const Variant& value, VARTYPE type) {
  return Variant::adopt(convert(*value.raw(), type));
}

Boolean Variant::to_boolean() const {
  const VARIANT& value = inner(value_);
  return Boolean((value.vt == VT_BOOL ? value : convert(value, VT_BOOL)).boolVal != VARIANT_FALSE);
}

Byte Variant::to_byte() const { return convert(value_, VT_UI1).bVal; }
Integer Variant::to_integer() const {
  return value_.vt == VT_I2 ? value_.iVal : convert(value_, VT_I2).iVal;
}
Long Variant::to_long() const {
  return value_.vt == VT_I4 ? value_.lVal : convert(value_, VT_I4).lVal;
}
Single Variant::to_single() const { return convert(value_, VT_R4).fltVal; }
Double Variant::to_double() const {
  return value_.vt == VT_R8 ? value_.dblVal : convert(value_, VT_R8).dblVal;
}
Date Variant::to_date() const { return Date{convert(value_, VT_DATE).date}; }
Currency Variant::to_currency() const { return Currency{convert(value_, VT_CY).cyVal.int64}; }

Text Variant::to_text() const {
  if (is_text()) return Text(text_view());
  return Text::adopt(convert(value_, VT_BSTR).bstrVal);
}

Object<IDispatch> Variant::to_object() const {
  if (!is_object()) raise(kObjectRequired);
  IUnknown* object = object_in(inner(value_));
  auto dispatch = Object<IDispatch>::from(object);
  if (object != nullptr && !dispatch) raise(to_error_number(E_NOINTERFACE));
  return dispatch;
}

std::wstring_view Variant::text_view() const noexcept {
  const VARIANT& value = inner(value_);
  BSTR text = (value.vt & VT_BYREF) != 0 ? *value.pbstrVal : value.bstrVal;
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

SAFEARRAY* Variant::array() const noexcept {
  const VARIANT& value = inner(value_);
  return (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
}

void Variant::assign(Variant value) {
  auto& target = const_cast<VARIANT&>(inner(value_));
  if ((target.vt & VT_BYREF) == 0) {
    std::swap(target, value.value_);
    return;
  }
  const VARTYPE wanted = target.vt & ~VT_BYREF;
  if (wanted == VT_RECORD) raise(kTypeMismatch);  // records are copied by their own members
  if (value.value_.vt != wanted) value = adopt(convert(value.value_, wanted));
  store_by_reference(target, value.value_);
}

}  // namespace qv
