#include "collections/sorting.h"

#include "automation/class_object.h"
#include "automation/foreign_error.h"
#include "class_tables.h"
#include "collections/sort_elements.h"
#include "collections/sort_order.h"
#include "frame/error_state.h"
#include "native/sorting/quick_sort.h"
#include "native/sorting/shell_sort.h"
#include "runtime/comparison.h"
#include "runtime/random.h"
#include "text/text_tools.h"

namespace qv::collections {
namespace {

using native::sorting::SortEnd;

// How often in a row a helper's exchange may be without effect before it is taken to have none. One
// that answers at random gets through.
constexpr int kPatienceWithHelper = 32;
constexpr int kPatience = 1;

// A caller's helper, or what stands in for it.
class Helper {
 public:
  explicit Helper(const Object<_QvSort>& object)
      : object_(own<QvSort>(object, kQvSortInfo) != nullptr ? Object<_QvSort>() : object) {}

  bool is_foreign() const noexcept { return static_cast<bool>(object_); }
  Long compare(Variant& a, Variant& b) const {
    if (!is_foreign()) return qv::compare(a, b);
    LONG result = 0;
    check_foreign(object_, object_.get()->Compare(a.raw(), b.raw(), &result));
    return result;
  }
  void swap(Variant& a, Variant& b) const {
    if (!is_foreign()) return QvSort().Swap(a, b);
    check_foreign(object_, object_.get()->Swap(a.raw(), b.raw()));
  }

 private:
  Object<_QvSort> object_;
};

// The steps of both sorts on the elements.
class ElementSteps {
 public:
  ElementSteps(const Elements& elements, const Helper& helper)
      : elements_(elements), helper_(helper) {}

  Long compare(Long a, Long b) {
    return helper_.compare(elements_.at(a, first_), elements_.at(b, second_));
  }
  void exchange(Long a, Long b) { helper_.swap(elements_.at(a, first_), elements_.at(b, second_)); }
  double random() const { return Rnd(); }

  void take(Long index) { taken_ = elements_.at(index, first_); }
  bool is_greater(Long index) { return qv::is_greater(elements_.at(index, first_), taken_); }
  void move(Long to, Long from) {
    elements_.at(to, first_).assign(Variant(elements_.at(from, second_)));
  }
  void put(Long index) { elements_.at(index, first_).assign(taken_); }

 private:
  const Elements& elements_;
  const Helper& helper_;
  Variant first_;
  Variant second_;
  Variant taken_;
};

void raise_unless_done(SortEnd end) {
  if (end == SortEnd::kIndexOverflow) raise(kOverflow);
}

Long first_of(const Elements& elements, const Variant& first) {
  return first.is_missing() ? elements.lower_bound() : first.to_long();
}

Long last_of(const Elements& elements, const Variant& last) {
  return last.is_missing() ? elements.upper_bound() : last.to_long();
}

}  // namespace

Long QvSort::Compare(const Variant& v1, const Variant& v2) const { return qv::compare(v1, v2); }

void QvSort::Swap(Variant& v1, Variant& v2) const { text::Swap(v1, v2); }

Boolean QuickSort(const Variant& vArray, const Variant& vFirst, const Variant& vLast,
                  const Object<_QvSort>& helper) {
  return frame::handled(L"KwRtLibMod.QuickSort", frame::kTakeError, True, [&] {
    const Elements elements(vArray);
    const Long first = first_of(elements, vFirst);
    const Long last = last_of(elements, vLast);
    const Helper comparer(helper);
    if (!comparer.is_foreign() && sort_directly(elements, first, last, SortMethod::kQuick)) {
      return False;
    }
    const int patience = comparer.is_foreign() ? kPatienceWithHelper : kPatience;
    ElementSteps steps(elements, comparer);
    raise_unless_done(native::sorting::quick_sort(first, last, patience, steps));
    return False;
  });
}

Boolean ShellSort(const Variant& vArray) {
  return frame::handled(L"KwRtLibMod.ShellSort", frame::kTakeError, True, [&] {
    const Elements elements(vArray);
    const Long first = elements.lower_bound();
    const Long last = elements.upper_bound();
    if (sort_directly(elements, first, last, SortMethod::kShell)) return False;
    const Helper nobody{Object<_QvSort>()};
    ElementSteps steps(elements, nobody);
    raise_unless_done(native::sorting::shell_sort(first, last, steps));
    return False;
  });
}

Long BinarySearch(const Variant& vArray, Variant& vKeyToSearch, const Variant& vFirst,
                  const Variant& vLast, Long& Nearest, const Object<_QvSort>& helper) {
  return frame::handled(L"KwRtLibMod.BinarySearch", frame::kTakeError, Long{-1}, [&] {
    const Elements elements(vArray);
    Long first = first_of(elements, vFirst);
    Long last = last_of(elements, vLast);
    const Helper comparer(helper);
    Nearest = 0;
    Variant storage;
    while (first <= last) {
      const Long middle = checked_index(std::int64_t{first} + last) / 2;
      const Long order = comparer.compare(elements.at(middle, storage), vKeyToSearch);
      if (order == 0) {
        Nearest = middle;
        break;
      }
      if (Nearest < 1) Nearest = checked_index(-std::int64_t{middle});
      if (order > 0) {
        last = checked_index(std::int64_t{middle} - 1);
      } else {
        first = checked_index(std::int64_t{middle} + 1);
      }
    }
    const Long found = Nearest > 0 ? Nearest : 0;
    Nearest = checked_index(-std::int64_t{Nearest});
    return found;
  });
}

}  // namespace qv::collections
