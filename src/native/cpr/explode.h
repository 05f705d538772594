#pragma once

#include <cstdint>
#include <span>

#include "native/cpr/coder_result.h"

namespace qv::native::cpr {

// Expands one compressed block, of any of the three dictionary sizes and both data types, into
// `output`, whose size is that of the original. Nothing is written beyond it, whatever the input.
// A block that means more bytes than that, or ends before its end mark, is damaged; one that ends
// properly and earlier is done, and `bytes_written` tells its size. What follows the end mark is
// not looked at. Bytes of `output` behind `bytes_written` are zero, also after a failure.
CoderResult explode(std::span<const std::uint8_t> input, std::span<std::uint8_t> output);

}  // namespace qv::native::cpr
