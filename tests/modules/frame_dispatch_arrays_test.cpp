// Late-bound calls with arrays.
#include "modules/frame_dispatch_probe.h"

namespace qv::dispatch::tests {
namespace {

SAFEARRAY* array_of(VARTYPE type, std::initializer_list<Long> numbers, Long lower_bound = 0) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(numbers.size()), lower_bound};
  SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
  LONG index = lower_bound;
  for (const Long value : numbers) {
    Variant element = converted(Variant(value), type == VT_VARIANT ? +VT_I4 : type);
    void* data = type == VT_VARIANT ? static_cast<void*>(element.raw()) : &element.raw()->llVal;
    SafeArrayPutElement(array, &index, data);
    ++index;
  }
  return array;
}

Variant variant_of(VARTYPE type, SAFEARRAY* array) {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  value.parray = array;
  return Variant::adopt(value);
}

Long element_of(SAFEARRAY* array, LONG index) {
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  VARIANT element{};
  void* data = type == VT_VARIANT ? static_cast<void*>(&element) : &element.llVal;
  EXPECT_EQ(SafeArrayGetElement(array, &index, data), S_OK);
  if (type != VT_VARIANT) element.vt = type;
  return Variant::adopt(element).to_long();
}

HRESULT append_9(SAFEARRAY** array) {
  SAFEARRAYBOUND bound = (*array)->rgsabound[0];
  ++bound.cElements;
  if (FAILED(SafeArrayRedim(*array, &bound))) return E_FAIL;
  LONG last = bound.lLbound + static_cast<LONG>(bound.cElements) - 1;
  BYTE nine = 9;
  return SafeArrayPutElement(*array, &last, &nine);
}

TEST_F(LateBound, an_array_of_the_very_type_is_worked_on_in_place) {
  SAFEARRAY* array = array_of(VT_UI1, {1, 2});
  probe.on_array = [&](SAFEARRAY** a) {
    EXPECT_EQ(a, &array);
    return append_9(a);
  };
  EXPECT_EQ(invoke_with(kBytes, {typed(VT_ARRAY | VT_UI1, &array)}), S_OK);
  EXPECT_EQ(element_of(array, 2), 9);

  Variant held = variant_of(VT_UI1, array);
  probe.on_array = [&](SAFEARRAY** a) {
    EXPECT_EQ(*a, array);
    return append_9(a);
  };
  EXPECT_EQ(invoke_with(kBytes, {variable(held)}), S_OK);
  EXPECT_EQ(held.type(), VT_ARRAY | VT_UI1);
  EXPECT_EQ(element_of(held.array(), 3), 9);
}

TEST_F(LateBound, a_scripts_array_of_variants_is_converted_both_ways) {
  Variant held = variant_of(VT_VARIANT, array_of(VT_VARIANT, {1, 200}, 1));
  probe.on_array = [](SAFEARRAY** a) {
    EXPECT_EQ(SafeArrayGetElemsize(*a), 1U);
    EXPECT_EQ(element_of(*a, 1), 1);
    EXPECT_EQ(element_of(*a, 2), 200);
    return append_9(a);
  };
  EXPECT_EQ(invoke_with(kBytes, {variable(held)}), S_OK);
  EXPECT_EQ(held.type(), VT_ARRAY | VT_VARIANT);
  EXPECT_EQ(held.array()->rgsabound[0].lLbound, 1);
  EXPECT_EQ(held.array()->rgsabound[0].cElements, 3U);
  EXPECT_EQ(element_of(held.array(), 3), 9);
}

