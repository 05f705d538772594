// Requests and answers over the system's named pipes, one message each: a server that has one
// client at a time, and a client that does everything in one call. All of it blocks its thread. A
// pipe is known by its handle, which any thread can read and write with; the thread that opened it
// closes it.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::services {

// 0 = failure, told by the error state and shown to the user.
Long NPServerOpen(const Text& Name);
// True = failure, told by the error state. A handle that this thread has not opened is passed over.
Boolean NPServerClose(Long PipeHandle);
// PR_NEWDATA, PR_NODATA or PR_ERROR. Waits for a client without limit; a client that connected
// before stays connected, with PR_NODATA. The message is read and dropped: its length may be that
// of ReqBuff's packet less one.
Long NPServerRead(Long PipeHandle, const Object<_kwPipeData>& ReqBuff);
// True = failure, told by the error state. Sends the packet without its first byte, waits until the
// client has read it and disconnects, after a failure too.
Boolean NPServerWrite(Long PipeHandle, const Object<_kwPipeData>& ReqBuff);
// PR_NEWDATA or PR_ERROR, told by the error state.
Long NPClientRequest(const Text& PipeName, const Object<_kwPipeData>& ReqBuff, Long TimeOut);
// Closes nothing, as it always did: applications count on their pipes to stay open.
Boolean NPServerCloseAll();

}  // namespace qv::services
