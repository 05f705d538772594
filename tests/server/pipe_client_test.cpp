// NPClientRequest, with servers that speak the raw pipe, with servers of the library, and between
// processes.
#include <cstdio>
#include <thread>

#include "companion/pipe_dialogue.h"
#include "server/pipe_fixture.h"
#include "server/process.h"

namespace qv::tests {
namespace {

namespace dialogue = companion::dialogue;

// A server that speaks the raw pipe: takes one request on a thread of its own and answers it.
class RawServer {
 public:
  RawServer(const std::wstring& name, std::string answer, DWORD time_out_ms = 50)
      : name_(name),
        pipe_(CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX,
                               PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE, 1, 200000, 200000,
                               time_out_ms, nullptr)),
        answer_(std::move(answer)) {}
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;
  ~RawServer() {
    finish();
    CloseHandle(pipe_);
  }

  // Nobody can connect until it serves.
  void close_door() const {
    CloseHandle(CreateFileW(name_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(DisconnectNamedPipe(pipe_));
  }
  void serve_after(DWORD delay_ms = 0) {
    thread_ = std::thread([this, delay_ms] {
      Sleep(delay_ms);
      if (ConnectNamedPipe(pipe_, nullptr) == FALSE) {
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PIPE_CONNECTED));
      }
      request_.resize(200000);
      DWORD count = 0;
      EXPECT_TRUE(
          ReadFile(pipe_, request_.data(), static_cast<DWORD>(request_.size()), &count, nullptr));
      request_.resize(count);
      WriteFile(pipe_, answer_.data(), static_cast<DWORD>(answer_.size()), &count, nullptr);
      FlushFileBuffers(pipe_);
      DisconnectNamedPipe(pipe_);
    });
  }
  void finish() {
    if (thread_.joinable()) thread_.join();
  }
  const std::string& request() {
    finish();
    return request_;
  }

 private:
  std::wstring name_;
  HANDLE pipe_;
  std::string answer_;
  std::string request_;
  std::thread thread_;
};

class PipeClient : public PipeFixture {
 protected:
  // The result and the fields that a request has after a server answered with those bytes.
  LONG ask_and_get(const std::string& answer) {
    RawServer server(pipe_name(), answer);
    server.serve_after();
    request_ = make_request(99, 99, L"before");
    return ask(request_);
  }

