#include "runtime/comparison.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

Variant decimal_value(Long number) {
  Variant value;
  EXPECT_EQ(VarDecFromI4(number, &value.raw()->decVal), S_OK);
  value.raw()->vt = VT_DECIMAL;
  return value;
}

Long error_of(const Variant& a, const Variant& b) {
  try {
    compare(a, b);
    return 0;
  } catch (...) {
    return current_run_time_error().number;
  }
}

void expect_ascending(const Variant& less, const Variant& greater) {
  EXPECT_EQ(compare(less, greater), -1);
  EXPECT_EQ(compare(greater, less), 1);
  EXPECT_EQ(compare(less, less), 0);
  EXPECT_EQ(compare(greater, greater), 0);
}

TEST(Comparison, numbers_of_all_types_compare_by_value) {
  const Variant ones[] = {Byte{1},   Integer{1},      Long{1}, Single{1},
                          Double{1}, Currency{10000}, Date{1}, decimal_value(1)};
  const Variant twos[] = {Byte{2},   Integer{2},      Long{2}, Single{2},
                          Double{2}, Currency{20000}, Date{2}, decimal_value(2)};
  for (const Variant& one : ones) {
    SCOPED_TRACE(one.type());
    for (const Variant& other : ones) EXPECT_EQ(compare(one, other), 0);
    for (const Variant& two : twos) expect_ascending(one, two);
    expect_ascending(True, one);
    expect_ascending(False, one);
    expect_ascending(Integer{-2}, one);
    expect_ascending({}, one);
  }
}

TEST(Comparison, booleans_are_minus_1_and_0) {
  expect_ascending(True, False);
  EXPECT_EQ(compare(True, Long{-1}), 0);
  EXPECT_EQ(compare(False, Double{0}), 0);
  EXPECT_EQ(compare(False, Variant()), 0);
}

TEST(Comparison, a_double_beside_a_single_is_rounded_to_it) {
  EXPECT_EQ(compare(Single{0.1F}, Double{0.1}), 0);
  EXPECT_EQ(compare(Double{0.1}, Single{0.1F}), 0);
}

TEST(Comparison, texts_compare_by_character_code) {
  expect_ascending(L"", L"a");
  expect_ascending(L"B", L"a");
  expect_ascending(L"a", L"b");
  expect_ascending(L"a", L"ab");
  expect_ascending(L"z", L"\xE4");
  expect_ascending(L"\xE4", L"\xFF21");
  expect_ascending(std::wstring_view(L"a\0a", 3), std::wstring_view(L"a\0b", 3));
}

TEST(Comparison, a_number_is_less_than_any_text) {
  expect_ascending(Long{5}, L"1");
  expect_ascending(Double{1e300}, L"");
  expect_ascending(True, L"");
}

TEST(Comparison, empty_is_0_and_the_empty_text) {
  EXPECT_EQ(compare({}, {}), 0);
  EXPECT_EQ(compare({}, Long{0}), 0);
  EXPECT_EQ(compare(L"", {}), 0);
  expect_ascending({}, L"a");
  expect_ascending(Long{-1}, {});
}

TEST(Comparison, variables_referred_to_compare_by_what_they_hold) {
  LONG number = 7;
  VARIANT reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &number;
  const auto variable = Variant::adopt(reference);
  EXPECT_EQ(compare(variable, Integer{7}), 0);
  BSTR text = SysAllocString(L"x");
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = &text;
  EXPECT_EQ(compare(Variant::adopt(reference), L"x"), 0);
  SysFreeString(text);
}

TEST(Comparison, what_does_not_compare_is_an_error) {
  EXPECT_EQ(error_of(Variant::null(), Long{1}), 94);
  EXPECT_EQ(error_of(L"a", Variant::null()), 94);
  EXPECT_EQ(error_of(Array<Long>(0, 1), Long{1}), 13);
  EXPECT_EQ(error_of(Long{1}, Array<Long>(0, 1)), 13);
  EXPECT_EQ(error_of(Variant::missing(), Long{1}), 13);
  EXPECT_EQ(error_of(Object<IDispatch>(), Long{1}), 91);
  EXPECT_EQ(error_of(Long{1}, Object<IDispatch>()), 91);
}

// An object with a default value or without one.
class Thing final : public IDispatch {
 public:
  explicit Thing(HRESULT answer) : answer_(answer) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
    if (SUCCEEDED(answer_)) {
      result->vt = VT_I4;
      result->lVal = 7;
    }
    return answer_;
  }

 private:
  HRESULT answer_;
};

TEST(Comparison, an_object_stands_for_its_default_value) {
  Thing seven(S_OK);
  const Variant object{Object<IDispatch>(&seven)};
  EXPECT_EQ(compare(object, Long{7}), 0);
  expect_ascending(Long{6}, object);
}

TEST(Comparison, an_object_without_a_default_value_is_error_438) {
  Thing thing(DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(error_of(Object<IDispatch>(&thing), Long{7}), 438);
}

}  // namespace
}  // namespace qv
