// The part that every small Automation object of ours has in common: it answers to its interfaces,
// ends with its last reference, and keeps the library loaded until then.
#pragma once

#include <windows.h>

#include <atomic>

#include "automation/server.h"

namespace qv {

// An object that implements `Interface`. It answers to IUnknown and to `Answered`, interfaces that
// `Interface` is or extends; to `Interface` itself where none are named. It begins with one
// reference.
template <class Interface, class... Answered>
class CountedObject : public Interface {
 public:
  CountedObject(const CountedObject&) = delete;
  CountedObject& operator=(const CountedObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!answers_to(id)) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  CountedObject() noexcept { server::count_object(1); }
  virtual ~CountedObject() { server::count_object(-1); }

 private:
  static bool answers_to(REFIID id) noexcept {
    if (IsEqualIID(id, IID_IUnknown)) return true;
    if constexpr (sizeof...(Answered) == 0) {
      return IsEqualIID(id, __uuidof(Interface));
    } else {
      return (IsEqualIID(id, __uuidof(Answered)) || ...);
    }
  }

  std::atomic<ULONG> references_ = 1;
};

}  // namespace qv
