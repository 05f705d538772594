#include "collections/sort_order.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

#include "collections/element_keys.h"
#include "native/sorting/ranked_order.h"
#include "native/sorting/shell_sort.h"
#include "native/sorting/text_order.h"
#include "runtime/random.h"

namespace qv::collections {
namespace {

using native::sorting::RankedElement;

// A sort of what lies from first_index on.
struct Job {
  SortMethod method;
  Long first_index;

  // Does the method put everything in order?
  bool is_complete() const {
    return method == SortMethod::kQuick || native::sorting::is_complete_shell_sort(first_index);
  }
};

// The method's own steps, over numbers that are no keys of their order.
template <class Number>
struct NumberSteps {
  std::span<Number> numbers;
  Long first_index;
  Number taken{};

  Number& at(Long index) const { return numbers[static_cast<std::size_t>(index - first_index)]; }
  int compare(Long a, Long b) const { return at(a) < at(b) ? -1 : at(a) == at(b) ? 0 : 1; }
  void exchange(Long a, Long b) const { std::swap(at(a), at(b)); }
  double random() const { return Rnd(); }
  void take(Long index) { taken = at(index); }
  bool is_greater(Long index) const { return at(index) > taken; }
  void move(Long to, Long from) const { at(to) = at(from); }
  void put(Long index) const { at(index) = taken; }
};

template <class Number>
void sort_by_steps(std::span<Number> numbers, const Job& job) {
  NumberSteps<Number> steps{numbers, job.first_index};
  const auto last = static_cast<Long>(job.first_index + static_cast<Long>(numbers.size()) - 1);
  if (job.method == SortMethod::kQuick) {
    native::sorting::quick_sort(job.first_index, last, 1, steps);
  } else {
    native::sorting::shell_sort(job.first_index, last, steps);
  }
}

using Order = std::vector<std::uint32_t>;

// The elements in ascending order, equal ones in any.
Order ascending(ElementKeys& keys) {
  native::sorting::sort_keyed(keys.numbers);
  Order order;
  order.reserve(keys.numbers.size() + keys.texts.size());
  for (const auto& number : keys.numbers) order.push_back(number.index);
  if (keys.texts.empty()) return order;
  Order texts(keys.texts.size());
  native::sorting::order_texts(keys.texts, texts);
  std::vector<std::u16string_view> sorted_texts;
  sorted_texts.reserve(texts.size());
  for (const std::uint32_t text : texts) {
    order.push_back(keys.text_indexes[text]);
    sorted_texts.push_back(keys.texts[text]);
  }
  keys.texts = std::move(sorted_texts);
  return order;
}

// Once they are in order: is number `place` equal to the one before it?
bool is_equal_to_last(const ElementKeys& keys, std::size_t place) {
  const std::size_t numbers = keys.numbers.size();
  if (place < numbers) return keys.numbers[place].key == keys.numbers[place - 1].key;
  return place > numbers && keys.texts[place - numbers] == keys.texts[place - numbers - 1];
}

// Goes the method's way with the ranks of the elements.
void go_by_ranks(const ElementKeys& keys, const Job& job, Order& order) {
  std::vector<RankedElement> elements(order.size());
  std::uint32_t rank = 0;
  for (std::uint32_t place = 0; place < order.size(); ++place) {
    if (place > 0 && !is_equal_to_last(keys, place)) rank = place;
    elements[order[place]] = {rank, order[place]};
  }
  if (job.method == SortMethod::kQuick) {
    native::sorting::quick_sort_ranked(elements, job.first_index, &Rnd);
  } else {
    native::sorting::shell_sort_ranked(elements, job.first_index);
  }
  for (std::size_t place = 0; place < order.size(); ++place) order[place] = elements[place].index;
}

template <class Element>
bool has_unlike_equals(const ElementKeys& keys, std::span<const Element> elements,
                       const Order& order) {
  for (std::size_t place = 1; place < order.size(); ++place) {
    if (is_equal_to_last(keys, place) &&
        !are_alike(elements[order[place]], elements[order[place - 1]])) {
      return true;
    }
  }
  return false;
}

template <class Element>
bool sort_by_keys(std::span<Element> elements, const Job& job) {
  auto keys = keys_of(std::span<const Element>(elements));
  if (!keys) return false;
  Order order = ascending(*keys);
  const bool has_choice =
      keys->may_differ && has_unlike_equals(*keys, std::span<const Element>(elements), order);
  if (has_choice || !job.is_complete()) go_by_ranks(*keys, job, order);
  const std::unique_ptr<Element[]> sorted(new Element[elements.size()]);
  for (std::size_t place = 0; place < order.size(); ++place) sorted[place] = elements[order[place]];
  std::memcpy(elements.data(), sorted.get(), elements.size_bytes());
  return true;
}

template <class Number>
bool sort_numbers(std::span<Number> numbers, const Job& job) {
  if constexpr (std::is_floating_point_v<Number>) {
    bool has_0 = false;
    bool has_minus_0 = false;
    for (const Number number : numbers) {
      if (std::isnan(number)) {
        sort_by_steps(numbers, job);
        return true;
      }
      if (number == 0) (std::signbit(number) ? has_minus_0 : has_0) = true;
    }
    if (has_0 && has_minus_0) return sort_by_keys(numbers, job);
  }
  if (job.is_complete()) {
    native::sorting::sort_numbers(numbers);
  } else {
    sort_by_steps(numbers, job);
  }
  return true;
}

template <class Element>
std::span<Element> range_of(SAFEARRAY* array, Long first, Long last) {
  if (array->cbElements != sizeof(Element)) return {};
  const auto begin = static_cast<std::size_t>(std::int64_t{first} - array->rgsabound[0].lLbound);
  return std::span(static_cast<Element*>(array->pvData), array->rgsabound[0].cElements)
      .subspan(begin, static_cast<std::size_t>(std::int64_t{last} - first + 1));
}

// Values of one type in Variants: they alone change places.
template <class Value, class Sort>
bool sort_payloads(std::span<VARIANT> variants, const Sort& sort) {
  const std::unique_ptr<Value[]> values(new Value[variants.size()]);
  for (std::size_t i = 0; i < variants.size(); ++i) {
    std::memcpy(&values[i], &variants[i].llVal, sizeof(Value));
  }
  if (!sort(std::span(values.get(), variants.size()))) return false;
  for (std::size_t i = 0; i < variants.size(); ++i) {
    std::memcpy(&variants[i].llVal, &values[i], sizeof(Value));
  }
  return true;
}

// Calls sort() with an example of what elements of that type are in memory. False for a type that
// only its own steps can sort.
template <class Sort>
bool sort_as(VARTYPE type, const Sort& sort) {
  switch (type) {
    case VT_UI1:
      return sort(Byte());
    case VT_I2:
    case VT_BOOL:
      return sort(Integer());
    case VT_I4:
      return sort(Long());
    case VT_CY:
      return sort(std::int64_t());
    case VT_R4:
      return sort(Single());
    case VT_R8:
    case VT_DATE:
      return sort(Double());
    case VT_BSTR:
      return sort(BSTR());
    default:
      return false;
  }
}

template <class Element>
bool sort_elements(std::span<Element> elements, const Job& job) {
  if constexpr (std::is_arithmetic_v<Element>) {
    return sort_numbers(elements, job);
  } else {
    return sort_by_keys(elements, job);
  }
}

bool sort_variants(std::span<VARIANT> variants, const Job& job) {
  const auto has_first_type = [&](const VARIANT& variant) { return variant.vt == variants[0].vt; };
  if (!std::ranges::all_of(variants, has_first_type)) return sort_by_keys(variants, job);
  return sort_as(variants[0].vt, [&]<class Value>(Value) {
    return sort_payloads<Value>(variants, [&](auto values) { return sort_elements(values, job); });
  });
}

bool sort_range(const Elements& elements, Long first, Long last, SortMethod method) {
  SAFEARRAY* const array = elements.array();
  const Job job{method, first};
  if (elements.element_type() == VT_VARIANT) {
    const auto range = range_of<VARIANT>(array, first, last);
    return !range.empty() && sort_variants(range, job);
  }
  return sort_as(elements.element_type(), [&]<class Element>(Element) {
    const auto range = range_of<Element>(array, first, last);
    return !range.empty() && sort_elements(range, job);
  });
}

}  // namespace

bool sort_directly(const Elements& elements, Long first, Long last, SortMethod method) {
  if (elements.array() == nullptr || first > last) return false;
  if (first < elements.lower_bound() || last > elements.upper_bound()) return false;
  // At the ends of its numbers the method itself runs into an overflow.
  if (!native::sorting::is_index(std::int64_t{first} - 1) ||
      !native::sorting::is_index(std::int64_t{last} + 1)) {
    return false;
  }
  if (method == SortMethod::kShell && !native::sorting::first_gap(first, last)) return false;
  try {
    return sort_range(elements, first, last, method);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace qv::collections
