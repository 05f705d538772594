// What the system's Compress tool makes: a head, then the file by a window of 4096 bytes in which
// everything that was written before is found again. A control byte tells of the next eight items,
// lowest bit first, which is a byte that stands as it is (1) and which is a place in the window
// and a length (0).
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace qv::tests {

inline std::string compress(std::string_view content) {
  constexpr std::size_t kWindow = 4096;
  constexpr std::size_t kStart = kWindow - 16;
  constexpr std::size_t kShortest = 3;
  constexpr std::size_t kLongest = 18;
  std::string file(
      "SZDD\x88\xF0\x27\x33"
      "A_",
      10);
  for (int i = 0; i < 4; ++i) file += static_cast<char>(content.size() >> (8 * i));
  std::size_t control = 0;
  int items = 8;
  for (std::size_t at = 0; at < content.size();) {
    std::size_t best = 0;
    std::size_t place = 0;
    for (std::size_t from = at > kWindow - kLongest ? at - (kWindow - kLongest) : 0; from < at;
         ++from) {
      std::size_t length = 0;
      const std::size_t most = std::min(kLongest, content.size() - at);
      while (length < most && content[from + length] == content[at + length]) ++length;
      if (length > best) {
        best = length;
        place = from;
      }
    }
    if (items == 8) {
      items = 0;
      control = file.size();
      file += '\0';
    }
    if (best >= kShortest) {
      const std::size_t in_window = (place + kStart) % kWindow;
      file += static_cast<char>(in_window & 0xFF);
      file += static_cast<char>((in_window >> 4 & 0xF0) | (best - kShortest));
      at += best;
    } else {
      file[control] = static_cast<char>(file[control] | 1 << items);
      file += content[at++];
    }
    ++items;
  }
  return file;
}

}  // namespace qv::tests
