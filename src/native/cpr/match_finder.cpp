#include "native/cpr/match_finder.h"

namespace qv::native::cpr {
namespace {

constexpr std::uint32_t kHashFactor = 0x9E3779B1;

// Hash collisions among triples are followed so far; beyond it a triple may pass for a new one.
constexpr int kMostCollisions = 32;

}  // namespace

void MatchFinder::note_pair(std::size_t place) {
  std::uint16_t& head = pair_heads_[text_[place] | unsigned{text_[place + 1]} << 8];
  const std::size_t distance = place - head;
  pairs_[place] = head != kNowhere && distance <= block_format::kPairReach
                      ? static_cast<std::uint16_t>(distance)
                      : std::uint16_t{0};
  head = static_cast<std::uint16_t>(place);
}

void MatchFinder::note_triple(std::size_t place, std::uint32_t bytes) {
  std::uint16_t& head = triple_heads_[(bytes * kHashFactor) >> (32 - kHashBits)];
  triples_[place] = 0;
  std::size_t earlier = head;
  for (int i = 0; i < kMostCollisions && earlier != kNowhere && place - earlier <= kReach; ++i) {
    const std::uint8_t* const there = text_ + earlier;
    if (bytes == (there[0] | unsigned{there[1]} << 8 | unsigned{there[2]} << 16)) {
      triples_[place] = static_cast<std::uint16_t>(place - earlier);
      break;
    }
    earlier = triple_chain_[earlier];
  }
  triple_chain_[place] = head;
  head = static_cast<std::uint16_t>(place);
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
    const auto bytes = load_little_endian<std::uint32_t>(text_ + place);
    note_pair(place);
    note_triple(place, bytes & 0xFFFFFF);
    std::uint16_t& head = heads_[(bytes * kHashFactor) >> (32 - kHashBits)];
    chain_[place] = head;
    head = static_cast<std::uint16_t>(place);
  }
  for (; place < end_; ++place) {
    pairs_[place] = 0;
    triples_[place] = 0;
    const std::size_t left = end_ - place;
    if (left >= 2) note_pair(place);
    if (left >= 3) {
      note_triple(
          place, text_[place] | unsigned{text_[place + 1]} << 8 | unsigned{text_[place + 2]} << 16);
    }
  }
}

}  // namespace qv::native::cpr
