#include "frame/shared_variable.h"

#include <objidl.h>

#include <utility>

#include "automation/counted_object.h"
#include "automation/thread_state.h"

namespace qv::frame {
namespace {

// An array or a record may hold objects as well as an object variable.
bool may_hold_object(const Variant& value) noexcept {
  return value.is_object() || value.is_array() || value.type() == VT_RECORD;
}

// Told by the platform before a thread leaves its apartment. While it listens the library stays
// loaded: the platform would call into nothing otherwise.
class ApartmentWatch final : public CountedObject<IInitializeSpy> {
 public:
  // Empty when the platform does not take it.
  static Object<ApartmentWatch> start() {
    auto watch = Object<ApartmentWatch>::adopt(new ApartmentWatch());
    if (FAILED(CoRegisterInitializeSpy(watch.get(), &watch->cookie_))) return {};
    return watch;
  }
  void stop() noexcept { CoRevokeInitializeSpy(cookie_); }

  HRESULT STDMETHODCALLTYPE PreInitialize(DWORD, DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE PostInitialize(HRESULT result, DWORD, DWORD) override { return result; }
  HRESULT STDMETHODCALLTYPE PreUninitialize(DWORD uses) override;
  HRESULT STDMETHODCALLTYPE PostUninitialize(DWORD) override { return S_OK; }

 private:
  ULARGE_INTEGER cookie_{};
};

struct SharedVariable {
  Variant value;
  Object<ApartmentWatch> watch;
};

SharedVariable& shared() { return per_thread<SharedVariable>(); }

HRESULT ApartmentWatch::PreUninitialize(DWORD uses) {
  if (uses > 1) return S_OK;
  SharedVariable& variable = shared();
  const auto self = std::exchange(variable.watch, {});
  variable.value = Variant();
  stop();
  return S_OK;
}

}  // namespace

Variant get_SharedVar() { return shared().value; }

void put_SharedVar(const Variant& Value) {
  SharedVariable& variable = shared();
  Variant copy(Value);
  if (may_hold_object(copy) && !variable.watch) variable.watch = ApartmentWatch::start();
  // What was held is let go last: its end may run code that comes back here.
  std::swap(variable.value, copy);
  if (!may_hold_object(variable.value) && variable.watch) {
    std::exchange(variable.watch, {})->stop();
  }
}

}  // namespace qv::frame
