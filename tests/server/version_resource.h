// Version resources built from their parts, whole or damaged, and files that hold them.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "server/process.h"

namespace qv::tests {

inline constexpr WORD kBinary = 0;
inline constexpr WORD kText = 1;

inline std::string bytes_of(std::wstring_view text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

// A block: its length, the length of its value and its type in 16 bits each, its key, its value
// (bytes, or for a text characters), the blocks in it, each part at a multiple of 4 bytes.
class VersionNode {
 public:
  VersionNode(std::wstring_view key, WORD type, std::string value, WORD value_length,
              std::vector<VersionNode> children = {})
      : key_(key),
        type_(type),
        value_(std::move(value)),
        value_length_(value_length),
        children_(std::move(children)) {}
  // A block that only holds others.
  VersionNode(std::wstring_view key, std::vector<VersionNode> children)
      : VersionNode(key, kText, "", 0, std::move(children)) {}
  // A text.
  VersionNode(std::wstring_view key, std::wstring_view value)
      : VersionNode(key, kText, qv::tests::bytes_of(value) + std::string(2, '\0'),
                    static_cast<WORD>(value.size() + 1)) {}

  std::string bytes() const {
    std::string block(6, '\0');
    block += qv::tests::bytes_of(key_) + std::string(2, '\0');
    pad(block);
    block += value_;
    for (const auto& child : children_) {
      pad(block);
      block += child.bytes();
    }
    const WORD head[] = {static_cast<WORD>(block.size()), value_length_, type_};
    block.replace(0, sizeof head, reinterpret_cast<const char*>(head), sizeof head);
    return block;
  }

 private:
  static void pad(std::string& block) { block.resize((block.size() + 3) / 4 * 4); }

  std::wstring key_;
  WORD type_;
  std::string value_;
  WORD value_length_;
  std::vector<VersionNode> children_;
};

// The numbers 1.2.3.4 of the file and 5.6.7.8 of the product.
inline std::string fixed_info() {
  const DWORD words[13] = {0xFEEF04BD, 0x10000, 0x10002, 0x30004, 0x50006, 0x70008};
  return std::string(reinterpret_cast<const char*>(words), sizeof words);
}

// Gives a program file this version resource in place of its own.
inline bool put_version(const std::wstring& program, const std::string& resource) {
  HANDLE update = BeginUpdateResourceW(program.c_str(), TRUE);
  if (update == nullptr) return false;
  // RT_VERSION, resource 1.
  UpdateResourceW(update, MAKEINTRESOURCEW(16), MAKEINTRESOURCEW(1), 0,
                  const_cast<char*>(resource.data()), static_cast<DWORD>(resource.size()));
  return EndUpdateResourceW(update, FALSE) != FALSE;
}

// A program file that holds nothing but a version resource, made with the tests.
inline std::wstring version_sample(std::wstring_view name) {
  return program_folder() + L"version_" + std::wstring(name) + L".dll";
}

}  // namespace qv::tests
