#include "collections/sort_elements.h"

#include "native/sorting/quick_sort.h"

namespace qv::collections {

Long checked_index(std::int64_t number) {
  if (!native::sorting::is_index(number)) raise(kOverflow);
  return static_cast<Long>(number);
}

Elements::Elements(const Variant& indexed)
    : is_array_(indexed.is_array()), is_object_(indexed.is_object()) {
  if (is_object_) object_ = indexed.to_object();
  if (!is_array_) return;
  element_type_ = indexed.type() & VT_TYPEMASK;
  SAFEARRAY* const array = indexed.array();
  if (array == nullptr) return;
  if (element_type_ == VT_RECORD) check(SafeArrayGetRecordInfo(array, record_info_.receive()));
  check(SafeArrayLock(array));
  array_ = array;
  dimensions_ = SafeArrayGetDim(array);
}

Elements::~Elements() {
  if (array_ != nullptr) SafeArrayUnlock(array_);
}

Long Elements::lower_bound() const {
  if (!is_array_) raise(kTypeMismatch);
  if (array_ == nullptr) raise(kSubscriptOutOfRange);
  LONG bound = 0;
  check(SafeArrayGetLBound(array_, 1, &bound));
  return bound;
}

Long Elements::upper_bound() const {
  if (!is_array_) raise(kTypeMismatch);
  if (array_ == nullptr) raise(kSubscriptOutOfRange);
  LONG bound = 0;
  check(SafeArrayGetUBound(array_, 1, &bound));
  return bound;
}

Variant& Elements::refer(void* element, Variant& storage) const {
  if (element_type_ == VT_VARIANT) return *static_cast<Variant*>(element);
  VARIANT& reference = *storage.raw();
  reference.vt = static_cast<VARTYPE>(VT_BYREF | element_type_);
  reference.byref = element;
  if (record_info_) reference.pRecInfo = record_info_.get();
  return storage;
}

Variant& Elements::at(Long index, Variant& storage) const {
  if (is_object_) {
    storage = late_bound::get_default(object_, {index});
    return storage;
  }
  if (!is_array_) raise(kTypeMismatch);
  if (dimensions_ != 1) raise(kSubscriptOutOfRange);
  const SAFEARRAYBOUND& bound = array_->rgsabound[0];
  const std::int64_t place = std::int64_t{index} - bound.lLbound;
  if (place < 0 || place >= bound.cElements) raise(kSubscriptOutOfRange);
  auto* data = static_cast<std::uint8_t*>(array_->pvData);
  return refer(data + static_cast<std::size_t>(place) * array_->cbElements, storage);
}

}  // namespace qv::collections
