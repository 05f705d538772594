#include "native/sorting/ranked_order.h"

#include <array>
#include <tuple>
#include <utility>
#include <vector>

#include "native/sorting/quick_sort.h"
#include "native/sorting/shell_sort.h"

namespace qv::native::sorting {
namespace {

class RankedQuickSort {
 public:
  RankedQuickSort(std::span<RankedElement> elements, std::int32_t first_index,
                  const std::function<double()>& random)
      : elements_(elements),
        ranks_in_order_(elements.size()),
        first_index_(first_index),
        random_(random) {
    for (const RankedElement& element : elements) ++ranks_in_order_[element.rank];
    std::uint32_t rank = 0;
    for (std::uint32_t place = 0; place < ranks_in_order_.size(); ++place) {
      if (ranks_in_order_[place] != 0) rank = place;
      ranks_in_order_[place] = rank;
    }
  }

  void sort() {
    std::vector<std::pair<std::size_t, std::size_t>> waiting;
    // From lo up to, not including, end.
    std::size_t lo = 0;
    std::size_t end = elements_.size();
    while (true) {
      while (end - lo > 1) {
        const std::size_t hi = end - 1;
        if (hi - lo == 1) {
          if (elements_[lo].rank > elements_[hi].rank) std::swap(elements_[lo], elements_[hi]);
          break;
        }
        std::swap(elements_[hi], elements_[pick(lo, hi)]);
        const std::size_t place = part_range(lo, hi);
        if (place - lo >= hi - place) {
          waiting.emplace_back(lo, place);
          lo = place + 1;
        } else {
          waiting.emplace_back(place + 1, end);
          end = place;
        }
      }
      if (waiting.empty()) return;
      std::tie(lo, end) = waiting.back();
      waiting.pop_back();
    }
  }

 private:
  // By the caller's own indexes, which decide how the product is rounded.
  std::size_t pick(std::size_t lo, std::size_t hi) {
    const auto index = [&](std::size_t place) {
      return static_cast<std::int32_t>(first_index_ + static_cast<std::int64_t>(place));
    };
    const std::int32_t picked = pick_index(random_(), index(lo), index(hi));
    return static_cast<std::size_t>(std::int64_t{picked} - first_index_);
  }

  // As part(): every range holds the very ranks that stand there in the end, so the least and the
  // greatest are known, and a pivot that is one of them need not be scanned for.
  std::size_t part_range(std::size_t lo, std::size_t hi) {
    const std::uint32_t pivot = elements_[hi].rank;
    if (pivot == ranks_in_order_[hi]) return hi;
    std::size_t i = lo;
    if (pivot == ranks_in_order_[lo]) {
      while (elements_[i].rank == pivot && i < hi) ++i;
    } else {
      i = scan(lo, hi, pivot);
    }
    std::swap(elements_[i], elements_[hi]);
    return i;
  }

  // The scans from both ends: first by blocks, in which the places of all elements to exchange are
  // noted before any is exchanged, so that nothing hangs on how a comparison turns out (Edelkamp
  // and Weiss, BlockQuicksort, 2016), then one by one. The exchanges are the same, in the same
  // order.
  std::size_t scan(std::size_t lo, std::size_t hi, std::uint32_t pivot) {
    std::size_t i = lo;
    std::size_t j = hi;        // nothing from here on is less than the pivot
    std::size_t reached = hi;  // where the downward scan stands: the upward one goes no further
    Noted above;
    Noted below;
    while (j - i > 2 * kBlock) {
      if (above.is_done()) {
        above.note([&](std::size_t k) { return elements_[i + k].rank > pivot; });
      }
      if (below.is_done()) {
        below.note([&](std::size_t k) { return elements_[j - 1 - k].rank < pivot; });
      }
      while (!above.is_done() && !below.is_done()) {
        reached = j - 1 - below.next();
        std::swap(elements_[i + above.next()], elements_[reached]);
      }
      if (above.is_done()) i += kBlock;
      if (below.is_done()) j -= kBlock;
    }
    while (true) {
      while (elements_[i].rank <= pivot && i < reached) ++i;
      while (j > i && elements_[j].rank >= pivot) --j;
      if (i >= j) return i;
      std::swap(elements_[i], elements_[j]);
      reached = j;
    }
  }

  static constexpr std::size_t kBlock = 128;

  // The places in a block that are to be exchanged.
  class Noted {
   public:
    bool is_done() const { return next_ == count_; }
    std::size_t next() { return places_[next_++]; }
    template <class IsWanted>
    void note(IsWanted&& is_wanted) {
      next_ = count_ = 0;
      for (std::size_t k = 0; k < kBlock; ++k) {
        places_[count_] = static_cast<std::uint8_t>(k);
        count_ += is_wanted(k) ? 1 : 0;
      }
    }

   private:
    std::array<std::uint8_t, kBlock> places_;
    std::size_t next_ = 0;
    std::size_t count_ = 0;
  };

  std::span<RankedElement> elements_;
  std::vector<std::uint32_t> ranks_in_order_;
  std::int32_t first_index_;
  const std::function<double()>& random_;
};

struct RankedSteps {
  std::span<RankedElement> elements;
  std::int32_t first_index;
  RankedElement taken{};

  RankedElement& at(std::int32_t index) const {
    return elements[static_cast<std::size_t>(index - first_index)];
  }
  void take(std::int32_t index) { taken = at(index); }
  bool is_greater(std::int32_t index) const { return at(index).rank > taken.rank; }
  void move(std::int32_t to, std::int32_t from) const { at(to) = at(from); }
  void put(std::int32_t index) const { at(index) = taken; }
};

}  // namespace

void quick_sort_ranked(std::span<RankedElement> elements, std::int32_t first_index,
                       const std::function<double()>& random) {
  RankedQuickSort(elements, first_index, random).sort();
}

void shell_sort_ranked(std::span<RankedElement> elements, std::int32_t lower_bound) {
  const auto last =
      static_cast<std::int32_t>(lower_bound + static_cast<std::int64_t>(elements.size()) - 1);
  shell_sort(lower_bound, last, RankedSteps{elements, lower_bound});
}

}  // namespace qv::native::sorting
