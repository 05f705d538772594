#include <algorithm>
#include <cstdlib>

#include "native/pipes/packet.h"

// Reads a packet as it comes from the wire, cut, longer than it tells or with a length of any size;
// what was read and is packed again is what was there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace qv::native::pipes;
  const std::span<const std::uint8_t> packet{bytes, size};
  const Head head = read_head(packet);
  if (size < kHeadBytes) {
    if (head.data_bytes != 0) std::abort();
    if (!data_of(packet, head).empty()) std::abort();
    return 0;
  }
  const auto packed = packed_head(head);
  if (!std::equal(packed.begin(), packed.end(), packet.begin())) std::abort();
  if (head.data_bytes < 0) return 0;
  const auto data = data_of(packet, head);
  if (data.size() > static_cast<std::size_t>(head.data_bytes)) std::abort();
  if (data.size() > size - kHeadBytes) std::abort();
  if (!data.empty() && data.data() != bytes + kHeadBytes) std::abort();
  return 0;
}
