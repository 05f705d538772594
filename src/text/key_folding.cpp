#include "text/key_folding.h"

#include <array>

#include "automation/bytes.h"

namespace qv::text {
namespace {

using native::zstr::Folding;

constexpr unsigned kWesternEurope = 1252;
// From here on (Cyrillic first) a mark on a letter makes another letter.
constexpr wchar_t kBehindGreek = 0x0400;

wchar_t upper_case_of(wchar_t letter) {
  wchar_t capital = letter;
  CharUpperBuffW(&capital, 1);
  return capital;
}

wchar_t without_accent(wchar_t letter) {
  std::array<wchar_t, 8> parts;
  const int count =
      FoldStringW(MAP_COMPOSITE, &letter, 1, parts.data(), static_cast<int>(parts.size()));
  return count > 1 && letter < kBehindGreek ? parts.front() : letter;
}

Folding make_folding() {
  Folding folding{};
  for (unsigned code = 0; code < 256; ++code) {
    const auto byte = static_cast<std::uint8_t>(code);
    wchar_t letter = 0;
    put_bytes({&byte, 1}, &letter);
    const auto byte_of = [&](wchar_t folded) {
      std::uint8_t result = byte;
      wchar_t back = 0;
      get_bytes({&folded, 1}, &result);
      put_bytes({&result, 1}, &back);
      return back == folded ? result : byte;  // a best fit is no answer
    };
    folding.upper_case[code] = byte_of(upper_case_of(letter));
    folding.without_accent[code] = byte_of(without_accent(letter));
  }
  return folding;
}

}  // namespace

const Folding& folding_of_code_page() {
  static const Folding folding =
      byte_code_page() == kWesternEurope ? native::zstr::kWindows1252Folding : make_folding();
  return folding;
}

}  // namespace qv::text
