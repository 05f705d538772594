#include "archive/block_coder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "native/cpr/crc32.h"
#include "native/cpr/explode.h"
#include "native/cpr/implode.h"

namespace qv::archive {
namespace {

namespace cpr = native::cpr;

std::uint32_t chained(Long register_value, std::span<const std::uint8_t> bytes) {
  return cpr::crc32_update(static_cast<std::uint32_t>(register_value), bytes);
}

// What a result is given room for: a little more than the input, rounded to even at a half.
std::size_t capacity_for(std::size_t input_bytes) {
  const auto input = static_cast<double>(input_bytes);
  return static_cast<std::size_t>(std::nearbyint(input + input * 0.001 + 16));
}

}  // namespace

void check_coder(cpr::CoderCode code) {
  if (code == cpr::CoderCode::done) return;
  raise({.number = frame::kFirstApplicationError + static_cast<Long>(code),
         .description = L"Errore nella libreria di compressione."});
}

Long PkCRC(Text& inBuffer, Long PrevCRC) {
  constexpr std::size_t kPiece = 16384;
  round_trip(inBuffer);
  std::array<std::uint8_t, kPiece> bytes;
  for (auto rest = inBuffer.view(); !rest.empty();) {
    const auto piece = rest.substr(0, kPiece);
    get_bytes(piece, bytes.data());
    PrevCRC = static_cast<Long>(chained(PrevCRC, std::span(bytes).first(piece.size())));
    rest.remove_prefix(piece.size());
  }
  return PrevCRC;
}

Boolean PkUnzip(Text& inBuffer, Text& outBuffer, Long OrigSize, Long& outCrc) {
  return frame::handled(L"KwRtLibMod.PkUnzip", frame::kTakeError, True, [&] {
    if (OrigSize < 0) raise(kInvalidProcedureCall);
    const auto packed = bytes_of_text(inBuffer);
    round_trip(inBuffer);
    outBuffer = Text::filled(static_cast<std::size_t>(OrigSize), L'\0');
    std::vector<std::uint8_t> original(static_cast<std::size_t>(OrigSize));
    const cpr::CoderResult result = cpr::explode(packed, original);
    put_bytes(std::span(original).first(result.bytes_written), outBuffer.data());
    check_coder(result.code);
    outCrc = static_cast<Long>(chained(outCrc, std::span(original).first(result.bytes_written)));
    return False;
  });
}

Boolean PkZip(Text& inBuffer, Text& outBuffer, Long inDataType, Long& outCrc) {
  return frame::handled(L"KwRtLibMod.PkZip", frame::kTakeError, True, [&] {
    const auto original = bytes_of_text(inBuffer);
    round_trip(inBuffer);
    // A result is always smaller than the input, so no more room than that is ever used.
    std::vector<std::uint8_t> packed(original.size());
    const cpr::CoderResult result =
        cpr::implode(original, packed, static_cast<cpr::DataType>(inDataType));
    if (result.code != cpr::CoderCode::done) {
      outBuffer = Text::filled(capacity_for(original.size()), L'\0');
    }
    check_coder(result.code);
    outBuffer = text_of_bytes(std::span(packed).first(result.bytes_written));
    outCrc = static_cast<Long>(chained(outCrc, original));
    return False;
  });
}

}  // namespace qv::archive