TEST_F(LateBound, a_reference_to_an_array_of_variants_is_converted_both_ways) {
  for (const bool inside : {false, true}) {
    SAFEARRAY* array = array_of(VT_VARIANT, {1, 2});
    VARIANT reference = typed(VT_ARRAY | VT_VARIANT, &array);
    probe.on_array = append_9;
    EXPECT_EQ(invoke_with(kBytes, {inside ? typed(VT_VARIANT, &reference) : reference}), S_OK);
    EXPECT_EQ(reference.vt, VT_BYREF | VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(element_of(array, 2), 9);
    SafeArrayDestroy(array);
  }
}

TEST_F(LateBound, a_reference_to_an_array_of_another_type_keeps_that_type) {
  SAFEARRAY* array = array_of(VT_I4, {1, 2});
  probe.on_array = append_9;
  EXPECT_EQ(invoke_with(kBytes, {typed(VT_ARRAY | VT_I4, &array)}), S_OK);
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  EXPECT_EQ(type, VT_I4);
  EXPECT_EQ(element_of(array, 2), 9);
  SafeArrayDestroy(array);
}

TEST_F(LateBound, an_array_of_fixed_size_takes_elements_and_no_new_bounds) {
  SAFEARRAY* array = array_of(VT_VARIANT, {1, 2});
  array->fFeatures |= FADF_FIXEDSIZE;
  probe.on_array = [](SAFEARRAY** a) {
    static_cast<BYTE*>((*a)->pvData)[0] = 7;
    return S_OK;
  };
  SAFEARRAY* const before = array;
  EXPECT_EQ(invoke_with(kBytes, {typed(VT_ARRAY | VT_VARIANT, &array)}), S_OK);
  EXPECT_EQ(array, before);
  EXPECT_EQ(element_of(array, 0), 7);
  probe.on_array = append_9;
  expect_exception(invoke_with(kBytes, {typed(VT_ARRAY | VT_VARIANT, &array)}), 10,
                   L"This array is fixed or temporarily locked");
  array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  SafeArrayDestroy(array);
}

TEST_F(LateBound, an_array_that_the_caller_holds_locked_is_error_10) {
  Variant held = variant_of(VT_VARIANT, array_of(VT_VARIANT, {1, 2}));
  SafeArrayLock(held.array());
  probe.on_array = append_9;
  expect_exception(invoke_with(kBytes, {variable(held)}), 10,
                   L"This array is fixed or temporarily locked");
  SafeArrayUnlock(held.array());
  EXPECT_EQ(held.array()->rgsabound[0].cElements, 2U);
}

TEST_F(LateBound, an_array_that_the_member_makes_comes_back_as_array_of_variant) {
  Variant empty;
  probe.on_array = [](SAFEARRAY** a) {
    EXPECT_EQ(*a, nullptr);
    return *a = array_of(VT_UI1, {4, 5}), S_OK;
  };
  EXPECT_EQ(invoke_with(kBytes, {variable(empty)}), S_OK);
  EXPECT_EQ(empty.type(), VT_ARRAY | VT_VARIANT);
  EXPECT_EQ(element_of(empty.array(), 1), 5);

  probe.on_array = [](SAFEARRAY** a) {
    SAFEARRAYBOUND bound{1, 0};
    *a = SafeArrayCreate(VT_BSTR, 1, &bound);
    LONG index = 0;
    return SafeArrayPutElement(*a, &index, Variant(L"text").raw()->bstrVal);
  };
  Variant texts;
  EXPECT_EQ(invoke_with(kTexts, {variable(texts)}), S_OK);
  ASSERT_EQ(texts.type(), VT_ARRAY | VT_VARIANT);
  Variant element;
  LONG index = 0;
  EXPECT_EQ(SafeArrayGetElement(texts.array(), &index, element.raw()), S_OK);
  EXPECT_EQ(element.text_view(), L"text");
}

TEST_F(LateBound, elements_that_cannot_be_converted_and_values_that_are_no_arrays_are_refused) {
  Variant large = variant_of(VT_VARIANT, array_of(VT_VARIANT, {1, 256}));
  EXPECT_EQ(invoke_with(kBytes, {variable(large)}), DISP_E_OVERFLOW);
  Variant scalar = number(1);
  EXPECT_EQ(invoke_with(kBytes, {variable(scalar)}), DISP_E_TYPEMISMATCH);
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  Variant matrix = variant_of(VT_VARIANT, SafeArrayCreate(VT_VARIANT, 2, bounds));
  EXPECT_EQ(invoke_with(kBytes, {variable(matrix)}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(invoke_with(kLong, {*large.raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_FALSE(probe.called);
}

}  // namespace
}  // namespace qv::dispatch::tests
