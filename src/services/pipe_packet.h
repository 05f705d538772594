// Requests and answers as the bytes of a pipe, and back; docs/formats/pipe-packet.md tells the
// format. Any object of the interface will do, the library's own or an application's.
#pragma once

#include <span>
#include <vector>

#include "automation/object.h"
#include "interfaces.h"

namespace qv::services {

// True = failure, told by the error state.
Boolean PackRequest(const Object<_kwPipeData>& Request, std::vector<Byte>& Packet);

// Bytes behind the packet are passed over, and those that it lacks are zeros or, of the data,
// missing. True = failure, told by the error state: run-time error 5 for a negative length, 20000
// for data that the request does not hold; ReqId and ReqDate are replaced then, ReqData is not.
Boolean UnpackRequest(std::span<const Byte> Packet, const Object<_kwPipeData>& Request);

}  // namespace qv::services
