#include <algorithm>
#include <cstdlib>

#include "native/cpr/archive_data.h"
#include "native/cpr/archive_names.h"

namespace {

using namespace qv::native::cpr;

class Source : public ByteSource {
 public:
  explicit Source(std::span<const std::uint8_t> bytes) : left_(bytes) {}
  std::size_t read(std::span<std::uint8_t> bytes) override {
    const std::size_t count = std::min(bytes.size(), left_.size());
    std::copy_n(left_.begin(), count, bytes.begin());
    left_ = left_.subspan(count);
    return count;
  }

 private:
  std::span<const std::uint8_t> left_;
};

class Nowhere : public ByteSink {
 public:
  bool write(std::span<const std::uint8_t>) override { return true; }
};

}  // namespace

// A whole archive: the head, then each entry's contents one behind the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Source source({data, size});
  const DecodedHead decoded = decode_head(source);
  if (decoded.code != HeadCode::done) return 0;
  const auto encoded = encode_head(decoded.head);
  if (encoded && encoded->size() > size) std::abort();
  Nowhere nowhere;
  for (const ArchiveEntry& entry : decoded.head.entries) {
    (void)stays_in_folder(entry.name);
    if (unpack_entry(source, nowhere, entry, {}) == EntryCode::source_ended) break;
  }
  return 0;
}
