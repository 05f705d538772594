#include "native/zstr/mask.h"

namespace qv::native::zstr {
namespace {

constexpr std::uint8_t kEscape = 27;

// The mark that closes what this one opens, 0 where it opens nothing.
std::uint8_t closing_mark(std::uint8_t mark) {
  switch (mark) {
    case '<':
      return '>';
    case '@':
    case '"':
      return mark;
    default:
      return 0;
  }
}

std::size_t drop_masks(std::span<std::uint8_t> key, std::uint8_t dropped_mark) {
  std::size_t length = 0;
  std::uint8_t closes_at = 0;  // 0: outside of masks
  bool is_dropped = false;
  bool is_escaped = false;
  for (const std::uint8_t character : key) {
    const bool is_plain = is_escaped || character == kEscape;
    is_escaped = !is_escaped && character == kEscape;
    const std::uint8_t opens_to = closes_at == 0 ? closing_mark(character) : std::uint8_t{0};
    if (!is_plain && closes_at != 0 && character == closes_at) {
      closes_at = 0;
      is_dropped = false;
    } else if (!is_plain && opens_to != 0) {
      closes_at = opens_to;
      is_dropped = character == dropped_mark;
    } else if (!is_dropped) {
      key[length++] = character;
    }
  }
  return length;
}

}  // namespace

std::size_t Mask_Display(std::span<std::uint8_t> key) { return drop_masks(key, '@'); }

std::size_t Mask_Sort(std::span<std::uint8_t> key) { return drop_masks(key, '<'); }

}  // namespace qv::native::zstr
