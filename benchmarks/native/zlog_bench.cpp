// Bit sets beside a peer: zlog_bench [folder for scratch files]
//
// Each line tells our figure, the peer's, and ours over the peer's: the median of the ratios of
// paired, interleaved runs in one process. Rates are of the bytes of one set.

#include <fcntl.h>
#include <peer_bitset.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "native/zlog/filter_image.h"
#include "row.h"

namespace {

namespace zlog = qv::native::zlog;
using Clock = std::chrono::steady_clock;
using namespace qv::bench;

constexpr std::int32_t kCachedBits = 1 << 20;
constexpr std::int32_t kLargeBits = 1 << 30;
constexpr std::size_t kMiB = std::size_t{1} << 20;

// Sums that must not be optimised away end here.
volatile std::uint64_t sink;

template <class Run>
double seconds(int repeats, Run&& run) {
  const auto start = Clock::now();
  for (int i = 0; i < repeats; ++i) run();
  return std::chrono::duration<double>(Clock::now() - start).count() / repeats;
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

struct Pair {
  double ours_s;
  double peers_s;
  double ours_over_peers;  // of the times
};

template <class Ours, class Peers>
Pair compare(int rounds, int repeats, Ours&& ours, Peers&& peers) {
  std::vector<double> our_times;
  std::vector<double> peer_times;
  std::vector<double> ratios;
  for (int round = -1; round < rounds; ++round) {
    const double our_time = seconds(repeats, ours);
    const double peer_time = seconds(repeats, peers);
    if (round < 0) continue;  // the first touches memory and code
    our_times.push_back(our_time);
    peer_times.push_back(peer_time);
    ratios.push_back(our_time / peer_time);
  }
  return {median(our_times), median(peer_times), median(ratios)};
}

void print_rate(const std::string& what, const Goal& goal, std::size_t bytes, const Pair& pair) {
  const double gigabytes = static_cast<double>(bytes) / 1e9;
  print_row(what.c_str(), gigabytes / pair.ours_s, gigabytes / pair.peers_s, "GB/s",
            1 / pair.ours_over_peers, goal);
}

void print_time(const std::string& what, const Goal& goal, std::uint64_t bits, const Pair& pair) {
  const double scale = 1e9 / static_cast<double>(bits);
  print_row(what.c_str(), pair.ours_s * scale, pair.peers_s * scale, "ns", pair.ours_over_peers,
            goal);
}

// One set twice: ours, and the peer's with the same bits.
struct Twin {
  zlog::BitMap ours;
  bitset_t* peers;

  explicit Twin(std::int32_t bits)
      : ours(*zlog::BitMap::make(bits)),
        peers(bitset_create_with_capacity(static_cast<std::size_t>(bits))) {}
  Twin(const Twin&) = delete;
  Twin& operator=(const Twin&) = delete;
  ~Twin() { bitset_free(peers); }

  std::size_t bytes() const { return ours.view().words.size_bytes(); }
  void copy_to_peer() { std::memcpy(peers->array, ours.view().words.data(), bytes()); }
};

void fill_random(Twin& twin, double share, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  const auto words = twin.ours.view().words;
  if (share == 0.5) {
    for (std::uint32_t& word : words) word = static_cast<std::uint32_t>(random() >> 32);
  } else {
    std::geometric_distribution<std::int64_t> gap(share);
    std::ranges::fill(words, 0);
    for (std::int64_t bit = gap(random); bit < twin.ours.bits(); bit += gap(random) + 1) {
      words[static_cast<std::size_t>(bit / 32)] |= 1U << bit % 32;
    }
  }
  twin.copy_to_peer();
}

void bench_algebra(std::int32_t bits, const char* size, int rounds, int repeats) {
  Twin target(bits);
  Twin source(bits);
  fill_random(target, 0.5, 1);
  fill_random(source, 0.5, 2);
  const auto row = [&](const char* name, const Goal& goal, auto ours, auto peers) {
    print_rate(std::string(name) + " in place, " + size, goal, target.bytes(),
               compare(
                   rounds, repeats,
                   [&] { ours(target.ours.view().words, std::as_const(source.ours).view().words); },
                   [&] { peers(target.peers, source.peers); }));
  };
  row("Or", at_least(0.95), zlog::or_with, bitset_inplace_union);
  row("And", at_least(0.95), zlog::and_with, bitset_inplace_intersection);
  row("Xor", at_least(0.95), zlog::xor_with, bitset_inplace_symmetric_difference);
  row("AndNot", at_least(0.95), zlog::exclude, bitset_inplace_difference);
  const bool is_large = bits == kLargeBits;
  row("And (peer: memcpy)", is_large ? at_least(0.75) : kNoGoal, zlog::and_with,
      [&](bitset_t* to, const bitset_t* from) {
        std::memcpy(to->array, from->array, target.bytes());
      });
  fill_random(target, 0.5, 3);
  print_rate(std::string("Count, ") + size, at_least(is_large ? 1.1 : 1.5), target.bytes(),
             compare(
                 rounds, repeats, [&] { sink = zlog::count(target.ours.view().words); },
                 [&] { sink = bitset_count(target.peers); }));
}

using Lanes [[gnu::vector_size(32)]] = std::uint64_t;

// Nothing but reading, by the widest loads that most processors have.
[[gnu::target("avx2"), gnu::noinline]] std::uint64_t read_all(const std::uint64_t* words,
                                                              std::size_t count) {
  const auto* at = reinterpret_cast<const Lanes*>(words);
  Lanes a{};
  Lanes b{};
  Lanes c{};
  Lanes d{};
  for (std::size_t i = 0; i < count / 4; i += 4) {
    a |= at[i];
    b |= at[i + 1];
    c |= at[i + 2];
    d |= at[i + 3];
  }
  a |= b | c | d;
  return a[0] ^ a[1] ^ a[2] ^ a[3];
}

void bench_read_bandwidth() {
  Twin set(kLargeBits);
  fill_random(set, 0.5, 4);
  print_rate("Count, 2^30 (peer: reading alone)", at_least(0.85), set.bytes(),
             compare(
                 11, 1, [&] { sink = zlog::count(set.ours.view().words); },
                 [&] { sink = read_all(set.peers->array, set.bytes() / 8); }));
}

void bench_walk(std::int32_t bits, double share, const char* density, int repeats) {
  Twin set(bits);
  fill_random(set, share, 5);
  const zlog::ConstBitSpan ours = std::as_const(set.ours).view();
  const std::uint64_t set_bits = zlog::count(ours.words);
  print_time(std::string("Next, a call a bit, ") + density, at_most(share > 0.01 ? 1 : 0.75),
             set_bits,
             compare(
                 9, repeats,
                 [&] {
                   std::uint64_t sum = 0;
                   for (std::int32_t bit = -1; (bit = zlog::next_set(ours, bit)) >= 0;) {
                     sum += static_cast<std::uint32_t>(bit);
                   }
                   sink = sum;
                 },
                 [&] { sink = peer_sum_of_set(set.peers); }));
  print_time(std::string("Walk in bulk, ") + density + " (peer: bare loop)", at_most(1.1), set_bits,
             compare(
                 9, repeats,
                 [&] {
                   std::uint64_t sum = 0;
                   zlog::for_each_set(ours, [&sum](std::uint32_t bit) { sum += bit; });
                   sink = sum;
                 },
                 [&] {
                   std::uint64_t sum = 0;
                   for (std::size_t i = 0; i < set.peers->arraysize; ++i) {
                     for (std::uint64_t word = set.peers->array[i]; word != 0; word &= word - 1) {
                       sum += 64 * i + static_cast<unsigned>(std::countr_zero(word));
                     }
                   }
                   sink = sum;
                 }));
}

void must(bool ok, const char* what) {
  if (ok) return;
  std::perror(what);
  std::exit(1);
}

void write_all(int file, std::span<const std::uint8_t> bytes) {
  must(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
}

void read_all(int file, std::span<std::uint8_t> bytes) {
  must(read(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "read");
}

int open_file(const std::string& path, int flags) {
  const int file = open(path.c_str(), flags, 0600);
  must(file >= 0, path.c_str());
  return file;
}

// As a writer does that can go back: the head is filled in behind the body.
void save(const std::string& path, int flags, zlog::ConstBitSpan set,
          std::span<std::uint32_t> scratch) {
  const int file = open_file(path, flags);
  zlog::ImageEncoder encoder(set);
  write_all(file, std::vector<std::uint8_t>(zlog::kImageHeadBytes));
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    write_all(file, piece);
  }
  const auto head = zlog::write_image_head(encoder.head());
  must(pwrite(file, head.data(), head.size(), 0) == static_cast<ssize_t>(head.size()), "pwrite");
  close(file);
}

void save_head_first(const std::string& path, int flags, zlog::ConstBitSpan set,
                     std::span<std::uint32_t> scratch) {
  const int file = open_file(path, flags);
  zlog::ImageEncoder encoder(set);
  write_all(file, zlog::write_image_head(encoder.head()));
  for (auto piece = encoder.next(scratch); !piece.empty(); piece = encoder.next(scratch)) {
    write_all(file, piece);
  }
  close(file);
}

void write_raw(const std::string& path, int flags, std::span<const std::uint8_t> bytes) {
  const int file = open_file(path, flags);
  for (std::size_t at = 0; at < bytes.size(); at += kMiB) write_all(file, bytes.subspan(at, kMiB));
  close(file);
}

void load(const std::string& path, std::span<std::uint32_t> scratch) {
  const int file = open_file(path, O_RDONLY);
  std::array<std::uint8_t, zlog::kImageHeadBytes> bytes;
  read_all(file, bytes);
  zlog::ImageDecoder decoder(*zlog::read_image_head(bytes));
  for (auto room = decoder.room(scratch); !room.empty(); room = decoder.room(scratch)) {
    read_all(file, room);
    must(decoder.take(room), "take");
  }
  must(decoder.finish().has_value(), "finish");
  close(file);
}

void read_raw(const std::string& path, std::size_t bytes) {
  const int file = open_file(path, O_RDONLY);
  void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  must(pages != MAP_FAILED, "mmap");
  for (std::size_t at = 0; at < bytes; at += kMiB) {
    read_all(file, {static_cast<std::uint8_t*>(pages) + at, kMiB});
  }
  munmap(pages, bytes);
  close(file);
}

void bench_files(const std::string& folder, double share, const char* density) {
  Twin set(kLargeBits);
  fill_random(set, share, 6);
  const zlog::ConstBitSpan ours = std::as_const(set.ours).view();
  const std::span<const std::uint8_t> raw(reinterpret_cast<const std::uint8_t*>(set.peers->array),
                                          set.bytes());
  // One file for both, since where a file lies on the disk makes a difference.
  const std::string path = folder + "/zlog_bench.tmp";
  std::vector<std::uint32_t> scratch(zlog::kImageScratchWords);
  const auto row = [&](const char* name, double goal, auto run, auto peer) {
    print_rate(std::string(name) + ", " + density + " (peer: raw bytes)", at_least(goal),
               set.bytes(), compare(9, 1, run, peer));
  };
  constexpr int kNew = O_WRONLY | O_CREAT | O_TRUNC;
  constexpr int kOver = O_WRONLY | O_CREAT;
  row(
      "Save, new file", 0.95, [&] { save(path, kNew, ours, scratch); },
      [&] { write_raw(path, kNew, raw); });
  row(
      "Save head first, new file", 0.95, [&] { save_head_first(path, kNew, ours, scratch); },
      [&] { write_raw(path, kNew, raw); });
  row(
      "Save, over a file", 0.95, [&] { save(path, kOver, ours, scratch); },
      [&] { write_raw(path, kOver, raw); });
  row(
      "Save head first, over a file", 0.95, [&] { save_head_first(path, kOver, ours, scratch); },
      [&] { write_raw(path, kOver, raw); });
  // The image, which a saved set may leave shorter, lies over the raw words: both can be read.
  save(path, kOver, ours, scratch);
  row(
      "Load", 0.9, [&] { load(path, scratch); }, [&] { read_raw(path, raw.size()); });
  std::remove(path.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  const std::string folder = argc > 1 ? argv[1] : "/tmp";
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  print_heading("Bit sets", "the bit set of CRoaring");
  bench_algebra(kCachedBits, "2^20", 41, 300);
  bench_algebra(kLargeBits, "2^30", 11, 1);
  bench_read_bandwidth();
  bench_walk(kCachedBits, 0.5, "50 %", 10);
  bench_walk(kCachedBits, 0.1, "10 %", 30);
  bench_walk(kLargeBits, 1e-5, "1e-5 of 2^30", 1);
  bench_files(folder, 0.5, "2^30, 50 %");
  bench_files(folder, 0.01, "2^30, 1 %");
  return 0;
}
