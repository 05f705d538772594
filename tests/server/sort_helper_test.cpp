// Sorting and searching by a client's own helper, and the QvSort that does it otherwise.
#include <algorithm>
#include <limits>

#include "server/sorting.h"

namespace qv::tests {
namespace {

class SortingByHelper : public Sorting {
 protected:
  // Turns the order round.
  static HRESULT compare_downwards(VARIANT* a, VARIANT* b, LONG* result) {
    *result = a->lVal > b->lVal ? -1 : a->lVal == b->lVal ? 0 : 1;
    return S_OK;
  }
};

TEST_F(SortingByHelper, gets_references_to_the_elements_themselves) {
  Value array = array_of_variants({3, 1});
  const auto* elements = static_cast<VARIANT*>(array.parray->pvData);
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    EXPECT_EQ(a, &elements[0]);
    EXPECT_EQ(b, &elements[1]);
    *result = 1;
    return S_OK;
  };
  helper.on_swap = [&](VARIANT* a, VARIANT* b) {
    EXPECT_EQ(a, &elements[0]);
    EXPECT_EQ(b, &elements[1]);
    return S_OK;
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(helper.compares, 1);
  EXPECT_EQ(helper.swaps, 1);
  EXPECT_EQ(elements[0].lVal, 3) << "whether they are exchanged is the helper's business";
}

TEST_F(SortingByHelper, gets_elements_of_a_typed_array_by_reference) {
  Value array = array_of<LONG>(VT_I4, {3, 1});
  auto* elements = static_cast<LONG*>(array.parray->pvData);
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    EXPECT_EQ(a->vt, VT_BYREF | VT_I4);
    EXPECT_EQ(a->plVal, &elements[0]);
    EXPECT_EQ(b->plVal, &elements[1]);
    *result = *a->plVal - *b->plVal;
    return S_OK;
  };
  helper.on_swap = [](VARIANT* a, VARIANT* b) {
    std::swap(*a->plVal, *b->plVal);
    return S_OK;
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{1, 3}));
}

TEST_F(SortingByHelper, decides_the_order) {
  Value array = array_of_variants({3, 1, 4, 1, 5, 9, 2, 6});
  SortHelper helper;
  helper.on_compare = &compare_downwards;
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  std::vector<LONG> numbers;
  for (const Value& value : variants_of(array)) numbers.push_back(value.lVal);
  EXPECT_EQ(numbers, (std::vector<LONG>{9, 6, 5, 4, 3, 2, 1, 1}));
}

TEST_F(SortingByHelper, can_move_a_second_array_along) {
  Value keys = array_of<LONG>(VT_I4, {3, 1, 2, 5, 4});
  const auto* first = static_cast<LONG*>(keys.parray->pvData);
  std::vector<char> along = {'c', 'a', 'b', 'e', 'd'};
  SortHelper helper;
  helper.on_swap = [&](VARIANT* a, VARIANT* b) {
    std::swap(along[static_cast<std::size_t>(a->plVal - first)],
              along[static_cast<std::size_t>(b->plVal - first)]);
    std::swap(*a->plVal, *b->plVal);
    return S_OK;
  };
  EXPECT_EQ(quick_sort(keys, helper), VARIANT_FALSE);
  EXPECT_EQ(elements_of<LONG>(keys), (std::vector<LONG>{1, 2, 3, 4, 5}));
  EXPECT_EQ(along, (std::vector<char>{'a', 'b', 'c', 'd', 'e'}));
}

TEST_F(SortingByHelper, one_element_or_none_calls_nothing) {
  SortHelper helper;
  Value array = array_of<LONG>(VT_I4, {3, 1});
  EXPECT_EQ(quick_sort(array, 2, 2, &helper), VARIANT_FALSE);
  EXPECT_EQ(quick_sort(array, 2, 1, &helper), VARIANT_FALSE);
  EXPECT_EQ(helper.compares + helper.swaps, 0);
}

TEST_F(SortingByHelper, two_elements_in_order_are_compared_once_and_not_swapped) {
  SortHelper helper;
  Value array = array_of<LONG>(VT_I4, {1, 3});
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(helper.compares, 1);
  EXPECT_EQ(helper.swaps, 0);
}

TEST_F(SortingByHelper, equal_elements_are_swapped_twice_for_every_part) {
  SortHelper helper;
  Value array = array_of<LONG>(VT_I4, {7, 7, 7, 7, 7});
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(helper.swaps, 6) << "parts of 5, 4 and 3";
  // A part of n: n comparisons upwards, the last of which only tells that it is over, and one
  // downwards; then one for the part of 2.
  EXPECT_EQ(helper.compares, (5 + 1) + (4 + 1) + (3 + 1) + 1);
}

