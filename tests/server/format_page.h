// The worked examples in the pages of docs/formats. The working folder is the repository's.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace qv::tests {

// The lines of a page's fenced block: number `number` (from 1) of those that begin with ```kind.
inline std::vector<std::string> block_of_page(const std::string& page, const std::string& kind,
                                              int number) {
  std::ifstream file("docs/formats/" + page);
  EXPECT_TRUE(file.is_open()) << page;
  std::vector<std::string> lines;
  int found = 0;
  bool is_inside = false;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.starts_with("```")) {
      if (is_inside && found == number) return lines;
      is_inside = !is_inside && line == "```" + kind;
      if (is_inside) ++found;
    } else if (is_inside && found == number) {
      lines.push_back(line);
    }
  }
  ADD_FAILURE() << page << " has no block " << kind << ' ' << number;
  return lines;
}

// Bytes of an example, one character each.
inline std::wstring bytes_of_page(const std::string& page, int number = 1) {
  std::wstring bytes;
  for (const std::string& line : block_of_page(page, "hex", number)) {
    std::istringstream numbers(line);
    for (unsigned byte; numbers >> std::hex >> byte;) bytes += static_cast<wchar_t>(byte);
  }
  return bytes;
}

// A line of ASCII.
inline std::wstring wide_line(const std::string& line) { return {line.begin(), line.end()}; }

}  // namespace qv::tests