  Pointer<_kwPipeData> request_;
};

const std::wstring kClientSource = L"QvRtLibOle.modNamedPipes.NPClientRequest, 0";
const std::wstring kUnpackSource = L"QvRtLibOle.modNamedPipes.UnpackRequest, 0 < " + kClientSource;

TEST_F(PipeClient, the_whole_packet_is_sent) {
  for (const std::size_t length : {0, 1, 300, 99999, 100000}) {
    RawServer server(pipe_name(), packet(0, 0, ""));
    server.serve_after();
    EXPECT_EQ(ask(make_request(-2, 36955.588, std::wstring(length, L'x'))), kNewData);
    EXPECT_EQ(server.request(), packet(-2, 36955.588, std::string(length, 'x')));
  }
}

TEST_F(PipeClient, characters_are_sent_as_bytes_of_the_code_page) {
  RawServer server(pipe_name(), packet(0, 0, ""));
  server.serve_after();
  EXPECT_EQ(ask(make_request(0, 0, std::wstring_view(L"\0\x20AC\xFF\x65E5", 4))), kNewData);
  EXPECT_EQ(server.request(), packet(0, 0, std::string_view("\0\x80\xFF?", 4)));
}

TEST_F(PipeClient, the_answer_replaces_every_field) {
  EXPECT_EQ(ask_and_get(packet(-7, 2.5, std::string_view("a\0\x80", 3))), kNewData);
  EXPECT_EQ(fields_of(request_), (Fields{-7, 2.5, std::wstring(L"a\0\x20AC", 3)}));
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeClient, an_answer_of_100000_characters_is_taken_and_one_of_100001_is_refused) {
  EXPECT_EQ(ask_and_get(packet(1, 0, std::string(100000, 'x'))), kNewData);
  EXPECT_EQ(fields_of(request_), (Fields{1, 0, std::wstring(100000, L'x')}));

  EXPECT_EQ(ask_and_get(packet(1, 2, std::string(100001, 'x'))), kError);
  expect_error(20000, L"Data exceed buffer size.", kUnpackSource);
  EXPECT_EQ(fields_of(request_), (Fields{1, 2, L"before"}));
}

TEST_F(PipeClient, an_answer_of_more_than_100017_bytes_fails_and_changes_nothing) {
  EXPECT_EQ(ask_and_get(packet(1, 2, std::string(100002, 'x'))), kError);
  expect_failed_call(L"CallNamedPipe", ERROR_MORE_DATA, L"NPClientRequest");
  EXPECT_EQ(fields_of(request_), (Fields{99, 99, L"before"}));
}

TEST_F(PipeClient, data_that_an_answer_lacks_are_zeros) {
  std::string cut = packet(1, 2, "abcde");
  cut.resize(18);
  EXPECT_EQ(ask_and_get(cut), kNewData);
  EXPECT_EQ(fields_of(request_), (Fields{1, 2, std::wstring(L"ab\0\0\0", 5)}));
  std::string huge = packet(1, 2, "ab");
  const LONG told = 100000;
  std::copy_n(reinterpret_cast<const char*>(&told), 4, huge.begin() + 12);
  EXPECT_EQ(ask_and_get(huge), kNewData);
  EXPECT_EQ(fields_of(request_).data, L"ab" + std::wstring(99998, L'\0'));
}

TEST_F(PipeClient, fields_that_an_answer_lacks_are_0) {
  const std::string whole = packet(0x01020304, 2.5, "");
  for (std::size_t length = 1; length < whole.size(); ++length) {
    EXPECT_EQ(ask_and_get(whole.substr(0, length)), kNewData) << length;
    const std::string padded = whole.substr(0, length) + std::string(16 - length, '\0');
    const Fields fields = fields_of(request_);
    EXPECT_EQ(packet(fields.id, fields.date, ""), padded) << length;
    EXPECT_EQ(fields.data, L"") << length;
  }
}

TEST_F(PipeClient, what_an_answer_has_behind_its_data_is_passed_over) {
  EXPECT_EQ(ask_and_get(packet(1, 2, "ab") + "behind"), kNewData);
  EXPECT_EQ(fields_of(request_), (Fields{1, 2, L"ab"}));
}

TEST_F(PipeClient, a_negative_length_fails_with_number_and_date_replaced) {
  for (const char top : {'\x80', '\xFF'}) {
    std::string answer = packet(1, 2, "ab");
    answer[15] = top;
    EXPECT_EQ(ask_and_get(answer), kError);
    expect_error(5, L"Invalid procedure call or argument", kUnpackSource);
    EXPECT_EQ(fields_of(request_), (Fields{1, 2, L"before"}));
  }
}

TEST_F(PipeClient, a_length_above_100000_fails_whatever_follows) {
  for (const char top : {'\x01', '\x7F'}) {
    std::string answer = packet(1, 2, "ab");
    answer[15] = top;
    EXPECT_EQ(ask_and_get(answer), kError);
    expect_error(20000, L"Data exceed buffer size.", kUnpackSource);
    EXPECT_EQ(fields_of(request_), (Fields{1, 2, L"before"}));
  }
}

TEST_F(PipeClient, an_absent_server_fails_at_once_and_changes_nothing) {
  const auto request = make_request(7, 2.5, L"request");
  EXPECT_EQ(ask(request), kError);
  expect_failed_call(L"CallNamedPipe", ERROR_FILE_NOT_FOUND, L"NPClientRequest");
  EXPECT_EQ(fields_of(request), (Fields{7, 2.5, L"request"}));
}

TEST_F(PipeClient, a_name_that_is_no_pipe_fails) {
  EXPECT_EQ(ask(make_request(), 10, L""), kError);
  EXPECT_EQ(error_number(), 20000);
}

TEST_F(PipeClient, a_busy_server_fails_when_the_time_has_passed) {
  open_with_door_closed();
  const auto request = make_request(7, 2.5, L"request");
  EXPECT_EQ(ask(request, 50), kError);
  expect_failed_call(L"CallNamedPipe", ERROR_SEM_TIMEOUT, L"NPClientRequest");
  EXPECT_EQ(fields_of(request), (Fields{7, 2.5, L"request"}));
}

TEST_F(PipeClient, time_out_0_is_the_time_that_the_server_has_set) {
  RawServer server(pipe_name(), "", 50);
  server.close_door();
  EXPECT_EQ(ask(make_request(), 0), kError);
  expect_failed_call(L"CallNamedPipe", ERROR_SEM_TIMEOUT, L"NPClientRequest");
}

TEST_F(PipeClient, time_out_minus_1_waits_until_the_server_is_free) {
  RawServer server(pipe_name(), packet(5, 0, ""));
  server.close_door();
  server.serve_after(100);
  const auto request = make_request();
  EXPECT_EQ(ask(request, -1), kNewData);
  EXPECT_EQ(fields_of(request).id, 5);
}

TEST_F(PipeClient, time_out_may_be_left_out) {
  RawServer server(pipe_name(), packet(5, 0, ""));
  server.serve_after();
  String name(pipe_name());
  auto request = make_request();
  LONG result = 99;
  EXPECT_EQ(global_->NPClientRequest(&name, request.variable(), nullptr, &result), S_OK);
  EXPECT_EQ(result, kNewData);
}

TEST_F(PipeClient, a_server_that_leaves_without_an_answer_fails) {
  const HANDLE pipe =
      CreateNamedPipeW(pipe_name().c_str(), PIPE_ACCESS_DUPLEX,
                       PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE, 1, 1000, 1000, 0, nullptr);
  std::thread leaver([&] {
    char request[100];
    DWORD count = 0;
    ConnectNamedPipe(pipe, nullptr);
    ReadFile(pipe, request, sizeof request, &count, nullptr);
    CloseHandle(pipe);
  });
  const auto request = make_request(7, 2.5, L"request");
  EXPECT_EQ(ask(request), kError);
  leaver.join();
  expect_failed_call(L"CallNamedPipe", ERROR_BROKEN_PIPE, L"NPClientRequest");
  EXPECT_EQ(fields_of(request), (Fields{7, 2.5, L"request"}));
}

TEST_F(PipeClient, a_request_of_nothing_fails) {
  EXPECT_EQ(ask(Pointer<_kwPipeData>()), kError);
  expect_error(91, L"Object variable or With block variable not set",
               L"QvRtLibOle.modNamedPipes.PackRequest, 0 < " + kClientSource);
}

// A client and a server of the library: the answer comes without its first byte.
class PipeDialogue : public PipeClient {
 protected:
  LONG ask_library(LONG id, DATE date, const std::wstring& answer) {
    const LONG pipe = open_with_door_closed();
    LONG result = 99;
    std::thread client([&] {
      CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
      {
        const auto global = create_global();
        auto request = make_request(99, 99, L"before");
        String name(pipe_name());
        LONG time_out_ms = 10000;
        EXPECT_EQ(global->NPClientRequest(&name, request.variable(), &time_out_ms, &result), S_OK);
        fields_ = fields_of(request);
        global->Error_Number(&client_error_);
      }
      CoUninitialize();
    });
    EXPECT_EQ(read(pipe), kNewData);
    EXPECT_FALSE(write(pipe, make_request(id, date, answer)));
    client.join();
    close(pipe);
    return result;
  }
  // What a client sees of the fields before the length.
  static Fields shifted(LONG id, DATE date) {
    std::string bytes = packet(id, date, "").substr(1);
    bytes += '\0';
    Fields fields;
    std::copy_n(bytes.data(), 4, reinterpret_cast<char*>(&fields.id));
    std::copy_n(bytes.data() + 4, 8, reinterpret_cast<char*>(&fields.date));
    return fields;
  }

