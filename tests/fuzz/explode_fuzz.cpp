#include <cstdlib>
#include <vector>

#include "native/cpr/explode.h"

// Two bytes tell the size of the original, the rest is the block.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::cpr;
  if (size < 2) return 0;
  std::vector<std::uint8_t> output((data[0] | data[1] << 8) & 0x7FFF);
  const CoderResult result = explode({data + 2, size - 2}, output);
  if (result.bytes_written > output.size()) std::abort();
  for (std::size_t i = result.bytes_written; i < output.size(); ++i) {
    if (output[i] != 0) std::abort();
  }
  return 0;
}
