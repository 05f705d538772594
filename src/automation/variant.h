// Variant: a value of any type, laid out as a VARIANT, so that a by-reference Variant argument is a
// Variant& over the caller's own variable.
#pragma once

#include "automation/array.h"
#include "automation/object.h"

namespace qv {

// Does a value of that type, no reference, consist of its VARIANT alone? Then it is copied and
// forgotten without the system's help.
constexpr bool is_plain(VARTYPE type) noexcept {
  constexpr auto kPlainTypes = [] {
    unsigned types = 0;
    for (const VARTYPE plain :
         {VT_EMPTY, VT_NULL, VT_BOOL, VT_UI1, VT_I1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8,
          VT_R4, VT_R8, VT_CY, VT_DATE, VT_DECIMAL, VT_ERROR}) {
      types |= 1U << plain;
    }
    return types;
  }();
  return type < 32 && ((kPlainTypes >> type) & 1) != 0;
}

// A caller may hand over a Variant that only refers to a typed variable of its own (VT_BYREF).
// Reading and assigning go through such a reference: type() is the variable's type, and assign()
// converts to it, as the language's own assignment does.
class Variant {
 public:
  Variant() noexcept : value_{} {}
  Variant(Boolean value) noexcept : Variant(OfType{VT_BOOL}) { value_.boolVal = value; }
  Variant(Byte value) noexcept : Variant(OfType{VT_UI1}) { value_.bVal = value; }
  Variant(Integer value) noexcept : Variant(OfType{VT_I2}) { value_.iVal = value; }
  Variant(Long value) noexcept : Variant(OfType{VT_I4}) { value_.lVal = value; }
  Variant(Single value) noexcept : Variant(OfType{VT_R4}) { value_.fltVal = value; }
  Variant(Double value) noexcept : Variant(OfType{VT_R8}) { value_.dblVal = value; }
  Variant(Date value) noexcept : Variant(OfType{VT_DATE}) { value_.date = value.days; }
  Variant(Currency value) noexcept : Variant(OfType{VT_CY}) {
    value_.cyVal.int64 = value.ten_thousandths;
  }
  Variant(Text value) noexcept : Variant(OfType{VT_BSTR}) { value_.bstrVal = value.release(); }
  Variant(std::wstring_view value) : Variant(Text(value)) {}
  Variant(const wchar_t* value) : Variant(Text(value)) {}
  Variant(Object<IDispatch> value) noexcept : Variant(OfType{VT_DISPATCH}) {
    value_.pdispVal = value.release();
  }
  template <class Element>
  Variant(Array<Element> value) noexcept : Variant(OfType{VT_ARRAY | ArrayElement<Element>::type}) {
    value_.parray = value.release();
  }
  Variant(const Variant& other) : Variant() {
    if (is_plain(other.value_.vt)) {
      value_ = other.value_;
    } else {
      check(VariantCopyInd(&value_, other.raw()));
    }
  }
  Variant(Variant&& other) noexcept : value_(other.value_) { other.value_.vt = VT_EMPTY; }
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() {
    if (!is_plain(value_.vt)) VariantClear(&value_);
  }

  static Variant null() noexcept { return Variant(OfType{VT_NULL}); }
  // What stands for an optional argument that was left out.
  static Variant missing() noexcept {
    Variant variant(OfType{VT_ERROR});
    variant.value_.scode = DISP_E_PARAMNOTFOUND;
    return variant;
  }
  static Variant adopt(VARIANT value) noexcept {
    Variant variant;
    variant.value_ = value;
    return variant;
  }

  // The language's VarType: VT_... with VT_ARRAY, never VT_BYREF.
  VARTYPE type() const noexcept;
  bool is_missing() const noexcept;
  bool is_empty() const noexcept { return type() == VT_EMPTY; }
  bool is_null() const noexcept { return type() == VT_NULL; }
  bool is_text() const noexcept { return type() == VT_BSTR; }
  bool is_array() const noexcept { return (type() & VT_ARRAY) != 0; }
  bool is_object() const noexcept { return type() == VT_DISPATCH || type() == VT_UNKNOWN; }

  // The language's conversions. Run-time error 13 where there is none, 6 where the value does not
  // fit, 94 for Null. Rounding is to the nearest, ties to even. An object gives its default value.
  Boolean to_boolean() const;
  Byte to_byte() const;
  Integer to_integer() const;
  Long to_long() const;
  Single to_single() const;
  Double to_double() const;
  Date to_date() const;
  Currency to_currency() const;
  Text to_text() const;
  // An object reference; run-time error 424 for a value that is none, empty for Nothing.
  Object<IDispatch> to_object() const;

  // The text without a copy; valid while the value lives. Only where is_text().
  std::wstring_view text_view() const noexcept;
  // The array without a copy, still owned by the value; null where it is not allocated. Only where
  // is_array().
  SAFEARRAY* array() const noexcept;

  // The language's assignment to a variable (Let and Set in one: an object is stored as a
  // reference). Through a reference to a typed variable, with conversion to its type.
  void assign(Variant value);

  VARIANT* raw() noexcept { return &value_; }
  // Automation's own services read through pointers that are not const.
  VARIANT* raw() const noexcept { return const_cast<VARIANT*>(&value_); }
  VARIANT release() noexcept {
    const VARIANT value = value_;
    value_.vt = VT_EMPTY;
    return value;
  }

 private:
  struct OfType {
    VARTYPE type;
  };
  explicit Variant(OfType of) noexcept : Variant() { value_.vt = of.type; }

  VARIANT value_;
};

static_assert(sizeof(Variant) == sizeof(VARIANT));

// Stores a value in the variable that `reference` (VT_BYREF) leads to; the value has that
// variable's very type. `value` is left with what the variable held before.
void store_by_reference(const VARIANT& reference, VARIANT& value) noexcept;

// The value as another type: what the to_... members do, for callers that choose the type at run
// time.
Variant converted(const Variant& value, VARTYPE type);

}  // namespace qv