// The calls for a part are told to the last one. The pivot is the element that the first Swap
// brings to the end.
TEST_F(SortingByHelper, a_part_takes_the_calls_of_its_scans_and_no_others) {
  Value array = array_of_variants({2, 9, 1, 7, 3, 8});
  const auto* elements = static_cast<VARIANT*>(array.parray->pvData);
  std::vector<std::string> calls;
  const auto note = [&](char what, const VARIANT* a, const VARIANT* b) {
    calls.push_back(what + std::to_string(a - elements + 1) + ',' +
                    std::to_string(b - elements + 1));
  };
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    note('c', a, b);
    *result = a->lVal < b->lVal ? -1 : a->lVal == b->lVal ? 0 : 1;
    return S_OK;
  };
  helper.on_swap = [&](VARIANT* a, VARIANT* b) {
    note('s', a, b);
    std::swap(*a, *b);
    return S_OK;
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);

  // The same by hand, with the pivots that were picked.
  std::vector<LONG> numbers = {2, 9, 1, 7, 3, 8};
  std::vector<std::string> expected;
  const auto compare = [&](LONG a, LONG b) {
    expected.push_back('c' + std::to_string(a) + ',' + std::to_string(b));
    const LONG x = numbers[static_cast<std::size_t>(a - 1)];
    const LONG y = numbers[static_cast<std::size_t>(b - 1)];
    return x < y ? -1 : x == y ? 0 : 1;
  };
  const auto swap = [&](LONG a, LONG b) {
    expected.push_back('s' + std::to_string(a) + ',' + std::to_string(b));
    std::swap(numbers[static_cast<std::size_t>(a - 1)], numbers[static_cast<std::size_t>(b - 1)]);
  };
  std::vector<std::pair<LONG, LONG>> stack = {{1, 6}};
  while (!stack.empty()) {
    auto [lo, hi] = stack.back();
    stack.pop_back();
    while (lo < hi) {
      if (hi - lo == 1) {
        if (compare(lo, hi) >= 1) swap(lo, hi);
        break;
      }
      ASSERT_LT(expected.size(), calls.size());
      const LONG picked = std::stol(calls[expected.size()].substr(3));
      ASSERT_TRUE(picked >= lo && picked <= hi) << calls[expected.size()];
      swap(hi, picked);
      LONG i = lo, j = hi;
      while (true) {
        while (compare(i, hi) <= 0 && i < j) ++i;
        while (compare(j, hi) >= 0 && j > i) --j;
        if (i >= j) break;
        swap(i, j);
      }
      swap(i, hi);
      if (i - lo >= hi - i) {
        stack.emplace_back(lo, i - 1);
        lo = i + 1;
      } else {
        stack.emplace_back(i + 1, hi);
        hi = i - 1;
      }
    }
  }
  EXPECT_EQ(calls, expected);
  EXPECT_TRUE(std::ranges::is_sorted(numbers));
}

TEST_F(SortingByHelper, an_error_of_Compare_stops_the_sort_and_is_recorded) {
  Value array = array_of_variants({3, 1, 2, 5, 4});
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    return helper.compares == 3 ? raise_helper_error() : compare_downwards(a, b, result);
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{513, L"no more", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(helper.compares, 3);
  EXPECT_EQ(array.parray->cLocks, 0U) << "the array is free again";
  std::vector<LONG> numbers;
  for (const Value& value : variants_of(array)) numbers.push_back(value.lVal);
  std::ranges::sort(numbers);
  EXPECT_EQ(numbers, (std::vector<LONG>{1, 2, 3, 4, 5})) << "nothing is lost";
}

TEST_F(SortingByHelper, an_error_of_Swap_stops_the_sort_and_is_recorded) {
  Value array = array_of_variants({3, 1, 2, 5, 4});
  SortHelper helper;
  helper.on_swap = [&](VARIANT*, VARIANT*) { return raise_helper_error(); };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{513, L"no more", L"KwRtLibMod.QuickSort"}));
  EXPECT_EQ(helper.swaps, 1);
  EXPECT_EQ(helper.compares, 0) << "the pivot is swapped first";
}

TEST_F(SortingByHelper, an_error_without_texts_has_the_language_s) {
  Value array = array_of_variants({3, 1});
  SortHelper helper;
  helper.on_compare = [](VARIANT*, VARIANT*, LONG*) { return error_result(13); };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
}

