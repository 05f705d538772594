#include <cstdlib>

#include "native/bags/typed_value.h"

// Goes through a buffer of typed values until one can't be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::bags;
  const SpanSource source({data, size});
  for (std::size_t at = 0;;) {
    const ValuePlace value = find_value(source, at);
    if (value.status != ReadStatus::kDone) return 0;
    const bool lies_inside =
        value.end > at && value.data + value.data_bytes == value.end && value.end <= size;
    if (!lies_inside) std::abort();
    if (value.tag == static_cast<std::uint8_t>(Tag::kArray)) {
      const auto bytes = array_bytes(source, value, fixed_width(value.element));
      if (bytes && *bytes > 0x7FFFFFFF) std::abort();
    }
    at = value.end;
  }
}