  Fields fields_;
  LONG client_error_ = 0;
};

TEST_F(PipeDialogue, an_answer_without_data_arrives_one_byte_early) {
  EXPECT_EQ(ask_library(0x11223344, 36955.588, L""), kNewData);
  const Fields expected = shifted(0x11223344, 36955.588);
  EXPECT_EQ(fields_.id & 0xFFFFFF, 0x112233);
  EXPECT_EQ(fields_.id, expected.id);
  EXPECT_EQ(packet(0, fields_.date, ""), packet(0, expected.date, ""));
  EXPECT_EQ(fields_.data, L"");
  EXPECT_EQ(client_error_, 0);
}

TEST_F(PipeDialogue, an_answer_whose_first_character_is_above_127_has_a_negative_length) {
  for (const wchar_t first : {L'\x20AC', L'\xFF'}) {  // bytes 80 and FF
    EXPECT_EQ(ask_library(1, 0, std::wstring(1, first) + L"bc"), kError);
    EXPECT_EQ(client_error_, 5);
    EXPECT_EQ(fields_.id, 0);
    EXPECT_EQ(fields_.data, L"before");
  }
}

TEST_F(PipeDialogue, an_answer_whose_first_character_is_1_to_127_has_too_great_a_length) {
  for (const wchar_t first : {L'\x01', L'\x7F'}) {
    EXPECT_EQ(ask_library(1, 0, std::wstring(1, first) + L"bc"), kError);
    EXPECT_EQ(client_error_, 20000);
    EXPECT_EQ(fields_.id, 0);
    EXPECT_EQ(fields_.data, L"before");
  }
}

TEST_F(PipeDialogue, an_answer_whose_first_character_is_0_loses_all_but_a_256th) {
  EXPECT_EQ(ask_library(1, 0, std::wstring(1, L'\0') + std::wstring(767, L'x')), kNewData);
  EXPECT_EQ(fields_.data, L"xxx");
}

// So servers make themselves understood.
TEST_F(PipeDialogue, a_number_times_256_and_a_text_of_a_256th_arrive) {
  for (const std::size_t length : {1, 25, 390}) {
    const std::wstring text(length, L't');
    const std::wstring padding(length * 255 - 1, L'\0');
    EXPECT_EQ(ask_library(4711 * 256, 0, std::wstring(1, L'\0') + text + padding), kNewData);
    EXPECT_EQ(fields_, (Fields{4711, 0, text}));
  }
}

// Between processes. The answers tell which side said what.
class PipeProcesses : public PipeDialogue {
 protected:
  // Asks until the server serves.
  void expect_served() {
    Pointer<_kwPipeData> request;
    LONG result = 99;
    for (int tries = 0; tries < 2000; ++tries) {
      request = make_request(dialogue::kRequest, dialogue::kDate, L"request");
      result = ask(request);
      LONG reason = 0;
      global_->Error_LastDLLError(&reason);
      // None yet, or that of the request before, which the server is about to end.
      const bool is_absent =
          result == kError && (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PIPE_BUSY ||
                               reason == ERROR_PIPE_NOT_CONNECTED || reason == ERROR_BROKEN_PIPE);
      if (!is_absent && fields_of(request).id != dialogue::kNotYet >> 8) break;
      global_->Reset_Error();
      Sleep(10);
    }
    EXPECT_EQ(result, kNewData);
    const Fields expected = shifted(dialogue::kAnswer, dialogue::kDate);
    const Fields fields = fields_of(request);
    EXPECT_EQ(fields.id, expected.id);
    EXPECT_EQ(packet(0, fields.date, ""), packet(0, expected.date, ""));
    EXPECT_EQ(fields.data, L"");
    EXPECT_EQ(error_number(), 0);
  }
  static std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(byte));
      text += digits;
    }
    return text;
  }
};

