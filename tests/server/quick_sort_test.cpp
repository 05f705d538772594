// QuickSort without a helper, called early-bound.
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "server/foreign_collection.h"
#include "server/sorting.h"

namespace qv::tests {
namespace {

class QuickSort : public Sorting {
 protected:
  template <class Element>
  void expect_sorted(VARTYPE type, std::vector<Element> elements) {
    Value array = array_of(type, elements);
    EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
    EXPECT_EQ(array.vt, VT_ARRAY | type);
    std::ranges::sort(elements);
    EXPECT_EQ(elements_of<Element>(array), elements);
  }
};

std::wstring shown(const Value& value) {
  Value text;
  if (FAILED(
          VariantChangeTypeEx(&text, const_cast<Value*>(&value), LOCALE_INVARIANT, 0, VT_BSTR))) {
    return L"?" + std::to_wstring(value.vt);
  }
  std::wstring result = std::to_wstring(value.vt) + L":" + std::wstring(text.text());
  if (value.vt == VT_BSTR && value.bstrVal == nullptr) result += L"null";
  return result;
}

std::vector<std::wstring> shown(const std::vector<Value>& values) {
  std::vector<std::wstring> result;
  for (const Value& value : values) result.push_back(shown(value));
  return result;
}

TEST_F(QuickSort, arrays_of_every_type_are_sorted_in_place_and_keep_their_type) {
  expect_sorted<BYTE>(VT_UI1, {200, 3, 255, 0, 3});
  expect_sorted<SHORT>(VT_I2, {300, -5, 32767, -32768, 0, -5});
  expect_sorted<LONG>(VT_I4, {70000, -5, 2147483647, -2147483647 - 1, 0});
  expect_sorted<float>(VT_R4, {1.5F, -2.5F, 0.0F, 3.4e38F, -3.4e38F});
  expect_sorted<double>(VT_R8, {1.5, -2.5, 0.0, 1.7e308, -1.7e308, 5e-324});
  expect_sorted<double>(VT_DATE, {40000.5, -3.25, 40000.25, 0.0});
  expect_sorted<LONGLONG>(VT_CY, {10000, -1, 9223372036854775807, 0, 5});
  expect_sorted<SHORT>(VT_BOOL, {0, -1, 0, -1, -1});
}

TEST_F(QuickSort, large_arrays_of_every_type_are_sorted) {
  std::mt19937_64 random(1);
  const auto numbers = [&]<class Number>(Number) {
    std::vector<Number> result(40000);
    for (Number& number : result) number = static_cast<Number>(random() % 100003) - Number(50001);
    return result;
  };
  expect_sorted<BYTE>(VT_UI1, numbers(BYTE()));
  expect_sorted<SHORT>(VT_I2, numbers(SHORT()));
  expect_sorted<LONG>(VT_I4, numbers(LONG()));
  expect_sorted<float>(VT_R4, numbers(float()));
  expect_sorted<double>(VT_R8, numbers(double()));
  expect_sorted<LONGLONG>(VT_CY, numbers(LONGLONG()));
}

TEST_F(QuickSort, texts_are_sorted_by_character_code) {
  const std::vector<std::wstring> texts = {
      L"b", L"B", L"", L"ab", L"a", L"\u00E4", L"zz", L"abc", L"\uFF21", L"ab", {L'a', 0, L'b'}};
  Value array = array_of_texts(texts);
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  auto expected = texts;
  std::ranges::sort(expected);
  EXPECT_EQ(texts_of(array), expected);
}

TEST_F(QuickSort, many_texts_are_sorted) {
  std::mt19937 random(2);
  std::vector<std::wstring> texts(5000);
  for (std::wstring& text : texts) {
    text.resize(random() % 12);
    for (wchar_t& character : text) character = static_cast<wchar_t>(L'a' + random() % 3);
  }
  Value array = array_of_texts(texts);
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  std::ranges::sort(texts);
  EXPECT_EQ(texts_of(array), texts);
}

TEST_F(QuickSort, values_of_all_types_are_sorted_together_and_keep_their_types) {
  Value array = array_of_variants({L"x", 3, 2.5, static_cast<SHORT>(-1), L"", date_value(4.0),
                                   static_cast<BYTE>(200), 7, L"B"});
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  const std::vector<std::wstring> expected = {
      L"2:-1", L"5:2.5", L"3:3", shown(date_value(4.0)), L"3:7", L"17:200", L"8:", L"8:B", L"8:x"};
  EXPECT_EQ(shown(variants_of(array)), expected);
}

TEST_F(QuickSort, Empty_lies_among_the_numbers_as_0_and_among_texts_as_the_empty_one) {
  Value numbers = array_of_variants({3, {}, -2});
  EXPECT_EQ(quick_sort(numbers), VARIANT_FALSE);
  EXPECT_EQ(shown(variants_of(numbers)), (std::vector<std::wstring>{L"3:-2", L"0:", L"3:3"}));
  Value texts = array_of_variants({L"b", {}, L"a"});
  EXPECT_EQ(quick_sort(texts), VARIANT_FALSE);
  EXPECT_EQ(shown(variants_of(texts)), (std::vector<std::wstring>{L"0:", L"8:a", L"8:b"}));
}

TEST_F(QuickSort, an_array_variable_referred_to_is_sorted_where_it_lies) {
  Value array = array_of<LONG>(VT_I4, {3, 1, 2});
  Value reference = reference_to(array);
  EXPECT_EQ(quick_sort(reference), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{1, 2, 3}));
  Value variable = array_of_variants({3, 1, 2});
  Value inner;
  inner.vt = VT_BYREF | VT_VARIANT;
  inner.pvarVal = &variable;
  EXPECT_EQ(quick_sort(inner), VARIANT_FALSE);
  EXPECT_EQ(shown(variants_of(variable)), (std::vector<std::wstring>{L"3:1", L"3:2", L"3:3"}));
}

TEST_F(QuickSort, every_lower_bound_will_do) {
  for (const LONG lower_bound : {-7, 0, 1, 100, 2147483600}) {
    Value array = array_of<LONG>(VT_I4, {5, 3, 9, 1}, lower_bound);
    EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
    EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{1, 3, 5, 9}));
  }
}

