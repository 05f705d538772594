#pragma once

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

// Bytes of several kinds for the coder's tests, the same at every run.
namespace qv::native::cpr::testing {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

inline Bytes random_bytes(std::size_t count, unsigned seed = 1) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
  return bytes;
}

// Words from a short list: repeats at many lengths and distances.
inline Bytes wordy_bytes(std::size_t count, unsigned seed = 1) {
  static constexpr std::string_view kWords[] = {
      "fattura ", "cliente ", "importo ", "1998", "data ",   "Roma, ", "totale: ", "\r\n",
      "il ",      "la ",      "di ",      "e ",   "codice-", "007 ",   "\xE8 ",    "Z"};
  std::mt19937 random(seed);
  Bytes bytes;
  while (bytes.size() < count) {
    const std::string_view word = kWords[random() % std::size(kWords)];
    bytes.insert(bytes.end(), word.begin(), word.end());
  }
  bytes.resize(count);
  return bytes;
}

// Records with counting fields, as tables in programs are.
inline Bytes table_bytes(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<std::uint8_t>(i % 12 == 0 ? i / 12 : i % 12 == 1 ? i / 3072 : i % 12);
  }
  return bytes;
}

// Runs of zeros with a stray byte here and there.
inline Bytes sparse_bytes(std::size_t count, unsigned seed = 1) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (auto& byte : bytes) {
    if (random() % 50 == 0) byte = static_cast<std::uint8_t>(random() >> 8);
  }
  return bytes;
}

inline std::vector<Bytes> samples(std::size_t count) {
  return {random_bytes(count), wordy_bytes(count), table_bytes(count),
          sparse_bytes(count), Bytes(count),       Bytes(count, 'e')};
}

}  // namespace qv::native::cpr::testing
