#include "native/cpr/match_finder.h"

namespace qv::native::cpr {
namespace {

template <unsigned hash_bits>
std::size_t hash(std::uint32_t bytes) {
  return (bytes * 0x9E3779B1u) >> (32 - hash_bits);
}

std::uint16_t exchange(std::uint16_t& head, std::size_t place) {
  const std::uint16_t before = head;
  head = static_cast<std::uint16_t>(place);
  return before;
}

}  // namespace

// `bytes` begins with the text at the place, of which `count` bytes are there.
void MatchFinder::note(std::size_t place, std::uint32_t bytes, unsigned count) {
  if (count >= 2) pairs_[place] = exchange(pair_heads_[bytes & 0xFFFF], place);
  if (count >= 3) {
    triples_[place] = exchange(triple_heads_[hash<kHashBits>(bytes & 0xFFFFFF)], place);
  }
  if (count >= 4) chain_[place] = exchange(heads_[hash<kHashBits>(bytes)], place);
}

void MatchFinder::load(std::span<const std::uint8_t> text, std::size_t begin, std::size_t size) {
  piece_ = std::min(begin, kReach);
  text_ = text.data() + (begin - piece_);
  end_ = piece_ + size;
  length_ = 0;
  pair_heads_.fill(kNowhere);
  triple_heads_.fill(kNowhere);
  heads_.fill(kNowhere);
  std::size_t place = 0;
  for (; place + 4 <= end_; ++place) {
    note(place, load_little_endian<std::uint32_t>(text_ + place), 4);
  }
  for (; place < end_; ++place) {
    const auto count = static_cast<unsigned>(end_ - place);
    std::uint32_t bytes = 0;
    for (unsigned i = 0; i < count; ++i) bytes |= std::uint32_t{text_[place + i]} << (8 * i);
    note(place, bytes, count);
  }
}

std::size_t MatchFinder::repeats_before(std::size_t end) const {
  const std::uint8_t* const behind = text_ + piece_ + end;
  const std::size_t most = std::min(end, piece_ + end - distance_);
  std::size_t count = 0;
  while (count < most && *(behind - 1 - count) == *(behind - 1 - count - distance_)) ++count;
  return count;
}

}  // namespace qv::native::cpr
