// Arrays made and inspected at run time, and texts used as lists of items of one width.
#include <algorithm>
#include <limits>
#include <vector>

#include "collections/sort_elements.h"
#include "collections/sorting.h"
#include "frame/error_state.h"
#include "text/numerals.h"

namespace qv::collections {
namespace {

// Empty for no array.
Variant array_variant(VARTYPE type, SAFEARRAY* array) {
  VARIANT value;
  VariantInit(&value);
  if (array != nullptr) {
    value.vt = static_cast<VARTYPE>(type | VT_ARRAY);
    value.parray = array;
  }
  return Variant::adopt(value);
}

// Pairs of a count of elements and a lower bound, one for each dimension.
std::vector<SAFEARRAYBOUND> bounds_of(const Variant& pairs) {
  const Elements numbers(pairs);
  const Long first = numbers.lower_bound();
  const Long last = numbers.upper_bound();
  if ((std::int64_t{last} - first + 1) % 2 != 0) raise(kTypeMismatch);
  std::vector<SAFEARRAYBOUND> bounds;
  Variant storage;
  for (std::int64_t index = first; index < last; index += 2) {
    const Long count = numbers.at(static_cast<Long>(index), storage).to_long();
    const Long lower_bound = numbers.at(static_cast<Long>(index + 1), storage).to_long();
    bounds.push_back({static_cast<ULONG>(count), lower_bound});
  }
  return bounds;
}

// Not every system that makes arrays notices when their size goes beyond its numbers.
bool fits(const std::vector<SAFEARRAYBOUND>& bounds, ULONG bytes) {
  std::uint64_t size = bytes;
  for (const SAFEARRAYBOUND& bound : bounds) {
    size *= bound.cElements;
    if (size > std::numeric_limits<ULONG>::max()) return false;
  }
  return true;
}

// `position` is where the last look began or ended, from 1, for the failure's Source.
Long word_index(const Text& list, const Text& word, Long& start_from, Long& position) {
  const Long width = word.length();
  const std::int64_t before = (std::int64_t{start_from} - 1) * width;
  position = checked_index(before);
  const Long start = checked_index(std::int64_t{position} + 1);
  if (start < 1) raise(kInvalidProcedureCall);
  if (width == 0 && !list.empty()) {
    position = start;
    raise(kDivisionByZero);
  }
  // Items of one character are found at no place that counts.
  const auto text = list.view();
  for (std::size_t at = static_cast<std::size_t>(start) - 1;
       width > 1 && at + word.size() <= text.size(); at += word.size()) {
    if (text.compare(at, word.size(), word.view()) != 0) continue;
    const auto number = static_cast<Long>(at / word.size()) + 1;
    start_from = number + 1;
    return number;
  }
  start_from = 0;
  return 0;
}

}  // namespace

Long GetWordIndex(const Text& Buffer, const Text& Word, Long& StartFrom) {
  Long number = 0;
  Long position = 0;
  err().forget_error();
  const bool is_done = frame::attempt([&] {
    StartFrom = std::max(StartFrom, Long{0});
    number = word_index(Buffer, Word, StartFrom, position);
  });
  if (is_done) return number;
  const Text source =
      concat({L"KwRtLibMod.GetWordIndex (", decimal(Buffer.length()), L"-", text::BinToHex(Word),
              L"-", decimal(StartFrom), L"-", decimal(position)});
  frame::Set_Error({.Source = source}, frame::kTakeError);
  err().forget_error();
  return 0;
}

Variant ArrayCreate(Integer, const Variant& Bounds, Long vt) {
  return frame::handled(L"KwRtLibMod.ArrayCreate", frame::kTakeError, Variant(), [&] {
    auto bounds = bounds_of(Bounds);
    if (vt < 0 || vt > VT_TYPEMASK) return Variant();
    const auto type = static_cast<VARTYPE>(vt);
    const ULONG bytes = element_bytes(type);
    if (bytes == 0 || !fits(bounds, bytes)) return Variant();
    return array_variant(type,
                         SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data()));
  });
}

Long GetArrayDims(const Variant& vArray) {
  const VARIANT& value = *vArray.raw();
  const bool is_array = (value.vt & VT_ARRAY) != 0 && (value.vt & VT_BYREF) == 0;
  return is_array ? static_cast<Long>(SafeArrayGetDim(value.parray)) : 0;
}

}  // namespace qv::collections
