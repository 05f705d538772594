#include "native/cpr/archive_records.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "native/cpr/archive_names.h"
#include "native/cpr/little_endian.h"

namespace qv::native::cpr {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::string_view kMagic = "KWCF";
constexpr std::size_t kHeadRecordBytes = 279;
constexpr std::size_t kEntryRecordBytes = 309;  // without its blocks
constexpr std::size_t kBlockRecordBytes = 5;
constexpr std::uint16_t kDimensions = 1;
constexpr std::int32_t kLowerBound = 1;
constexpr std::size_t kMostElements = std::numeric_limits<std::int32_t>::max();

class RecordWriter {
 public:
  explicit RecordWriter(std::size_t bytes) { bytes_.reserve(bytes); }

  void put_text(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }

  // The text and its terminator, filled with blanks.
  void put_field(std::string_view text) {
    put_text(text);
    bytes_.push_back(0);
    bytes_.insert(bytes_.end(), kNameFieldBytes - 1 - text.size(), ' ');
  }

  template <typename Number>
  void put(Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i) {
      bytes_.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> (8 * i)));
    }
  }

  void put(double number) { put(std::bit_cast<std::uint64_t>(number)); }

  // The count in a field of its own, and the descriptor of the array that follows.
  void put_array(std::size_t count) {
    put(static_cast<std::int32_t>(count));
    put(kDimensions);
    put(static_cast<std::int32_t>(count));
    put(kLowerBound);
  }

  Bytes take() { return std::move(bytes_); }

 private:
  Bytes bytes_;
};

class RecordReader {
 public:
  explicit RecordReader(std::span<const std::uint8_t> bytes) : at_(bytes.data()) {}

  // The field's text up to its terminator.
  std::string field() {
    const auto* const end = std::find(at_, at_ + kNameFieldBytes, 0);
    std::string text(at_, end);
    at_ += kNameFieldBytes;
    return text;
  }

  template <typename Number>
  Number number() {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) value |= std::uint64_t{*at_++} << (8 * i);
    return static_cast<Number>(value);
  }

  double date() { return std::bit_cast<double>(number<std::uint64_t>()); }

  // What put_array wrote; nothing where the two counts or the shape contradict each other.
  std::optional<std::uint32_t> array() {
    const auto count = number<std::int32_t>();
    const auto dimensions = number<std::uint16_t>();
    const auto elements = number<std::int32_t>();
    const auto lower_bound = number<std::int32_t>();
    if (count < 0 || elements != count || dimensions != kDimensions || lower_bound != kLowerBound) {
      return std::nullopt;
    }
    return static_cast<std::uint32_t>(count);
  }

 private:
  const std::uint8_t* at_;
};

void put_entry(const ArchiveEntry& entry, RecordWriter& out) {
  out.put(entry.next_position);
  out.put_field(entry.name);
  out.put(entry.size_bytes);
  out.put(entry.major_version);
  out.put(entry.minor_version);
  out.put(entry.created);
  out.put(entry.changed);
  out.put(entry.attributes);
  out.put(entry.crc);
  out.put_array(entry.blocks.size());
  for (const ArchiveBlock& block : entry.blocks) {
    out.put(static_cast<std::uint8_t>(block.kind));
    out.put(block.original_bytes);
    out.put(block.packed_bytes);
  }
}

bool read_all(ByteSource& source, std::span<std::uint8_t> bytes) {
  return source.read(bytes) == bytes.size();
}

bool read_blocks(ByteSource& source, std::uint32_t count, std::vector<ArchiveBlock>& blocks) {
  constexpr std::uint32_t kBlocksAtATime = 1024;
  std::array<std::uint8_t, kBlocksAtATime * kBlockRecordBytes> bytes;
  while (count > 0) {
    const std::uint32_t some = std::min(count, kBlocksAtATime);
    if (!read_all(source, std::span(bytes).first(some * kBlockRecordBytes))) return false;
    RecordReader record(bytes);
    for (std::uint32_t i = 0; i < some; ++i) {
      const auto kind = static_cast<BlockKind>(record.number<std::uint8_t>());
      const auto original = record.number<std::uint16_t>();
      const auto packed = record.number<std::uint16_t>();
      // The fields are signed; no size is negative.
      if (original > kArchiveBlockBytes || packed > kArchiveBlockBytes) return false;
      blocks.push_back({kind, original, packed});
    }
    count -= some;
  }
  return true;
}

