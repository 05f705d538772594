#include "native/zstr/sort_key.h"

#include <algorithm>

#include "native/zstr/mask.h"

namespace qv::native::zstr {
namespace {

template <class Drop>
std::size_t drop_if(std::span<std::uint8_t> key, Drop drop) {
  return static_cast<std::size_t>(std::remove_if(key.begin(), key.end(), drop) - key.begin());
}

}  // namespace

std::size_t Key_Sort(std::span<std::uint8_t> key, std::int32_t sort_flag,
                     std::span<const std::uint8_t> table, const Folding& folding) {
  const std::int32_t flags = sort_flag < 0 ? sort_flag & 0xFFFF : sort_flag;
  const auto has = [flags](SortFlag flag) { return (flags & flag) != 0; };
  if (has(kSortMask) && !has(kSortNoMask)) key = key.first(Mask_Sort(key));
  if (has(kSortNoSpaces)) {
    key = key.first(drop_if(key, [](std::uint8_t c) { return c == ' '; }));
  }
  if (has(kSortNoNum)) {
    key = key.first(drop_if(key, [](std::uint8_t c) { return c >= '0' && c <= '9'; }));
  }
  if (has(kSortPrimary)) XLate(key, folding.without_accent);
  if (has(kSortUcase)) XLate(key, folding.upper_case);
  if (has(kSortTable) && !has(kSortNoTable)) XLate(key, table);
  return key.size();
}

void XLate(std::span<std::uint8_t> text, std::span<const std::uint8_t> table) {
  for (std::uint8_t& character : text) {
    if (character < table.size()) character = table[character];
  }
}

}  // namespace qv::native::zstr
