#include <algorithm>
#include <cstdlib>
#include <vector>

#include "native/cpr/explode.h"
#include "native/cpr/implode.h"

// The first byte tells data type and effort; the rest must come back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::cpr;
  if (size < 1) return 0;
  const auto type = static_cast<DataType>(data[0] & 1);
  const Effort effort = (data[0] & 2) != 0 ? Effort::smallest : Effort::standard;
  const std::span original(data + 1, size - 1);
  std::vector<std::uint8_t> packed(original.size());
  const CoderResult result = implode(original, packed, type, effort);
  if (result.code == CoderCode::not_reducible) return 0;
  if (result.code != CoderCode::done || result.bytes_written >= original.size()) std::abort();
  packed.resize(result.bytes_written);
  packed.shrink_to_fit();
  std::vector<std::uint8_t> back(original.size());
  const CoderResult expanded = explode(packed, back);
  if (expanded.code != CoderCode::done || expanded.bytes_written != original.size() ||
      !std::equal(back.begin(), back.end(), original.begin())) {
    std::abort();
  }
  return 0;
}
