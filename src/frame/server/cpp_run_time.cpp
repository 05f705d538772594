// What the C++ run time asks of a system, for a library that comes and goes. The compiler's own
// thread library answers with slots of the system's and blocks of memory, none of which it gives
// back: a host that loads and unloads the library a thousand times would be out of slots. Here the
// system's own locks answer, which own nothing, and the thread's block that the library has anyway.
// Defining these functions keeps the thread library out.
#include "frame/server/cpp_run_time.h"

#include <windows.h>
// pthread.h needs windows.h before it.
#include <pthread.h>

#include <cxxabi.h>

#include "automation/thread_state.h"

namespace __gnu_cxx {
// Gives back the memory in which exceptions are made when there is no other.
void __freeres();
}  // namespace __gnu_cxx

namespace __cxxabiv1 {

// The layout that the C++ run time's binary interface gives it.
struct __cxa_eh_globals : qv::thread_state::ExceptionState {};

extern "C" {
__cxa_eh_globals* __cxa_get_globals() noexcept {
  return static_cast<__cxa_eh_globals*>(&qv::thread_state::exceptions());
}
__cxa_eh_globals* __cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }
}

}  // namespace __cxxabiv1

namespace {

static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK) &&
              sizeof(pthread_cond_t) == sizeof(CONDITION_VARIABLE));

// The system's locks begin as zero, the thread library's static ones with marks of their kinds.
// (The recursive kind is never taken twice by the run time.)
template <class Native, class Portable>
Native* native(Portable* portable) noexcept {
  constexpr INT_PTR kMarks[] = {GENERIC_INITIALIZER, GENERIC_RECURSIVE_INITIALIZER};
  for (const INT_PTR mark : kMarks) {
    InterlockedCompareExchangePointer(reinterpret_cast<void**>(portable), nullptr,
                                      reinterpret_cast<void*>(mark));
  }
  return reinterpret_cast<Native*>(portable);
}

SRWLOCK once = SRWLOCK_INIT;

}  // namespace

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
  *mutex = 0;  // NOLINT(misc-non-copyable-objects): a number here
  return 0;
}
int pthread_mutex_destroy(pthread_mutex_t*) { return 0; }
int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(native<SRWLOCK>(mutex));
  return 0;
}
int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(native<SRWLOCK>(mutex));
  return 0;
}
int pthread_cond_wait(pthread_cond_t* cv, pthread_mutex_t* external_mutex) {
  SleepConditionVariableSRW(native<CONDITION_VARIABLE>(cv), native<SRWLOCK>(external_mutex),
                            INFINITE, 0);
  return 0;
}
int pthread_cond_broadcast(pthread_cond_t* cv) {
  WakeAllConditionVariable(native<CONDITION_VARIABLE>(cv));
  return 0;
}
// What the run time sets up once are its mutexes and tables, one without the other.
int pthread_once(pthread_once_t* o, void (*func)()) {
  if (__atomic_load_n(o, __ATOMIC_ACQUIRE) != 0) return 0;
  AcquireSRWLockExclusive(&once);
  if (*o == 0) {
    func();
    __atomic_store_n(o, 1, __ATOMIC_RELEASE);
  }
  ReleaseSRWLockExclusive(&once);
  return 0;
}
}

namespace qv::cpp_run_time {

void detach() noexcept { __gnu_cxx::__freeres(); }

}  // namespace qv::cpp_run_time