TEST_F(SortingByHelper, whose_Swap_does_nothing_comes_to_an_end) {
  Value array = array_of_variants({3, 1, 2, 5, 4, 9, 8, 7, 0});
  SortHelper helper;
  helper.on_swap = [](VARIANT*, VARIANT*) { return S_OK; };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(variants_of(array).front().lVal, 3);
}

TEST_F(SortingByHelper, can_t_redimension_the_array_meanwhile) {
  Value array = array_of<LONG>(VT_I4, {3, 1, 2});
  SortHelper helper;
  HRESULT destroyed = S_OK;
  HRESULT redimensioned = S_OK;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    SAFEARRAYBOUND bound{1, 0};
    destroyed = SafeArrayDestroy(array.parray);
    redimensioned = SafeArrayRedim(array.parray, &bound);
    *result = *a->plVal - *b->plVal;
    return S_OK;
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  EXPECT_EQ(destroyed, DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(redimensioned, DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(elements_of<LONG>(array), (std::vector<LONG>{1, 2, 3}));
  SAFEARRAYBOUND bound{1, 0};
  EXPECT_EQ(SafeArrayRedim(array.parray, &bound), S_OK) << "afterwards it is free";
}

TEST_F(SortingByHelper, may_sort_another_array_in_the_middle) {
  Value outer = array_of_variants({3, 1, 2});
  Value inner = array_of<LONG>(VT_I4, {9, 8, 7});
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    EXPECT_EQ(quick_sort(inner), VARIANT_FALSE);
    return compare_downwards(a, b, result);
  };
  EXPECT_EQ(quick_sort(outer, helper), VARIANT_FALSE);
  EXPECT_EQ(variants_of(outer).front().lVal, 3);
  EXPECT_EQ(elements_of<LONG>(inner), (std::vector<LONG>{7, 8, 9}));
}

TEST_F(SortingByHelper, sorts_a_collection_of_objects_by_exchanging_what_they_hold) {
  const auto collection = create<_kwCollection>(CLSID_kwCollection);
  Value missing = Value::missing();
  for (const LONG number : {5, 3, 9, 1, 7}) {
    const auto object = create<_QVtError>(CLSID_QVtError);
    object->put_Number(number);
    Value item;
    item.vt = VT_DISPATCH;
    item.pdispVal = object.get();
    item.pdispVal->AddRef();
    ASSERT_EQ(collection->Add(&item, &missing, &missing, &missing), S_OK);
  }
  const auto number_of = [](const VARIANT* variable) {
    LONG number = 0;
    Pointer<_QVtError>::from(variable->pdispVal)->get_Number(&number);
    return number;
  };
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    *result = number_of(a) - number_of(b);
    return S_OK;
  };
  helper.on_swap = [&](VARIANT* a, VARIANT* b) {
    const LONG first = number_of(a);
    Pointer<_QVtError>::from(a->pdispVal)->put_Number(number_of(b));
    Pointer<_QVtError>::from(b->pdispVal)->put_Number(first);
    return S_OK;
  };
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  object.pdispVal->AddRef();
  EXPECT_EQ(quick_sort(object, 1, 5, &helper), VARIANT_FALSE);
  std::vector<LONG> numbers;
  for (LONG i = 1; i <= 5; ++i) {
    Value position(i), item;
    collection->get_Item(&position, &item);
    numbers.push_back(number_of(&item));
  }
  EXPECT_EQ(numbers, (std::vector<LONG>{1, 3, 5, 7, 9}));
}

// The record of a filter, as the type library describes it.
Pointer<IRecordInfo> filter_record() {
  Pointer<IRecordInfo> info;
  EXPECT_EQ(GetRecordInfoFromGuids(LIBID_QvRtLibOle, 40, 3, 0x409, GUID_BFILTER, info.receive()),
            S_OK);
  return info;
}