bool read_entry_record(ByteSource& source, ArchiveEntry& entry) {
  std::array<std::uint8_t, kEntryRecordBytes> bytes;
  if (!read_all(source, bytes)) return false;
  RecordReader record(bytes);
  entry.next_position = record.number<std::int32_t>();
  entry.name = record.field();
  entry.size_bytes = record.number<std::int32_t>();
  entry.major_version = record.number<std::int32_t>();
  entry.minor_version = record.number<std::int32_t>();
  entry.created = record.date();
  entry.changed = record.date();
  entry.attributes = record.number<std::int32_t>();
  entry.crc = record.number<std::uint32_t>();
  const std::optional<std::uint32_t> blocks = record.array();
  return blocks && read_blocks(source, *blocks, entry.blocks);
}

}  // namespace

std::vector<ArchiveBlock> divided_into_blocks(std::int32_t size_bytes) {
  std::vector<ArchiveBlock> blocks;
  if (size_bytes < 0) return blocks;
  const auto size = static_cast<std::size_t>(size_bytes);
  blocks.assign(size / kArchiveBlockBytes,
                {BlockKind{}, static_cast<std::uint16_t>(kArchiveBlockBytes), 0});
  const std::size_t rest = size % kArchiveBlockBytes;
  if (rest != 0 || blocks.empty()) {
    blocks.push_back({BlockKind{}, static_cast<std::uint16_t>(rest), 0});
  }
  return blocks;
}

std::uint64_t first_data_position(const ArchiveHead& head) {
  std::uint64_t bytes = kHeadRecordBytes;
  for (const ArchiveEntry& entry : head.entries) {
    bytes += kEntryRecordBytes + std::uint64_t{kBlockRecordBytes} * entry.blocks.size();
  }
  return bytes + 1;
}

std::optional<std::vector<std::uint8_t>> encode_head(const ArchiveHead& head) {
  const bool fits = parent_directory_fits(head.parent_directory) &&
                    head.entries.size() <= kMostElements &&
                    std::ranges::all_of(head.entries, [](const ArchiveEntry& entry) {
                      return entry_name_fits(entry.name) && entry.blocks.size() <= kMostElements;
                    });
  if (!fits) return std::nullopt;
  RecordWriter out(static_cast<std::size_t>(first_data_position(head) - 1));
  out.put_text(kMagic);
  out.put(head.version);
  out.put(head.flags);
  out.put_field(head.parent_directory);
  out.put_array(head.entries.size());
  for (const ArchiveEntry& entry : head.entries) put_entry(entry, out);
  return out.take();
}

DecodedHead decode_head(ByteSource& source) {
  DecodedHead decoded;
  ArchiveHead& head = decoded.head;
  std::array<std::uint8_t, kHeadRecordBytes> bytes{};
  const std::size_t count = source.read(bytes);
  if (!std::equal(kMagic.begin(), kMagic.end(), bytes.begin())) {
    decoded.code = HeadCode::no_archive;
    return decoded;
  }
  RecordReader record{std::span(bytes).subspan(kMagic.size())};
  head.version = record.number<std::uint16_t>();
  // The field is signed, and any lower version is welcome.
  if (static_cast<std::int16_t>(head.version) > static_cast<std::int16_t>(kArchiveVersion)) {
    decoded.code = HeadCode::later_version;
    return decoded;
  }
  if (count != bytes.size()) return decoded;
  head.flags = record.number<std::int32_t>();
  head.parent_directory = record.field();
  const std::optional<std::uint32_t> entries = record.array();
  if (!entries) return decoded;
  for (std::uint32_t i = 0; i < *entries; ++i) {
    if (!read_entry_record(source, head.entries.emplace_back())) return decoded;
  }
  decoded.code = HeadCode::done;
  return decoded;
}

}  // namespace qv::native::cpr
