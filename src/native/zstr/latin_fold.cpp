#include "native/zstr/latin_fold.h"

#include <cstddef>

namespace qv::native::zstr {
namespace {

constexpr FoldTable identity() {
  FoldTable table{};
  for (std::size_t code = 0; code < table.size(); ++code) {
    table[code] = static_cast<std::uint8_t>(code);
  }
  return table;
}

constexpr FoldTable make_upper_case() {
  FoldTable table = identity();
  for (unsigned code = 'a'; code <= 'z'; ++code) {
    table[code] = static_cast<std::uint8_t>(code - 0x20);
  }
  for (unsigned code = 0xE0; code <= 0xFE; ++code) {
    if (code != 0xF7) table[code] = static_cast<std::uint8_t>(code - 0x20);
  }
  for (const unsigned code : {0x9A, 0x9C, 0x9E}) {
    table[code] = static_cast<std::uint8_t>(code - 0x10);
  }
  table[0xFF] = 0x9F;
  return table;
}

struct AccentedRange {
  std::uint8_t first;
  std::uint8_t last;
  char base;
};

// Capitals; the small letters lie 20 hex above.
constexpr AccentedRange kAccented[] = {
    {0xC0, 0xC5, 'A'}, {0xC7, 0xC7, 'C'}, {0xC8, 0xCB, 'E'}, {0xCC, 0xCF, 'I'}, {0xD1, 0xD1, 'N'},
    {0xD2, 0xD6, 'O'}, {0xD8, 0xD8, 'O'}, {0xD9, 0xDC, 'U'}, {0xDD, 0xDD, 'Y'},
};

constexpr FoldTable make_without_accent() {
  FoldTable table = identity();
  for (const AccentedRange& range : kAccented) {
    for (unsigned code = range.first; code <= range.last; ++code) {
      table[code] = static_cast<std::uint8_t>(range.base);
      table[code + 0x20] = static_cast<std::uint8_t>(range.base + 0x20);
    }
  }
  table[0x8A] = 'S';
  table[0x9A] = 's';
  table[0x8E] = 'Z';
  table[0x9E] = 'z';
  table[0x9F] = 'Y';
  table[0xFF] = 'y';
  return table;
}

}  // namespace

constinit const Folding kWindows1252Folding = {make_upper_case(), make_without_accent()};

}  // namespace qv::native::zstr
