// The elements of what is sorted or searched: an array, or any object that can be indexed.
#pragma once

#include "automation/late_bound.h"
#include "automation/variant.h"

namespace qv::collections {

// Run-time error 6 for a number beyond a Long.
Long checked_index(std::int64_t number);

// An array is locked while this lives: what is called meanwhile can't redimension it.
class Elements {
 public:
  // Anything is taken here; what can't be indexed fails at the first element.
  explicit Elements(const Variant& indexed);
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;
  ~Elements();

  // Of the first dimension. Run-time error 13 for what is no array, 9 for an array that is not
  // allocated.
  Long lower_bound() const;
  Long upper_bound() const;

  // The element itself: one of an array of Variant as it lies there, one of a typed array through
  // `storage`, which then refers to it. Of an object, a copy of the item, which lies in `storage`.
  // Run-time error 9 for an index out of range and for an array of several dimensions, 13 for what
  // can't be indexed; an object raises what it likes.
  Variant& at(Long index, Variant& storage) const;

  // The array, where it has one dimension; null otherwise.
  SAFEARRAY* array() const noexcept { return dimensions_ == 1 ? array_ : nullptr; }
  // Of the array's elements.
  VARTYPE element_type() const noexcept { return element_type_; }
  bool is_array() const noexcept { return is_array_; }

 private:
  Variant& refer(void* element, Variant& storage) const;

  bool is_array_;
  SAFEARRAY* array_ = nullptr;
  UINT dimensions_ = 0;
  VARTYPE element_type_ = VT_EMPTY;
  // What an array of records has beside its elements; the records' own reference to it counts.
  Object<IRecordInfo> record_info_;
  Object<IDispatch> object_;
  bool is_object_ = false;
};

}  // namespace qv::collections
