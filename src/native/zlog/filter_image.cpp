#include "native/zlog/filter_image.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "native/cpr/crc32.h"
#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_kernels.h"

namespace qv::native::zlog {
namespace {

constexpr std::uint16_t kLayout = 1;

constexpr std::size_t kLayoutAt = 4;
constexpr std::size_t kKindAt = 6;
constexpr std::size_t kBitsAt = 8;
constexpr std::size_t kBodyBytesAt = 12;
constexpr std::size_t kBodyCrcAt = 16;
constexpr std::size_t kHeadCrcAt = 20;

constexpr std::uint32_t kCrcStart = 0xFFFFFFFF;
constexpr std::uint32_t kWordBytes = sizeof(std::uint32_t);

// Words of the map go out and come in by pieces that are worth a call of the file system, and small
// enough to stay in the processor's cache between that and the checksum.
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

// Between two looks at whether the bit numbers can still be the smaller body.
constexpr std::size_t kCountStrideWords = std::size_t{1} << 14;

// Words whose set bits are listed at once, if the scratch has room for them.
constexpr std::size_t kListWords = 512;

std::span<const std::uint8_t> bytes_of(std::span<const std::uint32_t> words) {
  return {reinterpret_cast<const std::uint8_t*>(words.data()), words.size_bytes()};
}

std::span<std::uint8_t> bytes_of(std::span<std::uint32_t> words) {
  return {reinterpret_cast<std::uint8_t*>(words.data()), words.size_bytes()};
}

std::size_t count_of(std::span<const std::uint32_t> words) {
  return static_cast<std::size_t>(count(words));
}

template <class Value>
Value value_at(std::span<const std::uint8_t> bytes, std::size_t at) {
  Value value;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

template <class Value>
void put_at(std::span<std::uint8_t> bytes, std::size_t at, Value value) {
  std::memcpy(bytes.data() + at, &value, sizeof value);
}

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
  return ~cpr::crc32_update(kCrcStart, bytes);
}

// Bits past the limit in the last word, which an application's own map may have set.
std::uint32_t mask_of_last_word(std::int32_t limit) {
  return limit % kWordBits == 0 ? ~std::uint32_t{0} : (std::uint32_t{1} << limit % kWordBits) - 1;
}

// Set bits of a set of which each would take a word as a bit number; counting ends once that is no
// gain.
std::size_t count_while_sparse(std::span<const std::uint32_t> words) {
  std::size_t total = 0;
  for (std::size_t at = 0; at < words.size() && total < words.size(); at += kCountStrideWords) {
    const std::size_t stride = std::min(kCountStrideWords, words.size() - at);
    total += count_of(words.subspan(at, stride));
  }
  return total;
}

bool fits(const ImageHead& head) {
  const std::size_t words = words_for(head.bits);
  switch (head.body) {
    case ImageBody::kWords:
      return head.body_bytes == words * kWordBytes;
    case ImageBody::kBitNumbers:
      return head.body_bytes % kWordBytes == 0 && head.body_bytes < words * kWordBytes;
  }
  return false;
}

}  // namespace

std::optional<ImageHead> read_image_head(std::span<const std::uint8_t, kImageHeadBytes> bytes) {
  if (!std::ranges::equal(bytes.first<kImageMagic.size()>(), kImageMagic)) return std::nullopt;
  if (value_at<std::uint32_t>(bytes, kHeadCrcAt) != checksum(bytes.first<kHeadCrcAt>())) {
    return std::nullopt;
  }
  if (value_at<std::uint16_t>(bytes, kLayoutAt) != kLayout) return std::nullopt;
  const ImageHead head{value_at<std::int32_t>(bytes, kBitsAt), value_at<ImageBody>(bytes, kKindAt),
                       value_at<std::uint32_t>(bytes, kBodyBytesAt),
                       value_at<std::uint32_t>(bytes, kBodyCrcAt)};
  if (head.bits < 0 || !fits(head)) return std::nullopt;
  return head;
}

std::array<std::uint8_t, kImageHeadBytes> write_image_head(const ImageHead& head) {
  std::array<std::uint8_t, kImageHeadBytes> bytes{};
  std::ranges::copy(kImageMagic, bytes.begin());
  put_at(bytes, kLayoutAt, kLayout);
  put_at(bytes, kKindAt, head.body);
  put_at(bytes, kBitsAt, head.bits);
  put_at(bytes, kBodyBytesAt, head.body_bytes);
  put_at(bytes, kBodyCrcAt, head.body_crc);
  put_at(bytes, kHeadCrcAt, checksum(std::span(bytes).first<kHeadCrcAt>()));
  return bytes;
}

ImageEncoder::ImageEncoder(ConstBitSpan set, BodyChoice choice)
    : set_{set.used(), set.limit()}, crc_register_(kCrcStart) {
  const std::size_t words = set_.words.size();
  std::size_t set_bits = choice == BodyChoice::words ? words : count_while_sparse(set_.words);
  if (set_bits < words) {
    const std::uint32_t past = set_.words.back() & ~mask_of_last_word(set_.bits);
    set_bits -= static_cast<unsigned>(std::popcount(past));
  }
  head_.bits = set_.bits;
  head_.body = set_bits < words ? ImageBody::kBitNumbers : ImageBody::kWords;
  head_.body_bytes = static_cast<std::uint32_t>(std::min(set_bits, words) * kWordBytes);
}

ImageHead ImageEncoder::head() const {
  ImageEncoder rest = *this;
  std::array<std::uint32_t, 1024> scratch;
  while (!rest.next(scratch).empty()) {
  }
  ImageHead head = head_;
  head.body_crc = ~rest.crc_register_;
  return head;
}

std::span<const std::uint8_t> ImageEncoder::next(std::span<std::uint32_t> scratch) {
  const auto piece =
      head_.body == ImageBody::kWords ? next_words(scratch) : next_bit_numbers(scratch);
  crc_register_ = cpr::crc32_update(crc_register_, piece);
  return piece;
}

std::span<const std::uint8_t> ImageEncoder::next_words(std::span<std::uint32_t> scratch) {
  const std::size_t left = set_.words.size() - at_word_;
  if (left == 0) return {};
  const std::uint32_t mask = mask_of_last_word(set_.bits);
  if (left == 1 && (set_.words.back() & ~mask) != 0) {
    scratch[0] = set_.words.back() & mask;
    ++at_word_;
    return bytes_of(scratch.first(1));
  }
  std::size_t words = std::min(left, kPieceBytes / kWordBytes);
  if (words == left && (set_.words.back() & ~mask) != 0) --words;
  const std::span<const std::uint32_t> piece = set_.words.subspan(at_word_, words);
  at_word_ += words;
  return bytes_of(piece);
}

std::span<const std::uint8_t> ImageEncoder::next_bit_numbers(std::span<std::uint32_t> scratch) {
  const std::span<const std::uint32_t> words = set_.words;
  std::size_t used = 0;
  while (at_word_ < words.size()) {
    std::size_t block = std::min(kListWords, words.size() - at_word_);
    std::size_t numbers = count_of(words.subspan(at_word_, block));
    while (used + numbers + kListSlack > scratch.size()) {
      if (used > 0) return bytes_of(scratch.first(used));
      block /= 2;
      numbers = count_of(words.subspan(at_word_, block));
    }
    if (numbers > 0) {
      used += kernels().list(words.data() + at_word_, block,
                             static_cast<std::uint32_t>(at_word_ * kWordBits), &scratch[used]);
    }
    at_word_ += block;
  }
  while (used > 0 && scratch[used - 1] >= static_cast<std::uint32_t>(set_.bits)) --used;
  return bytes_of(scratch.first(used));
}

ImageDecoder::ImageDecoder(const ImageHead& head)
    : head_(head), map_(*BitMap::make(head.bits)), crc_register_(kCrcStart) {}

std::span<std::uint8_t> ImageDecoder::room(std::span<std::uint32_t> scratch) {
  const std::size_t left = head_.body_bytes - taken_bytes_;
  if (head_.body == ImageBody::kBitNumbers) {
    return bytes_of(scratch).first(std::min(left, scratch.size_bytes()));
  }
  return bytes_of(map_.view().words).subspan(taken_bytes_, std::min(left, kPieceBytes));
}

bool ImageDecoder::take(std::span<const std::uint8_t> piece) {
  crc_register_ = cpr::crc32_update(crc_register_, piece);
  taken_bytes_ += static_cast<std::uint32_t>(piece.size());
  if (head_.body == ImageBody::kWords) return true;
  const std::span<std::uint32_t> words = map_.view().words;
  for (std::size_t at = 0; at < piece.size(); at += kWordBytes) {
    const auto bit = value_at<std::uint32_t>(piece, at);
    if (bit <= last_bit_ || bit >= static_cast<std::uint32_t>(head_.bits)) return false;
    last_bit_ = bit;
    words[bit / kWordBits] |= std::uint32_t{1} << bit % kWordBits;
  }
  return true;
}

std::optional<BitMap> ImageDecoder::finish() {
  if (taken_bytes_ != head_.body_bytes || ~crc_register_ != head_.body_crc) return std::nullopt;
  const ConstBitSpan set = map_.view();
  if (!set.words.empty() && (set.words.back() & ~mask_of_last_word(set.bits)) != 0) {
    return std::nullopt;
  }
  return std::move(map_);
}

}  // namespace qv::native::zlog
