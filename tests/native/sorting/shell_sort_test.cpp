#include "native/sorting/shell_sort.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sorting/step_log.h"

namespace qv::native::sorting {
namespace {

struct Gaps {
  std::int32_t lower_bound;
  std::vector<std::int32_t> up_to_100;
};

const Gaps kGaps[] = {{0, {40, 13, 4, 1, 0}}, {1, {40, 13, 4, 1}}, {2, {67, 22, 7, 2}},
                      {5, {49, 16, 5}},       {99, {99}},          {7, {67, 22, 7}}};

TEST(ShellSort, does_the_very_steps_of_its_description) {
  std::mt19937 random(2);
  for (const Gaps& gaps : kGaps) {
    for (int round = 0; round < 100; ++round) {
      const auto count = static_cast<std::size_t>(100 - gaps.lower_bound + 1);
      const int values = round % 2 == 0 ? 5 : 1000;
      LoggedArray ours(marked_elements(random, count, values), gaps.lower_bound, 1);
      LoggedArray plain = ours;
      ASSERT_EQ(shell_sort(ours.first(), ours.last(), ours), SortEnd::kDone);
      plain_shell_sort(plain, gaps.up_to_100);
      ASSERT_EQ(ours.steps(), plain.steps());
      ASSERT_EQ(ours.elements(), plain.elements());
    }
  }
}

TEST(ShellSort, is_complete_for_lower_bounds_0_and_1_only) {
  std::mt19937 random(3);
  for (std::int32_t lower_bound = 0; lower_bound < 10; ++lower_bound) {
    LoggedArray array(marked_elements(random, 200, 100000), lower_bound, 1);
    shell_sort(array.first(), array.last(), array);
    const bool is_sorted = std::ranges::is_sorted(array.elements(), {}, &Marked::value);
    EXPECT_EQ(is_sorted, is_complete_shell_sort(lower_bound)) << lower_bound;
    for (std::size_t i = static_cast<std::size_t>(lower_bound); i < 200; ++i) {
      ASSERT_LE(array.elements()[i - static_cast<std::size_t>(lower_bound)].value,
                array.elements()[i].value)
          << "in steps of the lower bound there is order";
    }
  }
}

TEST(ShellSort, a_negative_lower_bound_ends_before_the_first_step) {
  for (const std::int32_t lower_bound : {-1, -2, -1000}) {
    LoggedArray array({{2, 0}, {1, 1}}, lower_bound, 1);
    EXPECT_EQ(shell_sort(array.first(), array.last(), array), SortEnd::kIndexOverflow);
    EXPECT_EQ(array.steps(), "");
  }
}

TEST(ShellSort, a_gap_beyond_32_bits_ends_it_before_the_first_step) {
  LoggedArray array({{2, 0}, {1, 1}}, 1000000000, 1);
  EXPECT_EQ(shell_sort(array.first(), array.last(), array), SortEnd::kIndexOverflow);
  EXPECT_EQ(array.steps(), "");
}

TEST(ShellSort, one_element_based_at_0_is_compared_with_itself) {
  LoggedArray one({{2, 7}}, 0, 1);
  EXPECT_EQ(shell_sort(0, 0, one), SortEnd::kDone);
  EXPECT_EQ(one.steps(), ">0,0 p0,7 ");
  LoggedArray based_at_1({{2, 7}}, 1, 1);
  EXPECT_EQ(shell_sort(1, 1, based_at_1), SortEnd::kDone);
  EXPECT_EQ(based_at_1.steps(), "");
}

TEST(ShellSort, an_empty_array_is_done) {
  LoggedArray array({}, 0, 1);
  EXPECT_EQ(shell_sort(0, -1, array), SortEnd::kDone);
  EXPECT_EQ(shell_sort(5, 4, array), SortEnd::kDone);
  EXPECT_EQ(array.steps(), "");
}

// Elements that are greater than themselves, as an object with a changing value may be.
struct NeverContent {
  int moves = 0;
  void take(std::int32_t) {}
  bool is_greater(std::int32_t) { return true; }
  void move(std::int32_t, std::int32_t) { ++moves; }
  void put(std::int32_t) {}
};

TEST(ShellSort, an_element_greater_than_itself_does_not_hang_it) {
  NeverContent steps;
  EXPECT_EQ(shell_sort(0, 2, steps), SortEnd::kDone);
  EXPECT_EQ(steps.moves, 3 + 3);
}

}  // namespace
}  // namespace qv::native::sorting
