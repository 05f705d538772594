// ArrayCreate, GetArrayDims and GetWordIndex, called early-bound.
#include "server/sorting.h"

namespace qv::tests {
namespace {

class ArrayTools : public Sorting {
 protected:
  Value array_create(Value bounds, LONG type, SHORT dimensions = 1) {
    Value result(77);
    EXPECT_EQ(global_->ArrayCreate(&dimensions, &bounds, &type, &result), S_OK);
    return result;
  }
  LONG array_dims(Value& array) {
    LONG result = 77;
    EXPECT_EQ(global_->GetArrayDims(&array, &result), S_OK);
    return result;
  }
  LONG word_index(std::wstring_view list, std::wstring_view word, LONG& start_from) {
    String list_text(list), word_text(word);
    LONG result = 77;
    EXPECT_EQ(global_->GetWordIndex(&list_text, &word_text, &start_from, &result), S_OK);
    EXPECT_EQ(list_text.view(), list);
    EXPECT_EQ(word_text.view(), word);
    return result;
  }
};

LONG lower_bound_of(const Value& array, UINT dimension) {
  LONG bound = 77;
  SafeArrayGetLBound(array.parray, dimension, &bound);
  return bound;
}
LONG upper_bound_of(const Value& array, UINT dimension) {
  LONG bound = 77;
  SafeArrayGetUBound(array.parray, dimension, &bound);
  return bound;
}

TEST_F(ArrayTools, ArrayCreate_takes_pairs_of_count_and_lower_bound) {
  const Value array = array_create(array_of<LONG>(VT_I4, {3, 1, 5, -2}), VT_I4);
  ASSERT_EQ(array.vt, VT_ARRAY | VT_I4);
  EXPECT_EQ(SafeArrayGetDim(array.parray), 2U);
  EXPECT_EQ(lower_bound_of(array, 1), 1);
  EXPECT_EQ(upper_bound_of(array, 1), 3);
  EXPECT_EQ(lower_bound_of(array, 2), -2);
  EXPECT_EQ(upper_bound_of(array, 2), 2);
}

TEST_F(ArrayTools, ArrayCreate_makes_arrays_of_every_element_type) {
  for (const LONG type : {VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_BOOL,
                          VT_VARIANT, VT_UI1}) {
    const Value array = array_create(array_of<LONG>(VT_I4, {4, 1}), type);
    ASSERT_EQ(array.vt, VT_ARRAY | type);
    VARTYPE made = VT_EMPTY;
    SafeArrayGetVartype(array.parray, &made);
    EXPECT_EQ(made, type);
    EXPECT_EQ(upper_bound_of(array, 1), 4);
  }
}

TEST_F(ArrayTools, ArrayCreate_reads_bounds_of_any_type_and_lower_bound) {
  const Value from_variants = array_create(array_of_variants({L"2", 1.5}, 0), VT_I2);
  ASSERT_EQ(from_variants.vt, VT_ARRAY | VT_I2);
  EXPECT_EQ(lower_bound_of(from_variants, 1), 2) << "1.5 is rounded to even";
  EXPECT_EQ(upper_bound_of(from_variants, 1), 3);
  const Value from_integers = array_create(array_of<SHORT>(VT_I2, {2, 7}, -5), VT_I2);
  EXPECT_EQ(lower_bound_of(from_integers, 1), 7);
}

TEST_F(ArrayTools, ArrayCreate_does_not_read_Dims) {
  const Value array = array_create(array_of<LONG>(VT_I4, {3, 1}), VT_I4, 17);
  ASSERT_EQ(array.vt, VT_ARRAY | VT_I4);
  EXPECT_EQ(SafeArrayGetDim(array.parray), 1U);
}

TEST_F(ArrayTools, ArrayCreate_makes_arrays_without_elements) {
  const Value array = array_create(array_of<LONG>(VT_I4, {0, 1}), VT_I4);
  ASSERT_EQ(array.vt, VT_ARRAY | VT_I4);
  EXPECT_EQ(upper_bound_of(array, 1), 0);
}

TEST_F(ArrayTools, ArrayCreate_with_an_odd_number_of_bounds_is_error_13) {
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {3, 1, 2}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.ArrayCreate"}));
}

TEST_F(ArrayTools, ArrayCreate_records_bounds_that_are_no_array_of_numbers) {
  EXPECT_EQ(array_create(5, VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record(), (Record{13, L"Type mismatch", L"KwRtLibMod.ArrayCreate"}));
  EXPECT_EQ(array_create(array_of_texts({L"3", L"x"}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record().number, 13);
  EXPECT_EQ(array_create(array_of_variants({3, null_value()}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record().number, 94);
  EXPECT_EQ(array_create(array_of<double>(VT_R8, {3e9, 1}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record().number, 6);
  EXPECT_EQ(array_create(array_of_type(VT_I4, {{2, 1}, {2, 1}}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record().number, 9);
  Value unallocated;
  unallocated.vt = VT_ARRAY | VT_I4;
  unallocated.parray = nullptr;
  EXPECT_EQ(array_create(unallocated, VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record().number, 9);
}

TEST_F(ArrayTools, ArrayCreate_says_nothing_about_arrays_that_the_system_refuses) {
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {}), VT_I4).vt, VT_EMPTY) << "no dimension";
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {3, 1}), VT_NULL).vt, VT_EMPTY);
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {3, 1}), VT_ARRAY | VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {3, 1}), -1).vt, VT_EMPTY);
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {3, 1}), 65536 + VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {2147483647, 1, 2147483647, 1}), VT_R8).vt, VT_EMPTY)
      << "no memory";
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {1073741823, 1}), VT_BSTR).vt, VT_EMPTY);
  EXPECT_EQ(array_create(array_of<LONG>(VT_I4, {-1, 1}), VT_I4).vt, VT_EMPTY);
  EXPECT_EQ(record(), Record());
}

