#include "server/frame_failing_allocations.h"

// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <cstdlib>
#include <cstring>

namespace qv::tests {
namespace {

// 0: no call fails.
int calls_to_failure = 0;
bool all_that_follow_fail = false;
bool has_failed = false;
DWORD failing_thread = 0;

bool fails_now() {
  if (calls_to_failure == 0 || GetCurrentThreadId() != failing_thread) return false;
  if (calls_to_failure > 1) {
    --calls_to_failure;
    return false;
  }
  if (!all_that_follow_fail) calls_to_failure = 0;
  has_failed = true;
  return true;
}

// Stands for the function imported; `failure` is what it answers without memory. A template for
// each calling convention: to the compiler's matching of templates they are one.
#define QV_STAND(Name, convention)                                                        \
  template <auto original, auto failure>                                                  \
  struct Name;                                                                            \
  template <class Result, class... Arguments, Result(convention* original)(Arguments...), \
            auto failure>                                                                 \
  struct Name<original, failure> {                                                        \
    static Result convention call(Arguments... arguments) {                               \
      return fails_now() ? static_cast<Result>(failure) : original(arguments...);         \
    }                                                                                     \
  }
QV_STAND(CStand, __cdecl);
QV_STAND(SystemStand, __stdcall);
#undef QV_STAND

struct Row {
  const char* name;
  void* stand;
};

template <auto original>
Row c_row(const char* name) {
  return {name, reinterpret_cast<void*>(&CStand<original, nullptr>::call)};
}
template <auto original, auto failure = nullptr>
Row system_row(const char* name) {
  return {name, reinterpret_cast<void*>(&SystemStand<original, failure>::call)};
}

const Row kRows[] = {
    c_row<&std::malloc>("malloc"),
    c_row<&std::calloc>("calloc"),
    c_row<&std::realloc>("realloc"),
    system_row<&SysAllocString>("SysAllocString"),
    system_row<&SysAllocStringLen>("SysAllocStringLen"),
    system_row<&SysAllocStringByteLen>("SysAllocStringByteLen"),
    system_row<&SysReAllocString, FALSE>("SysReAllocString"),
    system_row<&SysReAllocStringLen, FALSE>("SysReAllocStringLen"),
    system_row<&SafeArrayCreate>("SafeArrayCreate"),
    system_row<&SafeArrayCreateVector>("SafeArrayCreateVector"),
    system_row<&SafeArrayCopy, E_OUTOFMEMORY>("SafeArrayCopy"),
    system_row<&SafeArrayRedim, E_OUTOFMEMORY>("SafeArrayRedim"),
    system_row<&SafeArrayPutElement, E_OUTOFMEMORY>("SafeArrayPutElement"),
    system_row<&VariantCopy, E_OUTOFMEMORY>("VariantCopy"),
    system_row<&VariantCopyInd, E_OUTOFMEMORY>("VariantCopyInd"),
    system_row<&CreateErrorInfo, E_OUTOFMEMORY>("CreateErrorInfo"),
    system_row<&CoTaskMemAlloc>("CoTaskMemAlloc"),
    system_row<&HeapAlloc>("HeapAlloc"),
    system_row<&HeapReAlloc>("HeapReAlloc"),
    system_row<&LocalAlloc>("LocalAlloc"),
    system_row<&GlobalAlloc>("GlobalAlloc"),
};

}  // namespace

FailingAllocations::FailingAllocations(HMODULE module) {
  auto* base = reinterpret_cast<BYTE*>(module);
  const auto* head = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* image = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + head->e_lfanew);
  const auto& directory = image->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (const auto* library =
           reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
       library->Name != 0; ++library) {
    const auto* name =
        reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* place = reinterpret_cast<void**>(base + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++place) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto* import =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      for (const Row& row : kRows) {
        if (std::strcmp(row.name, reinterpret_cast<const char*>(import->Name)) == 0) {
          replaced_.push_back({place, *place});
          replace(place, row.stand);
        }
      }
    }
  }
}

FailingAllocations::~FailingAllocations() {
  end();
  for (const Import& import : replaced_) replace(import.place, import.function);
}

void FailingAllocations::replace(void** place, void* function) {
  DWORD protection = 0;
  VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection);
  *place = function;
  VirtualProtect(place, sizeof *place, protection, &protection);
}

void FailingAllocations::fail_from(int call, bool and_all_that_follow) {
  calls_to_failure = call;
  all_that_follow_fail = and_all_that_follow;
  has_failed = false;
  failing_thread = GetCurrentThreadId();
}

bool FailingAllocations::end() {
  calls_to_failure = 0;
  return has_failed;
}

}  // namespace qv::tests
