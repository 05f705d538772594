#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "native/rtlib/simd.h"

namespace qv::native::rtlib {

// Position (from 0) of the first occurrence at `from` or behind it, exactly compared; none when
// there is no further one. An empty text to look for is nowhere.
std::optional<std::size_t> find_text(std::u16string_view text, std::u16string_view wanted,
                                     std::size_t from = 0, SimdLevel level = simd_level());

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