TEST_F(ArrayTools, GetArrayDims_counts_dimensions) {
  Value one = array_of<LONG>(VT_I4, {1, 2});
  EXPECT_EQ(array_dims(one), 1);
  Value three = array_of_type(VT_VARIANT, {{1, 1}, {2, 0}, {3, -4}});
  EXPECT_EQ(array_dims(three), 3);
  Value none = array_of<LONG>(VT_I4, {});
  EXPECT_EQ(array_dims(none), 1);
}

TEST_F(ArrayTools, GetArrayDims_gives_0_for_what_is_no_array) {
  Value number(5), text(L"x"), nothing;
  EXPECT_EQ(array_dims(number), 0);
  EXPECT_EQ(array_dims(text), 0);
  EXPECT_EQ(array_dims(nothing), 0);
  Value unallocated;
  unallocated.vt = VT_ARRAY | VT_I4;
  unallocated.parray = nullptr;
  EXPECT_EQ(array_dims(unallocated), 0);
  EXPECT_EQ(record(), Record());
}

TEST_F(ArrayTools, GetArrayDims_does_not_follow_a_reference) {
  Value array = array_of<LONG>(VT_I4, {1, 2});
  Value reference = reference_to(array);
  EXPECT_EQ(array_dims(reference), 0);
}

TEST_F(ArrayTools, GetWordIndex_finds_items_by_number) {
  LONG start_from = 1;
  EXPECT_EQ(word_index(L"aabbccbb", L"bb", start_from), 2);
  EXPECT_EQ(start_from, 3);
  EXPECT_EQ(word_index(L"aabbccbb", L"bb", start_from), 4);
  EXPECT_EQ(start_from, 5);
  EXPECT_EQ(word_index(L"aabbccbb", L"bb", start_from), 0);
  EXPECT_EQ(start_from, 0) << "so the loop is over";
}

TEST_F(ArrayTools, GetWordIndex_passes_over_hits_that_straddle_two_items) {
  LONG start_from = 1;
  EXPECT_EQ(word_index(L"xabxabab", L"ab", start_from), 3);
  EXPECT_EQ(start_from, 4);
  start_from = 1;
  EXPECT_EQ(word_index(L"xabx", L"ab", start_from), 0);
  EXPECT_EQ(start_from, 0);
}

TEST_F(ArrayTools, GetWordIndex_compares_binary_characters_0_included) {
  LONG start_from = 1;
  EXPECT_EQ(
      word_index(std::wstring_view(L"\0\1\0\0", 4), std::wstring_view(L"\0\0", 2), start_from), 2);
  start_from = 1;
  EXPECT_EQ(word_index(L"ABab", L"ab", start_from), 2);
}

TEST_F(ArrayTools, GetWordIndex_of_a_cut_last_item_finds_nothing) {
  LONG start_from = 1;
  EXPECT_EQ(word_index(L"aab", L"ab", start_from), 0);
  start_from = 1;
  EXPECT_EQ(word_index(L"", L"ab", start_from), 0);
  EXPECT_EQ(start_from, 0);
  start_from = 9;
  EXPECT_EQ(word_index(L"abab", L"ab", start_from), 0) << "past the end";
}

TEST_F(ArrayTools, GetWordIndex_never_finds_a_word_of_one_character) {
  LONG start_from = 1;
  EXPECT_EQ(word_index(L"aaaa", L"a", start_from), 0);
  EXPECT_EQ(start_from, 0);
  EXPECT_EQ(record(), Record());
}

TEST_F(ArrayTools, GetWordIndex_divides_by_an_empty_word) {
  LONG start_from = 3;
  EXPECT_EQ(word_index(L"abc", L"", start_from), 0);
  EXPECT_EQ(record(), (Record{11, L"Division by zero", L"KwRtLibMod.GetWordIndex (3--3-1"}));
  EXPECT_EQ(start_from, 3);
  EXPECT_EQ(word_index(L"", L"", start_from), 0);
  EXPECT_EQ(record(), Record()) << "in an empty list not even that is found";
  EXPECT_EQ(start_from, 0);
}

TEST_F(ArrayTools, GetWordIndex_from_0_or_below_is_an_invalid_argument) {
  for (const LONG start : {0, -1, -99}) {
    LONG start_from = start;
    EXPECT_EQ(word_index(L"aabb", L"aA", start_from), 0);
    EXPECT_EQ(start_from, 0);
    EXPECT_EQ(record(), (Record{5, L"Invalid procedure call or argument",
                                L"KwRtLibMod.GetWordIndex (4-6141-0--2"}));
  }
}

TEST_F(ArrayTools, GetWordIndex_beyond_a_Long_is_an_overflow) {
  LONG start_from = 2147483647;
  EXPECT_EQ(word_index(L"aabb", L"ab", start_from), 0);
  EXPECT_EQ(record(), (Record{6, L"Overflow", L"KwRtLibMod.GetWordIndex (4-6162-2147483647-0"}));
  EXPECT_EQ(start_from, 2147483647);
}

}  // namespace
}  // namespace qv::tests
