#pragma once

#include <vector>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// Every level that this processor has, for tests that hold them against one another.
inline std::vector<SimdLevel> simd_levels() {
  std::vector<SimdLevel> levels;
  for (const SimdLevel level : {SimdLevel::kPortable, SimdLevel::kAvx2, SimdLevel::kAvx512}) {
    if (level <= simd_level()) levels.push_back(level);
  }
  return levels;
}

}  // namespace qv::native::rtlib
