#pragma once

#include <cstdint>
#include <span>

#include "native/cpr/little_endian.h"

namespace qv::native::cpr {

// Bits into bytes, the first bit lowest. The caller has made sure that all of them fit.
class BitWriter {
 public:
  explicit BitWriter(std::span<std::uint8_t> output)
      : begin_(output.data()), at_(begin_), end_(begin_ + output.size()) {}

  // Up to 32 bits; those of `pattern` above them are zero.
  void put(std::uint32_t pattern, unsigned bits) {
    bits_ |= std::uint64_t{pattern} << count_;
    count_ += bits;
    if (count_ < 32) return;
    if (end_ - at_ >= 8) {
      store_little_endian(at_, static_cast<std::uint32_t>(bits_));
      at_ += 4;
      bits_ >>= 32;
      count_ -= 32;
    } else {
      put_bytes(4);
    }
  }

  // Fills the last byte with zeros and tells the number of bytes.
  std::size_t finish() {
    put_bytes((count_ + 7) / 8);
    return static_cast<std::size_t>(at_ - begin_);
  }

 private:
  void put_bytes(unsigned count) {
    for (unsigned i = 0; i < count && at_ != end_; ++i) {
      *at_++ = static_cast<std::uint8_t>(bits_);
      bits_ >>= 8;
    }
    count_ = count_ > count * 8 ? count_ - count * 8 : 0;
  }

  std::uint8_t* begin_;
  std::uint8_t* at_;
  std::uint8_t* end_;
  std::uint64_t bits_ = 0;
  unsigned count_ = 0;
};

}  // namespace qv::native::cpr
