// BinarySearch, called early-bound.
#include <limits>

#include "server/sorting.h"

namespace qv::tests {
namespace {

class BinarySearch : public Sorting {
 protected:
  LONG nearest_ = 99;
};

TEST_F(BinarySearch, finds_the_index_and_gives_its_negative_as_nearest) {
  Value array = array_of<LONG>(VT_I4, {10, 20, 30, 40, 50});
  for (LONG i = 1; i <= 5; ++i) {
    EXPECT_EQ(binary_search(array, i * 10, nearest_), i);
    EXPECT_EQ(nearest_, -i);
  }
  Value texts = array_of_texts({L"B", L"a", L"b"});
  EXPECT_EQ(binary_search(texts, L"a", nearest_), 2);
  EXPECT_EQ(nearest_, -2);
  Value mixed = array_of_variants({1, 2.5, L"x"});
  EXPECT_EQ(binary_search(mixed, L"x", nearest_), 3);
  EXPECT_EQ(binary_search(mixed, 1.0, nearest_), 1);
}

TEST_F(BinarySearch, after_a_miss_nearest_is_the_index_probed_last) {
  Value array = array_of<LONG>(VT_I4, {10, 20, 30, 40, 50});
  EXPECT_EQ(binary_search(array, 5, nearest_), 0);
  EXPECT_EQ(nearest_, 1) << "below the first";
  EXPECT_EQ(binary_search(array, 25, nearest_), 0);
  EXPECT_EQ(nearest_, 2);
  EXPECT_EQ(binary_search(array, 35, nearest_), 0);
  EXPECT_EQ(nearest_, 4);
  EXPECT_EQ(binary_search(array, 99, nearest_), 0);
  EXPECT_EQ(nearest_, 5);
}

TEST_F(BinarySearch, an_empty_range_gives_0_and_nearest_0) {
  Value array = array_of<LONG>(VT_I4, {10, 20});
  EXPECT_EQ(binary_search(array, 10, nearest_, 2, 1), 0);
  EXPECT_EQ(nearest_, 0);
  Value none = array_of<LONG>(VT_I4, {});
  nearest_ = 99;
  EXPECT_EQ(binary_search(none, 10, nearest_), 0);
  EXPECT_EQ(nearest_, 0);
}

TEST_F(BinarySearch, a_hit_at_index_0_reads_as_not_found) {
  Value array = array_of<LONG>(VT_I4, {10, 20, 30}, 0);
  EXPECT_EQ(binary_search(array, 10, nearest_), 0);
  EXPECT_EQ(nearest_, 0);
  EXPECT_EQ(binary_search(array, 20, nearest_), 1);
  EXPECT_EQ(nearest_, -1);
}

TEST_F(BinarySearch, below_0_a_hit_reads_as_not_found_and_a_miss_as_found) {
  Value array = array_of<LONG>(VT_I4, {10, 20, 30}, -3);
  EXPECT_EQ(binary_search(array, 20, nearest_), 0);
  EXPECT_EQ(nearest_, 2);
  EXPECT_EQ(binary_search(array, 15, nearest_), 2) << "the first index probed, turned positive";
  EXPECT_EQ(nearest_, -2);
}

TEST_F(BinarySearch, a_range_alone_is_searched) {
  Value array = array_of<LONG>(VT_I4, {10, 20, 30, 40, 50});
  EXPECT_EQ(binary_search(array, 50, nearest_, 1, 3), 0);
  EXPECT_EQ(nearest_, 3);
  EXPECT_EQ(binary_search(array, 40, nearest_, 3), 4);
}

TEST_F(BinarySearch, a_collection_is_searched_within_both_bounds) {
  const auto collection = create<_kwCollection>(CLSID_kwCollection);
  Value missing = Value::missing();
  for (Value item : {10, 20, 30}) {
    ASSERT_EQ(collection->Add(&item, &missing, &missing, &missing), S_OK);
  }
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  object.pdispVal->AddRef();
  EXPECT_EQ(binary_search(object, 30, nearest_, 1, 3), 3);
  EXPECT_EQ(binary_search(object, 30, nearest_), -1);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.BinarySearch"}));
  EXPECT_EQ(binary_search(object, 99, nearest_, 1, 9), -1);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.BinarySearch"}));
}

TEST_F(BinarySearch, the_helper_gets_the_element_and_then_the_key_itself) {
  Value array = array_of_variants({30, 20, 10}), key(20), first = Value::missing(),
        last = Value::missing();
  const auto* elements = static_cast<VARIANT*>(array.parray->pvData);
  SortHelper helper;
  helper.on_compare = [&](VARIANT* a, VARIANT* b, LONG* result) {
    EXPECT_EQ(a, &elements[1]);
    EXPECT_EQ(b, &key);
    *result = 0;
    return S_OK;
  };
  LONG result = 77;
  EXPECT_EQ(
      global_->BinarySearch(&array, &key, &first, &last, &nearest_, helper.variable(), &result),
      S_OK);
  EXPECT_EQ(result, 2);
  EXPECT_EQ(helper.compares, 1);
}

TEST_F(BinarySearch, Nearest_may_be_left_out) {
  Value array = array_of<LONG>(VT_I4, {10, 20}), key(20), first = Value::missing(),
        last = Value::missing();
  LONG result = 77;
  EXPECT_EQ(global_->BinarySearch(&array, &key, &first, &last, nullptr, nullptr, &result), S_OK);
  EXPECT_EQ(result, 2);
}

TEST_F(BinarySearch, failures_give_minus_1_and_are_recorded) {
  Value array = array_of_variants({1, null_value(), 3});
  EXPECT_EQ(binary_search(array, 3, nearest_), -1);
  EXPECT_EQ(record(), (Record{94, L"Invalid use of Null", L"KwRtLibMod.BinarySearch"}));
  EXPECT_EQ(nearest_, 0);
  nearest_ = 99;
  Value number(5);
  EXPECT_EQ(binary_search(number, 3, nearest_), -1);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.BinarySearch"}));
  EXPECT_EQ(nearest_, 99) << "without bounds the search has not begun";
  Value matrix = array_of_type(VT_I4, {{3, 1}, {2, 1}});
  EXPECT_EQ(binary_search(matrix, 3, nearest_), -1);
  EXPECT_EQ(record(), (Record{9, L"Subscript out of range", L"KwRtLibMod.BinarySearch"}));
  SortHelper helper;
  helper.on_compare = [](VARIANT*, VARIANT*, LONG*) { return raise_helper_error(); };
  EXPECT_EQ(binary_search(array, 3, nearest_, Value::missing(), Value::missing(), &helper), -1);
  EXPECT_EQ(record(), (Record{513, L"no more", L"KwRtLibMod.BinarySearch"}));
}

TEST_F(BinarySearch, an_index_sum_beyond_a_Long_is_an_overflow) {
  Value array = array_of<LONG>(VT_I4, {10, 20}, 2000000000);
  EXPECT_EQ(binary_search(array, 10, nearest_), -1);
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.BinarySearch"}));
}

}  // namespace
}  // namespace qv::tests
