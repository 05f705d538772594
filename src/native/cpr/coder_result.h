#pragma once

#include <cstddef>

namespace qv::native::cpr {

// What the coder answers; the values are public, callers report them as numbers.
enum class CoderCode : int {
  done = 0,
  bad_dictionary = 1,  // the head of a compressed block names no known dictionary size
  bad_mode = 2,        // neither binary nor text
  damaged = 3,         // the compressed bytes end early, or mean more than they may
  not_reducible = 5,   // the result would not be smaller than the input, or not fit
};

// Which fixed code serves bytes that are not repeated: `text` suits Western texts.
enum class DataType : int { binary = 0, text = 1 };

struct CoderResult {
  CoderCode code;
  std::size_t bytes_written;
};

}  // namespace qv::native::cpr
