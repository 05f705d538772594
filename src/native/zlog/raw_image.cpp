#include "native/zlog/raw_image.h"

#include <algorithm>
#include <cstring>

#include "native/zlog/bit_algebra.h"

namespace qv::native::zlog {

std::span<std::uint8_t> raw_image_of(BitSpan set) {
  return {reinterpret_cast<std::uint8_t*>(set.words.data()), raw_image_bytes(set.limit())};
}

std::span<const std::uint8_t> raw_image_of(ConstBitSpan set) {
  return {reinterpret_cast<const std::uint8_t*>(set.words.data()), raw_image_bytes(set.limit())};
}

bool copy_to_raw_image(ConstBitSpan set, std::span<std::uint8_t> image) {
  const auto bytes = raw_image_of(set);
  if (image.size() < bytes.size()) return false;
  std::ranges::copy(bytes, image.begin());
  if (const int last_bits = set.limit() % 8; last_bits != 0) {
    image[bytes.size() - 1] &= static_cast<std::uint8_t>((1 << last_bits) - 1);
  }
  return true;
}

std::optional<BitMap> from_raw_image(std::span<const std::uint8_t> image) {
  if (image.size() > static_cast<std::size_t>(kMaxBits / 8)) return std::nullopt;
  std::optional<BitMap> map = BitMap::make(static_cast<std::int32_t>(image.size() * 8));
  std::ranges::copy(image, raw_image_of(map->view()).begin());
  return map;
}

std::optional<std::int32_t> read_older_image_head(
    std::span<const std::uint8_t, kOlderImageHeadBytes> bytes) {
  std::int32_t bits;
  std::memcpy(&bits, bytes.data(), sizeof bits);
  if (bits < 0) return std::nullopt;
  return bits;
}

std::array<std::uint8_t, kOlderImageHeadBytes> write_older_image_head(std::int32_t bits) {
  return std::bit_cast<std::array<std::uint8_t, kOlderImageHeadBytes>>(bits);
}

}  // namespace qv::native::zlog
