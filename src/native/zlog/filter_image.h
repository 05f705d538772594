#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// The saved image of a filter, byte by byte in docs/formats/filter-image.md: a head of fixed size,
// which tells how long the body is, then the body. It is written and read piece by piece, so that
// neither side holds a second copy of the bit map.

inline constexpr std::size_t kImageHeadBytes = 24;
inline constexpr std::array<std::uint8_t, 4> kImageMagic = {'Q', 'V', 'B', 'F'};  // its first bytes

enum class ImageBody : std::uint16_t {
  kWords = 0,       // all words of the bit map
  kBitNumbers = 1,  // the numbers of the set bits, ascending, 4 bytes each
};

struct ImageHead {
  std::int32_t bits = 0;
  ImageBody body = ImageBody::kWords;
  std::uint32_t body_bytes = 0;
  std::uint32_t body_crc = 0;

  bool operator==(const ImageHead&) const = default;
};

// The head that `bytes` hold; none when its checksum, magic, layout or kind is wrong, or when the
// body's length is not one that `bits` allow. So it is safe to believe what it says; whoever knows
// how many bytes follow does well to compare them with body_bytes before decoding.
std::optional<ImageHead> read_image_head(std::span<const std::uint8_t, kImageHeadBytes> bytes);

std::array<std::uint8_t, kImageHeadBytes> write_image_head(const ImageHead& head);

// Smallest scratch that an encoder or a decoder works with, and a size that makes it fast.
inline constexpr std::size_t kMinImageScratchWords = 64;
inline constexpr std::size_t kImageScratchWords = std::size_t{1} << 14;

enum class BodyChoice { shorter, words };

// Gives the image of a set. The set must stay as it is until the last piece; trailing bits and
// disagreeing fields of a set that an application owns do no harm. Copies go on where the original
// stands. Allocates nothing.
class ImageEncoder {
 public:
  // Decides the kind of body: bit numbers when they take less room than the words and the choice is
  // free.
  explicit ImageEncoder(ConstBitSpan set, BodyChoice choice = BodyChoice::shorter);

  // Asked before the body is through, this makes a pass over the rest of the body for its checksum;
  // asked at its end, it costs nothing. So a writer that can go back and fill in the head later
  // is the faster one.
  ImageHead head() const;

  // The next piece of the body, empty at the end. It lies in `scratch` or in the bit map, and is
  // good until the next call. `scratch` has at least kMinImageScratchWords.
  std::span<const std::uint8_t> next(std::span<std::uint32_t> scratch);

 private:
  std::span<const std::uint8_t> next_words(std::span<std::uint32_t> scratch);
  std::span<const std::uint8_t> next_bit_numbers(std::span<std::uint32_t> scratch);

  ConstBitSpan set_;
  ImageHead head_;
  std::size_t at_word_ = 0;
  std::uint32_t crc_register_;
};

// Takes the body that belongs to a head, and makes the bit map.
//
//   ImageDecoder decoder(head);
//   while (true) {
//     const auto room = decoder.room(scratch);
//     if (room.empty()) break;
//     ... read exactly room.size() bytes into room ...
//     if (!decoder.take(room)) fail;
//   }
//   std::optional<BitMap> map = decoder.finish();
class ImageDecoder {
 public:
  // `head` comes from read_image_head. Throws std::bad_alloc.
  explicit ImageDecoder(const ImageHead& head);

  // Where the next bytes of the body go, empty at its end: into the bit map itself or into
  // `scratch`, which has at least kMinImageScratchWords.
  std::span<std::uint8_t> room(std::span<std::uint32_t> scratch);

  // Takes what has been put into all of the room. False when it can't be part of such an image.
  bool take(std::span<const std::uint8_t> piece);

  // The bit map; none when the body is not through, or damaged. Call once.
  std::optional<BitMap> finish();

 private:
  ImageHead head_;
  BitMap map_;
  std::uint32_t taken_bytes_ = 0;
  std::int64_t last_bit_ = -1;
  std::uint32_t crc_register_;
};

}  // namespace qv::native::zlog
