// NPServerOpen, NPServerRead, NPServerWrite, NPServerClose and NPServerCloseAll, with clients that
// speak the raw pipe.
#include <aclapi.h>

#include <memory>
#include <thread>
#include <vector>

#include "server/box_presser.h"
#include "server/pipe_fixture.h"
#include "server/raw_pipe_client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using Then = RawPipeClient::Then;

class PipeServer : public PipeFixture {
 protected:
  // Opens while a box is expected, which is confirmed.
  LONG open_and_fail(const std::wstring& name, BoxPresser& presser) {
    const LONG pipe = open(name);
    presser.finish();
    EXPECT_TRUE(presser.has_pressed());
    return pipe;
  }
};

TEST_F(PipeServer, a_pipe_passes_messages_both_ways_with_buffers_of_10000_bytes) {
  const LONG pipe = open();
  ASSERT_NE(pipe, 0);
  DWORD flags = 0;
  DWORD out_bytes = 0;
  DWORD in_bytes = 0;
  DWORD instances = 0;
  ASSERT_TRUE(GetNamedPipeInfo(handle_of(pipe), &flags, &out_bytes, &in_bytes, &instances));
  EXPECT_EQ(flags, static_cast<DWORD>(PIPE_SERVER_END | PIPE_TYPE_MESSAGE));
  EXPECT_EQ(out_bytes, 10000U);
  EXPECT_EQ(in_bytes, 10000U);
  EXPECT_EQ(instances, 10U);
  DWORD mode = 0;
  ASSERT_TRUE(
      GetNamedPipeHandleStateW(handle_of(pipe), &mode, nullptr, nullptr, nullptr, nullptr, 0));
  EXPECT_EQ(mode, static_cast<DWORD>(PIPE_READMODE_MESSAGE | PIPE_WAIT));
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, the_handle_is_inherited_and_open_to_every_user) {
  const LONG pipe = open();
  DWORD flags = 0;
  ASSERT_TRUE(GetHandleInformation(handle_of(pipe), &flags));
  EXPECT_EQ(flags, static_cast<DWORD>(HANDLE_FLAG_INHERIT));
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  BOOL is_present = FALSE;
  BOOL is_defaulted = TRUE;
  PACL list = nullptr;
  ASSERT_EQ(GetSecurityInfo(handle_of(pipe), SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor),
            static_cast<DWORD>(ERROR_SUCCESS));
  ASSERT_TRUE(GetSecurityDescriptorDacl(descriptor, &is_present, &list, &is_defaulted));
  EXPECT_EQ(list, nullptr);
  LocalFree(descriptor);
}

TEST_F(PipeServer, names_may_have_any_character) {
  const std::wstring name = pipe_name() + L"_\x65E5\x0416";
  const LONG pipe = open(name);
  ASSERT_NE(pipe, 0);
  const HANDLE client = RawPipeClient::connect(name);
  EXPECT_NE(client, INVALID_HANDLE_VALUE);
  CloseHandle(client);
}

TEST_F(PipeServer, ten_instances_of_a_name_open_and_the_eleventh_fails_with_a_box) {
  for (int i = 0; i < 10; ++i) ASSERT_NE(open(), 0) << i;
  for (std::size_t i = 1; i < opened_.size(); ++i) EXPECT_NE(opened_[i], opened_[i - 1]);
  BoxPresser presser(1);
  EXPECT_EQ(open_and_fail(pipe_name(), presser), 0);
  EXPECT_EQ(presser.title(), L" ");
  const std::wstring shown =
      L"CreateNamedPipe: 231\n[#20000 - QvRtLibOle.modNamedPipes.NPServerOpen, 0]";
  std::wstring text = presser.text();
  std::erase(text, L'\r');
  EXPECT_EQ(text.substr(0, shown.size()), shown);
  expect_failed_call(L"CreateNamedPipe", 231, L"NPServerOpen");

  EXPECT_FALSE(close(opened_[3]));
  opened_.erase(opened_.begin() + 3);
  EXPECT_NE(open(), 0) << "one was closed, so there is room again";
}

TEST_F(PipeServer, a_name_that_is_no_pipe_fails_with_a_box) {
  for (const wchar_t* name : {L"no_pipe", L"", L"C:\\pipe"}) {
    BoxPresser presser(1);
    EXPECT_EQ(open_and_fail(name, presser), 0) << name;
    LONG reason = 0;
    global_->Error_LastDLLError(&reason);
    EXPECT_NE(reason, 0) << name;
    expect_failed_call(L"CreateNamedPipe", reason, L"NPServerOpen");
  }
}

