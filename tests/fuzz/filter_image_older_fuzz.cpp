#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/raw_image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::zlog;
  const std::span<const std::uint8_t> image(data, size);
  if (size < kOlderImageHeadBytes) return 0;
  const auto bits = read_older_image_head(image.first<kOlderImageHeadBytes>());
  const auto body = image.subspan(kOlderImageHeadBytes);
  if (!bits || raw_image_bytes(*bits) > body.size()) return 0;
  std::optional<BitMap> map = BitMap::make(*bits);
  std::ranges::copy(body.first(raw_image_bytes(*bits)), raw_image_of(map->view()).begin());
  trim(map->view());
  const std::uint64_t set_bits = count(map->view().words);
  invert(map->view());
  if (set_bits + count(map->view().words) != static_cast<std::uint64_t>(*bits)) std::abort();
  return 0;
}
