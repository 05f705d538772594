#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>

namespace qv::native::zlog {

// A bit map is a row of 32-bit words; bit b is bit b % 32 of word b / 32, the lowest being 0. Read
// as bytes the words are the raw image, which is why a little-endian machine is taken for granted.
static_assert(std::endian::native == std::endian::little);

inline constexpr std::int32_t kWordBits = 32;
inline constexpr std::int32_t kMaxBits = std::numeric_limits<std::int32_t>::max();

// Words that hold `bits` bits; 0 for a negative number.
constexpr std::size_t words_for(std::int32_t bits) {
  return bits <= 0 ? 0 : (static_cast<std::size_t>(bits) + 31) / 32;
}

// A bit map wherever it lies, in a BitMap or in memory that an application owns. The two fields
// may disagree, since applications write them one by one: no function reads or writes past `words`
// or finds a bit at or above `bits`.
template <class Word>
struct BasicBitSpan {
  std::span<Word> words;
  std::int32_t bits = 0;

  // Bits that both fields allow, 0 to kMaxBits.
  constexpr std::int32_t limit() const {
    if (bits <= 0) return 0;
    return words.size() < words_for(bits) ? static_cast<std::int32_t>(words.size() * 32) : bits;
  }
  // The words that hold those bits.
  constexpr std::span<Word> used() const { return words.first(words_for(limit())); }

  constexpr operator BasicBitSpan<const Word>() const  // NOLINT(google-explicit-constructor)
      requires(!std::is_const_v<Word>) {
    return {words, bits};
  }
};
using BitSpan = BasicBitSpan<std::uint32_t>;
using ConstBitSpan = BasicBitSpan<const std::uint32_t>;

// Owner of a bit map. The words begin on a cache line and are followed by zeros up to the next
// one, so that they can be read as 64-bit words too. Bits past bits() in the last word are 0, and
// every function here that is given a view of the map leaves them so.
class BitMap {
 public:
  BitMap() = default;
  BitMap(BitMap&& other) noexcept;
  BitMap& operator=(BitMap&& other) noexcept;

  // A map of `bits` clear bits; none when `bits` is negative. Pages of a large map are not touched
  // until they are used. Throws std::bad_alloc.
  static std::optional<BitMap> make(std::int32_t bits);

  std::int32_t bits() const { return bits_; }
  BitSpan view() { return {{words_, words_for(bits_)}, bits_}; }
  ConstBitSpan view() const { return {{words_, words_for(bits_)}, bits_}; }

 private:
  struct Release {
    void operator()(void* memory) const { std::free(memory); }
  };

  std::unique_ptr<void, Release> memory_;
  std::uint32_t* words_ = nullptr;
  std::int32_t bits_ = 0;
};

// A map of `bits` bits that begins with those of `set` that fit; further ones are clear. None when
// `bits` is negative. Throws std::bad_alloc.
std::optional<BitMap> resized(ConstBitSpan set, std::int32_t bits);

}  // namespace qv::native::zlog
