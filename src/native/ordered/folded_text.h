// Keys that are told apart without regard to case: their hash and their equality.
#pragma once

#include <cstdint>
#include <string_view>

namespace qv::native::ordered {

// One character (UTF-16 code unit) at or above U+0080 to the one that stands for it and for all
// that differ from it in case alone. It must give the same answer for as long as a key lives. The
// letters of ASCII are folded to upper case here and never reach it.
using FoldCharacter = char16_t (*)(char16_t character) noexcept;

// Equal keys have equal hashes; all 32 bits are fit for use. Not meant to withstand keys that
// somebody chose to collide.
std::uint32_t folded_hash(std::u16string_view text, FoldCharacter fold) noexcept;

bool folded_equal(std::u16string_view a, std::u16string_view b, FoldCharacter fold) noexcept;

}  // namespace qv::native::ordered