TEST_F(QuickSort, a_range_is_sorted_and_the_rest_left_alone) {
  Value array = array_of<LONG>(VT_I4, {9, 8, 7, 6, 5});
  EXPECT_EQ(quick_sort(array, 2, 4), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{9, 6, 7, 8, 5}));
  EXPECT_EQ(quick_sort(array, Value::missing(), 2), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{6, 9, 7, 8, 5}));
  EXPECT_EQ(quick_sort(array, 4), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{6, 9, 7, 5, 8}));
  EXPECT_EQ(quick_sort(array, L"1", 2.5), VARIANT_FALSE) << "bounds are converted and rounded";
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{6, 9, 7, 5, 8}));
}

TEST_F(QuickSort, a_range_of_one_or_none_is_left_alone) {
  Value array = array_of_variants({null_value(), null_value()});
  EXPECT_EQ(quick_sort(array, 2, 2), VARIANT_FALSE);
  EXPECT_EQ(quick_sort(array, 2, 1), VARIANT_FALSE);
  EXPECT_EQ(quick_sort(array, 99, 99), VARIANT_FALSE) << "nothing is looked at";
  Value none = array_of<LONG>(VT_I4, {});
  EXPECT_EQ(quick_sort(none), VARIANT_FALSE);
}

TEST_F(QuickSort, a_range_beyond_the_array_fails) {
  Value array = array_of<LONG>(VT_I4, {3, 2, 1});
  EXPECT_EQ(quick_sort(array, 1, 4), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{3, 2, 1}));
  EXPECT_EQ(quick_sort(array, 0, 2), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
}

TEST_F(QuickSort, an_array_that_is_not_allocated_fails) {
  Value array;
  array.vt = VT_ARRAY | VT_I4;
  array.parray = nullptr;
  EXPECT_EQ(quick_sort(array), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(array, 1, 2), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(array, 1, 1), VARIANT_FALSE) << "nothing is looked at";
}

