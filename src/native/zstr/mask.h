#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace qv::native::zstr {

// A key's masks: <text> shows only, @text@ sorts only, "text" is literal. The marks themselves
// never come out; between two marks everything is plain text, other marks too; an unclosed mark
// runs to the end; a ">" that closes nothing is plain text. Outside and inside of masks the
// character 27 takes the character behind it along as plain text, so a key can hold a mark's own
// character; both stay in the key, for the escape language of displayed keys to translate.
//
// Both work in place and return the new length, which is never greater. Character 0 is data.

// What shows: all but the @text@.
std::size_t Mask_Display(std::span<std::uint8_t> key);

// What sorts: all but the <text>.
std::size_t Mask_Sort(std::span<std::uint8_t> key);

}  // namespace qv::native::zstr
