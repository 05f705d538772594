// implode_storm file...: the coder in libstorm expands what ours makes of each file, and ours what
// that one makes with each of the three dictionaries. Tells the number of blocks; 1 after a
// failure.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <vector>

#include "native/cpr/explode.h"
#include "native/cpr/implode.h"

extern "C" {
using PeerRead = unsigned (*)(char* buffer, unsigned* size, void* context);
using PeerWrite = void (*)(char* buffer, unsigned* size, void* context);
unsigned implode(PeerRead read, PeerWrite write, char* work, void* context, unsigned* type,
                 unsigned* dictionary_bytes);
unsigned explode(PeerRead read, PeerWrite write, char* work, void* context);
}

namespace {

namespace cpr = qv::native::cpr;
using Bytes = std::vector<std::uint8_t>;

struct Stream {
  std::span<const std::uint8_t> input;
  Bytes output;
};

unsigned read(char* buffer, unsigned* size, void* context) {
  auto& stream = *static_cast<Stream*>(context);
  const std::size_t count = std::min<std::size_t>(*size, stream.input.size());
  std::memcpy(buffer, stream.input.data(), count);
  stream.input = stream.input.subspan(count);
  return static_cast<unsigned>(count);
}

void write(char* buffer, unsigned* size, void* context) {
  auto& output = static_cast<Stream*>(context)->output;
  output.insert(output.end(), buffer, buffer + *size);
}

std::array<char, 65536> work;

bool ours_to_peer(const Bytes& original, cpr::DataType type, cpr::Effort effort) {
  Bytes packed(original.size());
  const cpr::CoderResult result = cpr::implode(original, packed, type, effort);
  Stream stream{std::span(packed).first(result.bytes_written), {}};
  return result.code == cpr::CoderCode::done && explode(read, write, work.data(), &stream) == 0 &&
         stream.output == original;
}

bool peer_to_ours(const Bytes& original, unsigned type, unsigned dictionary_bytes) {
  Stream stream{original, {}};
  if (implode(read, write, work.data(), &stream, &type, &dictionary_bytes) != 0) return false;
  Bytes back(original.size());
  const cpr::CoderResult result = cpr::explode(stream.output, back);
  return result.code == cpr::CoderCode::done && result.bytes_written == original.size() &&
         back == original;
}

}  // namespace

int main(int count, char** arguments) {
  int blocks = 0;
  int failures = 0;
  const auto judge = [&](bool good, const char* file, const char* what) {
    ++blocks;
    if (good) return;
    ++failures;
    std::printf("FAILED %s: %s\n", file, what);
  };
  for (int i = 1; i < count; ++i) {
    std::ifstream file(arguments[i], std::ios::binary);
    const Bytes original{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    for (const auto type : {cpr::DataType::binary, cpr::DataType::text}) {
      for (const auto effort : {cpr::Effort::standard, cpr::Effort::smallest}) {
        judge(ours_to_peer(original, type, effort), arguments[i], "libstorm expands our block");
      }
      for (const unsigned dictionary_bytes : {1024u, 2048u, 4096u}) {
        judge(peer_to_ours(original, static_cast<unsigned>(type), dictionary_bytes), arguments[i],
              "we expand libstorm's block");
      }
    }
  }
  std::printf("implode_peer_test: %d blocks exchanged with libstorm\n", blocks);
  return failures == 0 ? 0 : 1;
}
