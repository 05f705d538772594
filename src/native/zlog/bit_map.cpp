#include "native/zlog/bit_map.h"

#include <algorithm>
#include <new>
#include <utility>

#include "native/zlog/bit_algebra.h"

namespace qv::native::zlog {
namespace {

constexpr std::size_t kCacheLineBytes = 64;

}  // namespace

BitMap::BitMap(BitMap&& other) noexcept
    : memory_(std::move(other.memory_)),
      words_(std::exchange(other.words_, nullptr)),
      bits_(std::exchange(other.bits_, 0)) {}

BitMap& BitMap::operator=(BitMap&& other) noexcept {
  memory_ = std::move(other.memory_);
  words_ = std::exchange(other.words_, nullptr);
  bits_ = std::exchange(other.bits_, 0);
  return *this;
}

std::optional<BitMap> BitMap::make(std::int32_t bits) {
  if (bits < 0) return std::nullopt;
  BitMap map;
  if (bits == 0) return map;
  const std::size_t bytes = words_for(bits) * sizeof(std::uint32_t);
  const std::size_t lines = (bytes + kCacheLineBytes - 1) / kCacheLineBytes;
  // calloc takes large blocks from the system, which hands out zeroed pages as they are touched;
  // an aligned allocation would have to write every page here.
  std::size_t room = (lines + 1) * kCacheLineBytes;
  map.memory_.reset(std::calloc(room, 1));
  if (!map.memory_) throw std::bad_alloc();
  void* start = map.memory_.get();
  map.words_ = static_cast<std::uint32_t*>(
      std::align(kCacheLineBytes, lines * kCacheLineBytes, start, room));
  map.bits_ = bits;
  return map;
}

std::optional<BitMap> resized(ConstBitSpan set, std::int32_t bits) {
  std::optional<BitMap> map = BitMap::make(bits);
  if (!map) return std::nullopt;
  const BitSpan target = map->view();
  const auto source = set.used();
  std::copy_n(source.begin(), std::min(source.size(), target.words.size()), target.words.begin());
  trim({target.words, std::min(set.limit(), bits)});
  return map;
}

}  // namespace qv::native::zlog
