// What tests of pipes share: requests, calls, and what they expect of the error record.
#pragma once

#include <string>
#include <vector>

#include "server/client.h"

namespace qv::tests {

inline Pointer<_kwPipeData> make_request(LONG id = 0, DATE date = 0, std::wstring_view data = {}) {
  auto request = create<_kwPipeData>(CLSID_kwPipeData);
  request->put_ReqId(id);
  request->put_ReqDate(date);
  EXPECT_EQ(request->put_ReqData(String(data)), S_OK);
  return request;
}

struct Fields {
  LONG id = 0;
  DATE date = 0;
  std::wstring data{};
  friend bool operator==(const Fields&, const Fields&) = default;
};

inline Fields fields_of(const Pointer<_kwPipeData>& request) {
  Fields fields;
  String data;
  EXPECT_EQ(request->get_ReqId(&fields.id), S_OK);
  EXPECT_EQ(request->get_ReqDate(&fields.date), S_OK);
  EXPECT_EQ(request->get_ReqData(&data), S_OK);
  fields.data = data.view();
  return fields;
}

// The bytes of a packet, put together apart from the library.
inline std::string packet(LONG id, DATE date, std::string_view data) {
  const auto length = static_cast<LONG>(data.size());
  std::string bytes(reinterpret_cast<const char*>(&id), sizeof id);
  bytes.append(reinterpret_cast<const char*>(&date), sizeof date);
  bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
  return bytes.append(data);
}

class PipeFixture : public testing::Test {
 protected:
  PipeFixture() { global_->Reset_Error(); }
  ~PipeFixture() override {
    for (const LONG pipe : opened_) close(pipe);
  }

  static std::wstring pipe_name() {
    return L"\\\\.\\pipe\\qvrt_" + std::to_wstring(GetCurrentProcessId());
  }
  static HANDLE handle_of(LONG pipe) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(pipe));
  }

  LONG open(const std::wstring& name = pipe_name()) {
    String text(name);
    LONG pipe = 99;
    EXPECT_EQ(global_->NPServerOpen(&text, &pipe), S_OK);
    EXPECT_EQ(text.view(), name);
    if (pipe != 0) opened_.push_back(pipe);
    return pipe;
  }
  // A new pipe takes a client at once; one that has had a client and was disconnected waits for
  // NPServerRead.
  static void close_door(LONG pipe, const std::wstring& name = pipe_name()) {
    CloseHandle(CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(DisconnectNamedPipe(handle_of(pipe)));
  }
  // A pipe that nobody can connect to until the server waits in NPServerRead.
  LONG open_with_door_closed() {
    const LONG pipe = open();
    close_door(pipe);
    return pipe;
  }
  bool close(LONG pipe) {
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->NPServerClose(&pipe, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  LONG read(LONG pipe, Pointer<_kwPipeData> room) {
    LONG result = 99;
    EXPECT_EQ(global_->NPServerRead(&pipe, room.variable(), &result), S_OK);
    return result;
  }
  LONG read(LONG pipe, int room = 1000) {
    return read(pipe, make_request(0, 0, std::wstring(static_cast<std::size_t>(room), L'r')));
  }
  bool write(LONG pipe, Pointer<_kwPipeData> answer) {
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->NPServerWrite(&pipe, answer.variable(), &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  LONG ask(Pointer<_kwPipeData> request, LONG time_out_ms = 10000,
           const std::wstring& name = pipe_name()) {
    String text(name);
    LONG result = 99;
    EXPECT_EQ(global_->NPClientRequest(&text, request.variable(), &time_out_ms, &result), S_OK);
    return result;
  }

  LONG error_number() {
    LONG number = -1;
    global_->Error_Number(&number);
    return number;
  }
  void expect_error(LONG number, std::wstring_view description, std::wstring_view source) {
    String actual_description;
    String actual_source;
    EXPECT_EQ(error_number(), number);
    global_->Error_Description(&actual_description);
    EXPECT_EQ(actual_description.view(), description);
    global_->Error_Source(&actual_source);
    EXPECT_EQ(actual_source.view(), source);
    global_->Reset_Error();
  }
  // A failed call of the system, with its error number.
  void expect_failed_call(std::wstring_view service, LONG reason, std::wstring_view function) {
    LONG last = -1;
    global_->Error_LastDLLError(&last);
    EXPECT_EQ(last, reason);
    expect_error(20000, std::wstring(service) + L": " + std::to_wstring(reason),
                 L"QvRtLibOle.modNamedPipes." + std::wstring(function) + L", 0");
  }

  Pointer<_KwRtLib> global_ = create_global();
  std::vector<LONG> opened_;
};

constexpr LONG kNoData = 0;
constexpr LONG kNewData = 1;
constexpr LONG kError = -1;

}  // namespace qv::tests
