// What is told of the machine and its system.
#include <limits>
#include <string>

#include "server/error_record_client.h"
#include "server/import_patch.h"

namespace qv::tests {
namespace {

constexpr SHORT kOld = -77;
constexpr SIZE_T kMostBytes = 0x7FFFFFFF;

using MachineFacts = WithErrorRecord;

TEST_F(MachineFacts, tell_the_version_of_Windows) {
  OSVERSIONINFOA expected{};
  expected.dwOSVersionInfoSize = sizeof expected;
  static_assert(sizeof expected == 148);
  ASSERT_TRUE(GetVersionExA(&expected));
  LONG major = kOld;
  LONG minor = kOld;
  LONG build = kOld;
  VARIANT_BOOL is_nt = VARIANT_FALSE;
  String info(L"old");
  EXPECT_EQ(global_->Win_VersionEx(&major, &minor, &build, &is_nt, &info), S_OK);
  EXPECT_EQ(major, static_cast<LONG>(expected.dwMajorVersion));
  EXPECT_EQ(minor, static_cast<LONG>(expected.dwMinorVersion));
  EXPECT_EQ(build, static_cast<LONG>(expected.dwBuildNumber));
  EXPECT_EQ(is_nt, VARIANT_TRUE);
  const std::string text = expected.szCSDVersion;
  EXPECT_EQ(info.view(), std::wstring(text.begin(), text.end()));
  EXPECT_EQ(global_->Win_VersionEx(nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(MachineFacts, tell_the_old_versions_with_their_bytes_exchanged) {
  const DWORD version = GetVersion();
  SHORT major = kOld;
  SHORT minor = kOld;
  EXPECT_EQ(global_->Win_Version(&major, &minor), S_OK);
  EXPECT_EQ(major, HIBYTE(LOWORD(version)));
  EXPECT_EQ(minor, LOBYTE(LOWORD(version)));
  EXPECT_EQ(global_->Dos_Version(&major, &minor), S_OK);
  EXPECT_EQ(major, LOBYTE(HIWORD(version)));
  EXPECT_EQ(minor, HIBYTE(HIWORD(version)));
}

TEST_F(MachineFacts, tell_of_this_machine_s_memory_or_overflow) {
  MEMORYSTATUS status{};
  status.dwLength = sizeof status;
  GlobalMemoryStatus(&status);
  const auto total = std::uint64_t{status.dwTotalPhys} + status.dwTotalPageFile;
  LONG bytes = kOld;
  SHORT percent = kOld;
  const HRESULT answer = global_->Win_Free(&bytes, &percent);
  if (total > kMostBytes) {
    EXPECT_EQ(answer, error_result(6));
    EXPECT_EQ(percent, kOld);
  } else {
    EXPECT_EQ(answer, S_OK);
    EXPECT_GT(bytes, 0);
    EXPECT_LE(percent, 100);
  }
  expect_no_error();
}

// What the patched services answer.
MEMORYSTATUS given_memory;
void WINAPI give_memory(MEMORYSTATUS* status) { *status = given_memory; }
DWORD given_flags;
DWORD WINAPI give_flags() { return given_flags; }
FARPROC WINAPI find_flags(HMODULE, const char* name) {
  EXPECT_STREQ(name, "GetWinFlags");
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&give_flags));
}

struct Memory {
  SIZE_T physical, physical_free, paging_file, paging_file_free;
};
struct MemoryReport {
  LONG bytes = kOld;
  SHORT percent = kOld;
  HRESULT answer = E_UNEXPECTED;
};

class MemoryOf : public MachineFacts {
 protected:
  MemoryReport report(const Memory& memory) {
    given_memory = {};
    given_memory.dwTotalPhys = memory.physical;
    given_memory.dwAvailPhys = memory.physical_free;
    given_memory.dwTotalPageFile = memory.paging_file;
    given_memory.dwAvailPageFile = memory.paging_file_free;
    const ImportPatch patch("GlobalMemoryStatus", give_memory);
    EXPECT_TRUE(patch.is_in_place());
    MemoryReport report;
    report.answer = global_->Win_Free(&report.bytes, &report.percent);
    return report;
  }
};

TEST_F(MemoryOf, memory_and_paging_file_adds_up) {
  const auto told = report({100, 20, 300, 60});
  EXPECT_EQ(told.answer, S_OK);
  EXPECT_EQ(told.bytes, 80);
  EXPECT_EQ(told.percent, 20);
}

TEST_F(MemoryOf, half_a_percent_goes_to_the_even_number) {
  EXPECT_EQ(report({200, 5, 0, 0}).percent, 2);
  EXPECT_EQ(report({200, 7, 0, 0}).percent, 4);
  EXPECT_EQ(report({3, 2, 0, 0}).percent, 67);
}

TEST_F(MemoryOf, a_machine_with_2147483647_bytes_is_told) {
  const auto told = report({1, 1, kMostBytes - 1, kMostBytes - 1});
  EXPECT_EQ(told.answer, S_OK);
  EXPECT_EQ(told.bytes, 2147483647);
  EXPECT_EQ(told.percent, 100);
}

TEST_F(MemoryOf, a_larger_machine_overflows_behind_its_free_bytes) {
  const auto told = report({1, 1, kMostBytes, 2});
  EXPECT_EQ(told.answer, error_result(6));
  EXPECT_EQ(told.bytes, 3);
  EXPECT_EQ(told.percent, kOld);
  expect_no_error();
}

TEST_F(MemoryOf, a_machine_with_too_many_free_bytes_overflows_at_once) {
  const auto told = report({kMostBytes, 1, kMostBytes, kMostBytes});
  EXPECT_EQ(told.answer, error_result(6));
  EXPECT_EQ(told.bytes, kOld);
  EXPECT_EQ(told.percent, kOld);
}

TEST_F(MemoryOf, no_machine_divides_by_zero) {
  EXPECT_EQ(report({0, 0, 0, 0}).answer, error_result(11));
}

struct Equipment {
  String processor{L"old"};
  SHORT coprocessor = kOld;
  SHORT mode = kOld;
};

class EquipmentOf : public MachineFacts {
 protected:
  void report(DWORD flags, Equipment& found) {
    given_flags = flags;
    const ImportPatch patch("GetProcAddress", find_flags);
    EXPECT_TRUE(patch.is_in_place());
    EXPECT_EQ(global_->Win_Equipment(&found.processor, &found.coprocessor, &found.mode), S_OK);
  }
  std::wstring processor(DWORD flags) {
    Equipment found;
    report(flags, found);
    return std::wstring(found.processor.view());
  }
  SHORT coprocessor(DWORD flags) {
    Equipment found;
    report(flags, found);
    return found.coprocessor;
  }
  SHORT mode(DWORD flags) {
    Equipment found;
    report(flags, found);
    return found.mode;
  }
};

TEST_F(EquipmentOf, an_old_system_names_the_first_processor) {
  EXPECT_EQ(processor(0x40), L"8086");
  EXPECT_EQ(processor(0x02), L"80186");
  EXPECT_EQ(processor(0x04), L"80386");
  EXPECT_EQ(processor(0x08), L"80486");
  EXPECT_EQ(processor(0x4E), L"8086");
  EXPECT_EQ(processor(0x0E), L"80186");
  EXPECT_EQ(processor(0x0C), L"80386");
}

TEST_F(EquipmentOf, an_old_system_may_name_no_processor) {
  EXPECT_EQ(processor(0x01), L"old");
  EXPECT_EQ(processor(0), L"old");
}

TEST_F(EquipmentOf, an_old_system_tells_of_the_coprocessor) {
  EXPECT_EQ(coprocessor(0x04), -1);
  EXPECT_EQ(coprocessor(0x08), 0);
  EXPECT_EQ(coprocessor(0x0C), -1);
  EXPECT_EQ(coprocessor(0x404), 1);
  EXPECT_EQ(coprocessor(0x408), 1);
  EXPECT_EQ(coprocessor(0), -1);
}

TEST_F(EquipmentOf, an_old_system_has_mode_0_with_any_flag) {
  EXPECT_EQ(mode(0x01), 0);
  EXPECT_EQ(mode(0x400), 0);
  EXPECT_EQ(mode(0), 1);
}

TEST_F(EquipmentOf, a_present_system_is_not_told) {
  ASSERT_EQ(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetWinFlags"), nullptr);
  Equipment found;
  EXPECT_EQ(global_->Win_Equipment(&found.processor, &found.coprocessor, &found.mode),
            error_result(453));
  EXPECT_EQ(error_description(), L"Can't find DLL entry point GetWinFlags in Kernel32.dll");
  EXPECT_EQ(found.processor.view(), L"old");
  EXPECT_EQ(found.coprocessor, -1);
  EXPECT_EQ(found.mode, 1);
  expect_no_error();
}

// A system of the other line: version 4.10, whose build number repeats the version.
BOOL WINAPI give_version(OSVERSIONINFOW* version) {
  EXPECT_EQ(version->dwOSVersionInfoSize, sizeof(OSVERSIONINFOW));
  version->dwMajorVersion = 4;
  version->dwMinorVersion = 10;
  version->dwBuildNumber = 0x040A08AE;
  version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
  lstrcpyW(version->szCSDVersion, L" A ");
  return TRUE;
}
DWORD WINAPI give_old_version() { return 0xC0990A04; }

TEST_F(MachineFacts, tell_the_version_of_a_system_of_the_other_line) {
  const ImportPatch patch("GetVersionExW", give_version);
  ASSERT_TRUE(patch.is_in_place());
  LONG major = kOld;
  LONG minor = kOld;
  LONG build = kOld;
  VARIANT_BOOL is_nt = VARIANT_TRUE;
  String info;
  EXPECT_EQ(global_->Win_VersionEx(&major, &minor, &build, &is_nt, &info), S_OK);
  EXPECT_EQ(major, 4);
  EXPECT_EQ(minor, 10);
  EXPECT_EQ(build, 0x08AE);
  EXPECT_EQ(is_nt, VARIANT_FALSE);
  EXPECT_EQ(info.view(), L" A ");
}

TEST_F(MachineFacts, tell_each_byte_of_the_old_version) {
  const ImportPatch patch("GetVersion", give_old_version);
  ASSERT_TRUE(patch.is_in_place());
  SHORT major = kOld;
  SHORT minor = kOld;
  EXPECT_EQ(global_->Win_Version(&major, &minor), S_OK);
  EXPECT_EQ(major, 0x0A);
  EXPECT_EQ(minor, 0x04);
  EXPECT_EQ(global_->Dos_Version(&major, &minor), S_OK);
  EXPECT_EQ(major, 0x99);
  EXPECT_EQ(minor, 0xC0);
}

TEST_F(MachineFacts, tell_the_computer_s_name) {
  wchar_t name[256];
  DWORD length = 256;
  ASSERT_TRUE(GetComputerNameW(name, &length));
  String answer;
  EXPECT_EQ(global_->Get_ComputerName(&answer), S_OK);
  EXPECT_EQ(answer.view(), name);
}

}  // namespace
}  // namespace qv::tests
