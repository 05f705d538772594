#include "frame/shared_variable.h"

#include <objidl.h>

#include "automation/class_object.h"
#include "automation/thread_state.h"

namespace qv::frame {
namespace {

class ApartmentWatch;

struct SharedVariable {
  Variant value;
  ApartmentWatch* watch = nullptr;  // owned by the platform's list of spies
};

// An array or a record may hold objects as well as an object variable.
bool may_hold_object(const Variant& value) noexcept {
  return value.is_object() || value.is_array() || value.type() == VT_RECORD;
}

SharedVariable& shared() { return per_thread<SharedVariable>(); }

// Told by the platform before a thread leaves its apartment. While it listens the library stays
// loaded: the platform would call into nothing otherwise.
class ApartmentWatch final : public IInitializeSpy {
 public:
  static ApartmentWatch* start() {
    auto* watch = new ApartmentWatch();
    if (FAILED(CoRegisterInitializeSpy(watch, &watch->cookie_))) {
      watch->Release();
      return nullptr;
    }
    watch->Release();  // the list holds it now
    return watch;
  }
  void stop() noexcept { CoRevokeInitializeSpy(cookie_); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IInitializeSpy)) return E_NOINTERFACE;
    *object = static_cast<IInitializeSpy*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE PreInitialize(DWORD, DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE PostInitialize(HRESULT result, DWORD, DWORD) override { return result; }
  HRESULT STDMETHODCALLTYPE PreUninitialize(DWORD uses) override {
    if (uses > 1) return S_OK;
    SharedVariable& variable = shared();
    variable.watch = nullptr;
    variable.value = Variant();
    stop();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE PostUninitialize(DWORD) override { return S_OK; }

 private:
  ApartmentWatch() noexcept { server::count_object(1); }
  ~ApartmentWatch() { server::count_object(-1); }

  ULONG references_ = 1;
  ULARGE_INTEGER cookie_{};
};

}  // namespace

Variant get_SharedVar() { return shared().value; }

void put_SharedVar(const Variant& Value) {
  SharedVariable& variable = shared();
  Variant copy(Value);
  if (may_hold_object(copy) && variable.watch == nullptr) variable.watch = ApartmentWatch::start();
  // What was held is let go last: its end may run code that comes back here.
  std::swap(variable.value, copy);
  if (!may_hold_object(variable.value) && variable.watch != nullptr) {
    std::exchange(variable.watch, nullptr)->stop();
  }
}

}  // namespace qv::frame
