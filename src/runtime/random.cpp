#include "runtime/random.h"

#include <windows.h>

#include "automation/thread_state.h"

namespace qv {
namespace {

// SplitMix64 (Steele, Lea, Flood: Fast Splittable Pseudorandom Number Generators, 2014): every
// state is a good one, so a seed needs no care.
struct Generator {
  std::uint64_t state = 0;

  std::uint64_t next() noexcept {
    std::uint64_t bits = state += 0x9E3779B97F4A7C15;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    return bits ^ (bits >> 31);
  }
};

}  // namespace

Double Rnd() {
  constexpr int kBits = 53;
  const std::uint64_t bits = per_thread<Generator>().next() >> (64 - kBits);
  return static_cast<Double>(bits) / static_cast<Double>(std::uint64_t{1} << kBits);
}

void Randomize() {
  LARGE_INTEGER ticks;
  QueryPerformanceCounter(&ticks);
  per_thread<Generator>().state ^= static_cast<std::uint64_t>(ticks.QuadPart);
}

}  // namespace qv
