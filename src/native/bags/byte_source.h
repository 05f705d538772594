// Where the decoders read: bytes by position. The server keeps its bytes in the characters of a
// text, so a source fetches the few bytes that are asked for instead of converting everything.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace qv::native::bags {

template <class Source>
concept ByteSource = requires(const Source& source, std::size_t at, std::span<std::uint8_t> out) {
  { source.size() } -> std::convertible_to<std::size_t>;
  // Fills `out` with the bytes from position `at` on, all of which are there.
  source.copy(at, out);
};

class SpanSource {
 public:
  explicit SpanSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  std::size_t size() const { return bytes_.size(); }
  void copy(std::size_t at, std::span<std::uint8_t> out) const {
    std::ranges::copy(bytes_.subspan(at, out.size()), out.begin());
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

// Little-endian, two's complement. The bytes must be there.
template <std::integral Number, ByteSource Source>
Number read_number(const Source& source, std::size_t at) {
  std::array<std::uint8_t, sizeof(Number)> bytes;
  source.copy(at, bytes);
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) number |= std::uint64_t{bytes[i]} << (8 * i);
  return static_cast<Number>(number);
}

}  // namespace qv::native::bags
