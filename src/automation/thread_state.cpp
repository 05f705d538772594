#include "automation/thread_state.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdlib>

namespace qv::thread_state {
namespace {

using Slots = std::array<Slot, kMaxStates>;

// A fibre-local slot has a callback at the end of a thread and does not keep the library loaded;
// a C++ thread_local with a destructor would.
DWORD fls_index = FLS_OUT_OF_INDEXES;
std::atomic<std::size_t> states{0};

void WINAPI destroy_slots(void* data) noexcept {
  auto* slots = static_cast<Slots*>(data);
  if (slots == nullptr) return;
  for (auto slot = slots->rbegin(); slot != slots->rend(); ++slot) {
    if (slot->state != nullptr) slot->destroy(slot->state);
  }
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
    slots = new Slots();
    FlsSetValue(fls_index, slots);
  }
  return (*slots)[index];
}

bool attach() noexcept {
  fls_index = FlsAlloc(&destroy_slots);
  return fls_index != FLS_OUT_OF_INDEXES;
}

void detach() noexcept { FlsFree(fls_index); }

}  // namespace qv::thread_state
