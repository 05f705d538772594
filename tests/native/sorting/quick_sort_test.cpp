#include "native/sorting/quick_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "sorting/step_log.h"

namespace qv::native::sorting {
namespace {

constexpr int kPatience = 8;
constexpr std::int32_t kMaxIndex = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMinIndex = std::numeric_limits<std::int32_t>::min();

bool is_ascending(const LoggedArray& array) {
  return std::ranges::is_sorted(array.elements(), {}, &Marked::value);
}

LoggedArray array_of(std::initializer_list<int> values, std::int32_t lower_bound = 1) {
  std::vector<Marked> elements;
  for (const int value : values) elements.push_back({value, static_cast<int>(elements.size())});
  return {elements, lower_bound, 1};
}

TEST(QuickSort, does_the_very_steps_of_its_description) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    const int values = std::array{1, 2, 3, 10, 1000}[random() % 5];
    const auto elements = marked_elements(random, random() % 60, values);
    const auto lower_bound = static_cast<std::int32_t>(random() % 7) - 3;
    LoggedArray ours(elements, lower_bound, static_cast<unsigned>(random()));
    LoggedArray plain = ours;
    ASSERT_EQ(quick_sort(ours.first(), ours.last(), kPatience, ours), SortEnd::kDone);
    plain_quick_sort(plain, plain.first(), plain.last());
    ASSERT_EQ(ours.steps(), plain.steps());
    ASSERT_EQ(ours.elements(), plain.elements());
    ASSERT_EQ(ours.random_numbers(), plain.random_numbers());
    ASSERT_TRUE(is_ascending(ours));
  }
}

TEST(QuickSort, a_range_of_one_or_none_takes_no_step) {
  for (const std::int32_t last : {1, 0, -5}) {
    auto array = array_of({3, 2, 1});
    EXPECT_EQ(quick_sort(1, last, kPatience, array), SortEnd::kDone);
    EXPECT_EQ(array.steps(), "");
    EXPECT_EQ(array.random_numbers(), 0);
  }
}

TEST(QuickSort, two_elements_are_compared_once_and_need_no_random_number) {
  auto in_order = array_of({1, 2});
  quick_sort(1, 2, kPatience, in_order);
  EXPECT_EQ(in_order.steps(), "c1,2 ");
  auto equal = array_of({2, 2});
  quick_sort(1, 2, kPatience, equal);
  EXPECT_EQ(equal.steps(), "c1,2 ");
  auto turned = array_of({2, 1});
  quick_sort(1, 2, kPatience, turned);
  EXPECT_EQ(turned.steps(), "c1,2 x1,2 ");
  EXPECT_EQ(turned.random_numbers(), 0);
}

TEST(QuickSort, equal_elements_are_exchanged_twice_for_every_part) {
  auto array = array_of({5, 5, 5, 5});
  quick_sort(1, 4, kPatience, array);
  EXPECT_EQ(std::ranges::count(array.steps(), 'x'), 4) << array.steps();
  EXPECT_EQ(array.random_numbers(), 2) << "for the parts of 4 and of 3";
}

TEST(QuickSort, the_range_alone_is_touched) {
  auto array = array_of({9, 3, 2, 1, 0});
  quick_sort(2, 4, kPatience, array);
  EXPECT_EQ(array.elements().front().value, 9);
  EXPECT_EQ(array.elements().back().value, 0);
  EXPECT_EQ(array.elements()[1].value, 1);
  EXPECT_EQ(array.elements()[3].value, 3);
}

TEST(QuickSort, exchanges_without_effect_come_to_an_end) {
  auto array = array_of({9, 1, 8, 2, 7, 3, 6, 4, 5, 0, 9, 1, 8, 2});
  array.exchanges_nothing = true;
  const auto before = array.elements();
  EXPECT_EQ(quick_sort(1, 14, kPatience, array), SortEnd::kDone);
  EXPECT_EQ(array.elements(), before);
}

TEST(QuickSort, an_index_beyond_32_bits_ends_it) {
  auto at_the_top = array_of({1, 2, 3}, kMaxIndex - 2);
  // Whether the index behind the last is ever needed depends on the pivots: the greatest one asks.
  SortEnd end = SortEnd::kDone;
  for (unsigned seed = 0; seed < 50 && end == SortEnd::kDone; ++seed) {
    LoggedArray array({{1, 0}, {2, 1}, {3, 2}}, kMaxIndex - 2, seed);
    end = quick_sort(array.first(), array.last(), kPatience, array);
  }
  EXPECT_EQ(end, SortEnd::kIndexOverflow);
  EXPECT_EQ(quick_sort(kMinIndex, kMaxIndex, kPatience, at_the_top), SortEnd::kIndexOverflow);
  EXPECT_EQ(at_the_top.steps(), "");
}

TEST(QuickSort, the_index_picked_never_leaves_the_range) {
  const double most = std::nextafter(1.0, 0.0);
  for (const std::int32_t lo : {0, 1, -5, 1 << 30, kMaxIndex - 1000, kMinIndex}) {
    EXPECT_EQ(pick_index(0.0, lo, lo + 900), lo);
    EXPECT_EQ(pick_index(most, lo, lo + 900), lo + 900);
    EXPECT_EQ(pick_index(0.5, lo, lo + 899), lo + 450);
  }
}

}  // namespace
}  // namespace qv::native::sorting
