#pragma once

#include <algorithm>

#include "native/cpr/byte_stream.h"
#include "tests/native/cpr/samples.h"

namespace qv::native::cpr::testing {

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::span<const std::uint8_t> bytes) : left_(bytes) {}
  std::size_t read(std::span<std::uint8_t> bytes) override {
    const std::size_t count = std::min(bytes.size(), left_.size());
    std::copy_n(left_.begin(), count, bytes.begin());
    left_ = left_.subspan(count);
    return count;
  }
  std::size_t left() const { return left_.size(); }

 private:
  std::span<const std::uint8_t> left_;
};

// Takes `capacity` bytes and fails beyond them.
class MemorySink : public ByteSink {
 public:
  explicit MemorySink(std::size_t capacity = SIZE_MAX) : capacity_(capacity) {}
  bool write(std::span<const std::uint8_t> bytes) override {
    if (bytes.size() > capacity_ - bytes_.size()) return false;
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return true;
  }
  const Bytes& bytes() const { return bytes_; }

 private:
  std::size_t capacity_;
  Bytes bytes_;
};

}  // namespace qv::native::cpr::testing