TEST_F(PipeServer, a_box_unlocks_the_record_and_leaves_it) {
  global_->Error_Lock();
  BoxPresser presser(1);
  EXPECT_EQ(open_and_fail(L"no_pipe", presser), 0);
  EXPECT_EQ(error_number(), 0) << "it was locked while the failure was recorded";
  BoxPresser again(1);
  EXPECT_EQ(open_and_fail(L"no_pipe", again), 0);
  EXPECT_EQ(error_number(), 20000);
}

TEST_F(PipeServer, closing_takes_the_pipe_away) {
  const LONG pipe = open();
  EXPECT_FALSE(close(pipe));
  EXPECT_EQ(CreateFileW(pipe_name().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
            INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_FALSE(close(pipe)) << "there is nothing to close any more";
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, closing_what_was_not_opened_does_nothing) {
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const auto foreign = static_cast<LONG>(reinterpret_cast<std::intptr_t>(event));
  for (const LONG pipe : {0L, -1L, 123456L, foreign}) EXPECT_FALSE(close(pipe)) << pipe;
  EXPECT_TRUE(SetEvent(event)) << "a handle of somebody else stays open";
  CloseHandle(event);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, closing_cuts_a_connected_client_off) {
  const LONG pipe = open_with_door_closed();
  RawPipeClient client(pipe_name(), packet(1, 0, ""));
  EXPECT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(close(pipe));
  client.finish();
  EXPECT_FALSE(client.has_answer());
  EXPECT_EQ(client.error(), static_cast<DWORD>(ERROR_BROKEN_PIPE));
}

TEST_F(PipeServer, NPServerCloseAll_leaves_every_pipe_open) {
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(global_->NPServerCloseAll(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  const LONG first = open();
  const LONG second = open();
  failed = 7;
  EXPECT_EQ(global_->NPServerCloseAll(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  DWORD flags = 0;
  EXPECT_TRUE(GetHandleInformation(handle_of(first), &flags));
  EXPECT_TRUE(GetHandleInformation(handle_of(second), &flags));
  EXPECT_EQ(error_number(), 0);
}

// The system gives the number of a closed handle to the next one that is opened.
TEST_F(PipeServer, a_pipe_closed_behind_the_library_leaves_its_number_taken) {
  const LONG pipe = open();
  BoxPresser presser(1);
  CloseHandle(handle_of(pipe));
  EXPECT_EQ(open_and_fail(pipe_name(), presser), 0);
  expect_error(457, L"This key is already associated with an element of this collection",
               L"QvRtLibOle.modNamedPipes.NPServerOpen, 0");
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(handle_of(pipe), &flags)) << "the new pipe is closed again";
  EXPECT_EQ(open(), pipe) << "and the number is free";
}

TEST_F(PipeServer, NPServerRead_tells_that_a_request_has_come_and_drops_it) {
  const LONG pipe = open_with_door_closed();
  RawPipeClient client(pipe_name(), packet(7, 2.5, "request"));
  const auto room = make_request(1, 1.5, std::wstring(1000, L'r'));
  EXPECT_EQ(read(pipe, room), kNewData);
  EXPECT_EQ(fields_of(room), (Fields{1, 1.5, std::wstring(1000, L'r')}));
  EXPECT_EQ(error_number(), 0);
  EXPECT_FALSE(write(pipe, make_request(2)));
  client.finish();
  EXPECT_TRUE(client.has_answer()) << "the client was connected until it was answered";
}

TEST_F(PipeServer, NPServerRead_takes_a_message_of_one_byte_less_than_the_room_packs_to) {
  const LONG pipe = open_with_door_closed();
  {
    RawPipeClient client(pipe_name(), packet(7, 2.5, "abcde"));  // 21 bytes
    EXPECT_EQ(read(pipe, 6), kNewData);
    EXPECT_FALSE(write(pipe, make_request()));
  }
  RawPipeClient client(pipe_name(), packet(7, 2.5, "abcde"));
  EXPECT_EQ(read(pipe, 5), kError);
  expect_failed_call(L"ReadFile", 234, L"NPServerRead");
  client.finish();
  EXPECT_FALSE(client.has_answer());
  EXPECT_EQ(client.error(), static_cast<DWORD>(ERROR_PIPE_NOT_CONNECTED))
      << "the client was disconnected";
}

TEST_F(PipeServer, an_empty_room_takes_15_bytes) {
  const LONG pipe = open_with_door_closed();
  {
    RawPipeClient client(pipe_name(), std::string(15, 'x'));
    EXPECT_EQ(read(pipe, 0), kNewData);
    EXPECT_FALSE(write(pipe, make_request()));
  }
  RawPipeClient client(pipe_name(), packet(0, 0, ""));
  EXPECT_EQ(read(pipe, 0), kError);
  expect_failed_call(L"ReadFile", 234, L"NPServerRead");
}

TEST_F(PipeServer, a_full_room_takes_a_request_of_99999_characters_and_none_of_100000) {
  const LONG pipe = open_with_door_closed();
  {
    RawPipeClient client(pipe_name(), packet(1, 0, std::string(99999, 'x')));
    EXPECT_EQ(read(pipe, 100000), kNewData);
    EXPECT_FALSE(write(pipe, make_request()));
  }
  RawPipeClient client(pipe_name(), packet(1, 0, std::string(100000, 'x')));
  EXPECT_EQ(read(pipe, 100000), kError);
  expect_failed_call(L"ReadFile", 234, L"NPServerRead");
}

TEST_F(PipeServer, an_empty_message_is_no_data_and_the_client_is_disconnected) {
  const LONG pipe = open_with_door_closed();
  RawPipeClient client(pipe_name(), "");
  EXPECT_EQ(read(pipe), kNoData);
  EXPECT_EQ(error_number(), 0);
  client.finish();
  EXPECT_FALSE(client.has_answer());
  EXPECT_EQ(client.error(), static_cast<DWORD>(ERROR_PIPE_NOT_CONNECTED));
}

TEST_F(PipeServer, a_client_that_connected_before_the_call_is_no_data_and_stays) {
  const LONG pipe = open();
  const HANDLE client = RawPipeClient::connect(pipe_name());
  ASSERT_NE(client, INVALID_HANDLE_VALUE);
  DWORD count = 0;
  const std::string request = packet(1, 0, "");
  ASSERT_TRUE(WriteFile(client, request.data(), 16, &count, nullptr));
  EXPECT_EQ(read(pipe), kNoData);
  EXPECT_EQ(read(pipe), kNoData);
  EXPECT_EQ(error_number(), 0);
  DWORD waiting_bytes = 0;
  EXPECT_TRUE(PeekNamedPipe(handle_of(pipe), nullptr, 0, nullptr, &waiting_bytes, nullptr));
  EXPECT_EQ(waiting_bytes, 16U) << "the request has not been read";
  // What NPServerWrite sends reaches it, and disconnects it at last.
  std::thread reader([&] {
    char answer[100];
    EXPECT_TRUE(ReadFile(client, answer, sizeof answer, &count, nullptr));
    EXPECT_EQ(count, 15U);
  });
  EXPECT_FALSE(write(pipe, make_request(1)));
  reader.join();
  CloseHandle(client);
  RawPipeClient next(pipe_name(), request);
  EXPECT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request()));
}

TEST_F(PipeServer, a_client_that_came_and_went_before_the_call_is_no_data) {
  const LONG pipe = open();
  CloseHandle(RawPipeClient::connect(pipe_name()));
  EXPECT_EQ(read(pipe), kNoData);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, a_client_that_leaves_without_a_word_is_an_error) {
  const LONG pipe = open_with_door_closed();
  std::thread client([] { CloseHandle(RawPipeClient::connect(pipe_name())); });
  EXPECT_EQ(read(pipe), kError);
  client.join();
  expect_failed_call(L"ReadFile", ERROR_BROKEN_PIPE, L"NPServerRead");
}

TEST_F(PipeServer, NPServerRead_of_a_handle_that_is_no_open_pipe_is_no_data) {
  const LONG pipe = open();
  close(pipe);
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  for (const LONG handle :
       {pipe, 0L, -1L, static_cast<LONG>(reinterpret_cast<std::intptr_t>(event))}) {
    EXPECT_EQ(read(handle), kNoData) << handle;
  }
  CloseHandle(event);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, NPServerRead_into_nothing_is_an_error) {
  const LONG pipe = open();
  EXPECT_EQ(read(pipe, Pointer<_kwPipeData>()), kError);
  expect_error(91, L"Object variable or With block variable not set",
               L"QvRtLibOle.modNamedPipes.PackRequest, 0 < "
               L"QvRtLibOle.modNamedPipes.NPServerRead, 0");
}

TEST_F(PipeServer, an_answer_goes_out_without_its_first_byte) {
  const LONG pipe = open_with_door_closed();
  const std::string long_text(99998, 'x');
  for (const std::string& data :
       {std::string(), std::string("a"), std::string("\0\x80\xFF", 3), long_text}) {
    RawPipeClient client(pipe_name(), packet(1, 0, ""));
    ASSERT_EQ(read(pipe), kNewData);
    std::wstring characters;
    for (const char byte : data) {
      characters += byte == '\x80' ? L'\x20AC' : static_cast<wchar_t>(static_cast<BYTE>(byte));
    }
    EXPECT_FALSE(write(pipe, make_request(0x11223344, 36955.588, characters)));
    client.finish();
    EXPECT_EQ(client.answer(), packet(0x11223344, 36955.588, data).substr(1));
  }
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeServer, an_answer_longer_than_the_buffers_of_the_pipe_arrives_whole) {
  const LONG pipe = open_with_door_closed();
  RawPipeClient client(pipe_name(), packet(1, 0, std::string(50000, 'q')));
  ASSERT_EQ(read(pipe, 100000), kNewData);
  EXPECT_FALSE(write(pipe, make_request(1, 0, std::wstring(100000, L'a'))));
  client.finish();
  EXPECT_EQ(client.answer().size(), 100015U);
}

TEST_F(PipeServer, NPServerWrite_disconnects_the_client) {
  const LONG pipe = open_with_door_closed();
  for (int i = 0; i < 3; ++i) {
    RawPipeClient client(pipe_name(), packet(1, 0, ""));
    ASSERT_EQ(read(pipe), kNewData);
    EXPECT_FALSE(write(pipe, make_request()));
  }
  EXPECT_TRUE(write(pipe, make_request())) << "nobody is there any more";
}

TEST_F(PipeServer, NPServerWrite_without_a_client_fails) {
  const LONG pipe = open();
  EXPECT_TRUE(write(pipe, make_request()));
  expect_failed_call(L"WriteFile", ERROR_PIPE_LISTENING, L"NPServerWrite");
  close_door(pipe);
  EXPECT_TRUE(write(pipe, make_request()));
  expect_failed_call(L"WriteFile", ERROR_PIPE_NOT_CONNECTED, L"NPServerWrite");
}

TEST_F(PipeServer, NPServerWrite_to_a_client_that_has_left_fails_and_frees_the_pipe) {
  const LONG pipe = open_with_door_closed();
  {
    RawPipeClient client(pipe_name(), packet(1, 0, ""), Then::leaves);
    ASSERT_EQ(read(pipe), kNewData);
    client.finish();
    EXPECT_TRUE(write(pipe, make_request()));
    expect_failed_call(L"WriteFile", ERROR_NO_DATA, L"NPServerWrite");
  }
  RawPipeClient client(pipe_name(), packet(1, 0, ""));
  EXPECT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request()));
}

TEST_F(PipeServer, NPServerWrite_of_nothing_fails_and_disconnects_too) {
  const LONG pipe = open_with_door_closed();
  RawPipeClient client(pipe_name(), packet(1, 0, ""));
  ASSERT_EQ(read(pipe), kNewData);
  EXPECT_TRUE(write(pipe, Pointer<_kwPipeData>()));
  expect_error(91, L"Object variable or With block variable not set",
               L"QvRtLibOle.modNamedPipes.PackRequest, 0 < "
               L"QvRtLibOle.modNamedPipes.NPServerWrite, 0");
  client.finish();
  EXPECT_FALSE(client.has_answer());
  EXPECT_EQ(client.error(), static_cast<DWORD>(ERROR_PIPE_NOT_CONNECTED));
}

TEST_F(PipeServer, NPServerWrite_to_a_handle_that_is_none_fails) {
  for (const LONG handle : {0L, 123456L}) {
    EXPECT_TRUE(write(handle, make_request()));
    expect_failed_call(L"WriteFile", ERROR_INVALID_HANDLE, L"NPServerWrite");
  }
}

// The handle is used as it is: nothing asks whether it is a pipe.
TEST_F(PipeServer, NPServerWrite_to_a_file_writes_the_packet_into_it) {
  TempFolder folder;
  const HANDLE file = CreateFileW(folder.file(L"answer").c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_FALSE(write(static_cast<LONG>(reinterpret_cast<std::intptr_t>(file)),
                     make_request(0x11223344, 2.5, L"ab")));
  CloseHandle(file);
  EXPECT_EQ(folder.read(L"answer"), packet(0x11223344, 2.5, "ab").substr(1));
}

TEST_F(PipeServer, another_thread_can_read_and_write_but_not_close) {
  const LONG pipe = open_with_door_closed();
  std::thread other([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto global = create_global();
      auto room = make_request(0, 0, L"room");
      LONG handle = pipe;
      LONG result = 99;
      VARIANT_BOOL failed = 7;
      RawPipeClient client(pipe_name(), packet(1, 0, ""));
      EXPECT_EQ(global->NPServerRead(&handle, room.variable(), &result), S_OK);
      EXPECT_EQ(result, kNewData);
      EXPECT_EQ(global->NPServerWrite(&handle, room.variable(), &failed), S_OK);
      EXPECT_EQ(failed, VARIANT_FALSE);
      client.finish();
      EXPECT_EQ(client.answer(), packet(0, 0, "room").substr(1));
      failed = 7;
      EXPECT_EQ(global->NPServerClose(&handle, &failed), S_OK);
      EXPECT_EQ(failed, VARIANT_FALSE);
    }
    CoUninitialize();
  });
  other.join();
  DWORD flags = 0;
  EXPECT_TRUE(GetHandleInformation(handle_of(pipe), &flags)) << "it is open";
  EXPECT_FALSE(close(pipe));
  EXPECT_FALSE(GetHandleInformation(handle_of(pipe), &flags));
}

TEST_F(PipeServer, a_pipe_outlives_the_thread_that_opened_it) {
  LONG pipe = 0;
  std::thread opener([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      String name(pipe_name());
      EXPECT_EQ(create_global()->NPServerOpen(&name, &pipe), S_OK);
    }
    CoUninitialize();
  });
  opener.join();
  close_door(pipe);
  RawPipeClient client(pipe_name(), packet(1, 0, ""));
  EXPECT_EQ(read(pipe), kNewData);
  EXPECT_FALSE(write(pipe, make_request()));
  EXPECT_FALSE(close(pipe)) << "this thread has not opened it";
  EXPECT_TRUE(CloseHandle(handle_of(pipe)));
}

