// What the machine's drives look like.
#include <cwchar>
#include <limits>
#include <string>
#include <vector>

#include "server/error_record_client.h"
#include "server/import_patch.h"
#include "server/temp_folder.h"
#include "server/test_drive.h"

namespace qv::tests {
namespace {

constexpr DWORD kAllKinds[] = {DRIVE_REMOVABLE, DRIVE_FIXED, DRIVE_REMOTE, DRIVE_CDROM,
                               DRIVE_RAMDISK};

struct Volume {
  VARIANT_BOOL failed = VARIANT_FALSE;
  String name{L"old"};
  LONG serial = -5;
  LONG longest = -5;
  LONG flags = -5;
  String system{L"old"};
  LONG kind = -5;
};

class Drives : public WithErrorRecord {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(TestDrive::wait_for_manager()); }

  std::vector<std::wstring> listed() {
    SAFEARRAY* roots = nullptr;
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->GetDriveStrings(&roots, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    LONG lower = 99;
    LONG upper = -99;
    EXPECT_EQ(SafeArrayGetLBound(roots, 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(roots, 1, &upper), S_OK);
    EXPECT_EQ(lower, 1);
    std::vector<std::wstring> names;
    for (LONG i = lower; i <= upper; ++i) {
      String root;
      EXPECT_EQ(SafeArrayGetElement(roots, &i, &root), S_OK);
      names.emplace_back(root.view());
    }
    SafeArrayDestroy(roots);
    return names;
  }
  void describe(const std::wstring& root_text, Volume& volume) {
    String root(root_text);
    EXPECT_EQ(global_->GetVolumeInfo(&root, &volume.name, &volume.serial, &volume.longest,
                                     &volume.flags, &volume.system, &volume.kind, &volume.failed),
              S_OK);
  }
  double space(const std::wstring& root) {
    String path(root);
    double result = 0;
    EXPECT_EQ(global_->Get_DiskSpace(&path, &result), S_OK);
    return result;
  }
  std::wstring first_with(double space) {
    String root(L"old");
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global_->Get_DiskFree(&space, &root, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    return std::wstring(root.view());
  }
  std::wstring system_text(LONG code) {
    String text;
    EXPECT_EQ(global_->SystemError(&code, &text), S_OK);
    return std::wstring(text.view());
  }
  void expect_refusal(const wchar_t* source) {
    EXPECT_NE(last_dll_error(), 0);
    EXPECT_EQ(recorded_description(), system_text(last_dll_error()));
    expect_error(20000, source);
  }

  const TempFolder folder_;
};

TEST_F(Drives, are_listed_from_1_with_their_backslash) {
  const TestDrive drive('m', DRIVE_FIXED, folder_.path());
  wchar_t expected[1024];
  const DWORD length = GetLogicalDriveStringsW(1024, expected);
  std::wstring joined;
  bool has_own = false;
  for (const auto& name : listed()) {
    EXPECT_EQ(name.size(), 3U);
    EXPECT_EQ(name.substr(1), L":\\");
    joined += name + L'\0';
    has_own = has_own || name == L"M:\\";
  }
  EXPECT_EQ(joined, std::wstring(expected, length));
  EXPECT_TRUE(has_own);
  expect_no_error();
}

TEST_F(Drives, replace_what_the_array_held) {
  SAFEARRAYBOUND bound{100, -5};
  SAFEARRAY* roots = SafeArrayCreate(VT_BSTR, 1, &bound);
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->GetDriveStrings(&roots, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  LONG lower = 0;
  LONG upper = 0;
  SafeArrayGetLBound(roots, 1, &lower);
  SafeArrayGetUBound(roots, 1, &upper);
  EXPECT_EQ(lower, 1);
  EXPECT_EQ(upper, static_cast<LONG>(listed().size()));
  SafeArrayDestroy(roots);
}

TEST_F(Drives, do_not_go_into_an_array_that_is_locked) {
  SAFEARRAYBOUND bound{3, 1};
  SAFEARRAY* roots = SafeArrayCreate(VT_BSTR, 1, &bound);
  ASSERT_EQ(SafeArrayLock(roots), S_OK);
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->GetDriveStrings(&roots, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_error(10, L"KwRtLibMod.GetDriveStrings");
  SafeArrayUnlock(roots);
  LONG upper = 0;
  SafeArrayGetUBound(roots, 1, &upper);
  EXPECT_EQ(upper, 3);
  SafeArrayDestroy(roots);
}

// A system that refuses the list, one that has no drive at all, and one with more than the first
// request has room for.
DWORD WINAPI refuse_list(DWORD, wchar_t*) {
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return 0;
}
DWORD WINAPI give_empty_list(DWORD, wchar_t* list) {
  *list = L'\0';
  return 1;
}
DWORD WINAPI give_long_list(DWORD room, wchar_t* list) {
  constexpr DWORD kDrives = 1000;
  constexpr DWORD kLength = 4 * kDrives;
  if (room <= kLength) return kLength + 1;
  for (DWORD i = 0; i < kDrives; ++i) std::wmemcpy(list + 4 * i, L"X:\\", 4);
  list[kLength] = L'\0';
  return kLength;
}

TEST_F(Drives, that_the_system_does_not_list_are_a_failure) {
  const ImportPatch patch("GetLogicalDriveStringsW", refuse_list);
  ASSERT_TRUE(patch.is_in_place());
  SAFEARRAY* roots = nullptr;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->GetDriveStrings(&roots, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(roots, nullptr);
  EXPECT_EQ(last_dll_error(), ERROR_NOT_ENOUGH_MEMORY);
  expect_refusal(L"KwRtLibMod.GetDriveStrings");
}

TEST_F(Drives, that_the_system_does_not_list_can_t_be_searched) {
  const ImportPatch patch("GetLogicalDriveStringsW", refuse_list);
  double space = 0;
  String root(L"old");
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->Get_DiskFree(&space, &root, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(root.view(), L"old");
  expect_refusal(L"KwRtLibMod.GetDriveStrings < KwRtLibMod.Get_DiskFree");
}

TEST_F(Drives, that_are_none_leave_the_array_unallocated) {
  const ImportPatch patch("GetLogicalDriveStringsW", give_empty_list);
  SAFEARRAY* roots = nullptr;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->GetDriveStrings(&roots, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(roots, nullptr);
  EXPECT_EQ(first_with(0), L"");
  expect_no_error();
}

TEST_F(Drives, of_a_long_list_are_all_there) {
  const ImportPatch patch("GetLogicalDriveStringsW", give_long_list);
  const auto names = listed();
  ASSERT_EQ(names.size(), 1000u);
  EXPECT_EQ(names.back(), L"X:\\");
}

TEST_F(Drives, tell_their_kind) {
  for (const DWORD kind : kAllKinds) {
    const TestDrive drive('m', kind, folder_.path());
    ASSERT_TRUE(drive.is_made());
    ASSERT_EQ(GetDriveTypeW(drive.root().c_str()), kind);
    Volume volume;
    describe(drive.root(), volume);
    EXPECT_EQ(volume.failed, VARIANT_FALSE) << kind;
    EXPECT_EQ(volume.kind, static_cast<LONG>(kind));
  }
  expect_no_error();
}

TEST_F(Drives, tell_their_volume_as_the_system_does) {
  folder_.write(L".windows-label", "ARCHIVIO \xC3\xA8\n");
  folder_.write(L".windows-serial", "DEADBEEF\n");
  const TestDrive drive('m', DRIVE_FIXED, folder_.path());
  Volume volume;
  describe(L"M:\\", volume);
  EXPECT_EQ(volume.failed, VARIANT_FALSE);
  EXPECT_EQ(volume.name.view(), L"ARCHIVIO \x00E8");
  EXPECT_EQ(volume.serial, static_cast<LONG>(0xDEADBEEF));
  wchar_t name[kLongestPath + 1];
  wchar_t system[kLongestPath + 1];
  DWORD serial = 0;
  DWORD longest = 0;
  DWORD flags = 0;
  ASSERT_TRUE(GetVolumeInformationW(L"M:\\", name, kLongestPath + 1, &serial, &longest, &flags,
                                    system, kLongestPath + 1));
  EXPECT_EQ(volume.name.view(), name);
  EXPECT_EQ(volume.serial, static_cast<LONG>(serial));
  EXPECT_EQ(volume.longest, static_cast<LONG>(longest));
  EXPECT_EQ(volume.flags, static_cast<LONG>(flags));
  EXPECT_EQ(volume.system.view(), system);
  EXPECT_EQ(volume.kind, DRIVE_FIXED);
}

TEST_F(Drives, leave_out_what_is_not_asked_for) {
  String root(L"C:\\");
  LONG kind = 0;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(
      global_->GetVolumeInfo(&root, nullptr, nullptr, nullptr, nullptr, nullptr, &kind, &failed),
      S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(kind, DRIVE_FIXED);
}

TEST_F(Drives, without_a_disk_give_the_error_mode_back_before_they_fail) {
  const EmptyDrive drive(L"M:");
  const UINT before = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  Volume volume;
  describe(L"M:\\", volume);
  EXPECT_EQ(SetErrorMode(before), static_cast<UINT>(SEM_NOGPFAULTERRORBOX));
  EXPECT_EQ(volume.failed, VARIANT_TRUE);
  expect_refusal(L"KwRtLibMod.GetVolumeInfo");
}

TEST_F(Drives, that_fail_leave_the_outputs_alone) {
  for (const auto* root : {L"Q:\\", L"", L"no root"}) {
    Volume volume;
    describe(root, volume);
    if (volume.failed == VARIANT_FALSE) {
      ADD_FAILURE() << "succeeded";
      continue;
    }
    EXPECT_EQ(volume.name.view(), L"old");
    EXPECT_EQ(volume.serial, -5);
    EXPECT_EQ(volume.longest, -5);
    EXPECT_EQ(volume.flags, -5);
    EXPECT_EQ(volume.system.view(), L"old");
    EXPECT_EQ(volume.kind, -5);
    expect_refusal(L"KwRtLibMod.GetVolumeInfo");
  }
}

TEST_F(Drives, have_as_much_space_as_their_clusters) {
  DWORD sectors = 0;
  DWORD sector_bytes = 0;
  DWORD free_clusters = 0;
  DWORD clusters = 0;
  ASSERT_TRUE(GetDiskFreeSpaceW(L"C:\\", &sectors, &sector_bytes, &free_clusters, &clusters));
  const double cluster_bytes = 1.0 * sectors * sector_bytes;
  const double result = space(L"C:\\");
  EXPECT_GT(result, 0);
  EXPECT_EQ(result,
            cluster_bytes * static_cast<double>(static_cast<std::int64_t>(result / cluster_bytes)));
  // Others use the disk meanwhile.
  EXPECT_LE(result, cluster_bytes * clusters);
}

TEST_F(Drives, that_are_missing_have_minus_1_byte) {
  EXPECT_EQ(space(L"Q:\\"), -1);
  EXPECT_EQ(space(L"no root"), -1);
  expect_no_error();
}

TEST_F(Drives, with_space_are_found_from_the_first_on) {
  EXPECT_EQ(first_with(0), L"C:\\");
  EXPECT_EQ(first_with(-1), L"C:\\");
  const TestDrive removable('a', DRIVE_REMOVABLE, folder_.path());
  EXPECT_EQ(first_with(0), L"A:\\");
  const TestDrive fixed('b', DRIVE_FIXED, folder_.path());
  EXPECT_EQ(first_with(1), L"A:\\");
  expect_no_error();
}

TEST_F(Drives, on_the_network_on_compact_disk_and_in_memory_are_passed_over) {
  for (const DWORD kind : {DRIVE_REMOTE, DRIVE_CDROM, DRIVE_RAMDISK}) {
    const TestDrive drive('a', kind, folder_.path());
    ASSERT_EQ(listed().front(), L"A:\\");
    EXPECT_EQ(first_with(0), L"C:\\") << kind;
  }
  expect_no_error();
}

TEST_F(Drives, without_a_disk_are_passed_over_and_stay_in_the_record) {
  const EmptyDrive drive(L"A:");
  ASSERT_EQ(listed().front(), L"A:\\");
  EXPECT_EQ(first_with(0), L"C:\\");
  expect_refusal(L"KwRtLibMod.GetVolumeInfo");
}

TEST_F(Drives, without_enough_space_give_no_root_and_no_failure) {
  EXPECT_EQ(first_with(1e30), L"");
  EXPECT_EQ(first_with(std::numeric_limits<double>::infinity()), L"");
  expect_no_error();
}

}  // namespace
}  // namespace qv::tests
