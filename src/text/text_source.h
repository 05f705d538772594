// A text of bytes as a source for the portable decoders.
#pragma once

#include "automation/bytes.h"

namespace qv::text {

class TextSource {
 public:
  explicit TextSource(std::wstring_view text) : text_(text) {}
  std::size_t size() const { return text_.size(); }
  void copy(std::size_t at, std::span<std::uint8_t> out) const {
    get_bytes(text_.substr(at, out.size()), out.data());
  }

 private:
  std::wstring_view text_;
};

}  // namespace qv::text