TEST_F(PipeServer, ten_clients_talk_to_ten_instances_at_once) {
  constexpr std::size_t kInstances = 10;
  std::vector<LONG> pipes;
  std::vector<std::unique_ptr<RawPipeClient>> clients;
  for (std::size_t i = 0; i < kInstances; ++i) pipes.push_back(open_with_door_closed());
  for (const LONG pipe : pipes) {
    clients.push_back(std::make_unique<RawPipeClient>(pipe_name(), packet(1, 0, "")));
    ASSERT_EQ(read(pipe), kNewData);
  }
  for (std::size_t i = kInstances; i-- > 0;) {
    EXPECT_FALSE(write(pipes[i], make_request(0, 0, std::wstring(i, L'x'))));
    clients[i]->finish();
    EXPECT_EQ(clients[i]->answer(), packet(0, 0, std::string(i, 'x')).substr(1));
  }
}

TEST_F(PipeServer, instances_of_a_name_have_clients_of_their_own) {
  const LONG first = open_with_door_closed();
  const LONG second = open_with_door_closed();
  RawPipeClient one(pipe_name(), packet(1, 0, ""));
  ASSERT_EQ(read(first), kNewData);
  RawPipeClient two(pipe_name(), packet(2, 0, ""));
  ASSERT_EQ(read(second), kNewData);
  EXPECT_FALSE(write(second, make_request(0, 0, L"second")));
  EXPECT_FALSE(write(first, make_request(0, 0, L"first")));
  one.finish();
  two.finish();
  EXPECT_EQ(one.answer(), packet(0, 0, "first").substr(1));
  EXPECT_EQ(two.answer(), packet(0, 0, "second").substr(1));
}

}  // namespace
}  // namespace qv::tests
