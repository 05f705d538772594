#pragma once

namespace qv::native::rtlib {

// What the processor at hand offers, from least to most. kAvx2 also stands for carry-less
// multiplication (PCLMULQDQ); kAvx512 for F, BW, VL, VBMI and VPCLMULQDQ together.
enum class SimdLevel { kPortable, kAvx2, kAvx512 };

// The best level of this processor under this operating system. Every function that takes a level
// gives the same result at each; tests pass lower ones, nobody may pass a higher one.
inline SimdLevel simd_level() {
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("pclmul")) {
    return SimdLevel::kPortable;
  }
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
      __builtin_cpu_supports("vpclmulqdq")) {
    return SimdLevel::kAvx512;
  }
  return SimdLevel::kAvx2;
}

}  // namespace qv::native::rtlib
