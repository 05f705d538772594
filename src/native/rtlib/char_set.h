#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace qv::native::rtlib {

// A set of characters, made once for a scan: one bit a code below 256, a look through the list for
// the codes above.
template <class C>
class CharSet {
 public:
  explicit CharSet(std::basic_string_view<C> members) : members_(members) {
    for (const C member : members) {
      const auto code = static_cast<std::make_unsigned_t<C>>(member);
      if (code < 256) {
        bits_[code / 32] |= std::uint32_t{1} << (code % 32);
      } else {
        has_wide_ = true;
      }
    }
  }

  bool holds(C character) const {
    const auto code = static_cast<std::make_unsigned_t<C>>(character);
    if (code < 256) return ((bits_[code / 32] >> (code % 32)) & 1) != 0;
    return has_wide_ && members_.find(character) != std::basic_string_view<C>::npos;
  }

 private:
  std::basic_string_view<C> members_;
  std::array<std::uint32_t, 8> bits_{};
  bool has_wide_ = false;
};

}  // namespace qv::native::rtlib
