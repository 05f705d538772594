// Ratios of our conversions to peers, 64 KiB, interleaved in one process: the median of the paired
// ratios, above 1 where ours is faster. The peers are loops as a careful programmer writes them,
// compiled with the processor's own vectors, and the C library.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "native/rtlib/code_page.h"
#include "native/rtlib/crc16.h"
#include "native/rtlib/hex.h"
#include "native/rtlib/text_search.h"
#include "row.h"

namespace {

namespace rtlib = qv::native::rtlib;
using namespace qv::bench;
using rtlib::SimdLevel;
using Bytes = std::vector<std::uint8_t>;
using Work = std::function<void()>;

constexpr std::size_t kSize = 65536;
constexpr int kPairs = 61;

double seconds(const Work& work, int repeats) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < repeats; ++i) work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / repeats;
}

int repeats_for(const Work& work) {
  return std::max(1, static_cast<int>(0.001 / std::max(seconds(work, 2), 1e-7)));
}

void report(const std::string& name, const Goal& goal, std::size_t size, const Work& ours,
            const Work& peer) {
  const int our_repeats = repeats_for(ours);
  const int peer_repeats = repeats_for(peer);
  std::vector<double> ratios;
  std::vector<double> our_times;
  std::vector<double> peers_times;
  for (int i = 0; i < kPairs; ++i) {
    our_times.push_back(seconds(ours, our_repeats));
    peers_times.push_back(seconds(peer, peer_repeats));
    ratios.push_back(peers_times.back() / our_times.back());
  }
  for (auto* values : {&ratios, &our_times, &peers_times}) std::ranges::sort(*values);
  const double gigabytes = static_cast<double>(size) / 1e9;
  print_row(name.c_str(), gigabytes / our_times[kPairs / 2], gigabytes / peers_times[kPairs / 2],
            "GB/s", ratios[kPairs / 2], goal);
}

// Keeps the compiler from dropping work whose result nobody reads.
void consume(const void* data) { asm volatile("" : : "r"(data) : "memory"); }

Bytes random_bytes(unsigned range) {
  std::mt19937 random(1);
  Bytes bytes(kSize);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() % range);
  return bytes;
}

Bytes italian_text() {
  const std::string sentence =
      "Perch\xE9 la citt\xE0 \xE8 pi\xF9 grande: cos\xEC disse, \x93ogni virt\xF9\x94, e and\xF2. ";
  Bytes bytes(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    bytes[i] = static_cast<std::uint8_t>(sentence[i % sentence.size()]);
  }
  return bytes;
}

__attribute__((target("avx2"), noinline)) void latin_from_bytes(
    const std::uint8_t* __restrict bytes, std::size_t count, char16_t* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = bytes[i];
}

__attribute__((target("avx2"), noinline)) void latin_to_bytes(const char16_t* __restrict text,
                                                              std::size_t count,
                                                              std::uint8_t* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(text[i]);
}

class CodePageBench {
 public:
  CodePageBench() {
    std::vector<std::uint8_t> reverse(65536);
    const std::span<std::uint8_t, 65536> span(reverse.data(), 65536);
    rtlib::make_reverse(rtlib::kWindows1252, '?', span);
    page_ = std::make_unique<rtlib::CodePage>(rtlib::kWindows1252, span);
  }

  void run(const char* what, const Bytes& bytes, SimdLevel level) const {
    std::u16string text(kSize, 0);
    Bytes back(kSize);
    page_->from_bytes(bytes, text.data());
    const auto table_from = [&] { page_->from_bytes(bytes, text.data(), SimdLevel::kPortable); };
    const auto table_to = [&] { page_->to_bytes(text, back.data(), SimdLevel::kPortable); };
    const auto from = [&] { page_->from_bytes(bytes, text.data(), level); };
    const auto to = [&] { page_->to_bytes(text, back.data(), level); };
    const std::string name = std::string("1252 ") + what;
    const auto line = [&](const char* rest) { return name + rest; };
    report(line(", from bytes / plain Latin-1 widening"), at_least(0.5), kSize, from, [&] {
      latin_from_bytes(bytes.data(), kSize, text.data());
      consume(text.data());
    });
    from();
    report(line(", from bytes / table"), kNoGoal, kSize, from, table_from);
    report(line(", to bytes / plain Latin-1 narrowing"), at_least(0.5), 2 * kSize, to, [&] {
      latin_to_bytes(text.data(), kSize, back.data());
      consume(back.data());
    });
    report(line(", to bytes / table"), kNoGoal, 2 * kSize, to, table_to);
  }

