// Array<Element>: a dynamic array of the calling language, with any lower bound. It owns one
// SAFEARRAY and is laid out as the pointer to it, so that a by-reference array argument is an
// Array& over the caller's own variable.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <span>
#include <utility>

#include "automation/run_time_error.h"

namespace qv {

class Variant;

// Bytes of an array's element; 0 for a type that arrays can't have.
inline ULONG element_bytes(VARTYPE type) noexcept {
  SAFEARRAYBOUND none{0, 0};
  SAFEARRAY* const probe = SafeArrayCreate(type, 1, &none);
  if (probe == nullptr) return 0;
  const ULONG bytes = probe->cbElements;
  SafeArrayDestroy(probe);
  return bytes;
}

template <class Element>
struct ArrayElement;
template <>
struct ArrayElement<Byte> {
  static constexpr VARTYPE type = VT_UI1;
};
template <>
struct ArrayElement<Integer> {
  static constexpr VARTYPE type = VT_I2;
};
template <>
struct ArrayElement<Long> {
  static constexpr VARTYPE type = VT_I4;
};
template <>
struct ArrayElement<Text> {
  static constexpr VARTYPE type = VT_BSTR;
};
template <>
struct ArrayElement<Variant> {
  static constexpr VARTYPE type = VT_VARIANT;
};

// The elements of a locked one-dimensional array, in order. The array can't be redimensioned while
// this lives.
template <class Element>
class LockedElements {
 public:
  explicit LockedElements(SAFEARRAY* array) : array_(array) { check(SafeArrayLock(array_)); }
  LockedElements(const LockedElements&) = delete;
  LockedElements& operator=(const LockedElements&) = delete;
  ~LockedElements() { SafeArrayUnlock(array_); }

  std::span<Element> span() const noexcept {
    return {static_cast<Element*>(array_->pvData), array_->rgsabound[0].cElements};
  }
  Element* begin() const noexcept { return span().data(); }
  Element* end() const noexcept { return begin() + size(); }
  std::size_t size() const noexcept { return span().size(); }
  Element& operator[](std::size_t index) const noexcept { return span()[index]; }

 private:
  SAFEARRAY* array_;
};

template <class Element>
class Array {
 public:
  Array() noexcept = default;
  // Elements lower_bound to lower_bound + count - 1, all zero or empty.
  Array(Long lower_bound, std::size_t count) { redimension(lower_bound, count); }
  Array(Array&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
  Array(const Array& other) {
    if (other.array_ != nullptr) check(SafeArrayCopy(other.array_, &array_));
  }
  Array& operator=(Array other) noexcept {
    std::swap(array_, other.array_);
    return *this;
  }
  ~Array() { SafeArrayDestroy(array_); }

  static Array adopt(SAFEARRAY* array) noexcept {
    Array result;
    result.array_ = array;
    return result;
  }

  // 0 for an array that is not allocated.
  std::size_t dimensions() const noexcept {
    return array_ == nullptr ? 0 : SafeArrayGetDim(array_);
  }
  // Of the first dimension; run-time error 9 while the array is not allocated.
  Long lower_bound() const { return first().lLbound; }
  Long upper_bound() const {
    return static_cast<Long>(first().lLbound + static_cast<Long>(first().cElements) - 1);
  }
  std::size_t size() const { return first().cElements; }

  // The elements; run-time error 9 unless the array has exactly one dimension, 13 where a caller
  // put an array of another type into the variable.
  LockedElements<Element> lock() const {
    if (dimensions() != 1) raise(kSubscriptOutOfRange);
    if (SafeArrayGetElemsize(array_) != sizeof(Element)) raise(kTypeMismatch);
    return LockedElements<Element>(array_);
  }

  // Drops what was there. Run-time error 10 while somebody holds the array locked, 7 without
  // memory.
  void redimension(Long lower_bound, std::size_t count) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), lower_bound};
    SAFEARRAY* fresh = SafeArrayCreate(ArrayElement<Element>::type, 1, &bound);
    if (fresh == nullptr) raise(kOutOfMemory);
    const HRESULT result = SafeArrayDestroy(array_);
    if (FAILED(result)) {
      SafeArrayDestroy(fresh);
      check(result);
    }
    array_ = fresh;
  }

  SAFEARRAY* get() const noexcept { return array_; }
  SAFEARRAY* release() noexcept { return std::exchange(array_, nullptr); }

 private:
  const SAFEARRAYBOUND& first() const {
    if (array_ == nullptr) raise(kSubscriptOutOfRange);
    // The descriptor holds the bounds in reverse: dimension 1 is the last.
    return array_->rgsabound[SafeArrayGetDim(array_) - 1];
  }

  SAFEARRAY* array_ = nullptr;
};

static_assert(sizeof(Array<Byte>) == sizeof(SAFEARRAY*));

}  // namespace qv
