// Calls to foreign objects by the names of their members: controls, forms, callers' helpers, the
// host's error object. A script's own class instances answer only through IDispatchEx, so that is
// asked first.
#pragma once

#include <initializer_list>

#include "automation/variant.h"

namespace qv::late_bound {

// Each raises 438 for a member that the object lacks, 91 for Nothing, and otherwise the run-time
// error that the object raised, with its source and description.
Variant get(const Object<IDispatch>& object, const wchar_t* property,
            std::initializer_list<Variant> arguments = {});
void put(const Object<IDispatch>& object, const wchar_t* property, const Variant& value);
// Arguments are handed over by reference where they are (VT_BYREF), so that a member can fill them.
Variant call(const Object<IDispatch>& object, const wchar_t* method,
             std::initializer_list<Variant> arguments = {});

// The value of the default member; for what can be indexed, the item of that index.
Variant get_default(const Object<IDispatch>& object, std::initializer_list<Variant> arguments = {});

// A member found once, for calls by the thousand.
class Method {
 public:
  Method(Object<IDispatch> object, const wchar_t* name);
  Variant operator()(std::initializer_list<Variant> arguments) const;

 private:
  Object<IDispatch> object_;
  DISPID id_ = DISPID_UNKNOWN;
};

// A Variant that refers to `variable`, for an argument that the member fills in.
Variant by_reference(Variant& variable) noexcept;

bool has_member(const Object<IDispatch>& object, const wchar_t* name) noexcept;

}  // namespace qv::late_bound
