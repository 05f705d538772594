// What the elements of an array are sorted by: a number for a number, the characters for a text.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "automation/types.h"
#include "native/sorting/radix_sort.h"

namespace qv::collections {

// Indexes count from the first element of the span. Numbers are less than texts.
struct ElementKeys {
  std::vector<native::sorting::KeyedIndex> numbers;
  std::vector<std::u16string_view> texts;
  std::vector<std::uint32_t> text_indexes;
  // Can two elements be equal and yet not the same, as 1 and 1.0, "" and Empty, 0 and -0?
  bool may_differ = false;
};

// nullopt where the elements don't all compare, or not consistently.
std::optional<ElementKeys> keys_of(std::span<const VARIANT> elements);
std::optional<ElementKeys> keys_of(std::span<const BSTR> elements);
std::optional<ElementKeys> keys_of(std::span<const double> elements);
std::optional<ElementKeys> keys_of(std::span<const float> elements);

// Two elements that are equal: is one like the other in every way?
bool are_alike(const VARIANT& a, const VARIANT& b) noexcept;
bool are_alike(BSTR a, BSTR b) noexcept;
bool are_alike(double a, double b) noexcept;
bool are_alike(float a, float b) noexcept;

}  // namespace qv::collections
