#include "native/rtlib/scramble.h"

#include <cstddef>

namespace qv::native::rtlib {

void scramble(std::span<std::uint8_t> bytes, std::int16_t code) {
  if (code == 0) {
    std::uint32_t place = 0;
    for (std::uint8_t& byte : bytes) byte ^= scramble_byte(place++);
    return;
  }
  const auto pattern = static_cast<std::uint16_t>(code);
  const auto low = static_cast<std::uint8_t>(pattern & 0xFF);
  const auto high = pattern < 256 ? low : static_cast<std::uint8_t>(pattern >> 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] ^= (i & 1) == 0 ? low : high;
}

}  // namespace qv::native::rtlib
