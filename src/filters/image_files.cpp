#include "filters/image_files.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/filter_image.h"
#include "native/zlog/raw_image.h"

namespace qv::filters {
namespace {

using namespace native::zlog;

constexpr std::size_t kMaxTransfer_bytes = 1U << 24;

bool write_all(HANDLE file, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMaxTransfer_bytes));
    DWORD written = 0;
    if (WriteFile(file, bytes.data(), wanted, &written, nullptr) == FALSE || written == 0) {
      return false;
    }
    bytes = bytes.subspan(written);
  }
  return true;
}

bool read_all(HANDLE file, std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMaxTransfer_bytes));
    DWORD read = 0;
    if (ReadFile(file, bytes.data(), wanted, &read, nullptr) == FALSE || read == 0) return false;
    bytes = bytes.subspan(read);
  }
  return true;
}

std::optional<std::int64_t> position(HANDLE file) {
  LARGE_INTEGER at{};
  if (SetFilePointerEx(file, LARGE_INTEGER{}, &at, FILE_CURRENT) == FALSE) return std::nullopt;
  return at.QuadPart;
}

bool go_to(HANDLE file, std::int64_t at) {
  LARGE_INTEGER target{};
  target.QuadPart = at;
  return SetFilePointerEx(file, target, nullptr, FILE_BEGIN) != FALSE;
}

// Does the file hold that many more bytes? A handle without a size (a pipe) is believed.
bool reaches(HANDLE file, std::uint64_t bytes) {
  LARGE_INTEGER size{};
  const auto at = position(file);
  if (!at || GetFileSizeEx(file, &size) == FALSE) return true;
  return size.QuadPart >= *at && static_cast<std::uint64_t>(size.QuadPart - *at) >= bytes;
}

bool write_body(HANDLE file, ImageEncoder& encoder) {
  std::vector<std::uint32_t> scratch(kImageScratchWords);
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    if (!write_all(file, piece)) return false;
  }
  return true;
}

}  // namespace

bool save_image(HANDLE file, ConstBitSpan set) {
  ImageEncoder encoder(set);
  const auto start = position(file);
  // Where there is no going back the head comes first, for one more pass over the bits.
  if (!start) return write_all(file, write_image_head(encoder.head())) && write_body(file, encoder);
  // The head is written when its checksum is known; until then there is no image.
  constexpr std::array<std::uint8_t, kImageHeadBytes> kNoHead{};
  if (!write_all(file, kNoHead) || !write_body(file, encoder)) return false;
  const auto end = position(file);
  return end && go_to(file, *start) && write_all(file, write_image_head(encoder.head())) &&
         go_to(file, *end);
}

std::optional<BitMap> load_image(HANDLE file) {
  std::array<std::uint8_t, kImageHeadBytes> bytes;
  if (!read_all(file, bytes)) return std::nullopt;
  const auto head = read_image_head(bytes);
  if (!head || !reaches(file, head->body_bytes)) return std::nullopt;
  ImageDecoder decoder(*head);
  std::vector<std::uint32_t> scratch(kImageScratchWords);
  for (auto room = decoder.room(scratch); !room.empty(); room = decoder.room(scratch)) {
    if (!read_all(file, room) || !decoder.take(room)) return std::nullopt;
  }
  return decoder.finish();
}

std::optional<BitMap> load_older_image(HANDLE file) {
  std::array<std::uint8_t, kOlderImageHeadBytes> bytes;
  if (!read_all(file, bytes)) return std::nullopt;
  const auto bits = read_older_image_head(bytes);
  if (!bits || !reaches(file, raw_image_bytes(*bits))) return std::nullopt;
  auto map = BitMap::make(*bits);
  if (!map || !read_all(file, raw_image_of(map->view()))) return std::nullopt;
  trim(map->view());
  return map;
}

}  // namespace qv::filters
