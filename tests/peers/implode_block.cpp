// implode_block binary|text standard|smallest: one compressed block of standard input to standard
// output, for other people's programs to expand. 0 done, 5 not reducible, 64 wrong use.

#include <cstdio>
#include <string_view>
#include <vector>

#include "native/cpr/implode.h"

int main(int count, char** arguments) {
  using namespace qv::native::cpr;
  if (count != 3) return 64;
  const auto type = std::string_view(arguments[1]) == "text" ? DataType::text : DataType::binary;
  const Effort effort =
      std::string_view(arguments[2]) == "smallest" ? Effort::smallest : Effort::standard;
  std::vector<std::uint8_t> original;
  for (int byte; (byte = std::getchar()) != EOF;) {
    original.push_back(static_cast<std::uint8_t>(byte));
  }
  std::vector<std::uint8_t> packed(original.size());
  const CoderResult result = implode(original, packed, type, effort);
  std::fwrite(packed.data(), 1, result.bytes_written, stdout);
  return static_cast<int>(result.code);
}
