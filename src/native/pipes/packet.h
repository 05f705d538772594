// The packet that carries a request or an answer over a named pipe: a head of 16 bytes, little-
// endian, and data. docs/formats/pipe-packet.md tells the format.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace qv::native::pipes {

inline constexpr std::size_t kHeadBytes = 16;
inline constexpr std::size_t kMaxDataBytes = 100000;
inline constexpr std::size_t kMaxPacketBytes = kHeadBytes + kMaxDataBytes;

struct Head {
  std::int32_t request_id = 0;
  double date_days = 0;  // since 30 December 1899
  std::int32_t data_bytes = 0;
};

std::array<std::uint8_t, kHeadBytes> packed_head(const Head& head);
// A field of which not all bytes are there is 0.
Head read_head(std::span<const std::uint8_t> packet);

// What lies behind the head, at most as many bytes as the head tells and as are there. The length
// told must not be negative.
std::span<const std::uint8_t> data_of(std::span<const std::uint8_t> packet, const Head& head);

}  // namespace qv::native::pipes
