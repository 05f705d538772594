#include "native/rtlib/code_page.h"

#include <algorithm>
#include <vector>

namespace qv::native::rtlib {
namespace {

constexpr std::size_t kBlock = 32;
constexpr std::size_t kMostHashed = 40;  // above, a factor without a clash hardly exists

constexpr ForwardTable make_windows_1252() {
  constexpr char16_t kFrom80[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  ForwardTable table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = byte >= 0x80 && byte < 0xA0 ? kFrom80[byte - 0x80] : static_cast<char16_t>(byte);
  }
  return table;
}

}  // namespace

constinit const ForwardTable kWindows1252 = make_windows_1252();

void make_reverse(const ForwardTable& forward, std::uint8_t unmapped, ReverseTable reverse) {
  std::fill(reverse.begin(), reverse.end(), unmapped);
  for (std::size_t byte = forward.size(); byte-- > 0;) {
    reverse[forward[byte]] = static_cast<std::uint8_t>(byte);
  }
}

CodePage::CodePage(const ForwardTable& forward, std::span<const std::uint8_t, 65536> reverse)
    : forward_(forward) {
  std::copy(reverse.begin(), reverse.end(), reverse_.begin());
  split_forward();
  find_hash();
}

void CodePage::split_forward() {
  for (std::size_t byte = 0; byte < 256; ++byte) {
    forward_low_[byte] = static_cast<std::uint8_t>(forward_[byte] & 0xFF);
    forward_high_[byte] = static_cast<std::uint8_t>(forward_[byte] >> 8);
  }
  for (std::size_t number = 0; number < 16; ++number) {
    const std::size_t first = number * kRowSize;
    Row row{static_cast<std::uint8_t>(number), {}, {}};
    bool is_identity = true;
    for (std::size_t i = 0; i < kRowSize; ++i) {
      row.low[i] = forward_low_[first + i];
      row.high[i] = forward_high_[first + i];
      is_identity = is_identity && forward_[first + i] == first + i;
    }
    if (is_identity) continue;
    odd_rows_[odd_row_count_++] = row;
    is_odd_row_[number] = 0xFF;
    if (first < 0x80) forward_ascii_is_identity_ = false;
  }
}

void CodePage::find_hash() {
  for (std::size_t code = 0; code < 256; ++code) {
    if (reverse_[code] != code) {
      if (code < 0x80) reverse_ascii_is_identity_ = false;
      continue;
    }
    const std::size_t row = code / 16;
    const std::size_t column = code % 16;
    identity_[row] = static_cast<std::uint16_t>(identity_[row] | 1u << column);
    auto& rows = row < 8 ? identity_of_rows_below_8_ : identity_of_rows_from_8_;
    rows[column] = static_cast<std::uint8_t>(rows[column] | 1u << (row % 8));
  }

  std::vector<char16_t> odd_characters;
  for (const char16_t character : forward_) {
    if (character >= 256 || reverse_[character] != character) odd_characters.push_back(character);
  }
  std::sort(odd_characters.begin(), odd_characters.end());
  odd_characters.erase(std::unique(odd_characters.begin(), odd_characters.end()),
                       odd_characters.end());
  if (odd_characters.size() > kMostHashed) return;

  for (unsigned factor = 1; factor < 0x10000 && hash_factor_ == 0; factor += 2) {
    std::uint64_t taken = 0;
    const bool clashes =
        std::any_of(odd_characters.begin(), odd_characters.end(), [&](char16_t character) {
          const std::uint64_t slot = std::uint64_t{1} << ((character * factor & 0xFFFF) >> 10);
          const bool is_taken = (taken & slot) != 0;
          taken |= slot;
          return is_taken;
        });
    if (!clashes) hash_factor_ = static_cast<std::uint16_t>(factor);
  }
  // An unused slot bears the key 0. That key belongs to slot 0, so elsewhere nothing meets it.
  std::fill(hash_bytes_.begin(), hash_bytes_.end(), reverse_[0]);
  for (const char16_t character : odd_characters) {
    const auto slot = static_cast<std::uint16_t>(character * hash_factor_) >> 10;
    hash_keys_[static_cast<std::size_t>(slot)] = character;
    hash_bytes_[static_cast<std::size_t>(slot)] = reverse_[character];
  }
}

void CodePage::from_bytes(std::span<const std::uint8_t> bytes, char16_t* out,
                          SimdLevel level) const {
  const std::size_t count = bytes.size();
  if (count >= 2 * kBlock && level == SimdLevel::kAvx512) {
    from_bytes_avx512(bytes.data(), count, out);
  } else if (count >= kBlock && level != SimdLevel::kPortable) {
    from_bytes_avx2(bytes.data(), count, out);
  } else {
    for (std::size_t i = 0; i < count; ++i) out[i] = forward_[bytes[i]];
  }
}

void CodePage::to_bytes(std::u16string_view text, std::uint8_t* out, SimdLevel level) const {
  const std::size_t count = text.size();
  if (count >= kBlock && level == SimdLevel::kAvx512 && hash_factor_ != 0) {
    to_bytes_avx512(text.data(), count, out);
  } else if (count >= kBlock && level != SimdLevel::kPortable) {
    to_bytes_avx2(text.data(), count, out);
  } else {
    for (std::size_t i = 0; i < count; ++i) out[i] = reverse_[text[i]];
  }
}

}  // namespace qv::native::rtlib
