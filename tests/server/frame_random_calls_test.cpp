// Late-bound calls of every member of every class with arguments of every kind: whatever comes
// back, nothing may crash and every variable must stay sound.
#include <algorithm>
#include <string_view>
#include <vector>

#include "server/frame_classes.h"
#include "server/frame_random_arguments.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace qv::tests {
namespace {

constexpr int kCallsPerMember = 60;

// Left out, by the beginnings of their names.
constexpr std::wstring_view kLeftOut[] = {
    // Change files, folders, the registry, INI files.
    L"File_", L"Path_", L"Registry", L"Ini_", L"Start_Up", L"Log_Write", L"BloomSaveExt",
    L"BloomLoadExt", L"Bloom_Open", L"FileZip", L"FileUnzip", L"CABFile", L"Get_TempFile", L"Set_",
    L"Save", L"Load", L"SetupInfoLoad", L"Disp_Error",
    // Take a number for a handle or an address, and use what is there.
    L"Bloom_Write", L"Bloom_Read", L"Bloom_Close", L"Bloom_Save", L"Bloom_Load", L"Commit",
    L"IndexRead", L"Filter", L"hFilter", L"Struct", L"GetPointer", L"Text_", L"Gradient",
    // Change the system or other programs, print, or show something.
    L"Service", L"LogEvent", L"UserCreate", L"Spawn", L"SysTray", L"Taskman_", L"Process_",
    L"SetDefaultPrinter", L"Direct", L"GetPrinterParms", L"Get_SpoolPath", L"MessageBeep",
    L"HtmlHelpShow", L"ShowBrowseFolder", L"ShowFloating", L"StdOut", L"Message_Box", L"Input_Box",
    L"Progress_Box", L"Find_Window",
    // Wait, or search disks.
    L"NP", L"NotifyFileChange", L"Where_", L"Get_DiskSpace", L"Get_DiskFree"};

bool is_left_out(std::wstring_view name) {
  return std::ranges::any_of(
      kLeftOut, [&](std::wstring_view beginning) { return name.starts_with(beginning); });
}

struct MemberOf {
  std::wstring name;
  DISPID id = 0;
  WORD flags = 0;
  int arguments = 0;
};

std::vector<MemberOf> members_of(IDispatch* object) {
  std::vector<MemberOf> members;
  Pointer<ITypeInfo> info;
  EXPECT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
  for (UINT i = 0;; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) break;
    String name;
    info->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
    const bool own = function->oVft >= 7 * static_cast<int>(sizeof(void*));
    if (own && !is_left_out(name.view())) {
      members.push_back({std::wstring(name.view()), function->memid,
                         static_cast<WORD>(function->invkind), function->cParams});
    }
    info->ReleaseFuncDesc(function);
  }
  return members;
}

WORD random_flags(RandomArguments& random, WORD flags) {
  constexpr WORD kAny[] = {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT,
                           DISPATCH_PROPERTYPUTREF, DISPATCH_METHOD | DISPATCH_PROPERTYGET};
  return random.below(8) == 0 ? kAny[random.below(std::size(kAny))] : flags;
}

HRESULT call(RandomArguments& random, IDispatch* object, const MemberOf& member) {
  const int extra = random.below(8) == 0 ? random.below(3) : 0;
  const int count =
      random.below(6) == 0 ? random.below(member.arguments + 1) : member.arguments + extra;
  std::vector<VARIANT> arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(random.argument());
  std::vector<DISPID> names;
  if ((member.flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0 && count > 0) {
    names.push_back(DISPID_PROPERTYPUT);
  } else if (count > 0 && random.below(6) == 0) {
    names.push_back(random.below(member.arguments + 2));
  }
  DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(count),
                        static_cast<UINT>(names.size())};
  Value result;
  EXCEPINFO exception{};
  UINT bad_argument = 0;
  const HRESULT status =
      object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, random_flags(random, member.flags),
                     &parameters, random.below(6) == 0 ? nullptr : &result, &exception,
                     random.below(2) == 0 ? nullptr : &bad_argument);
  if (status == DISP_E_EXCEPTION) {
    EXPECT_NE(exception.scode, 0);
    EXPECT_GT(SysStringLen(exception.bstrSource), 0U);
  }
  EXPECT_LE(bad_argument, static_cast<UINT>(count));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return status;
}

class Frame_RandomCalls : public testing::TestWithParam<unsigned> {};

TEST_P(Frame_RandomCalls, survive) {
  RandomArguments random(GetParam());
  int succeeded = 0;
  int failed = 0;
  for (const LibraryClass& description : library_classes()) {
    Pointer<IDispatch> object;
    ASSERT_EQ(CoCreateInstance(description.class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(object.receive())),
              S_OK);
    for (const MemberOf& member : members_of(object.get())) {
      SCOPED_TRACE(std::string(member.name.begin(), member.name.end()));
      for (int i = 0; i < kCallsPerMember; ++i) {
        ++(SUCCEEDED(call(random, object.get(), member)) ? succeeded : failed);
        random.clear();
        if (HasFailure()) return;
      }
    }
  }
  EXPECT_GT(succeeded, 1000);
  EXPECT_GT(failed, 1000);
  const auto global = create_global();
  EXPECT_EQ(global->Error_Unlock(), S_OK);
  EXPECT_EQ(global->Reset_Error(), S_OK);
  EXPECT_EQ(global->put_SharedVar(Value()), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Frame_RandomCalls, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace qv::tests
