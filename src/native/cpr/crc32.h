#pragma once

#include <cstdint>
#include <span>

namespace qv::native::cpr {

// CRC-32 with the reflected polynomial EDB88320, as a raw register: what comes out can go in again,
// so that a text may be fed in any number of pieces. Nothing is complemented; the customary CRC-32
// of a text is the complement of the register that began at FFFFFFFF. Never fails.
std::uint32_t crc32_update(std::uint32_t register_value, std::span<const std::uint8_t> bytes);

// The same by tables alone, whatever the processor offers.
std::uint32_t crc32_update_by_tables(std::uint32_t register_value,
                                     std::span<const std::uint8_t> bytes);

}  // namespace qv::native::cpr
