#include "automation/thread_state.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace qv::thread_state {
namespace {

using Slots = std::array<Slot, kMaxStates>;

constexpr int kMaxPasses = 4;

// A fibre-local slot has a callback at the end of a thread and does not keep the library loaded;
// a C++ thread_local with a destructor would.
DWORD fls_index = FLS_OUT_OF_INDEXES;
std::atomic<std::size_t> states{0};

void WINAPI destroy_slots(void* data) noexcept {
  auto* slots = static_cast<Slots*>(data);
  if (slots == nullptr) return;
  // Ending a state may run foreign code (an object that a Variant held) which comes back here, so
  // the slots stay reachable, and what it makes anew is ended too.
  void* const others = FlsGetValue(fls_index);
  FlsSetValue(fls_index, slots);
  for (int pass = 0; pass < kMaxPasses; ++pass) {
    bool found = false;
    for (auto slot = slots->rbegin(); slot != slots->rend(); ++slot) {
      if (slot->state == nullptr) continue;
      found = true;
      slot->destroy(std::exchange(slot->state, nullptr));
    }
    if (!found) break;
  }
  FlsSetValue(fls_index, others == slots ? nullptr : others);
  delete slots;
}

}  // namespace

std::size_t next_index() noexcept {
  const std::size_t index = states++;
  if (index >= kMaxStates) std::abort();  // a module was added without raising kMaxStates
  return index;
}

Slot& slot(std::size_t index) {
  auto* slots = static_cast<Slots*>(FlsGetValue(fls_index));
  if (slots == nullptr) {
    auto fresh = std::make_unique<Slots>();
    if (FlsSetValue(fls_index, fresh.get()) == FALSE) throw std::bad_alloc();
    slots = fresh.release();
  }
  return (*slots)[index];
}

bool attach() noexcept {
  fls_index = FlsAlloc(&destroy_slots);
  return fls_index != FLS_OUT_OF_INDEXES;
}

void detach() noexcept { FlsFree(fls_index); }

}  // namespace qv::thread_state
