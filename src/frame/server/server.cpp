// The entry points of the library but for registration, the class factories, and what keeps the
// library loaded.
#include "frame/server/server.h"

#include <ocidl.h>
#include <olectl.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <new>

#include "automation/arguments.h"
#include "automation/class_object.h"
#include "automation/counted_object.h"
#include "automation/thread_state.h"
#include "frame/server/catalogue.h"
#include "frame/server/cpp_run_time.h"
#include "interfaces.h"

namespace qv::server {
namespace {

HMODULE this_module = nullptr;
// Objects, class factories and locks together: while there is one, the library must stay.
std::atomic<long> holders{0};

// Reading the type library takes milliseconds, so it is kept from its first use until the last
// object is gone.
SRWLOCK type_library_lock = SRWLOCK_INIT;
ITypeLib* type_library = nullptr;

class Locked {
 public:
  Locked() noexcept { AcquireSRWLockExclusive(&type_library_lock); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() { ReleaseSRWLockExclusive(&type_library_lock); }
};

HRESULT shared_library(Object<ITypeLib>& library) noexcept {
  const Locked locked;
  if (type_library == nullptr) {
    const HRESULT status = load_type_library(library);
    if (FAILED(status)) return status;
    type_library = Object<ITypeLib>(library).release();
  }
  library = Object<ITypeLib>(type_library);
  return S_OK;
}

void drop_library() noexcept {
  Object<ITypeLib> leaving;
  const Locked locked;
  if (holders == 0) leaving = Object<ITypeLib>::adopt(std::exchange(type_library, nullptr));
}

// From the library's own file, so that records work where nothing is registered.
HRESULT find_record(IRecordInfo** info) noexcept {
  Object<ITypeInfo> description;
  const HRESULT status = type_info_of(GUID_BFILTER, description.receive());
  return SUCCEEDED(status) ? GetRecordInfoFromTypeInfo(description.get(), info) : status;
}

class ClassFactory final : public CountedObject<IClassFactory> {
 public:
  explicit ClassFactory(const ClassEntry& entry) noexcept : entry_(entry) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    try {
      const Object<IUnknown> created(entry_.create());
      return created.get()->QueryInterface(id, object);
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    count_object(lock != FALSE ? 1 : -1);
    return S_OK;
  }

 private:
  const ClassEntry& entry_;
};

}  // namespace

HMODULE module() noexcept { return this_module; }

void count_object(int step) noexcept {
  if ((holders += step) == 0) drop_library();
}

Text module_path() {
  // GetModuleFileNameW tells a name that is too long only by filling the buffer.
  for (std::size_t length = MAX_PATH;; length *= 2) {
    Text path = Text::uninitialized(length);
    const DWORD written = GetModuleFileNameW(this_module, path.data(), static_cast<DWORD>(length));
    if (written < length) return Text(path.view().substr(0, written));
  }
}

HRESULT load_type_library(Object<ITypeLib>& library) noexcept {
  try {
    return LoadTypeLibEx(module_path().c_str(), REGKIND_NONE, library.receive());
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT type_info_of(const GUID& id, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  Object<ITypeLib> library;
  const HRESULT status = shared_library(library);
  return SUCCEEDED(status) ? library.get()->GetTypeInfoOfGuid(id, info) : status;
}

}  // namespace qv::server

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* process_ends) {
  using namespace qv;
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      server::this_module = instance;
      dispatch::set_record_finder(&server::find_record);
      dispatch::set_object_adapter(&server::adapt_object);
      return thread_state::attach() ? TRUE : FALSE;
    case DLL_PROCESS_DETACH:
      // When the process ends, other threads were stopped wherever they were, and libraries that
      // their objects live in may be gone: the system takes the memory back by itself.
      if (process_ends == nullptr) {
        thread_state::detach();
        cpp_run_time::detach();
      }
      return TRUE;
    default:
      return TRUE;
  }
}

STDAPI DllCanUnloadNow() { return qv::server::holders == 0 ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** object) {
  using namespace qv;
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const auto entries = class_catalogue();
  const auto entry = std::ranges::find_if(entries, [&](const ClassEntry& candidate) {
    return IsEqualCLSID(candidate.info->class_id, class_id);
  });
  if (entry == entries.end()) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new (std::nothrow) server::ClassFactory(*entry);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT status = factory->QueryInterface(id, object);
  factory->Release();
  return status;
}
}
