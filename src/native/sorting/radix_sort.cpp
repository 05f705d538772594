#include "native/sorting/radix_sort.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace qv::native::sorting {
namespace {

// Below it, counting digits costs more than comparing.
constexpr std::size_t kFewestForRadix = 256;
// From here on a counter for each number of 16 bits is worth its zeroing.
constexpr std::size_t kFewestForCounting = 32768;

constexpr std::size_t kDigitValues = 256;

struct KeyOf {
  template <class Number>
  auto operator()(Number number) const {
    return radix_key(number);
  }
  std::uint64_t operator()(const KeyedIndex& item) const { return item.key; }
};

template <class Item>
using KeyType = decltype(KeyOf()(Item()));

template <class Item>
void sort_by_comparing(std::span<Item> items) {
  std::ranges::sort(items, {}, KeyOf());
}

template <class Item>
std::size_t digit_of(const Item& item, std::size_t digit) {
  return static_cast<std::size_t>(KeyOf()(item) >> (8 * digit)) & (kDigitValues - 1);
}

template <class Item>
void sort_by_digits(std::span<Item> items) {
  if (items.size() < kFewestForRadix) return sort_by_comparing(items);
  if (std::ranges::is_sorted(items, {}, KeyOf())) return;
  const std::unique_ptr<Item[]> other(new (std::nothrow) Item[items.size()]);
  if (other == nullptr) return sort_by_comparing(items);

  constexpr std::size_t kDigits = sizeof(KeyType<Item>);
  std::array<std::array<std::uint32_t, kDigitValues>, kDigits> counts{};
  for (const Item& item : items) {
    for (std::size_t digit = 0; digit < kDigits; ++digit) ++counts[digit][digit_of(item, digit)];
  }
  Item* from = items.data();
  Item* to = other.get();
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    auto& places = counts[digit];
    if (places[digit_of(*from, digit)] == items.size()) continue;
    std::uint32_t place = 0;
    for (std::uint32_t& count : places) place += std::exchange(count, place);
    for (std::size_t i = 0; i < items.size(); ++i) to[places[digit_of(from[i], digit)]++] = from[i];
    std::swap(from, to);
  }
  if (from != items.data()) std::copy_n(from, items.size(), items.data());
}

// Of numbers with few values: how often each is there tells all.
template <class Number>
void sort_by_counting(std::span<Number> numbers) {
  constexpr std::size_t kValues = std::size_t{1} << (8 * sizeof(Number));
  if (numbers.size() < std::min(kFewestForCounting, kValues)) return sort_by_digits(numbers);
  const std::unique_ptr<std::uint32_t[]> counts(new (std::nothrow) std::uint32_t[kValues]{});
  if (counts == nullptr) return sort_by_comparing(numbers);
  for (const Number number : numbers) ++counts[radix_key(number)];
  Number* out = numbers.data();
  constexpr std::size_t kLowest = std::is_signed_v<Number> ? kValues / 2 : 0;
  for (std::size_t key = 0; key < kValues; ++key) {
    out = std::fill_n(out, counts[key], static_cast<Number>(key - kLowest));
  }
}

}  // namespace

void sort_numbers(std::span<std::uint8_t> numbers) { sort_by_counting(numbers); }
void sort_numbers(std::span<std::int16_t> numbers) { sort_by_counting(numbers); }
void sort_numbers(std::span<std::int32_t> numbers) { sort_by_digits(numbers); }
void sort_numbers(std::span<std::int64_t> numbers) { sort_by_digits(numbers); }
void sort_numbers(std::span<float> numbers) { sort_by_digits(numbers); }
void sort_numbers(std::span<double> numbers) { sort_by_digits(numbers); }
void sort_keyed(std::span<KeyedIndex> items) { sort_by_digits(items); }

}  // namespace qv::native::sorting
