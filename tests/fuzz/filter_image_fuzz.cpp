#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <vector>

#include "native/cpr/crc32.h"
#include "native/zlog/filter_image.h"

namespace {

using qv::native::zlog::BitMap;
using qv::native::zlog::ImageDecoder;
using qv::native::zlog::ImageEncoder;

using qv::native::zlog::kImageHeadBytes;
using qv::native::zlog::read_image_head;

// Larger maps are made as easily, but would leave the fuzzer busy with their pages.
constexpr std::int32_t kMostBits = 1 << 22;

void put_checksum(std::vector<std::uint8_t>& image, std::size_t at,
                  std::span<const std::uint8_t> of) {
  const std::uint32_t crc = ~qv::native::cpr::crc32_update(0xFFFFFFFF, of);
  for (std::size_t i = 0; i < 4; ++i) image[at + i] = static_cast<std::uint8_t>(crc >> (8 * i));
}

std::optional<BitMap> decode(std::span<const std::uint8_t> image) {
  const auto head = read_image_head(image.first<kImageHeadBytes>());
  auto body = image.subspan(kImageHeadBytes);
  if (!head || head->bits > kMostBits || head->body_bytes > body.size()) return std::nullopt;
  ImageDecoder decoder(*head);
  std::array<std::uint32_t, 70> scratch;
  while (true) {
    const auto room = decoder.room(scratch);
    if (room.empty()) return decoder.finish();
    std::ranges::copy(body.first(room.size()), room.begin());
    body = body.subspan(room.size());
    if (!decoder.take(room)) return std::nullopt;
  }
}

}  // namespace

// The first byte tells whether the checksums of what follows are made right, since no mutation
// would ever hit them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1 + kImageHeadBytes) return 0;
  std::vector<std::uint8_t> image(data + 1, data + size);
  if (data[0] % 2 == 0) {
    put_checksum(image, 16, std::span(image).subspan(kImageHeadBytes));
    put_checksum(image, 20, std::span(image).first(20));
  }
  const std::optional<BitMap> map = decode(image);
  if (!map) return 0;
  // An image that is accepted stands for a set whose own image leads back to it.
  ImageEncoder encoder(map->view());
  const auto head = write_image_head(encoder.head());
  std::vector<std::uint8_t> again(head.begin(), head.end());
  std::array<std::uint32_t, 70> scratch;
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    again.insert(again.end(), piece.begin(), piece.end());
  }
  const std::optional<BitMap> second = decode(again);
  if (!second || second->bits() != map->bits() ||
      !std::ranges::equal(second->view().words, map->view().words)) {
    std::abort();
  }
  return 0;
}
