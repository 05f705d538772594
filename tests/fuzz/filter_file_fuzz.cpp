#include <algorithm>
#include <cstdlib>
#include <vector>

#include "console/program.h"
#include "qvflt/images.h"

namespace {

using namespace qv::qvflt;
using qv::native::cpr::ByteSink;
using qv::native::cpr::ByteSource;
using qv::native::zlog::BodyChoice;

// Larger maps are made as easily, but would leave the fuzzer busy with their pages.
constexpr std::int32_t kMostBits = 1 << 20;

class Bytes final : public ByteSource {
 public:
  explicit Bytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  std::size_t read(std::span<std::uint8_t> target) override {
    const std::size_t count = std::min(target.size(), bytes_.size());
    std::ranges::copy(bytes_.first(count), target.begin());
    bytes_ = bytes_.subspan(count);
    return count;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

class Collected final : public ByteSink {
 public:
  bool write(std::span<const std::uint8_t> bytes) override {
    all.insert(all.end(), bytes.begin(), bytes.end());
    return true;
  }
  std::vector<std::uint8_t> all;
};

// An image that was read leads back to itself through every kind.
void go_through_kinds(const Image& image) {
  for (const Kind kind : {Kind::saved, Kind::older, Kind::raw}) {
    for (const BodyChoice choice : {BodyChoice::shorter, BodyChoice::words}) {
      Collected written;
      write_image(written, kind, image.map.view(), choice);
      Bytes source(written.all);
      ImageReader reader(source, written.all.size(), kind, image.map.bits());
      const auto again = reader.next();
      if (!again || again->map.bits() != image.map.bits() || again->records != image.records ||
          again->size_bytes != written.all.size() ||
          !std::ranges::equal(again->map.view().words, image.map.view().words) || reader.next()) {
        std::abort();
      }
    }
  }
}

void go_through_file(std::span<const std::uint8_t> file, Kind kind) {
  Bytes source(file);
  ImageReader reader(source, file.size(), kind, std::nullopt);
  try {
    std::uint64_t position = 0;
    while (const auto image = reader.next()) {
      if (image->offset_bytes != position ||
          image->records > static_cast<std::uint64_t>(image->map.bits())) {
        std::abort();
      }
      position += image->size_bytes;
      if (image->map.bits() <= kMostBits) go_through_kinds(*image);
    }
    if (position != file.size()) std::abort();
  } catch (const qv::console::Failure&) {
    return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> file(data, size);
  Bytes source(file);
  recognised(source, size);
  for (const Kind kind : {Kind::saved, Kind::older, Kind::raw}) go_through_file(file, kind);
  return 0;
}
