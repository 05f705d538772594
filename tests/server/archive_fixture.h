// What the tests of archives share: files to pack, the calls, and archives made by hand.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "server/client.h"
#include "server/temp_folder.h"

namespace qv::tests {

inline std::string noise_bytes(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 12345;
  while (bytes.size() < size) {
    state = state * 1664525 + 1013904223;
    bytes += static_cast<char>(state >> 24);
  }
  return bytes;
}

inline std::string wordy_bytes(std::size_t size) {
  std::string bytes;
  for (int i = 0; bytes.size() < size; ++i) bytes += "riga " + std::to_string(i) + " di testo\r\n";
  bytes.resize(size);
  return bytes;
}

// The bytes of the worked example in a page of docs/formats: the first block fenced as "hex". Tests
// run in the repository's folder.
inline std::string format_example(const char* page) {
  std::ifstream file(std::string("docs/formats/") + page);
  EXPECT_TRUE(file.is_open()) << page;
  std::string bytes;
  bool is_inside = false;
  for (std::string line; std::getline(file, line);) {
    if (is_inside && line == "```") break;
    std::istringstream numbers(is_inside ? line : "");
    for (unsigned number; numbers >> std::hex >> number;) bytes += static_cast<char>(number);
    is_inside = is_inside || line == "```hex";
  }
  return bytes;
}

// Little-endian numbers in a file's bytes.
template <class Number>
Number number_at(const std::string& bytes, std::size_t offset) {
  Number number{};
  if (offset + sizeof number <= bytes.size())
    bytes.copy(reinterpret_cast<char*>(&number), sizeof number, offset);
  return number;
}

template <class Number>
std::string image(Number number) {
  return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

// An archive made by hand from stored blocks, byte by byte as the format has it.
struct HandMade {
  struct Entry {
    std::string name;
    std::string contents;
    std::int32_t attributes = 32;
    double created = 36526.5;
    double changed = 36527.25;
    std::string kinds{};   // of its blocks; "U" where it ends
    std::string packed{};  // in place of the contents, one block
  };

  std::int16_t version = 256;
  std::string parent;
  std::vector<Entry> entries;

  static constexpr std::size_t kBlock = 32767;

  static std::string field(const std::string& text) {
    std::string bytes = text + '\0';
    bytes.resize(255, ' ');
    return bytes;
  }
  static std::string array(std::size_t count) {
    const auto elements = static_cast<std::int32_t>(count);
    return image(elements) + image<std::int16_t>(1) + image(elements) + image<std::int32_t>(1);
  }
  static std::uint32_t crc_of(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
      crc ^= static_cast<unsigned char>(byte);
      for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return crc;
  }
  static std::size_t blocks_of(const Entry& entry) {
    return std::max<std::size_t>((entry.contents.size() + kBlock - 1) / kBlock, 1);
  }

  std::string bytes() const {
    std::size_t position = 280;
    for (const Entry& entry : entries) position += 309 + 5 * blocks_of(entry);
    std::string head =
        "KWCF" + image(version) + image<std::int32_t>(0) + field(parent) + array(entries.size());
    std::string data;
    for (const Entry& entry : entries) {
      const std::string& packed = entry.packed.empty() ? entry.contents : entry.packed;
      if ((entry.attributes & 16) == 0) data += packed;
      head += image(static_cast<std::int32_t>(position + data.size()));
      head += field(entry.name);
      head += image(static_cast<std::int32_t>(entry.contents.size()));
      head += image<std::int32_t>(0x00020001) + image<std::int32_t>(0x00040003);
      head += image(entry.created) + image(entry.changed) + image(entry.attributes);
      head += image(crc_of(entry.contents)) + array(blocks_of(entry));
      for (std::size_t i = 0; i < blocks_of(entry); ++i) {
        const auto size = std::min(entry.contents.size() - i * kBlock, kBlock);
        head += i < entry.kinds.size() ? entry.kinds[i] : 'U';
        head += image(static_cast<std::int16_t>(size));
        head += image(static_cast<std::int16_t>(entry.packed.empty() ? size : packed.size()));
      }
    }
    return head + data;
  }
};

class ArchiveTest : public testing::Test {
 protected:
  void SetUp() override { global_->Reset_Error(); }

  std::wstring path(const std::wstring& name) const { return folder_.file(name.c_str()); }
  std::string contents(const std::wstring& name) const { return bytes_of_file(path(name)); }
  bool exists(const std::wstring& name) const {
    return GetFileAttributesW(path(name).c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  // Names in a folder, "." and ".." left out, in order.
  std::vector<std::wstring> names_in(const std::wstring& folder) const {
    std::vector<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(path(folder))) {
      names.push_back(entry.path().filename().wstring());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  void make_file(const std::wstring& name, const std::string& bytes) const {
    write_file(path(name), bytes);
  }
  void make_folder(const std::wstring& name) const {
    CreateDirectoryW(path(name).c_str(), nullptr);
  }

  // Names below the test's folder as an array of String.
  Value sources(const std::vector<std::wstring>& names, LONG lower_bound = 0) const {
    SAFEARRAYBOUND bound{static_cast<ULONG>(names.size()), lower_bound};
    Value value;
    value.vt = VT_ARRAY | VT_BSTR;
    value.parray = SafeArrayCreate(VT_BSTR, 1, &bound);
    for (std::size_t i = 0; i < names.size(); ++i) {
      LONG index = lower_bound + static_cast<LONG>(i);
      SafeArrayPutElement(value.parray, &index, static_cast<BSTR>(String(path(names[i]))));
    }
    return value;
  }

  bool zip(Value source, const std::wstring& target = L"a.kwc", const std::wstring& parent = L"",
           LONG flags = 0) {
    String target_path(path(target));
    String parent_path(parent);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->FileZip(&source, &target_path, &parent_path, &flags, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool zip_with(const Pointer<_ZipFile>& zipper, Value source,
                const std::wstring& target = L"a.kwc") {
    String target_path(path(target));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(zipper->FileZip(&source, &target_path, nullptr, nullptr, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool unzip(LONG flags = 2, const std::wstring& source = L"a.kwc",
             const std::wstring& target = L"out") {
    String source_path(path(source));
    String target_path(path(target));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->FileUnzip(&source_path, &target_path, &flags, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  bool unzip_with(const Pointer<_ZipFile>& zipper, LONG flags = 2, _kwCollection* list = nullptr) {
    String source_path(path(L"a.kwc"));
    String target_path(path(L"out"));
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(zipper->FileUnzip(&source_path, &target_path, &flags, &list, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }

  void expect_record(LONG number, const std::wstring& source, const std::wstring& description) {
    LONG found_number = 0;
    String found_source;
    String found_description;
    VARIANT_BOOL still_locked = VARIANT_FALSE;
    global_->Error_Number(&found_number);
    global_->Error_Source(&found_source);
    global_->Error_Description(&found_description);
    EXPECT_EQ(found_number, number);
    EXPECT_EQ(found_source.view(), source);
    EXPECT_EQ(found_description.view(), description);
    global_->Reset_Error();
    global_->Check_Error(&still_locked);
    EXPECT_EQ(still_locked, VARIANT_FALSE);
  }

  TempFolder folder_;
  Pointer<_KwRtLib> global_ = create_global();
};

}  // namespace qv::tests