TEST_F(SortingByHelper, gets_records_by_reference) {
  const auto info = filter_record();
  ASSERT_TRUE(info);
  SAFEARRAYBOUND bound{4, 1};
  Value array;
  array.parray = SafeArrayCreateEx(VT_RECORD, 1, &bound, info.get());
  array.vt = VT_ARRAY | VT_RECORD;
  auto* filters = static_cast<BFILTER*>(array.parray->pvData);
  for (LONG i = 0; i < 4; ++i) filters[i].Bits = 40 - 10 * i;
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    EXPECT_EQ(a->vt, VT_BYREF | VT_RECORD);
    EXPECT_EQ(a->pRecInfo, info.get());
    *result = static_cast<BFILTER*>(a->pvRecord)->Bits - static_cast<BFILTER*>(b->pvRecord)->Bits;
    return S_OK;
  };
  helper.on_swap = [](VARIANT* a, VARIANT* b) {
    std::swap(*static_cast<BFILTER*>(a->pvRecord), *static_cast<BFILTER*>(b->pvRecord));
    return S_OK;
  };
  EXPECT_EQ(quick_sort(array, helper), VARIANT_FALSE);
  for (LONG i = 0; i < 4; ++i) EXPECT_EQ(filters[i].Bits, 10 * (i + 1));
  EXPECT_EQ(quick_sort(array), VARIANT_TRUE) << "by themselves they don't compare";
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.QuickSort"}));
}

TEST_F(SortingByHelper, an_index_beyond_a_Long_is_an_overflow) {
  // The pivot that comes to the last place asks for the range behind it.
  SortHelper helper;
  helper.on_compare = [](VARIANT*, VARIANT*, LONG* result) {
    *result = -1;
    return S_OK;
  };
  Value array = array_of<LONG>(VT_I4, {1, 2, 3}, std::numeric_limits<LONG>::max() - 2);
  EXPECT_EQ(quick_sort(array, helper), VARIANT_TRUE);
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.QuickSort"}));
}

class QvSortObject : public testing::Test {
 protected:
  LONG compare(Value a, Value b) {
    LONG result = 77;
    EXPECT_EQ(sort_->Compare(&a, &b, &result), S_OK);
    return result;
  }
  Pointer<_QvSort> sort_ = create<_QvSort>(CLSID_QvSort);
};

TEST_F(QvSortObject, Compare_gives_minus_1_0_or_1) {
  EXPECT_EQ(compare(1, 2), -1);
  EXPECT_EQ(compare(2, 2.0), 0);
  EXPECT_EQ(compare(3, 2), 1);
  EXPECT_EQ(compare(L"B", L"a"), -1);
  EXPECT_EQ(compare(L"a", L"a"), 0);
  EXPECT_EQ(compare(L"b", L"a"), 1);
  EXPECT_EQ(compare(1000, L"1"), -1);
}

TEST_F(QvSortObject, Compare_raises_for_what_does_not_compare) {
  Value null = null_value(), one(1), error = Value::missing();
  LONG result = 77;
  EXPECT_EQ(sort_->Compare(&null, &one, &result), error_result(94));
  EXPECT_EQ(error_description(), L"Invalid use of Null");
  EXPECT_EQ(sort_->Compare(&one, &error, &result), error_result(13));
  EXPECT_EQ(result, 77);
}

TEST_F(QvSortObject, Swap_exchanges_values_and_their_types) {
  Value a(1), b(L"text");
  EXPECT_EQ(sort_->Swap(&a, &b), S_OK);
  EXPECT_EQ(a.text(), L"text");
  EXPECT_EQ(b.vt, VT_I4);
  EXPECT_EQ(b.lVal, 1);
  EXPECT_EQ(sort_->Swap(&a, &a), S_OK);
  EXPECT_EQ(a.text(), L"text");
}

TEST_F(QvSortObject, Swap_exchanges_objects_by_reference) {
  Value a, b(5);
  a.vt = VT_DISPATCH;
  a.pdispVal = sort_.get();
  a.pdispVal->AddRef();
  EXPECT_EQ(sort_->Swap(&a, &b), S_OK);
  EXPECT_EQ(a.lVal, 5);
  EXPECT_EQ(b.vt, VT_DISPATCH);
  EXPECT_EQ(b.pdispVal, sort_.get());
}

TEST_F(QvSortObject, Swap_of_typed_variables_converts) {
  LONG number = 12;
  String text(L"34");
  Value a, b;
  a.vt = VT_BYREF | VT_I4;
  a.plVal = &number;
  b.vt = VT_BYREF | VT_BSTR;
  b.pbstrVal = &text;
  EXPECT_EQ(sort_->Swap(&a, &b), S_OK);
  EXPECT_EQ(number, 34);
  EXPECT_EQ(text.view(), L"12");
  Value plain(L"no number");
  EXPECT_EQ(sort_->Swap(&a, &plain), error_result(13));
  EXPECT_EQ(number, 34);
  EXPECT_EQ(plain.text(), L"no number");
}

}  // namespace
}  // namespace qv::tests
