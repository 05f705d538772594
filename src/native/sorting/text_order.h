// The order of texts by character code.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace qv::native::sorting {

// order[k] becomes the place of the text that is number k in ascending order (all from 0), equal
// texts in any order. Both have one length. A text is less than what it begins.
void order_texts(std::span<const std::u16string_view> texts, std::span<std::uint32_t> order);

}  // namespace qv::native::sorting
