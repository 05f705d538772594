// Object<Interface>: a reference to an Automation object, counted. It is laid out as the interface
// pointer, so that a by-reference object argument is an Object& over the caller's own variable.
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <utility>

#include "automation/run_time_error.h"

namespace qv {

template <class Interface>
class Object {
 public:
  Object() noexcept = default;
  Object(std::nullptr_t) noexcept {}
  explicit Object(Interface* pointer) noexcept : pointer_(pointer) { retain(); }
  Object(const Object& other) noexcept : pointer_(other.pointer_) { retain(); }
  Object(Object&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Object& operator=(Object other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Object() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  // Takes over a reference that the caller holds.
  static Object adopt(Interface* pointer) noexcept {
    Object object;
    object.pointer_ = pointer;
    return object;
  }
  // The same object by another of its interfaces; empty where it has none.
  static Object from(IUnknown* other) noexcept {
    Object object;
    if (other != nullptr) {
      other->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&object.pointer_));
    }
    return object;
  }

  explicit operator bool() const noexcept { return pointer_ != nullptr; }
  Interface* get() const noexcept { return pointer_; }
  // Using an object variable that is Nothing is run-time error 91.
  Interface* operator->() const {
    if (pointer_ == nullptr) raise(kObjectVariableNotSet);
    return pointer_;
  }
  Interface* release() noexcept { return std::exchange(pointer_, nullptr); }
  // For a service that fills in a pointer: what was held is let go first.
  Interface** receive() noexcept {
    *this = Object();
    return &pointer_;
  }
  friend bool operator==(const Object& a, const Object& b) noexcept {
    return a.pointer_ == b.pointer_;
  }

 private:
  void retain() noexcept {
    if (pointer_ != nullptr) pointer_->AddRef();
  }

  Interface* pointer_ = nullptr;
};

static_assert(sizeof(Object<IUnknown>) == sizeof(IUnknown*));

}  // namespace qv
