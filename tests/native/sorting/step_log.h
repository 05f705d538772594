// A plain reading of the two sorts over values that can be told apart, with every step written
// down: what the sorts of the library are held to.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace qv::native::sorting {

// Elements that compare by `value`; `mark` tells equal ones apart.
struct Marked {
  int value;
  int mark;
  friend bool operator==(const Marked&, const Marked&) = default;
};

// Numbers from 0 up to 1 that begin anew with every object of the same seed.
class RandomNumbers {
 public:
  explicit RandomNumbers(unsigned seed) : engine_(seed) {}
  double operator()() {
    ++count_;
    return static_cast<double>(engine_()) / 4294967296.0;
  }
  int count() const { return count_; }

 private:
  std::mt19937 engine_;
  int count_ = 0;
};

// An array with a lower bound, and the log of what was done to it.
class LoggedArray {
 public:
  LoggedArray(std::vector<Marked> elements, std::int32_t lower_bound, unsigned seed)
      : elements_(std::move(elements)), lower_bound_(lower_bound), random_(seed) {}

  int compare(std::int32_t a, std::int32_t b) {
    log('c', a, b);
    const int x = at(a).value;
    const int y = at(b).value;
    return x < y ? -1 : x == y ? 0 : 1;
  }
  void exchange(std::int32_t a, std::int32_t b) {
    log('x', a, b);
    if (!exchanges_nothing) std::swap(at(a), at(b));
  }
  double random() { return random_(); }

  void take(std::int32_t a) { taken_ = at(a); }
  bool is_greater(std::int32_t a) {
    log('>', a, 0);
    return at(a).value > taken_.value;
  }
  void move(std::int32_t a, std::int32_t b) {
    log('m', a, b);
    at(a) = at(b);
  }
  void put(std::int32_t a) {
    log('p', a, taken_.mark);
    at(a) = taken_;
  }

  std::int32_t first() const { return lower_bound_; }
  std::int32_t last() const {
    return static_cast<std::int32_t>(std::int64_t{lower_bound_} +
                                     static_cast<std::int64_t>(elements_.size()) - 1);
  }
  const std::vector<Marked>& elements() const { return elements_; }
  const std::string& steps() const { return steps_; }
  int random_numbers() const { return random_.count(); }

  bool exchanges_nothing = false;
  bool keeps_log = true;

 private:
  Marked& at(std::int32_t index) {
    return elements_.at(static_cast<std::size_t>(std::int64_t{index} - lower_bound_));
  }
  void log(char what, std::int32_t a, std::int32_t b) {
    if (!keeps_log) return;
    steps_ += what + std::to_string(a) + ',' + std::to_string(b) + ' ';
  }

  std::vector<Marked> elements_;
  std::int32_t lower_bound_;
  RandomNumbers random_;
  Marked taken_{};
  std::string steps_;
};

// Quicksort in the order of its description, without a thought for speed.
inline void plain_quick_sort(LoggedArray& array, std::int32_t first, std::int32_t last) {
  std::vector<std::int32_t> stack;
  std::int32_t lo = first;
  std::int32_t hi = last;
partition_the_range:
  if (!(lo < hi)) goto next_range;
  if (hi - lo == 1) {
    if (array.compare(lo, hi) >= 1) array.exchange(lo, hi);
    goto next_range;
  }
  {
    const double r = array.random() * (static_cast<double>(hi) - lo + 1) + lo;
    array.exchange(hi, static_cast<std::int32_t>(std::floor(r)));
    std::int32_t i = lo;
    std::int32_t j = hi;
  scan_up:
    if (array.compare(i, hi) <= 0) {
      if (i < j) {
        i = i + 1;
        goto scan_up;
      }
    }
  scan_down:
    if (array.compare(j, hi) >= 0) {
      if (j > i) {
        j = j - 1;
        goto scan_down;
      }
    }
    if (i < j) {
      array.exchange(i, j);
      goto scan_up;
    }
    array.exchange(i, hi);
    if (i - lo >= hi - i) {
      stack.push_back(lo);
      stack.push_back(i - 1);
      lo = i + 1;
    } else {
      stack.push_back(i + 1);
      stack.push_back(hi);
      hi = i - 1;
    }
    goto partition_the_range;
  }
next_range:
  if (stack.empty()) return;
  hi = stack.back();
  stack.pop_back();
  lo = stack.back();
  stack.pop_back();
  goto partition_the_range;
}

// Shell's sort likewise; the gaps are those of the table for the lower bound.
inline void plain_shell_sort(LoggedArray& array, const std::vector<std::int32_t>& gaps) {
  for (const std::int32_t gap : gaps) {
    for (std::int32_t i = gap + array.first(); i <= array.last(); ++i) {
      array.take(i);
      std::int32_t j = i;
      while (array.is_greater(j - gap)) {
        array.move(j, j - gap);
        j = j - gap;
        if (j - gap < array.first()) break;
      }
      array.put(j);
    }
  }
}

// `count` elements with values below `values`, marked by their places.
inline std::vector<Marked> marked_elements(std::mt19937& random, std::size_t count, int values) {
  std::vector<Marked> elements;
  for (std::size_t i = 0; i < count; ++i) {
    const auto value = static_cast<int>(random() % static_cast<unsigned>(values));
    elements.push_back({value, static_cast<int>(i)});
  }
  return elements;
}

}  // namespace qv::native::sorting
