#include "automation/bytes.h"

#include <algorithm>
#include <array>

#include "native/rtlib/code_page.h"

namespace qv {
namespace {

using native::rtlib::CodePage;
using native::rtlib::ForwardTable;

constexpr unsigned kWesternEurope = 1252;

const char16_t* utf16(const wchar_t* text) noexcept {
  static_assert(sizeof(wchar_t) == sizeof(char16_t));
  return reinterpret_cast<const char16_t*>(text);
}

CodePage make_code_page() {
  const unsigned page = byte_code_page();
  std::vector<std::uint8_t> reverse(65536);
  // Row by row, so that no half of a surrogate pair stands before the other half.
  for (unsigned row = 0; row < 256; ++row) {
    std::array<wchar_t, 256> units;
    for (unsigned i = 0; i < 256; ++i) units[i] = static_cast<wchar_t>(row << 8 | i);
    WideCharToMultiByte(page, 0, units.data(), 256, reinterpret_cast<char*>(&reverse[row << 8]),
                        256, nullptr, nullptr);
  }
  ForwardTable forward;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const char narrow = static_cast<char>(byte);
    wchar_t unit = 0;
    const int made = MultiByteToWideChar(page, 0, &narrow, 1, &unit, 1);
    // A byte that the code page leaves undefined is the character of the same code.
    if (made != 1 || reverse[unit] != byte) {
      unit = static_cast<wchar_t>(byte);
      reverse[byte] = static_cast<std::uint8_t>(byte);
    }
    forward[byte] = static_cast<char16_t>(unit);
  }
  return CodePage(forward, std::span<const std::uint8_t, 65536>(reverse));
}

const CodePage& code_page() {
  static const CodePage page = make_code_page();
  return page;
}

}  // namespace

unsigned byte_code_page() noexcept {
  CPINFO info{};
  const unsigned page = GetACP();
  return GetCPInfo(page, &info) != FALSE && info.MaxCharSize == 1 ? page : kWesternEurope;
}

void put_bytes(std::span<const std::uint8_t> bytes, wchar_t* out) {
  code_page().from_bytes(bytes, reinterpret_cast<char16_t*>(out));
}

Text text_of_bytes(std::span<const std::uint8_t> bytes) {
  Text text = Text::uninitialized(bytes.size());
  put_bytes(bytes, text.data());
  return text;
}

void get_bytes(std::wstring_view text, std::uint8_t* out) {
  code_page().to_bytes({utf16(text.data()), text.size()}, out);
}

std::vector<std::uint8_t> bytes_of_text(std::wstring_view text) {
  std::vector<std::uint8_t> bytes(text.size());
  get_bytes(text, bytes.data());
  return bytes;
}

void round_trip(Text& text) {
  constexpr std::size_t kPiece = 4096;
  std::array<std::uint8_t, kPiece> bytes;
  std::array<wchar_t, kPiece> characters;
  const std::size_t length = text.size();
  for (std::size_t start = 0; start < length; start += kPiece) {
    const std::size_t count = std::min(kPiece, length - start);
    wchar_t* piece = text.data() + start;
    get_bytes({piece, count}, bytes.data());
    put_bytes({bytes.data(), count}, characters.data());
    if (!std::equal(piece, piece + count, characters.data())) {
      std::copy_n(characters.data(), count, piece);
    }
  }
}

}  // namespace qv
