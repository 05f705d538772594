// What the pipes ask of the system, and what becomes of its refusals.
#include "services/named_pipes.h"

#include <gtest/gtest.h>

#include <string>

#include "automation/class_object.h"
#include "class_tables.h"
#include "constants.h"
#include "files/file_handles.h"
#include "frame/error_state.h"
#include "modules/stand_in.h"
#include "server/box_presser.h"

namespace qv::services {
namespace {

using tests::BoxPresser;
using tests::StandIn;

constexpr const wchar_t* kName = L"\\\\.\\pipe\\qvrt_modules";

void expect_error(std::wstring_view description, std::wstring_view function) {
  EXPECT_EQ(frame::Error_Number(), 20000);
  EXPECT_EQ(frame::Error_Description(), description);
  EXPECT_EQ(frame::Error_Source().view(),
            L"QvRtLibOle.modNamedPipes." + std::wstring(function) + L", 0");
  frame::Reset_Error();
}

Object<_kwPipeData> make_request() {
  const Object<IUnknown> created(create_kwPipeData());
  return Object<_kwPipeData>::from(created.get());
}

// Opening fails, and its box is confirmed.
void expect_refusal(std::wstring_view description) {
  BoxPresser presser(1);
  EXPECT_EQ(NPServerOpen(kName), 0);
  presser.finish();
  EXPECT_EQ(presser.title(), L" ");
  EXPECT_EQ(presser.text().substr(0, description.size()), description);
  expect_error(description, L"NPServerOpen");
}

struct Asked {
  SIZE_T memory_bytes = 0;
  UINT memory_flags = 0;
  DWORD open_mode = 0;
  DWORD pipe_mode = 0;
  DWORD instances = 0;
  DWORD out_bytes = 0;
  DWORD in_bytes = 0;
  DWORD time_out_ms = 0;
  SECURITY_ATTRIBUTES attributes{};
};
Asked asked;

HGLOBAL WINAPI no_memory(UINT flags, SIZE_T bytes) {
  asked.memory_flags = flags;
  asked.memory_bytes = bytes;
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}
BOOL WINAPI no_descriptor(PSECURITY_DESCRIPTOR, DWORD revision) {
  EXPECT_EQ(revision, 1U);
  SetLastError(ERROR_UNKNOWN_REVISION);
  return FALSE;
}
BOOL WINAPI no_list(PSECURITY_DESCRIPTOR, BOOL is_present, PACL list, BOOL is_defaulted) {
  EXPECT_NE(is_present, FALSE);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(is_defaulted, FALSE);
  SetLastError(ERROR_INVALID_SECURITY_DESCR);
  return FALSE;
}
HANDLE WINAPI no_pipe(LPCWSTR name, DWORD open_mode, DWORD pipe_mode, DWORD instances,
                      DWORD out_bytes, DWORD in_bytes, DWORD time_out_ms,
                      LPSECURITY_ATTRIBUTES attributes) {
  EXPECT_EQ(std::wstring(name), kName);
  asked.open_mode = open_mode;
  asked.pipe_mode = pipe_mode;
  asked.instances = instances;
  asked.out_bytes = out_bytes;
  asked.in_bytes = in_bytes;
  asked.time_out_ms = time_out_ms;
  asked.attributes = *attributes;
  SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_HANDLE_VALUE;
}
BOOL WINAPI writes_all(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) { return TRUE; }
BOOL WINAPI no_flush(HANDLE) {
  SetLastError(ERROR_BROKEN_PIPE);
  return FALSE;
}

class NamedPipes : public testing::Test {
 protected:
  NamedPipes() { frame::Reset_Error(); }
};

TEST_F(NamedPipes, without_memory_no_pipe_opens) {
  asked = {};
  {
    const StandIn allocation("GlobalAlloc", no_memory);
    expect_refusal(L"GlobalAlloc: 8");
  }
  EXPECT_EQ(asked.memory_flags, 0x40U);
  EXPECT_EQ(asked.memory_bytes, sizeof(SECURITY_DESCRIPTOR));
}

TEST_F(NamedPipes, without_a_descriptor_no_pipe_opens) {
  const StandIn initialisation("InitializeSecurityDescriptor", no_descriptor);
  expect_refusal(L"InitializeSecurityDescriptor: 1305");
}

TEST_F(NamedPipes, without_rights_no_pipe_opens) {
  const StandIn rights("SetSecurityDescriptorDacl", no_list);
  expect_refusal(L"SetSecurityDescriptorDacl: 1338");
}

TEST_F(NamedPipes, the_parameters_of_a_pipe_are_fixed) {
  asked = {};
  {
    const StandIn creation("CreateNamedPipeW", no_pipe);
    expect_refusal(L"CreateNamedPipe: 5");
  }
  EXPECT_EQ(asked.open_mode, 0x80000003U);
  EXPECT_EQ(asked.pipe_mode, 6U);
  EXPECT_EQ(asked.instances, 10U);
  EXPECT_EQ(asked.out_bytes, 10000U);
  EXPECT_EQ(asked.in_bytes, 10000U);
  EXPECT_EQ(asked.time_out_ms, 5000U);
  EXPECT_EQ(asked.attributes.nLength, sizeof(SECURITY_ATTRIBUTES));
  EXPECT_NE(asked.attributes.bInheritHandle, FALSE);
  EXPECT_NE(asked.attributes.lpSecurityDescriptor, nullptr);
}

TEST_F(NamedPipes, an_answer_that_is_not_known_to_be_read_is_a_failure) {
  const Long pipe = NPServerOpen(kName);
  ASSERT_NE(pipe, 0);
  const HANDLE client =
      CreateFileW(kName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(client, INVALID_HANDLE_VALUE);
  {
    const StandIn writing("WriteFile", writes_all);
    const StandIn flushing("FlushFileBuffers", no_flush);
    EXPECT_TRUE(NPServerWrite(pipe, make_request()));
  }
  expect_error(L"FlushFileBuffers: 109", L"NPServerWrite");
  char byte = 0;
  DWORD count = 0;
  EXPECT_FALSE(ReadFile(client, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PIPE_NOT_CONNECTED)) << "it is disconnected";
  CloseHandle(client);
  EXPECT_FALSE(NPServerClose(pipe));
}

}  // namespace
}  // namespace qv::services
