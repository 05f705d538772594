#include "native/ordered/key_index.h"

#include <utility>

namespace qv::native::ordered {
namespace {

constexpr std::size_t kFewest_buckets = 16;

}  // namespace

void KeyIndex::reserve_one() {
  if (3 * (count_ + 1) <= 2 * buckets_.size()) return;
  std::vector<Bucket> wider(buckets_.empty() ? kFewest_buckets : 2 * buckets_.size());
  const std::vector<Bucket> old = std::exchange(buckets_, std::move(wider));
  count_ = 0;
  for (const Bucket& bucket : old) {
    if (bucket.id != kNoItem) insert(bucket.hash, bucket.id);
  }
}

void KeyIndex::insert(std::uint32_t hash, ItemId id) noexcept {
  std::size_t at = hash & mask();
  while (buckets_[at].id != kNoItem) at = (at + 1) & mask();
  buckets_[at] = {hash, id};
  ++count_;
}

void KeyIndex::erase(std::uint32_t hash, ItemId id) noexcept {
  std::size_t hole = hash & mask();
  while (buckets_[hole].id != id) hole = (hole + 1) & mask();
  for (std::size_t at = (hole + 1) & mask(); buckets_[at].id != kNoItem; at = (at + 1) & mask()) {
    // An entry may move back into the hole unless its own place lies behind the hole.
    const std::size_t from_home = (at - buckets_[at].hash) & mask();
    const std::size_t from_hole = (at - hole) & mask();
    if (from_home >= from_hole) {
      buckets_[hole] = buckets_[at];
      hole = at;
    }
  }
  buckets_[hole] = {};
  --count_;
}

}  // namespace qv::native::ordered
