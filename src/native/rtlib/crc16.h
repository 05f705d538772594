#pragma once

#include <cstdint>
#include <span>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// CRC with 16 bits and polynomial 1021 hex, most significant bit first, not reflected, no final
// complement. `start` is the register's first value, so a result chains on as the next start.
// Check value: the digits "123456789" give 29B1 hex from FFFF, 31C3 hex from 0.
//
// Folding by carry-less multiplication after V. Gopal et al., "Fast CRC Computation for Generic
// Polynomials Using PCLMULQDQ Instruction" (Intel, 2009); without it, slicing by 16 after
// M. E. Kounavis and F. L. Berry, "A Systematic Approach to Building High Performance
// Software-based CRC Generators" (2005).
std::uint16_t crc16(std::span<const std::uint8_t> bytes, std::uint16_t start,
                    SimdLevel level = simd_level());

}  // namespace qv::native::rtlib
