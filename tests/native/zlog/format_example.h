#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace qv::native::zlog {

// The bytes of the worked example in a page of docs/formats: the first block fenced as "hex".
inline std::vector<std::uint8_t> format_example(const std::string& page) {
  const std::filesystem::path root =
      std::filesystem::path(__FILE__).parent_path().parent_path().parent_path().parent_path();
  std::ifstream file(root / "docs" / "formats" / page);
  EXPECT_TRUE(file.is_open()) << page;
  std::vector<std::uint8_t> bytes;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (inside && line == "```") break;
    if (inside) {
      std::istringstream numbers(line);
      for (unsigned number; numbers >> std::hex >> number;) {
        bytes.push_back(static_cast<std::uint8_t>(number));
      }
    }
    inside = inside || line == "```hex";
  }
  return bytes;
}

}  // namespace qv::native::zlog
