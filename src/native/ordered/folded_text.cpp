#include "native/ordered/folded_text.h"

#include <array>
#include <bit>
#include <cstring>

namespace qv::native::ordered {
namespace {

// Texts are taken four characters at a time, as one number.
constexpr std::size_t kStep = 4;

std::uint64_t every(std::uint16_t unit) { return unit * std::uint64_t{0x0001000100010001}; }

// Copying is what makes this right for callers whose characters are of another 16-bit type.
std::uint64_t load(const char16_t* text, std::size_t count) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, count * sizeof(char16_t));
  return word;
}

std::uint64_t fold_by_character(std::uint64_t word, FoldCharacter fold) noexcept {
  auto units = std::bit_cast<std::array<char16_t, kStep>>(word);
  for (char16_t& unit : units) {
    if (unit >= 0x80) {
      unit = fold(unit);
    } else if (unit >= u'a' && unit <= u'z') {
      unit = static_cast<char16_t>(unit - 0x20);
    }
  }
  return std::bit_cast<std::uint64_t>(units);
}

std::uint64_t folded(std::uint64_t word, FoldCharacter fold) noexcept {
  if ((word & every(0xFF80)) != 0) return fold_by_character(word, fold);
  // Every unit is below 0x80, so a sum leaves its bit 7 set where the limit is reached, and never
  // runs over into the next unit.
  const std::uint64_t from_a = word + every(0x80 - u'a');
  const std::uint64_t past_z = word + every(0x7F - u'z');
  return word ^ ((from_a & ~past_z & every(0x80)) >> 2);
}

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * kFactor;
  return hash ^ (hash >> 32);
}

bool equal_words(std::uint64_t a, std::uint64_t b, FoldCharacter fold) noexcept {
  return a == b || folded(a, fold) == folded(b, fold);
}

}  // namespace

std::uint32_t folded_hash(std::u16string_view text, FoldCharacter fold) noexcept {
  std::uint64_t hash = mixed(0, text.size());
  std::size_t left = text.size();
  const char16_t* at = text.data();
  for (; left >= kStep; left -= kStep, at += kStep)
    hash = mixed(hash, folded(load(at, kStep), fold));
  if (left > 0) hash = mixed(hash, folded(load(at, left), fold));
  return static_cast<std::uint32_t>((hash * kFactor) >> 32);
}

bool folded_equal(std::u16string_view a, std::u16string_view b, FoldCharacter fold) noexcept {
  if (a.size() != b.size()) return false;
  std::size_t left = a.size();
  const char16_t* at_a = a.data();
  const char16_t* at_b = b.data();
  for (; left >= kStep; left -= kStep, at_a += kStep, at_b += kStep) {
    if (!equal_words(load(at_a, kStep), load(at_b, kStep), fold)) return false;
  }
  return left == 0 || equal_words(load(at_a, left), load(at_b, left), fold);
}

}  // namespace qv::native::ordered
