#include "services/named_pipes.h"

#include <windows.h>

#include <map>
#include <memory>

#include "automation/thread_state.h"
#include "constants.h"
#include "files/file_handles.h"
#include "frame/error_display.h"
#include "frame/error_state.h"
#include "native/pipes/packet.h"
#include "services/failure_chain.h"
#include "services/pipe_packet.h"

namespace qv::services {
namespace {

using files::system_handle;
using namespace PipeResult;

constexpr DWORD kMostInstances = 10;
constexpr DWORD kBufferBytes = 10000;
constexpr DWORD kDefaultTimeOut_ms = 5000;

struct FreeMemory {
  void operator()(void* memory) const noexcept { GlobalFree(memory); }
};
using Memory = std::unique_ptr<void, FreeMemory>;

// The pipes that this thread has opened and not closed, each with its security descriptor.
struct OpenPipes {
  std::map<Long, Memory> descriptors;
};

// To be called at once after the system's service: a failure's description is the service's name
// and the system's error number.
void require(bool succeeded, const wchar_t* service) {
  capture_last_dll_error();
  if (succeeded) return;
  raise({.number = frame::kFirstApplicationError,
         .description = concat({service, L": ", decimal(err().LastDllError)})});
}

// Without any list of rights, so that every user may open the pipe.
Memory make_security_descriptor() {
  Memory descriptor(GlobalAlloc(GPTR, sizeof(SECURITY_DESCRIPTOR)));
  require(descriptor != nullptr, L"GlobalAlloc");
  require(InitializeSecurityDescriptor(descriptor.get(), SECURITY_DESCRIPTOR_REVISION) != FALSE,
          L"InitializeSecurityDescriptor");
  require(SetSecurityDescriptorDacl(descriptor.get(), TRUE, nullptr, FALSE) != FALSE,
          L"SetSecurityDescriptorDacl");
  return descriptor;
}

Long create_pipe(const Text& name, void* descriptor) {
  SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor, TRUE};
  const HANDLE pipe =
      CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_WRITE_THROUGH,
                       PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT, kMostInstances,
                       kBufferBytes, kBufferBytes, kDefaultTimeOut_ms, &attributes);
  require(pipe != INVALID_HANDLE_VALUE, L"CreateNamedPipe");
  return static_cast<Long>(reinterpret_cast<std::intptr_t>(pipe));
}

}  // namespace

Long NPServerOpen(const Text& Name) {
  Long handle = 0;
  const Boolean failed =
      frame::handled(L"QvRtLibOle.modNamedPipes.NPServerOpen, 0", frame::kTakeError, True, [&] {
        Memory descriptor = make_security_descriptor();
        handle = create_pipe(Name, descriptor.get());
        auto& open = per_thread<OpenPipes>().descriptors;
        // A pipe that was closed without us has left its number behind.
        if (open.contains(handle)) raise(kKeyAlreadyAssociated);
        open.emplace(handle, std::move(descriptor));
        return False;
      });
  if (!failed) return handle;
  const Variant missing = Variant::missing();
  Text text;
  frame::Disp_ErrorEx(missing, missing, missing, 0, missing, L" ", text, {}, {});
  NPServerClose(handle);
  return 0;
}

Boolean NPServerClose(Long PipeHandle) {
  return frame::handled(L"QvRtLibOle.modNamedPipes.NPServerClose, 0", frame::kTakeError, True, [&] {
    auto& open = per_thread<OpenPipes>().descriptors;
    const auto found = open.find(PipeHandle);
    if (found == open.end()) return False;
    CloseHandle(system_handle(PipeHandle));
    capture_last_dll_error();
    open.erase(found);
    return False;
  });
}

Long NPServerRead(Long PipeHandle, const Object<_kwPipeData>& ReqBuff) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.modNamedPipes.NPServerRead, 0";
  const HANDLE pipe = system_handle(PipeHandle);
  bool is_connected = false;
  const Long result = frame::handled(kSource, frame::kTakeError, PR_ERROR, [&] {
    std::vector<Byte> room;
    if (PackRequest(ReqBuff, room)) return chained(kSource, PR_ERROR);
    is_connected = ConnectNamedPipe(pipe, nullptr) != FALSE;
    capture_last_dll_error();
    if (!is_connected) return PR_NODATA;
    DWORD count = 0;
    require(ReadFile(pipe, &room[1], static_cast<DWORD>(room.size() - 1), &count, nullptr) != FALSE,
            L"ReadFile");
    return count != 0 ? PR_NEWDATA : PR_NODATA;
  });
  if (is_connected && result != PR_NEWDATA) DisconnectNamedPipe(pipe);
  return result;
}

Boolean NPServerWrite(Long PipeHandle, const Object<_kwPipeData>& ReqBuff) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.modNamedPipes.NPServerWrite, 0";
  const HANDLE pipe = system_handle(PipeHandle);
  const Boolean failed = frame::handled(kSource, frame::kTakeError, True, [&] {
    std::vector<Byte> packet;
    if (PackRequest(ReqBuff, packet)) return chained(kSource, True);
    DWORD count = 0;
    // Clients know the answer without its first byte.
    require(WriteFile(pipe, &packet[1], static_cast<DWORD>(packet.size() - 1), &count, nullptr) !=
                FALSE,
            L"WriteFile");
    require(FlushFileBuffers(pipe) != FALSE, L"FlushFileBuffers");
    return False;
  });
  DisconnectNamedPipe(pipe);
  return failed;
}

Long NPClientRequest(const Text& PipeName, const Object<_kwPipeData>& ReqBuff, Long TimeOut) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.modNamedPipes.NPClientRequest, 0";
  return frame::handled(kSource, frame::kTakeError, PR_ERROR, [&] {
    std::vector<Byte> request;
    if (PackRequest(ReqBuff, request)) return chained(kSource, PR_ERROR);
    // One byte more than a packet can have, and zeros where the answer has none.
    std::vector<Byte> answer(native::pipes::kMaxPacketBytes + 1);
    DWORD count = 0;
    require(CallNamedPipeW(PipeName.c_str(), request.data(), static_cast<DWORD>(request.size()),
                           answer.data(), static_cast<DWORD>(answer.size()), &count,
                           static_cast<DWORD>(TimeOut)) != FALSE,
            L"CallNamedPipe");
    if (UnpackRequest(answer, ReqBuff)) return chained(kSource, PR_ERROR);
    return PR_NEWDATA;
  });
}

Boolean NPServerCloseAll() { return False; }

}  // namespace qv::services
