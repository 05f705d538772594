#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// The occurrences of one text in another, from the left, without overlap, exactly compared. The
// text looked through must live as long, and may be changed up to the end of the last occurrence
// that was given. An empty text to look for is nowhere.
class Occurrences {
 public:
  Occurrences(std::u16string_view text, std::u16string_view wanted, SimdLevel level = simd_level())
      : text_(text), wanted_(wanted), level_(level) {}

  // Position (from 0) of the next one; none when there is no further one.
  std::optional<std::size_t> next();

 private:
  bool find_candidates();
  bool stands_at(std::size_t at) const;

  std::u16string_view text_;
  std::u16string_view wanted_;
  SimdLevel level_;
  std::size_t from_ = 0;  // behind the last occurrence
  // The vector form looks at blocks, and keeps of the last one where the first and the last
  // character match.
  std::size_t block_ = 0;
  std::size_t next_block_ = 0;
  std::uint32_t candidates_ = 0;
};

// Position of occurrence number `number` (from 0) of the character; none when there are fewer. The
// cost depends on the position alone and not on how many occurrences lie before it.
std::optional<std::size_t> find_nth(std::u16string_view text, char16_t wanted, std::size_t number,
                                    SimdLevel level = simd_level());

// Token `number` (from 0) of a text whose tokens stand between separators, each one whole text and
// not a set; found from the left, without overlap. A separator at the end has an empty token behind
// it. None past the last token. An empty separator separates nothing.
std::optional<std::u16string_view> find_token(std::u16string_view text,
                                              std::u16string_view separator, std::size_t number,
                                              SimdLevel level = simd_level());

}  // namespace qv::native::rtlib
