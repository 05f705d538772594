// Block coder and CRC-32 beside peers: cpr_bench [file...]
//
// Each line tells our figure, the peer's, and ours over the peer's. Times are medians of paired,
// interleaved runs in one process. Files are divided into blocks of 32767 bytes, as an archive
// does. Without files: the machine's own copy of a licence text, this program, and made-up data.

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "native/cpr/crc32.h"
#include "native/cpr/explode.h"
#include "native/cpr/implode.h"
#include "row.h"

// The peer's coder is driven by two callbacks and a work area of its own size.
extern "C" {
using PeerRead = unsigned (*)(char* buffer, unsigned* size, void* context);
using PeerWrite = void (*)(char* buffer, unsigned* size, void* context);
unsigned implode(PeerRead read, PeerWrite write, char* work, void* context, unsigned* type,
                 unsigned* dictionary_bytes);
unsigned explode(PeerRead read, PeerWrite write, char* work, void* context);
}

namespace {

namespace cpr = qv::native::cpr;
using namespace qv::bench;
using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kBlockBytes = 32767;
constexpr std::size_t kPeerWorkBytes = 65536;

template <typename Run>
double seconds(Run&& run) {
  const auto start = Clock::now();
  run();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

struct Pair {
  double ours_s;
  double peers_s;
  double time_ratio;  // median of peer's time over ours: above 1, ours is faster
};

// Interleaved runs until the time is used up, five pairs at least.
template <typename Ours, typename Peers>
Pair race(Ours&& ours, Peers&& peers) {
  constexpr double kBudgetSeconds = 1.0;
  std::vector<double> ours_s;
  std::vector<double> peers_s;
  std::vector<double> ratios;
  const auto start = Clock::now();
  do {
    ours_s.push_back(seconds(ours));
    peers_s.push_back(seconds(peers));
    ratios.push_back(peers_s.back() / ours_s.back());
  } while (ratios.size() < 5 ||
           std::chrono::duration<double>(Clock::now() - start).count() < kBudgetSeconds);
  return {median(ours_s), median(peers_s), median(ratios)};
}

struct PeerStream {
  std::span<const std::uint8_t> input;
  Bytes output;
};

unsigned peer_read(char* buffer, unsigned* size, void* context) {
  auto& stream = *static_cast<PeerStream*>(context);
  const std::size_t count = std::min<std::size_t>(*size, stream.input.size());
  std::memcpy(buffer, stream.input.data(), count);
  stream.input = stream.input.subspan(count);
  return static_cast<unsigned>(count);
}

void peer_write(char* buffer, unsigned* size, void* context) {
  auto& output = static_cast<PeerStream*>(context)->output;
  output.insert(output.end(), buffer, buffer + *size);
}

std::vector<std::span<const std::uint8_t>> blocks_of(const Bytes& data) {
  std::vector<std::span<const std::uint8_t>> blocks;
  for (std::size_t at = 0; at < data.size(); at += kBlockBytes) {
    blocks.push_back(std::span(data).subspan(at, std::min(kBlockBytes, data.size() - at)));
  }
  return blocks;
}

struct Coded {
  std::size_t bytes = 0;
  std::vector<Bytes> blocks;
};

Coded code_with_ours(const std::vector<std::span<const std::uint8_t>>& blocks, cpr::DataType type,
                     cpr::Effort effort) {
  Coded coded;
  Bytes output(kBlockBytes + 64);
  for (const auto block : blocks) {
    const auto result = cpr::implode(block, output, type, effort);
    coded.bytes += result.code == cpr::CoderCode::done ? result.bytes_written : block.size();
    coded.blocks.emplace_back(output.begin(),
                              output.begin() + static_cast<std::ptrdiff_t>(result.bytes_written));
  }
  return coded;
}

Coded code_with_peer(const std::vector<std::span<const std::uint8_t>>& blocks, cpr::DataType type) {
  static std::array<char, kPeerWorkBytes> work;
  Coded coded;
  for (const auto block : blocks) {
    PeerStream stream{block, {}};
    stream.output.reserve(kBlockBytes * 2);
    auto peer_type = static_cast<unsigned>(type);
    unsigned dictionary_bytes = 4096;
    implode(peer_read, peer_write, work.data(), &stream, &peer_type, &dictionary_bytes);
    coded.bytes += std::min(stream.output.size(), block.size());
    coded.blocks.push_back(std::move(stream.output));
  }
  return coded;
}

// What a group is; the goals for its size go by that, not by the mode that it is coded in.
enum class Content { prose, program, zeros, other };

Goal size_goal(Content content, cpr::Effort effort) {
  if (effort == cpr::Effort::standard) return at_most(content == Content::prose ? 0.98 : 1);
  return at_most(content == Content::program ? 0.985 : 0.97);
}

// Returns how many times as fast as the peer's our expansion is.
double bench_file(const std::string& name, const Bytes& data, Content content, cpr::DataType type) {
  const auto blocks = blocks_of(data);
  const double megabytes = static_cast<double>(data.size()) / 1e6;
  const std::string title = name + (type == cpr::DataType::text ? ", text" : ", binary");
  Coded peer = code_with_peer(blocks, type);
  for (const auto effort : {cpr::Effort::standard, cpr::Effort::smallest}) {
    const Coded ours = code_with_ours(blocks, type, effort);
    const Pair time =
        race([&] { code_with_ours(blocks, type, effort); }, [&] { code_with_peer(blocks, type); });
    const bool is_standard = effort == cpr::Effort::standard;
    const std::string what = title + (is_standard ? ", standard" : ", smallest");
    print_row(what.c_str(), megabytes / time.ours_s, megabytes / time.peers_s, "MB/s",
              time.time_ratio, at_least(is_standard ? 1.5 : 0.5));
    const auto our_bytes = static_cast<double>(ours.bytes);
    const auto peers_bytes = static_cast<double>(peer.bytes);
    print_row(what.c_str(), our_bytes, peers_bytes, "bytes", our_bytes / peers_bytes,
              size_goal(content, effort));
  }
  Bytes output(kBlockBytes);
  static std::array<char, kPeerWorkBytes> work;
  const Pair time = race(
      [&] {
        for (std::size_t i = 0; i < blocks.size(); ++i) {
          const auto room = std::span(output).first(blocks[i].size());
          const auto result = cpr::explode(peer.blocks[i], room);
          if (result.code != cpr::CoderCode::done || !std::ranges::equal(room, blocks[i])) {
            std::printf("WRONG: block %zu of %s expands to something else\n", i, name.c_str());
          }
        }
      },
      [&] {
        PeerStream stream;
        stream.output.reserve(kBlockBytes);
        for (std::size_t i = 0; i < blocks.size(); ++i) {
          stream.input = peer.blocks[i];
          stream.output.clear();
          explode(peer_read, peer_write, work.data(), &stream);
          if (!std::ranges::equal(stream.output, blocks[i])) std::printf("peer differs\n");
        }
      });
  print_row((title + ", expand").c_str(), megabytes / time.ours_s, megabytes / time.peers_s, "MB/s",
            time.time_ratio);
  return time.time_ratio;
}

void bench_crc(std::size_t size) {
  std::mt19937 random(1);
  Bytes data(size);
  for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
  const std::size_t rounds = std::max<std::size_t>(1, (std::size_t{32} << 20) / size);
  volatile std::uint32_t sink = 0;
  const auto with = [&](auto crc) {
    return [&sink, crc, rounds] {
      for (std::size_t i = 0; i < rounds; ++i) sink = crc(static_cast<std::uint32_t>(i));
    };
  };
  const auto ours = with([&](std::uint32_t start) { return cpr::crc32_update(start, data); });
  const auto tables =
      with([&](std::uint32_t start) { return cpr::crc32_update_by_tables(start, data); });
  const auto peer =
      with([&](std::uint32_t start) { return libdeflate_crc32(start, data.data(), data.size()); });
  const double gigabytes = static_cast<double>(size * rounds) / 1e9;
  const Pair folded = race(ours, peer);
  const std::string what = "CRC-32 of " + std::to_string(size) + " bytes";
  print_row(what.c_str(), gigabytes / folded.ours_s, gigabytes / folded.peers_s, "GB/s",
            folded.time_ratio, at_least(0.9));
  const Pair sliced = race(tables, peer);
  print_row((what + ", tables").c_str(), gigabytes / sliced.ours_s, gigabytes / sliced.peers_s,
            "GB/s", sliced.time_ratio);
}

Bytes read_file(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Bytes made_up_log() {
  std::mt19937 random(7);
  std::string text;
  for (unsigned line = 0; text.size() < 500000; ++line) {
    text += "2024-03-" + std::to_string(10 + line / 500 % 20) +
            " 10:" + std::to_string(10 + line / 10 % 50) + " GET /articoli/" +
            std::to_string(random() % 900) + ".html 200 " + std::to_string(random() % 90000) +
            "\r\n";
  }
  return {text.begin(), text.end()};
}

}  // namespace

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  print_heading("CRC-32", "libdeflate");
  for (const std::size_t size : {std::size_t{32767}, std::size_t{1} << 20}) bench_crc(size);
  struct Group {
    std::string name;
    Bytes data;
    Content content = Content::other;
  };
  std::vector<Group> groups;
  for (int i = 1; i < count; ++i) {
    const std::string name = arguments[i];
    groups.push_back({name.substr(name.rfind('/') + 1), read_file(name)});
  }
  if (groups.empty()) {
    groups.push_back({"GPL-3", read_file("/usr/share/common-licenses/GPL-3"), Content::prose});
    groups.push_back({"program", read_file("/proc/self/exe"), Content::program});
    groups.push_back({"log", made_up_log()});
    groups.push_back({"zeros", Bytes(1 << 20), Content::zeros});
  }
  print_heading("Block coder", "pklib as StormLib has it");
  double logs = 0;
  unsigned expansions = 0;
  for (const auto& [name, data, content] : groups) {
    if (data.empty()) {
      std::printf("%s: not readable or empty, left out\n", name.c_str());
      continue;
    }
    for (const auto type : {cpr::DataType::binary, cpr::DataType::text}) {
      const double ratio = bench_file(name, data, content, type);
      // Nothing but copying: it would lift the mean beyond what any file has.
      if (content == Content::zeros) continue;
      logs += std::log(ratio);
      ++expansions;
    }
  }
  if (expansions == 0) return 1;
  const double mean = std::exp(logs / expansions);
  print_row("expand, geometric mean without zeros", mean, 1, "x", mean, at_least(2.5));
}