TEST_F(QuickSort, an_array_of_several_dimensions_fails_at_its_first_element) {
  Value array = array_of_type(VT_I4, {{3, 1}, {2, 1}});
  EXPECT_EQ(quick_sort(array), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
  Value narrow = array_of_type(VT_I4, {{1, 1}, {2, 1}});
  EXPECT_EQ(quick_sort(narrow), VARIANT_FALSE) << "its first dimension has one element";
}

TEST_F(QuickSort, what_is_no_array_needs_both_bounds) {
  Value number(5);
  EXPECT_EQ(quick_sort(number), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(number, 1), VARIANT_TRUE);
  EXPECT_EQ(record().number, 13);
  EXPECT_EQ(quick_sort(number, 1, 2), VARIANT_TRUE) << "a number can't be indexed";
  EXPECT_EQ(record().number, 13);
}

TEST_F(QuickSort, a_collection_without_both_bounds_fails_as_no_array) {
  const auto collection = create<_kwCollection>(CLSID_kwCollection);
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  object.pdispVal->AddRef();
  EXPECT_EQ(quick_sort(object), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(object, Value::missing(), 3), VARIANT_TRUE);
  EXPECT_EQ(record().number, 13);
}

TEST_F(QuickSort, a_collection_is_sorted_by_copies_so_it_stays_as_it_is) {
  const auto collection = create<_kwCollection>(CLSID_kwCollection);
  Value missing = Value::missing();
  for (Value item : {5, 3, 9, 1, 7, 2}) {
    EXPECT_EQ(collection->Add(&item, &missing, &missing, &missing), S_OK);
  }
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  object.pdispVal->AddRef();
  EXPECT_EQ(quick_sort(object, 1, 6), VARIANT_FALSE);
  Value position(1), item;
  EXPECT_EQ(collection->get_Item(&position, &item), S_OK);
  EXPECT_EQ(item.lVal, 5);
  EXPECT_EQ(quick_sort(object, 1, 7), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.QuickSort"}));
}

TEST_F(QuickSort, a_bound_that_is_no_number_fails) {
  Value array = array_of<LONG>(VT_I4, {3, 2, 1});
  EXPECT_EQ(quick_sort(array, L"one"), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(array, 1, null_value()), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{94, L"Invalid use of Null", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(quick_sort(array, 1, 3e9), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.QuickSort"}));
}

TEST_F(QuickSort, elements_that_do_not_compare_fail) {
  Value nulls = array_of_variants({1, null_value(), 2});
  EXPECT_EQ(quick_sort(nulls), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{94, L"Invalid use of Null", L"KwRtLibMod.QuickSort"}));
  Value errors = array_of_variants({1, Value::missing(), 2});
  EXPECT_EQ(quick_sort(errors), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
  Value arrays = array_of_variants({1, array_of<LONG>(VT_I4, {1}), 2});
  EXPECT_EQ(quick_sort(arrays), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
  Value large = array_of_variants({currency_value(10000), 1e300});
  EXPECT_EQ(quick_sort(large), VARIANT_TRUE) << "no Currency is so large";
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.QuickSort"}));
}

TEST_F(QuickSort, objects_are_sorted_by_their_default_values_and_stay_objects) {
  // A collection's default value needs an index, so it has none of its own to compare by.
  const auto collection = create<_kwCollection>(CLSID_kwCollection);
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  object.pdispVal->AddRef();
  Value array = array_of_variants({1, object});
  EXPECT_EQ(quick_sort(array), VARIANT_TRUE);
  EXPECT_EQ(record().number, 438);
  Value nothing;
  nothing.vt = VT_DISPATCH;
  nothing.pdispVal = nullptr;
  Value nothings = array_of_variants({1, nothing});
  EXPECT_EQ(quick_sort(nothings), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{91, L"Object variable or With block variable not set",
                              L"KwRtLibMod.QuickSort"}));
}

TEST_F(QuickSort, decimals_are_sorted_by_value) {
  Value array = array_of_variants({decimal_value(3), 2, decimal_value(-1), L"x", decimal_value(0)});
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  EXPECT_EQ(shown(variants_of(array)),
            (std::vector<std::wstring>{L"14:-1", L"14:0", L"3:2", L"14:3", L"8:x"}));
}

TEST_F(QuickSort, an_element_that_is_no_number_stays_in_the_array) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  Value array = array_of<double>(VT_R8, {3, nan, 1, nan, 2});
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  auto elements = elements_of<double>(array);
  EXPECT_EQ(std::ranges::count_if(elements, [](double x) { return std::isnan(x); }), 2);
  std::erase_if(elements, [](double x) { return std::isnan(x); });
  std::ranges::sort(elements);
  EXPECT_EQ(elements, (std::vector<double>{1, 2, 3}));
}

// Elements among which many are equal, and equal ones that can be told apart.
std::vector<Value> random_elements(std::mt19937& random, int kind) {
  std::vector<Value> elements(random() % 40);
  for (Value& element : elements) {
    const int number = static_cast<int>(random() % 5) - 2;
    switch (random() % 8) {
      case 0:
        element = Value(static_cast<SHORT>(number));
        break;
      case 1:
        element = Value(number);
        break;
      case 2:
        element = kind == 0 ? Value(number + 0.5) : currency_value(number * 5000);
        break;
      case 3:
        element = kind == 0 ? Value(number == 0 ? -0.0 : number * 1.0) : Value(number < 0);
        break;
      case 4:
        element = kind == 0 ? date_value(number) : Value();
        break;
      case 5:
        element = Value(static_cast<BYTE>(number & 3));
        break;
      case 6:
        element = kind == 2 ? Value() : Value(number < 0);
        break;
      default:
        element = kind == 1 ? Value(number) : Value(std::wstring(random() % 3, L'a'));
        if (kind == 2 && random() % 2 == 0) element = Value();
        break;
    }
  }
  return elements;
}

// The outcome of the very steps, which a client's own helper has done.
TEST_F(QuickSort, without_a_helper_the_result_is_that_of_a_helper_that_does_the_same) {
  std::mt19937 random(3);
  for (int round = 0; round < 15; ++round) {
    std::vector<std::vector<Value>> inputs;
    for (int i = 0; i < 20; ++i) inputs.push_back(random_elements(random, i % 3));
    for (const auto& input : inputs) {
      std::vector<std::wstring> by_steps, directly;
      Record record_by_steps, record_directly;
      on_fresh_thread([&] {
        global_ = create_global();
        SortHelper helper;
        Value array = array_of_variants(input, 2);
        quick_sort(array, helper);
        by_steps = shown(variants_of(array));
        record_by_steps = record();
        global_ = {};
      });
      on_fresh_thread([&] {
        global_ = create_global();
        Value array = array_of_variants(input, 2);
        quick_sort(array);
        directly = shown(variants_of(array));
        record_directly = record();
        global_ = {};
      });
      ASSERT_EQ(directly, by_steps);
      ASSERT_EQ(record_directly, record_by_steps);
    }
  }
}

TEST_F(QuickSort, equal_doubles_of_both_signs_end_as_by_steps) {
  std::vector<double> zeros;
  for (int i = 0; i < 300; ++i) zeros.push_back(i % 3 == 0 ? -0.0 : i % 7 == 0 ? 1.0 : 0.0);
  std::vector<bool> by_steps, directly;
  const auto sort = [&](std::vector<bool>& signs, bool with_helper) {
    on_fresh_thread([&] {
      global_ = create_global();
      SortHelper helper;
      Value array = array_of(VT_R8, zeros);
      EXPECT_EQ(with_helper ? quick_sort(array, helper) : quick_sort(array), VARIANT_FALSE);
      for (const double zero : elements_of<double>(array)) signs.push_back(std::signbit(zero));
      global_ = {};
    });
  };
  sort(by_steps, true);
  sort(directly, false);
  EXPECT_EQ(directly, by_steps);
}

TEST_F(QuickSort, a_QvSort_of_the_library_is_as_good_as_none) {
  const auto helper = create<_QvSort>(CLSID_QvSort);
  Pointer<_QvSort> variable = helper;
  Value array = array_of<LONG>(VT_I4, {3, 1, 2}), first = Value::missing(), last = Value::missing();
  VARIANT_BOOL result = 7;
  EXPECT_EQ(global_->QuickSort(&array, &first, &last, variable.variable(), &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{1, 2, 3}));
  EXPECT_EQ(variable.get(), helper.get());
}

TEST_F(QuickSort, no_helper_stays_no_helper) {
  Pointer<_QvSort> nobody;
  Value array = array_of<LONG>(VT_I4, {2, 1}), first = Value::missing(), last = Value::missing();
  VARIANT_BOOL result = 7;
  EXPECT_EQ(global_->QuickSort(&array, &first, &last, nobody.variable(), &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  EXPECT_FALSE(nobody);
  EXPECT_EQ(first.vt, VT_ERROR);
  EXPECT_EQ(last.vt, VT_ERROR);
}

TEST_F(QuickSort, many_equal_elements_that_can_be_told_apart_are_sorted) {
  std::vector<SAFEARRAYBOUND> bound = {{300000, 1}};
  Value array = array_of_type(VT_VARIANT, bound);
  auto* elements = static_cast<VARIANT*>(array.parray->pvData);
  for (LONG i = 0; i < 300000; ++i) elements[i] = i % 2 == 0 ? Value(1) : Value(1.0);
  EXPECT_EQ(quick_sort(array), VARIANT_FALSE);
  EXPECT_EQ(
      std::count_if(elements, elements + 300000, [](const VARIANT& v) { return v.vt == VT_I4; }),
      150000);
}

}  // namespace
}  // namespace qv::tests
