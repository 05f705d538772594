// ShellSort, called early-bound.
#include <algorithm>
#include <random>

#include "server/sorting.h"

namespace qv::tests {
namespace {

class ShellSort : public Sorting {};

TEST_F(ShellSort, arrays_based_at_0_or_1_are_sorted_in_place) {
  for (const LONG lower_bound : {0, 1}) {
    Value longs = array_of<LONG>(VT_I4, {5, 3, 9, 1, 7}, lower_bound);
    EXPECT_EQ(shell_sort(longs), VARIANT_FALSE);
    EXPECT_EQ(elements_of<LONG>(longs), (std::vector<LONG>{1, 3, 5, 7, 9}));
    Value texts = array_of_texts({L"b", L"a", L"B", L""}, lower_bound);
    EXPECT_EQ(shell_sort(texts), VARIANT_FALSE);
    EXPECT_EQ(texts_of(texts), (std::vector<std::wstring>{L"", L"B", L"a", L"b"}));
    Value variants = array_of_variants({L"x", 2.5, 1, date_value(2)}, lower_bound);
    EXPECT_EQ(shell_sort(variants), VARIANT_FALSE);
    const auto values = variants_of(variants);
    EXPECT_EQ(values[0].lVal, 1);
    EXPECT_EQ(values[1].date, 2);
    EXPECT_EQ(values[2].dblVal, 2.5);
    EXPECT_EQ(values[3].text(), L"x");
  }
}

TEST_F(ShellSort, an_array_variable_referred_to_is_sorted_where_it_lies) {
  Value array = array_of<double>(VT_R8, {3, 1, 2});
  Value reference = reference_to(array);
  EXPECT_EQ(shell_sort(reference), VARIANT_FALSE);
  EXPECT_EQ(elements_of<double>(array), (std::vector<double>{1, 2, 3}));
}

// What the gaps of a lower bound make of an array, by plain insertion.
template <class Element>
void sort_with_gaps(std::vector<Element>& elements, const std::vector<std::size_t>& gaps) {
  for (const std::size_t gap : gaps) {
    for (std::size_t i = gap; i < elements.size(); ++i) {
      for (std::size_t j = i; j >= gap && elements[j - gap] > elements[j]; j -= gap) {
        std::swap(elements[j - gap], elements[j]);
      }
    }
  }
}

TEST_F(ShellSort, based_higher_it_leaves_order_in_steps_of_the_lower_bound_only) {
  std::mt19937 random(5);
  struct {
    LONG lower_bound;
    std::vector<std::size_t> gaps;
  } const rows[] = {{2, {67, 22, 7, 2}}, {5, {49, 16, 5}}};
  for (const auto& row : rows) {
    std::vector<LONG> numbers(static_cast<std::size_t>(100 - row.lower_bound + 1));
    for (LONG& number : numbers) number = static_cast<LONG>(random() % 1000);
    std::vector<std::wstring> words;
    for (const LONG number : numbers) words.push_back(std::to_wstring(number + 1000));
    Value array = array_of(VT_I4, numbers, row.lower_bound);
    Value texts = array_of_texts(words, row.lower_bound);
    EXPECT_EQ(shell_sort(array), VARIANT_FALSE);
    EXPECT_EQ(shell_sort(texts), VARIANT_FALSE);
    sort_with_gaps(numbers, row.gaps);
    sort_with_gaps(words, row.gaps);
    EXPECT_EQ(elements_of<LONG>(array), numbers);
    EXPECT_EQ(texts_of(texts), words);
    EXPECT_FALSE(std::ranges::is_sorted(numbers));
  }
}

TEST_F(ShellSort, equal_elements_end_where_the_gaps_bring_them) {
  std::mt19937 random(6);
  for (int round = 0; round < 50; ++round) {
    struct Element {
      LONG number;
      VARTYPE type;
      bool operator>(const Element& other) const { return number > other.number; }
      bool operator==(const Element&) const = default;
    };
    std::vector<Element> elements(101);
    std::vector<Value> values;
    for (Element& element : elements) {
      element = {static_cast<LONG>(random() % 4), random() % 2 == 0 ? VT_I4 : VT_R8};
      values.push_back(element.type == VT_I4 ? Value(element.number) : Value(element.number * 1.0));
    }
    Value array = array_of_variants(values, 0);
    EXPECT_EQ(shell_sort(array), VARIANT_FALSE);
    sort_with_gaps(elements, {40, 13, 4, 1});
    std::vector<Element> result;
    for (const Value& value : variants_of(array)) {
      result.push_back(
          {value.vt == VT_I4 ? value.lVal : static_cast<LONG>(value.dblVal), value.vt});
    }
    ASSERT_EQ(result, elements);
  }
}

TEST_F(ShellSort, a_negative_lower_bound_overflows) {
  Value array = array_of<LONG>(VT_I4, {3, 2, 1}, -1);
  EXPECT_EQ(shell_sort(array), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.ShellSort"}));
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{3, 2, 1}));
}

TEST_F(ShellSort, what_is_no_array_of_one_dimension_fails) {
  Value number(5);
  EXPECT_EQ(shell_sort(number), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.ShellSort"}));
  Value unallocated;
  unallocated.vt = VT_ARRAY | VT_VARIANT;
  unallocated.parray = nullptr;
  EXPECT_EQ(shell_sort(unallocated), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.ShellSort"}));
  Value matrix = array_of_type(VT_I4, {{3, 0}, {2, 0}});
  EXPECT_EQ(shell_sort(matrix), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.ShellSort"}));
  Value collection;
  collection.vt = VT_DISPATCH;
  const auto object = create<_kwCollection>(CLSID_kwCollection);
  collection.pdispVal = object.get();
  collection.pdispVal->AddRef();
  EXPECT_EQ(shell_sort(collection), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.ShellSort"}));
}

TEST_F(ShellSort, an_empty_array_is_sorted) {
  Value none = array_of<LONG>(VT_I4, {}, 0);
  EXPECT_EQ(shell_sort(none), VARIANT_FALSE);
}

TEST_F(ShellSort, elements_that_do_not_compare_fail_and_one_may_be_lost) {
  Value array = array_of_variants({2, 1, null_value()});
  EXPECT_EQ(shell_sort(array), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{94, L"Invalid use of Null", L"KwRtLibMod.ShellSort"}));
  // 3 was on its way down when it met what it can't be compared with.
  Value lossy = array_of_variants({null_value(), 5, 3});
  EXPECT_EQ(shell_sort(lossy), VARIANT_TRUE);
  record();
  Value on_the_way = array_of_variants({1, null_value(), 9, 8});
  EXPECT_EQ(shell_sort(on_the_way), VARIANT_TRUE);
  record();
}

TEST_F(ShellSort, a_single_Null_based_at_0_is_compared_with_itself) {
  Value based_at_0 = array_of_variants({null_value()}, 0);
  EXPECT_EQ(shell_sort(based_at_0), VARIANT_TRUE);
  EXPECT_EQ(record().number, 94);
  Value based_at_1 = array_of_variants({null_value()}, 1);
  EXPECT_EQ(shell_sort(based_at_1), VARIANT_FALSE);
}

}  // namespace
}  // namespace qv::tests
