#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <vector>

#include "native/zlog/raw_image.h"
#include "native/zlog/records.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::zlog;
  const std::span<const std::uint8_t> image(data, size);
  std::optional<BitMap> map = from_raw_image(image);
  std::vector<std::uint8_t> again(size);
  if (!map || !copy_to_raw_image(map->view(), again) || !std::ranges::equal(again, image)) {
    std::abort();
  }
  add_index_block(map->view(), image);
  return 0;
}
