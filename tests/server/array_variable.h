// A client's Variant that holds an array.
#pragma once

#include <vector>

#include "server/client.h"

namespace qv::tests {

inline Value array_of_type(VARTYPE type, const std::vector<SAFEARRAYBOUND>& bounds) {
  auto copy = bounds;
  Value array;
  array.parray = SafeArrayCreate(type, static_cast<UINT>(copy.size()), copy.data());
  array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  EXPECT_NE(array.parray, nullptr);
  return array;
}

// One dimension, of elements as they lie in memory.
template <class Element>
Value array_of(VARTYPE type, const std::vector<Element>& elements, LONG lower_bound = 1) {
  Value array = array_of_type(type, {{static_cast<ULONG>(elements.size()), lower_bound}});
  EXPECT_EQ(array.parray->cbElements, sizeof(Element));
  std::copy(elements.begin(), elements.end(), static_cast<Element*>(array.parray->pvData));
  return array;
}

inline Value array_of_variants(const std::vector<Value>& elements, LONG lower_bound = 1) {
  Value array = array_of_type(VT_VARIANT, {{static_cast<ULONG>(elements.size()), lower_bound}});
  auto* place = static_cast<VARIANT*>(array.parray->pvData);
  for (const Value& element : elements) VariantCopy(place++, const_cast<Value*>(&element));
  return array;
}

inline Value array_of_texts(const std::vector<std::wstring>& elements, LONG lower_bound = 1) {
  Value array = array_of_type(VT_BSTR, {{static_cast<ULONG>(elements.size()), lower_bound}});
  auto* place = static_cast<BSTR*>(array.parray->pvData);
  for (const std::wstring& element : elements) {
    *place++ = SysAllocStringLen(element.data(), static_cast<UINT>(element.size()));
  }
  return array;
}

template <class Element>
std::vector<Element> elements_of(const Value& array) {
  const auto* first = static_cast<const Element*>(array.parray->pvData);
  return {first, first + array.parray->rgsabound[0].cElements};
}

inline std::vector<Value> variants_of(const Value& array) {
  std::vector<Value> result;
  const auto* first = static_cast<const VARIANT*>(array.parray->pvData);
  for (ULONG i = 0; i < array.parray->rgsabound[0].cElements; ++i) {
    Value copy;
    VariantCopy(&copy, const_cast<VARIANT*>(first + i));
    result.push_back(copy);
  }
  return result;
}

inline std::vector<std::wstring> texts_of(const Value& array) {
  std::vector<std::wstring> result;
  for (const BSTR text : elements_of<BSTR>(array)) {
    result.emplace_back(text == nullptr ? L"" : std::wstring(text, SysStringLen(text)));
  }
  return result;
}

// A Variant that refers to an array variable, as the language passes one.
inline Value reference_to(Value& array) {
  Value reference;
  reference.vt = static_cast<VARTYPE>(array.vt | VT_BYREF);
  reference.pparray = &array.parray;
  return reference;
}

}  // namespace qv::tests
