#include "services/pipe_data.h"

#include "frame/error_state.h"
#include "native/pipes/packet.h"

namespace qv::services {
namespace {

void require_room_for(std::size_t characters) {
  if (characters <= native::pipes::kMaxDataBytes) return;
  raise({.number = frame::kFirstApplicationError, .description = L"Data exceed buffer size."});
}

}  // namespace

Long kwPipeData::get_MaxPacketSize() noexcept {
  return static_cast<Long>(native::pipes::kMaxDataBytes);
}

Boolean kwPipeData::AppendData(const Text& Buffer) {
  return frame::handled(L"QvRtLibOle.kwPipeData.AppendData, 0", frame::kTakeError, True, [&] {
    require_room_for(data_.size() + Buffer.size());
    data_ += Buffer;
    return False;
  });
}

void kwPipeData::put_ReqData(const Text& Value) {
  require_room_for(Value.size());
  data_ = Value;
}

}  // namespace qv::services
