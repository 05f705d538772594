#include "automation/thread_state.h"

#include <windows.h>
// winternl.h needs windows.h before it.
#include <winternl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace qv::thread_state {
namespace {

// What a thread has here: the states, and the C++ run time's record of exceptions in flight.
struct Block {
  std::array<Slot, kMaxStates> slots;
  ExceptionState exceptions;
};

constexpr int kMaxPasses = 4;

// A fibre-local slot has a callback at the end of a thread and does not keep the library loaded; a
// C++ thread_local with a destructor would. The block is found by a thread-local slot, though: that
// is asked in every call, and can be read in a nanosecond.
DWORD fls_index = FLS_OUT_OF_INDEXES;
DWORD tls_index = TLS_OUT_OF_INDEXES;
bool is_detaching = false;
std::atomic<std::size_t> states{0};

// Some compilers take a thread's environment, which lies at 0 of its own segment, for an array of
// no elements.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
// Leaves the last error alone.
Block* kept_block() noexcept {
  if (tls_index < TLS_MINIMUM_AVAILABLE) {
    return static_cast<Block*>(NtCurrentTeb()->TlsSlots[tls_index]);
  }
  const DWORD last_error = GetLastError();  // asking for the slot clears it
  auto* block = static_cast<Block*>(TlsGetValue(tls_index));
  SetLastError(last_error);
  return block;
}
#pragma GCC diagnostic pop

void WINAPI destroy_block(void* data) noexcept {
  auto* block = static_cast<Block*>(data);
  if (block == nullptr) return;
  Block* const own = kept_block();
  // A fibre may be deleted by another thread than made the block: that one still uses it.
  if (own != block && !is_detaching) return;
  // Ending a state may run foreign code (an object that a Variant held) which comes back here, so
  // the block stays reachable, and what it makes anew is ended too.
  TlsSetValue(tls_index, block);
  for (int pass = 0; pass < kMaxPasses; ++pass) {
    bool found = false;
    for (std::size_t last = block->slots.size(); last > 0; --last) {
      Slot& slot = block->slots[last - 1];
      if (slot.state == nullptr) continue;
      found = true;
      slot.destroy(std::exchange(slot.state, nullptr));
    }
    if (!found) break;
  }
  TlsSetValue(tls_index, own == block ? nullptr : own);
  delete block;
}

// For threads that have no memory for a block and must report just that: one a thread, until there
// is memory.
struct Reserve {
  std::atomic<DWORD> thread{0};
  ExceptionState exceptions{};
};
std::array<Reserve, 64> reserves;

Reserve* reserve_of(DWORD thread) noexcept {
  const auto found = std::ranges::find_if(
      reserves, [&](const Reserve& reserve) { return reserve.thread == thread; });
  return found != reserves.end() ? &*found : nullptr;
}

ExceptionState& reserve_exceptions() noexcept {
  const DWORD thread = GetCurrentThreadId();
  if (Reserve* own = reserve_of(thread)) return own->exceptions;
  for (Reserve& reserve : reserves) {
    DWORD nobody = 0;
    if (reserve.thread.compare_exchange_strong(nobody, thread)) return reserve.exceptions;
  }
  std::abort();
}

// A thread's first block takes over what it kept in reserve.
Block* make_block() noexcept {
  auto block = std::unique_ptr<Block>(new (std::nothrow) Block());
  if (block == nullptr || TlsSetValue(tls_index, block.get()) == FALSE) return nullptr;
  if (FlsSetValue(fls_index, block.get()) == FALSE) {
    TlsSetValue(tls_index, nullptr);
    return nullptr;
  }
  if (Reserve* reserve = reserve_of(GetCurrentThreadId())) {
    block->exceptions = std::exchange(reserve->exceptions, {});
    reserve->thread = 0;
  }
  return block.release();
}

// This thread's block, null without memory for a first one.
Block* thread_block() noexcept {
  Block* block = kept_block();
  if (block != nullptr) return block;
  const DWORD last_error = GetLastError();
  block = make_block();
  SetLastError(last_error);
  return block;
}

}  // namespace

std::size_t next_index() noexcept {
  const std::size_t index = states++;
  if (index >= kMaxStates) std::abort();  // a module was added without raising kMaxStates
  return index;
}

Slot& slot(std::size_t index) {
  Block* block = thread_block();
  if (block == nullptr) throw std::bad_alloc();
  return block->slots[index];
}

ExceptionState& exceptions() noexcept {
  Block* block = thread_block();
  return block != nullptr ? block->exceptions : reserve_exceptions();
}

bool attach() noexcept {
  tls_index = TlsAlloc();
  if (tls_index == TLS_OUT_OF_INDEXES) return false;
  fls_index = FlsAlloc(&destroy_block);
  if (fls_index != FLS_OUT_OF_INDEXES) return true;
  TlsFree(tls_index);
  return false;
}

void detach() noexcept {
  is_detaching = true;
  FlsFree(fls_index);
  TlsFree(tls_index);
}

}  // namespace qv::thread_state
