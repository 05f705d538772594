#include "automation/bytes.h"
#include "native/rtlib/crc16.h"
#include "native/rtlib/scramble.h"
#include "text/primitives.h"

namespace qv::text {

void Crypt(Text& Buffer, Integer Code) {
  auto bytes = bytes_of_text(Buffer);
  native::rtlib::scramble(bytes, Code);
  put_bytes(bytes, Buffer.data());
}

Integer CRC(Text& Buffer, Integer StartWith) {
  constexpr std::size_t kStep = 32767;
  round_trip(Buffer);
  if (Buffer.empty()) return 0;
  const std::size_t last_step = (Buffer.size() - 1) % kStep + 1;
  const auto bytes = bytes_of_text(Buffer.view().substr(0, last_step));
  return static_cast<Integer>(native::rtlib::crc16(bytes, static_cast<std::uint16_t>(StartWith)));
}

}  // namespace qv::text
