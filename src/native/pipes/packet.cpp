#include "native/pipes/packet.h"

#include <algorithm>
#include <bit>

namespace qv::native::pipes {
namespace {

constexpr std::size_t kIdAt = 0;
constexpr std::size_t kDateAt = 4;
constexpr std::size_t kLengthAt = 12;

void put(std::uint8_t* target, std::uint64_t value, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) target[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

std::uint64_t field(std::span<const std::uint8_t> packet, std::size_t at, std::size_t bytes) {
  if (packet.size() < at + bytes) return 0;
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes; ++i) value |= std::uint64_t{packet[at + i]} << (8 * i);
  return value;
}

}  // namespace

std::array<std::uint8_t, kHeadBytes> packed_head(const Head& head) {
  std::array<std::uint8_t, kHeadBytes> bytes;
  put(&bytes[kIdAt], static_cast<std::uint32_t>(head.request_id), sizeof head.request_id);
  put(&bytes[kDateAt], std::bit_cast<std::uint64_t>(head.date_days), sizeof head.date_days);
  put(&bytes[kLengthAt], static_cast<std::uint32_t>(head.data_bytes), sizeof head.data_bytes);
  return bytes;
}

Head read_head(std::span<const std::uint8_t> packet) {
  Head head;
  head.request_id = static_cast<std::int32_t>(field(packet, kIdAt, sizeof head.request_id));
  head.date_days = std::bit_cast<double>(field(packet, kDateAt, sizeof head.date_days));
  head.data_bytes = static_cast<std::int32_t>(field(packet, kLengthAt, sizeof head.data_bytes));
  return head;
}

std::span<const std::uint8_t> data_of(std::span<const std::uint8_t> packet, const Head& head) {
  const auto behind = packet.subspan(std::min(kHeadBytes, packet.size()));
  return behind.first(std::min(behind.size(), static_cast<std::size_t>(head.data_bytes)));
}

}  // namespace qv::native::pipes
