// Typed values: a tag that tells the type, and the value's bytes. docs/formats/typed-buffer.md
// tells the format. Nothing is allocated here: a reader learns where the bytes of a value lie, and
// no length is believed that the buffer does not hold.
#pragma once

#include <optional>

#include "native/bags/byte_source.h"

namespace qv::native::bags {

enum class Tag : std::uint8_t {
  kInteger = 2,
  kLong = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kShortString = 8,  // of an earlier format: read and never written
  kBoolean = 11,
  kByte = 17,
  kArray = 32,
  kString = 255,
};

// Bytes of a value of fixed width, which an array may have as its element; 0 for all other tags.
constexpr std::size_t fixed_width(std::uint8_t tag) {
  switch (static_cast<Tag>(tag)) {
    case Tag::kByte:
      return 1;
    case Tag::kInteger:
    case Tag::kBoolean:
      return 2;
    case Tag::kLong:
    case Tag::kSingle:
      return 4;
    case Tag::kDouble:
    case Tag::kCurrency:
    case Tag::kDate:
      return 8;
    default:
      return 0;
  }
}

enum class ReadStatus {
  kDone,
  kCutShort,  // the buffer ends within the value, or holds none at that place
  kUnknownTag,
  kNegativeLength,  // of a text or of an array's data
};

// Positions count from 0.
struct ValuePlace {
  ReadStatus status = ReadStatus::kDone;
  // Of the value's bytes: a number's image, a text without its length, an array's elements.
  std::size_t data = 0;
  std::size_t data_bytes = 0;
  // How far the reader came: behind the value, or after a failure behind what it could still read.
  std::size_t end = 0;
  std::uint8_t tag = 0;
  // Of an array.
  std::uint8_t element = 0;
  std::size_t dimensions = 0;
  std::size_t bounds = 0;  // where they lie: lower and upper bound of each dimension, 4 bytes each
};

// The value whose tag stands at a position.
template <ByteSource Source>
ValuePlace find_value(const Source& source, std::size_t at);

// How many bytes of data an array of that shape has, with elements of that width: none for a width
// of 0, an upper bound below the lower by more than 1, or more than 2^31 - 1 bytes.
template <ByteSource Source>
std::optional<std::size_t> array_bytes(const Source& source, const ValuePlace& array,
                                       std::size_t element_bytes);

namespace typed_value {

constexpr std::size_t kLargestArray_bytes = 0x7FFFFFFF;

// Reads the parts of a value one after the other, as far as the buffer goes.
template <ByteSource Source>
class Reader {
 public:
  Reader(const Source& source, std::size_t at) : source_(source), at_(at) {}

  std::size_t position() const { return at_; }
  bool has(std::size_t count) const { return count <= source_.size() - at_; }
  template <std::integral Number>
  std::optional<Number> take() {
    if (!has(sizeof(Number))) return std::nullopt;
    const auto number = read_number<Number>(source_, at_);
    at_ += sizeof(Number);
    return number;
  }
  void skip(std::size_t count) { at_ += count; }

 private:
  const Source& source_;
  std::size_t at_;
};

template <class Reader>
ValuePlace failure(const Reader& reader, ReadStatus status) {
  return {.status = status, .end = reader.position()};
}

// The data of a value, where its length is known.
template <class Reader>
ValuePlace with_data(Reader& reader, ValuePlace value, std::optional<std::int32_t> length) {
  if (!length) return failure(reader, ReadStatus::kCutShort);
  if (*length < 0) return failure(reader, ReadStatus::kNegativeLength);
  value.data = reader.position();
  value.data_bytes = static_cast<std::size_t>(*length);
  if (!reader.has(value.data_bytes)) return failure(reader, ReadStatus::kCutShort);
  reader.skip(value.data_bytes);
  value.end = reader.position();
  return value;
}

template <class Reader>
ValuePlace find_array(Reader& reader, ValuePlace value) {
  const auto element = reader.template take<std::uint8_t>();
  const auto dimensions = reader.template take<std::int16_t>();
  if (!element || !dimensions || *dimensions < 1) return failure(reader, ReadStatus::kCutShort);
  value.element = *element;
  value.dimensions = static_cast<std::size_t>(*dimensions);
  value.bounds = reader.position();
  for (std::size_t i = 0; i < value.dimensions; ++i) {
    if (!reader.template take<std::uint64_t>()) return failure(reader, ReadStatus::kCutShort);
  }
  return with_data(reader, value, reader.template take<std::int32_t>());
}

}  // namespace typed_value

template <ByteSource Source>
ValuePlace find_value(const Source& source, std::size_t at) {
  if (at >= source.size()) return {.status = ReadStatus::kCutShort, .end = at};
  typed_value::Reader reader(source, at);
  ValuePlace value{.tag = *reader.template take<std::uint8_t>()};
  switch (static_cast<Tag>(value.tag)) {
    case Tag::kArray:
      return typed_value::find_array(reader, value);
    case Tag::kString:
      return typed_value::with_data(reader, value, reader.template take<std::int32_t>());
    case Tag::kShortString:
      return typed_value::with_data(reader, value, reader.template take<std::int16_t>());
    default:
      break;
  }
  const auto width = static_cast<std::int32_t>(fixed_width(value.tag));
  if (width == 0) return typed_value::failure(reader, ReadStatus::kUnknownTag);
  return typed_value::with_data(reader, value, width);
}

template <ByteSource Source>
std::optional<std::size_t> array_bytes(const Source& source, const ValuePlace& array,
                                       std::size_t element_bytes) {
  if (element_bytes == 0) return std::nullopt;
  std::uint64_t bytes = element_bytes;
  // A dimension of no elements makes an array of none, however large the others are.
  bool is_too_large = false;
  for (std::size_t i = 0; i < array.dimensions; ++i) {
    const std::int64_t lower = read_number<std::int32_t>(source, array.bounds + 8 * i);
    const std::int64_t upper = read_number<std::int32_t>(source, array.bounds + 8 * i + 4);
    if (upper < lower - 1) return std::nullopt;
    const auto count = static_cast<std::uint64_t>(upper - lower + 1);
    if (count == 0) {
      bytes = 0;
      is_too_large = false;
    }
    if (!is_too_large) bytes *= count;
    is_too_large = bytes > typed_value::kLargestArray_bytes;
  }
  if (is_too_large) return std::nullopt;
  return static_cast<std::size_t>(bytes);
}

}  // namespace qv::native::bags
