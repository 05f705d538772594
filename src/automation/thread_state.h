// State that exists once per thread. Each module keeps a struct of its own and reaches it by
// per_thread<ItsState>(): zeroed when a thread first asks, gone when the thread ends or the library
// is unloaded.
#pragma once

#include <cstddef>

namespace qv {
namespace thread_state {

inline constexpr std::size_t kMaxStates = 16;
using Destroy = void (*)(void*);

// One more kind of state: an index for slot().
std::size_t next_index() noexcept;

struct Slot {
  void* state = nullptr;
  Destroy destroy = nullptr;
};
// This thread's slot of that index. Raises run-time error 7 without memory.
Slot& slot(std::size_t index);

// The C++ run time's record of the exceptions that a thread is handling.
struct ExceptionState {
  void* caught = nullptr;
  unsigned int uncaught = 0;
};
ExceptionState& exceptions() noexcept;

// The life of the mechanism is the life of the loaded library.
bool attach() noexcept;
void detach() noexcept;

template <class State>
inline const std::size_t index_of = next_index();
}  // namespace thread_state

template <class State>
State& per_thread() {
  thread_state::Slot& slot = thread_state::slot(thread_state::index_of<State>);
  if (slot.state == nullptr) {
    slot.state = new State();
    slot.destroy = [](void* state) { delete static_cast<State*>(state); };
  }
  return *static_cast<State*>(slot.state);
}

}  // namespace qv
