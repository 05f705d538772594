// The members of a class as its type library describes them, in the types that Automation carries.
#pragma once

#include <string>
#include <vector>

#include "server/frame_classes.h"

namespace qv::tests {

struct ParameterOf {
  VARTYPE type = VT_EMPTY;  // of a value: VT_I4 for an enumeration, VT_DISPATCH for every object
  bool is_array = false;
  bool is_reference = false;
  bool is_optional = false;
};

// One operation: a method, or one of a property's two or three.
struct MemberOf {
  std::wstring name;
  DISPID id = 0;
  WORD kind = 0;                        // DISPATCH_METHOD, ...
  std::size_t offset_bytes = 0;         // in the function table
  std::vector<ParameterOf> parameters;  // without the result
  bool has_result = false;

  bool is_put() const { return (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
};

// Without those of IDispatch.
std::vector<MemberOf> members_of(IDispatch* object);

}  // namespace qv::tests
