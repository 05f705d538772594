// From the hash of a key to the item that has it: a table of open addressing with linear probing,
// entries moved back on erasure, so that nothing is left behind by what is gone (Knuth, The Art of
// Computer Programming 3, 6.4, algorithm R).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv::native::ordered {

// Number of an item, the same for as long as the item is in.
using ItemId = std::uint32_t;
inline constexpr ItemId kNoItem = 0xFFFFFFFF;

class KeyIndex {
 public:
  // The item of that hash for which is_it(id) holds, or kNoItem.
  template <class IsIt>
  ItemId find(std::uint32_t hash, IsIt&& is_it) const {
    if (buckets_.empty()) return kNoItem;
    for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
      const Bucket& bucket = buckets_[at];
      if (bucket.id == kNoItem) return kNoItem;
      if (bucket.hash == hash && is_it(bucket.id)) return bucket.id;
    }
  }
  // Makes room for one more, so that the next insert() can't fail.
  void reserve_one();
  void insert(std::uint32_t hash, ItemId id) noexcept;
  // The item must be there.
  void erase(std::uint32_t hash, ItemId id) noexcept;

 private:
  struct Bucket {
    std::uint32_t hash = 0;
    ItemId id = kNoItem;
  };

  std::size_t mask() const noexcept { return buckets_.size() - 1; }

  std::vector<Bucket> buckets_;  // a power of two of them, at most two thirds in use
  std::size_t count_ = 0;
};

}  // namespace qv::native::ordered