 private:
  std::unique_ptr<rtlib::CodePage> page_;
};

void run_hex(SimdLevel level) {
  const Bytes bytes = random_bytes(256);
  std::u16string text(4 * kSize, 0);
  Bytes back(kSize);
  report(
      "hex encode / 256-entry table", at_least(3), kSize,
      [&] { rtlib::hex_encode(bytes, text.data(), level); },
      [&] { rtlib::hex_encode(bytes, text.data(), SimdLevel::kPortable); });
  const std::u16string_view digits(text.data(), 2 * kSize);
  report(
      "hex decode / table", at_least(3), 4 * kSize,
      [&] { rtlib::hex_decode(digits, back.data(), level); },
      [&] { rtlib::hex_decode(digits, back.data(), SimdLevel::kPortable); });
  for (const std::int32_t width : {0, 48, 24}) {
    const std::string name = "hex dump, width " + std::to_string(width) + " / formatted printing";
    report(
        name, at_least(20), kSize,
        [&] { rtlib::hex_dump(bytes, width, u"\r\n", text.data(), level); },
        [&] {
          std::array<char, 4> piece;
          char16_t* out = text.data();
          for (std::size_t i = 0; i < bytes.size(); ++i) {
            const int length = std::snprintf(piece.data(), piece.size(), " %02X", bytes[i]);
            out = std::copy_n(piece.data(), length, out);
          }
          consume(out);
        });
  }
}

std::uint16_t sliced(const Bytes& bytes) {
  return rtlib::crc16(bytes, 0xFFFF, SimdLevel::kPortable);
}

void run_crc(SimdLevel level) {
  for (const std::size_t size : {std::size_t{32768}, std::size_t{1} << 20}) {
    Bytes bytes = random_bytes(256);
    bytes.resize(size, 0x5A);
    std::uint16_t crc = 0;
    const std::string name = "CRC-16 of " + std::to_string(size / 1024) + " KiB / slicing by 16";
    report(
        name, at_least(5), size,
        [&] {
          crc = rtlib::crc16(bytes, 0xFFFF, level);
          consume(&crc);
        },
        [&] {
          crc = sliced(bytes);
          consume(&crc);
        });
  }
}

// The last token of a text, by the C++ library's own search.
std::size_t token_by_walking(std::u16string_view text, std::u16string_view separator) {
  std::size_t start = 0;
  for (std::size_t end = 0; (end = text.find(separator, start)) != std::u16string_view::npos;) {
    start = end + separator.size();
  }
  return start;
}

void run_search(SimdLevel level) {
  for (const std::size_t token_length : {std::size_t{10}, std::size_t{100}}) {
    const std::size_t count = (std::size_t{1} << 20) / (token_length + 1);
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) text += std::u16string(token_length, u'a') + u";";
    for (const std::u16string_view separator : {u";", u"a;"}) {
      const std::string name = "token " + std::to_string(count) + " of 2 MiB, separator of " +
                               std::to_string(separator.size()) + " / walking with find";
      report(
          name, kNoGoal, 2 * text.size(),
          [&] {
            const auto token = rtlib::find_token(text, separator, count, level);
            consume(&token);
          },
          [&] {
            const std::size_t start = token_by_walking(text, separator);
            consume(&start);
          });
    }
  }
}

void run_all(SimdLevel level) {
  const CodePageBench code_page;
  code_page.run("ASCII", random_bytes(128), level);
  code_page.run("Italian text", italian_text(), level);
  code_page.run("random bytes", random_bytes(256), level);
  run_hex(level);
  run_crc(level);
  run_search(level);
}

}  // namespace

int main() {
  for (const SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
    if (level > rtlib::simd_level()) continue;
    print_heading(level == SimdLevel::kAvx2 ? "Text and bytes, 64 KiB, AVX2"
                                            : "Text and bytes, 64 KiB, AVX-512",
                  "behind the stroke");
    run_all(level);
  }
}
