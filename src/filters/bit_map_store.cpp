#include "filters/bit_map_store.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "automation/thread_state.h"

namespace qv::filters {
namespace {

using native::zlog::BitMap;
using native::zlog::BitSpan;

struct BitMaps {
  std::unordered_map<Long, BitMap> by_token;
};

BitMaps& maps() { return per_thread<BitMaps>(); }

// Threads count together, so that a record that strays to another thread finds nothing there.
Long next_token() noexcept {
  static std::atomic<std::uint32_t> last{0};
  constexpr std::uint32_t kPositive = 0x7FFFFFFF;
  std::uint32_t token = 0;
  while (token == 0) token = ++last & kPositive;
  return static_cast<Long>(token);
}

BitMap* find(Long token) {
  if (token == 0) return nullptr;
  auto& by_token = maps().by_token;
  const auto found = by_token.find(token);
  return found != by_token.end() ? &found->second : nullptr;
}

// How many of these bytes can be read and written, counted from the first.
std::size_t writable_bytes(const void* start, std::size_t wanted_bytes) noexcept {
  constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE;
  const auto* at = static_cast<const unsigned char*>(start);
  const auto* const end = at + wanted_bytes;
  while (at < end) {
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(at, &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
        (region.Protect & kWritable) == 0 || (region.Protect & PAGE_GUARD) != 0) {
      break;
    }
    at = static_cast<const unsigned char*>(region.BaseAddress) + region.RegionSize;
  }
  return std::min<std::size_t>(
      wanted_bytes, static_cast<std::size_t>(at - static_cast<const unsigned char*>(start)));
}

BitSpan application_bits(const BFILTER& record) noexcept {
  if (sizeof(void*) > sizeof record.Filter || record.Filter == 0 || record.Words <= 0) return {};
  auto* words = reinterpret_cast<std::uint32_t*>(
      static_cast<std::uintptr_t>(static_cast<std::uint32_t>(record.Filter)));
  if (reinterpret_cast<std::uintptr_t>(words) % alignof(std::uint32_t) != 0) return {};
  const auto bytes = static_cast<std::size_t>(record.Words) * sizeof(std::uint32_t);
  return {{words, writable_bytes(words, bytes) / sizeof(std::uint32_t)}, record.Bits};
}

void describe(BFILTER& record, BitMap& map) noexcept {
  const BitSpan bits = map.view();
  record.Bits = bits.bits;
  record.Words = static_cast<Long>(bits.words.size());
  // On 64-bit systems only a mark: an address does not fit.
  record.Filter = static_cast<Long>(
      static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(bits.words.data())));
}

}  // namespace

BitSpan bits_of(const BFILTER& record) {
  if (record.hFilter == 0) return application_bits(record);
  BitMap* map = find(record.hFilter);
  return map != nullptr ? map->view() : BitSpan();
}

bool has_bit_map(const BFILTER& record) {
  return find(record.hFilter) != nullptr || !bits_of(record).words.empty();
}

void adopt(BFILTER& record, BitMap map) {
  auto& by_token = maps().by_token;
  Long token = next_token();
  while (by_token.contains(token)) token = next_token();
  BitMap& kept = by_token.emplace(token, std::move(map)).first->second;
  describe(record, kept);
  record.hFilter = token;
}

void release(const BFILTER& record) noexcept {
  if (record.hFilter != 0) maps().by_token.erase(record.hFilter);
}

bool resize(BFILTER& record, Long bits) {
  BitMap* map = find(record.hFilter);
  if (map == nullptr) return false;
  auto larger = native::zlog::resized(std::as_const(*map).view(), bits);
  if (!larger) return false;
  *map = std::move(*larger);
  describe(record, *map);
  return true;
}

}  // namespace qv::filters