TEST_F(PipeProcesses, a_typed_client_is_served_by_a_typed_server) {
  Process server(L"companion.exe server " + pipe_name() + L" 3");
  for (int i = 0; i < 3; ++i) expect_served();
  EXPECT_EQ(server.output(), "1 0\n1 0\n1 0\n");
}

TEST_F(PipeProcesses, a_typed_client_is_served_by_a_script) {
  Process server(script_command(L"peers\\pipe_server.vbs"));
  const std::wstring name = L"\\\\.\\pipe\\qvrt_script_server";
  Pointer<_kwPipeData> request;
  for (int served = 0, tries = 0; served < 2 && tries < 2000; ++tries) {
    request = make_request(dialogue::kRequest, dialogue::kDate, L"request");
    const LONG result = ask(request, 10000, name);
    if (result == kNewData && fields_of(request).id == dialogue::kAnswer >> 8) ++served;
    if (result == kError) Sleep(10);
  }
  EXPECT_EQ(fields_of(request).id, dialogue::kAnswer >> 8);
  EXPECT_EQ(server.output(), "ok served\nok served\ndone\n");
}

TEST_F(PipeProcesses, a_typed_server_serves_a_typed_client) {
  const LONG pipe = open_with_door_closed();
  Process client(L"companion.exe client " + pipe_name() + L" request");
  ASSERT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request(dialogue::kAnswer, dialogue::kDate)));
  EXPECT_EQ(client.output(), "1 1122867 0000000000044000 0\n");
}

TEST_F(PipeProcesses, a_typed_server_serves_a_script) {
  const std::wstring name = L"\\\\.\\pipe\\qvrt_script_client";
  const LONG pipe = open(name);
  close_door(pipe, name);
  Process client(script_command(L"peers\\pipe_client.vbs"));
  ASSERT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request(dialogue::kAnswer, dialogue::kDate)));
  const std::string output = client.output();
  EXPECT_EQ(output.find("FAILED"), std::string::npos) << output;
  EXPECT_NE(output.find("done"), std::string::npos) << output;
}

TEST_F(PipeProcesses, what_a_client_sends_is_the_packet_on_the_wire) {
  Process server(L"companion.exe raw-server " + pipe_name() + L" 05000000+00*12+62");
  Pointer<_kwPipeData> request;
  LONG result = kError;
  for (int tries = 0; tries < 2000 && result == kError; ++tries) {
    request = make_request(-2, 36955.588, L"abc");
    result = ask(request);
    if (result == kError) Sleep(10);
  }
  EXPECT_EQ(result, kNewData);
  EXPECT_EQ(fields_of(request), (Fields{5, 0, L""}));
  EXPECT_EQ(server.output(), hex(packet(-2, 36955.588, "abc")) + "\n");
}

TEST_F(PipeProcesses, what_a_server_sends_is_the_packet_without_its_first_byte_on_the_wire) {
  const LONG pipe = open_with_door_closed();
  Process client(L"companion.exe raw-client " + pipe_name() + L" 00*16");
  ASSERT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request(0x11223344, 36955.588, L"abc")));
  EXPECT_EQ(client.output(), hex(packet(0x11223344, 36955.588, "abc").substr(1)) + "\n");
}

}  // namespace
}  // namespace qv::tests
