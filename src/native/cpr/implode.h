#pragma once

#include <cstdint>
#include <span>

#include "native/cpr/coder_result.h"

namespace qv::native::cpr {

// `smallest` looks further for repetitions and costs some time; both give the same format.
enum class Effort { standard, smallest };

// Compresses `input`, of any size, into one block with a dictionary of 4096 bytes.
// `not_reducible` where the block would not be smaller than the input or not fit into `output`;
// `bad_mode` where `type` is no DataType. `bytes_written` is 0 after a failure, and `output` then
// holds nothing of use.
CoderResult implode(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                    DataType type, Effort effort = Effort::standard);

}  // namespace qv::native::cpr
