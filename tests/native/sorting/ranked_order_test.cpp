#include "native/sorting/ranked_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "sorting/step_log.h"

namespace qv::native::sorting {
namespace {

std::vector<RankedElement> ranked(const std::vector<Marked>& elements) {
  std::vector<int> values;
  for (const Marked& element : elements) values.push_back(element.value);
  std::ranges::sort(values);
  std::vector<RankedElement> result;
  for (const Marked& element : elements) {
    const auto rank = std::ranges::lower_bound(values, element.value) - values.begin();
    result.push_back({static_cast<std::uint32_t>(rank), static_cast<std::uint32_t>(element.mark)});
  }
  return result;
}

std::vector<int> marks(const std::vector<Marked>& elements) {
  std::vector<int> result;
  for (const Marked& element : elements) result.push_back(element.mark);
  return result;
}

std::vector<int> marks(const std::vector<RankedElement>& elements) {
  std::vector<int> result;
  for (const RankedElement& element : elements) result.push_back(static_cast<int>(element.index));
  return result;
}

TEST(RankedOrder, quick_sort_ranked_leaves_equal_elements_where_quick_sort_does) {
  std::mt19937 random(4);
  for (int round = 0; round < 3000; ++round) {
    const int values = std::array{1, 2, 3, 10, 1000}[random() % 5];
    // Few are as large as the scans by blocks need them.
    const std::size_t size = round % 60 == 0 ? 200 + random() % 2000 : random() % 80;
    const auto elements = marked_elements(random, size, values);
    const auto lower_bound = static_cast<std::int32_t>(random() % 7) - 3;
    const auto seed = static_cast<unsigned>(random());
    LoggedArray plain(elements, lower_bound, seed);
    plain.keeps_log = false;
    plain_quick_sort(plain, plain.first(), plain.last());
    auto ours = ranked(elements);
    RandomNumbers numbers(seed);
    quick_sort_ranked(ours, lower_bound, [&] { return numbers(); });
    ASSERT_EQ(marks(ours), marks(plain.elements()));
    ASSERT_EQ(numbers.count(), plain.random_numbers());
  }
}

TEST(RankedOrder, shell_sort_ranked_leaves_equal_elements_where_shell_sort_does) {
  std::mt19937 random(5);
  for (int round = 0; round < 1000; ++round) {
    const int values = std::array{1, 2, 3, 10, 1000}[random() % 5];
    const auto elements = marked_elements(random, random() % 80, values);
    const auto lower_bound = static_cast<std::int32_t>(random() % 4);
    std::vector<std::int32_t> gaps;
    std::int32_t gap = lower_bound;
    const auto last = static_cast<std::int32_t>(elements.size()) + lower_bound - 1;
    do {
      gap = 3 * gap + 1;
      gaps.insert(gaps.begin(), (gap - 1) / 3);
    } while (gap <= last);
    LoggedArray plain(elements, lower_bound, 1);
    plain_shell_sort(plain, gaps);
    auto ours = ranked(elements);
    shell_sort_ranked(ours, lower_bound);
    ASSERT_EQ(marks(ours), marks(plain.elements()));
  }
}

TEST(RankedOrder, a_million_equal_elements_are_shuffled_as_a_random_pivot_does) {
  // Exchange by exchange this would be 5 * 10^11 comparisons.
  std::vector<RankedElement> elements(1000000);
  for (std::uint32_t i = 0; i < elements.size(); ++i) elements[i] = {i < 500000 ? 0U : 500000U, i};
  RandomNumbers numbers(1);
  quick_sort_ranked(elements, 1, [&] { return numbers(); });
  EXPECT_TRUE(std::ranges::is_sorted(elements, {}, &RankedElement::rank));
  EXPECT_GT(numbers.count(), 900000);
  std::vector<bool> seen(elements.size());
  for (const RankedElement& element : elements) seen[element.index] = true;
  EXPECT_TRUE(std::ranges::all_of(seen, [](bool is_seen) { return is_seen; }));
}

}  // namespace
}  // namespace qv::native::sorting
