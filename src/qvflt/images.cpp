#include "qvflt/images.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "console/program.h"
#include "native/zlog/bit_algebra.h"
#include "native/zlog/raw_image.h"

namespace qv::qvflt {
namespace {

using namespace native::zlog;
using console::Failure;
using native::cpr::ByteSink;
using native::cpr::ByteSource;

bool read_all(ByteSource& source, std::span<std::uint8_t> bytes) {
  return source.read(bytes) == bytes.size();
}

bool pass_over(ByteSource& source, std::uint64_t bytes) {
  std::array<std::uint8_t, 1U << 15> piece;
  while (bytes > 0) {
    const auto some = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, piece.size()));
    if (!read_all(source, std::span(piece).first(some))) return false;
    bytes -= some;
  }
  return true;
}

bool is_row_of_older_images(ByteSource& source, std::array<std::uint8_t, kOlderImageHeadBytes> head,
                            std::uint64_t left_bytes) {
  while (true) {
    const auto bits = read_older_image_head(head);
    if (!bits || raw_image_bytes(*bits) > left_bytes) return false;
    if (!pass_over(source, raw_image_bytes(*bits))) return false;
    left_bytes -= raw_image_bytes(*bits);
    if (left_bytes == 0) return true;
    if (left_bytes < head.size() || !read_all(source, head)) return false;
    left_bytes -= head.size();
  }
}

}  // namespace

ImageReader::ImageReader(ByteSource& source, std::uint64_t length_bytes, Kind kind,
                         std::optional<std::int32_t> raw_bits)
    : source_(source), length_bytes_(length_bytes), kind_(kind), raw_bits_(raw_bits) {}

std::optional<Image> ImageReader::next() {
  const std::uint64_t start = position_bytes_;
  if (has_begun_ && left() == 0) return std::nullopt;
  has_begun_ = true;
  Image image = kind_ == Kind::saved   ? read_saved()
                : kind_ == Kind::older ? read_older()
                                       : read_raw();
  image.kind = kind_;
  image.offset_bytes = start;
  image.size_bytes = position_bytes_ - start;
  return image;
}

void ImageReader::need(std::uint64_t bytes) const {
  if (bytes > left()) throw Failure("the file ends within it");
}

void ImageReader::read(std::span<std::uint8_t> bytes) {
  need(bytes.size());
  if (!read_all(source_, bytes)) throw Failure("the file can't be read");
  position_bytes_ += bytes.size();
}

Image ImageReader::read_saved() {
  std::array<std::uint8_t, kImageHeadBytes> bytes;
  read(bytes);
  const auto head = read_image_head(bytes);
  if (!head) throw Failure("its head is none, or is damaged");
  need(head->body_bytes);
  ImageDecoder decoder(*head);
  std::vector<std::uint32_t> scratch(kImageScratchWords);
  for (auto room = decoder.room(scratch); !room.empty(); room = decoder.room(scratch)) {
    read(room);
    if (!decoder.take(room)) throw Failure("it is damaged");
  }
  auto map = decoder.finish();
  if (!map) throw Failure("it is damaged: its checksum is wrong");
  Image image;
  image.body = head->body;
  // A few records can stand for a map that is large: it is not looked through for them.
  image.records = head->body == ImageBody::kBitNumbers ? head->body_bytes / sizeof(std::uint32_t)
                                                       : count(std::as_const(*map).view().words);
  image.map = std::move(*map);
  return image;
}

Image ImageReader::read_older() {
  std::array<std::uint8_t, kOlderImageHeadBytes> bytes;
  read(bytes);
  const auto bits = read_older_image_head(bytes);
  if (!bits) throw Failure("its number of bits is negative");
  need(raw_image_bytes(*bits));
  Image image;
  image.map = *BitMap::make(*bits);
  read(raw_image_of(image.map.view()));
  trim(image.map.view());
  image.records = count(std::as_const(image.map).view().words);
  return image;
}

Image ImageReader::read_raw() {
  constexpr std::uint64_t kBitsPerByte = 8;
  if (!raw_bits_ && length_bytes_ > kMaxBits / kBitsPerByte) {
    throw Failure("it has more bits than a filter can have");
  }
  const auto bits =
      raw_bits_ ? *raw_bits_ : static_cast<std::int32_t>(length_bytes_ * kBitsPerByte);
  if (raw_image_bytes(bits) != length_bytes_) {
    throw Failure("a raw image of " + std::to_string(bits) + " bits has " +
                  std::to_string(raw_image_bytes(bits)) + " bytes, and the file " +
                  std::to_string(length_bytes_));
  }
  Image image;
  image.map = *BitMap::make(bits);
  read(raw_image_of(image.map.view()));
  trim(image.map.view());
  image.records = count(std::as_const(image.map).view().words);
  return image;
}

std::optional<Kind> recognised(ByteSource& source, std::uint64_t length_bytes) {
  std::array<std::uint8_t, kOlderImageHeadBytes> start;
  if (length_bytes < start.size() || !read_all(source, start)) return std::nullopt;
  if (std::ranges::equal(start, kImageMagic)) return Kind::saved;
  if (is_row_of_older_images(source, start, length_bytes - start.size())) return Kind::older;
  return std::nullopt;
}

bool write_image(ByteSink& sink, Kind kind, ConstBitSpan set, BodyChoice choice) {
  if (kind == Kind::raw) return sink.write(raw_image_of(set));
  if (kind == Kind::older) {
    return sink.write(write_older_image_head(set.bits)) && sink.write(raw_image_of(set));
  }
  ImageEncoder encoder(set, choice);
  if (!sink.write(write_image_head(encoder.head()))) return false;
  std::vector<std::uint32_t> scratch(kImageScratchWords);
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    if (!sink.write(piece)) return false;
  }
  return true;
}

}  // namespace qv::qvflt
