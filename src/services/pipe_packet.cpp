#include "services/pipe_packet.h"

#include <algorithm>

#include "automation/bytes.h"
#include "automation/class_object.h"
#include "automation/foreign_error.h"
#include "class_tables.h"
#include "frame/error_state.h"
#include "native/pipes/packet.h"
#include "services/pipe_data.h"

namespace qv::services {
namespace {

namespace packet = native::pipes;

void put_packet(Long id, Date date, std::wstring_view data, std::vector<Byte>& out) {
  const auto head = packet::packed_head(
      {.request_id = id, .date_days = date.days, .data_bytes = static_cast<Long>(data.size())});
  out.resize(packet::kHeadBytes + data.size());
  std::ranges::copy(head, out.begin());
  get_bytes(data, out.data() + packet::kHeadBytes);
}

Text data_text(std::span<const Byte> bytes, const packet::Head& head) {
  if (head.data_bytes < 0) raise(kInvalidProcedureCall);
  return text_of_bytes(packet::data_of(bytes, head));
}

kwPipeData* own_request(const Object<_kwPipeData>& request) noexcept {
  return own<kwPipeData>(request, kkwPipeDataInfo);
}

}  // namespace

Boolean PackRequest(const Object<_kwPipeData>& Request, std::vector<Byte>& Packet) {
  return frame::handled(L"QvRtLibOle.modNamedPipes.PackRequest, 0", frame::kTakeError, True, [&] {
    if (const kwPipeData* own = own_request(Request)) {
      put_packet(own->ReqId, own->ReqDate, own->get_ReqData(), Packet);
      return False;
    }
    LONG id = 0;
    Date date;
    BSTR data = nullptr;
    check_foreign(Request, Request->get_ReqId(&id));
    check_foreign(Request, Request->get_ReqDate(&date.days));
    check_foreign(Request, Request->get_ReqData(&data));
    put_packet(id, date, Text::adopt(data), Packet);
    return False;
  });
}

Boolean UnpackRequest(std::span<const Byte> Packet, const Object<_kwPipeData>& Request) {
  return frame::handled(L"QvRtLibOle.modNamedPipes.UnpackRequest, 0", frame::kTakeError, True, [&] {
    const packet::Head head = packet::read_head(Packet);
    if (kwPipeData* own = own_request(Request)) {
      own->ReqId = head.request_id;
      own->ReqDate = {head.date_days};
      own->put_ReqData(data_text(Packet, head));
      return False;
    }
    check_foreign(Request, Request->put_ReqId(head.request_id));
    check_foreign(Request, Request->put_ReqDate(head.date_days));
    Text data = data_text(Packet, head);
    check_foreign(Request, Request->put_ReqData(data.data()));
    return False;
  });
}

}  // namespace qv::services
