// The version resource of one file, as the platform hands it out.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "automation/text.h"

namespace qv::files {

class VersionBlock {
 public:
  enum class Reading { kRead, kNone, kUnreadable };
  Reading read(const Text& file_name);

  // The numbers of the root; nothing where the block has none.
  std::optional<VS_FIXEDFILEINFO> fixed_info() const;
  // A text of the language that suits the user best; nothing where it has none of that name.
  std::optional<Text> text(std::wstring_view key) const;

 private:
  struct Release {
    void operator()(std::uint8_t* memory) const noexcept { VirtualFree(memory, 0, MEM_RELEASE); }
  };

  std::optional<std::span<const std::uint8_t>> value(const Text& path,
                                                     std::size_t unit_bytes) const;
  bool has_language(std::wstring_view code) const;
  Text language_code() const;

  std::unique_ptr<std::uint8_t, Release> memory_;
  std::size_t size_bytes_ = 0;
};

}  // namespace qv::files
