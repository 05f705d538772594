// Stored property bags, as files and database fields have them: docs/formats/property-bag-1.md and
// property-bag-2.md tell the formats. No size is believed that the buffer does not hold: a buffer
// that was cut short has a short directory, or short data.
#pragma once

#include <limits>

#include "native/bags/typed_value.h"

namespace qv::native::bags {

// Of the second form; the first has none.
inline constexpr std::array<std::uint8_t, 3> kBagMagic = {'P', 'B', '2'};

enum class BagStatus {
  kDone,
  kNoBag,         // another magic; in the first form, no version in front
  kNegativeSize,  // of the directory; the version holds
  kTooLarge,      // a directory that reaches past position 2^31 - 1; version and directory hold
};

// Positions count from 0.
struct BagParts {
  BagStatus status = BagStatus::kDone;
  std::int32_t version = 0;
  std::size_t directory = 0;
  std::size_t directory_bytes = 0;
  std::size_t data = 0;
  std::size_t data_bytes = 0;
};

namespace stored_bag {

// 0 where the buffer ends before it.
template <ByteSource Source>
std::int32_t long_or_zero(const Source& source, std::size_t at) {
  const bool is_there = at <= source.size() && source.size() - at >= sizeof(std::int32_t);
  return is_there ? read_number<std::int32_t>(source, at) : 0;
}

// What follows the version: size, directory, data.
template <ByteSource Source>
BagParts with_contents(const Source& source, BagParts parts, std::size_t at) {
  const std::int32_t size = long_or_zero(source, at);
  if (size < 0) {
    parts.status = BagStatus::kNegativeSize;
    return parts;
  }
  const auto asked = static_cast<std::size_t>(size);
  parts.directory = std::min(at + sizeof(std::int32_t), source.size());
  parts.directory_bytes = std::min(asked, source.size() - parts.directory);
  parts.data = source.size();
  // The position behind the directory, from 1, is one of 32 bits with a sign.
  const std::size_t before = at + sizeof(std::int32_t) + 1;
  if (asked > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) - before) {
    parts.status = BagStatus::kTooLarge;
    return parts;
  }
  parts.data = parts.directory + parts.directory_bytes;
  parts.data_bytes = source.size() - parts.data;
  return parts;
}

}  // namespace stored_bag

// The second form. The buffer must not be empty: what that means is the caller's to say.
template <ByteSource Source>
BagParts find_bag_2(const Source& source) {
  std::array<std::uint8_t, kBagMagic.size()> magic{};
  if (source.size() >= magic.size()) source.copy(0, magic);
  if (magic != kBagMagic) return {.status = BagStatus::kNoBag};
  constexpr std::size_t kVersion = kBagMagic.size();
  const BagParts parts{.version = stored_bag::long_or_zero(source, kVersion)};
  return stored_bag::with_contents(source, parts, kVersion + sizeof(std::int32_t));
}

// The first form.
template <ByteSource Source>
BagParts find_bag_1(const Source& source) {
  const ValuePlace version = find_value(source, 0);
  if (version.status != ReadStatus::kDone || version.tag != static_cast<std::uint8_t>(Tag::kLong)) {
    return {.status = BagStatus::kNoBag};
  }
  const BagParts parts{.version = read_number<std::int32_t>(source, version.data)};
  return stored_bag::with_contents(source, parts, version.end);
}

}  // namespace qv::native::bags
