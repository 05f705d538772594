#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace qv::native::cpr {

// Where bytes come from and go to: a file's handle, a pipe, a buffer. The caller owns both, and
// neither throws.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Fills `bytes` as far as possible; fewer than asked for means the end or a failure.
  virtual std::size_t read(std::span<std::uint8_t> bytes) = 0;
};

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  // All of `bytes`, or false.
  virtual bool write(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace qv::native::cpr
