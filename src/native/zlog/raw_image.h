#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// The raw image of a set is its bits alone, bit 0 being the lowest of the first byte; byte by byte
// in docs/formats/filter-raw-image.md. The older saved image is one number and a raw image: in
// docs/formats/filter-image-older.md.

// Bytes of the raw image of a set of `bits` bits; 0 for a negative number.
constexpr std::size_t raw_image_bytes(std::int32_t bits) {
  return bits <= 0 ? 0 : (static_cast<std::size_t>(bits) + 7) / 8;
}

// The raw image in place, of raw_image_bytes(set.limit()) bytes. Who writes through the first
// calls trim() afterwards.
std::span<std::uint8_t> raw_image_of(BitSpan set);
std::span<const std::uint8_t> raw_image_of(ConstBitSpan set);

// Copies the raw image to the beginning of `image`, bits past set.bits as 0. False, and nothing
// written, when it does not fit.
bool copy_to_raw_image(ConstBitSpan set, std::span<std::uint8_t> image);

// A set of 8 bits for each byte of `image`; none when those are too many. Throws std::bad_alloc.
std::optional<BitMap> from_raw_image(std::span<const std::uint8_t> image);

// The older saved image: this head, then raw_image_bytes(bits) bytes. There is no checksum, so who
// knows how many bytes follow the head compares them before making a bit map of that size.
inline constexpr std::size_t kOlderImageHeadBytes = 4;

// The number of bits; none when it is negative.
std::optional<std::int32_t> read_older_image_head(
    std::span<const std::uint8_t, kOlderImageHeadBytes> bytes);

std::array<std::uint8_t, kOlderImageHeadBytes> write_older_image_head(std::int32_t bits);

}  // namespace qv::native::zlog
