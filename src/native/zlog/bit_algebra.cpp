#include "native/zlog/bit_algebra.h"

#include <algorithm>

#include "native/zlog/bit_kernels.h"

namespace qv::native::zlog {

void and_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source) {
  const std::size_t common = std::min(target.size(), source.size());
  kernels().and_with(target.data(), source.data(), common);
  std::ranges::fill(target.subspan(common), 0);
}

void or_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source) {
  kernels().or_with(target.data(), source.data(), std::min(target.size(), source.size()));
}

void xor_with(std::span<std::uint32_t> target, std::span<const std::uint32_t> source) {
  kernels().xor_with(target.data(), source.data(), std::min(target.size(), source.size()));
}

void exclude(std::span<std::uint32_t> target, std::span<const std::uint32_t> source) {
  kernels().exclude(target.data(), source.data(), std::min(target.size(), source.size()));
}

void invert(BitSpan set) {
  const auto words = set.used();
  kernels().invert(words.data(), words.size());
  trim(set);
}

void trim(BitSpan set) {
  const std::int32_t last_bits = set.limit() % kWordBits;
  if (last_bits != 0) set.used().back() &= (std::uint32_t{1} << last_bits) - 1;
}

std::uint64_t count(std::span<const std::uint32_t> words) {
  return kernels().count(words.data(), words.size());
}

bool fill(BitSpan set, std::int32_t records) {
  if (records < 0 || records > set.limit()) return false;
  const auto words = set.used();
  const std::size_t filled = words_for(records);
  std::ranges::fill(words.first(filled), ~std::uint32_t{0});
  std::ranges::fill(words.subspan(filled), 0);
  trim({words.first(filled), records});
  return true;
}

bool summarise(std::span<const std::uint32_t> words, BitSpan summary) {
  if (static_cast<std::size_t>(summary.limit()) < words.size()) return false;
  // Word i of the summary is written after words 32 i to 32 i + 31 have been read, so the two may
  // share their memory.
  std::size_t at = 0;
  for (std::uint32_t& target : summary.used()) {
    std::uint32_t flags = 0;
    for (std::uint32_t bit = 0; bit < kWordBits && at < words.size(); ++bit, ++at) {
      flags |= static_cast<std::uint32_t>(words[at] != 0) << bit;
    }
    target = flags;
  }
  return true;
}

}  // namespace qv::native::zlog
