// The images of filters in a file, one behind the other; docs/formats has the three kinds byte by
// byte.
#pragma once

#include <cstdint>
#include <optional>

#include "native/cpr/byte_stream.h"
#include "native/zlog/filter_image.h"

namespace qv::qvflt {

enum class Kind { saved, older, raw };

struct Image {
  Kind kind = Kind::saved;
  native::zlog::ImageBody body = native::zlog::ImageBody::kWords;  // of a saved one
  std::uint64_t offset_bytes = 0;                                  // in the file
  std::uint64_t size_bytes = 0;
  std::uint64_t records = 0;  // bits that are set
  native::zlog::BitMap map;
};

// Reads images from a source that has `length_bytes`, and believes nothing beyond that. The
// functions throw Failure, for the user.
class ImageReader {
 public:
  // A raw image is all of the source, and has `raw_bits` bits, or else 8 a byte.
  ImageReader(native::cpr::ByteSource& source, std::uint64_t length_bytes, Kind kind,
              std::optional<std::int32_t> raw_bits);

  // Nothing behind the last one; a raw image is the only one.
  std::optional<Image> next();

 private:
  Image read_saved();
  Image read_older();
  Image read_raw();
  void read(std::span<std::uint8_t> bytes);
  // Fails where fewer bytes are left.
  void need(std::uint64_t bytes) const;
  std::uint64_t left() const { return length_bytes_ - position_bytes_; }

  native::cpr::ByteSource& source_;
  std::uint64_t length_bytes_;
  std::uint64_t position_bytes_ = 0;
  Kind kind_;
  std::optional<std::int32_t> raw_bits_;
  bool has_begun_ = false;
};

// What the source, read from its first byte on, looks like: saved images by their magic, older ones
// by their lengths, which end where the source does. Nothing else is told by its bytes.
std::optional<Kind> recognised(native::cpr::ByteSource& source, std::uint64_t length_bytes);

// Writes the image. `choice` is for a saved one. False where the sink fails.
bool write_image(native::cpr::ByteSink& sink, Kind kind, native::zlog::ConstBitSpan set,
                 native::zlog::BodyChoice choice);

}  // namespace qv::qvflt
