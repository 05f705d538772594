#include "server/frame_random_calls.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string_view>

#include "server/thread_state.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace qv::tests {
namespace {

struct LeftOut {
  const char* reason;
  std::vector<std::wstring_view> beginnings;  // of the members' names
};

const LeftOut kLeftOut[] = {
    {"change files, folders, the registry or INI files",
     {L"File_", L"Path_", L"Registry", L"Ini_", L"Start_Up", L"Log_Write", L"BloomSaveExt",
      L"BloomLoadExt", L"Bloom_Open", L"FileZip", L"FileUnzip", L"CABFile", L"Get_TempFile",
      L"Set_", L"Save", L"Load", L"SetupInfoLoad", L"Disp_Error"}},
    {"take a number for a handle or an address and use what is there",
     {L"Bloom_Write", L"Bloom_Read", L"Bloom_Close", L"Bloom_Save", L"Bloom_Load", L"Commit",
      L"IndexRead", L"Filter", L"hFilter", L"Struct", L"GetPointer", L"Text_", L"Gradient"}},
    {"change the system or other programs, or print",
     {L"Service", L"LogEvent", L"UserCreate", L"Spawn", L"SysTray", L"Taskman_", L"Process_",
      L"SetDefaultPrinter", L"Direct", L"GetPrinterParms", L"Get_SpoolPath", L"Find_Window"}},
    {"show something, make a noise or write to the standard output",
     {L"MessageBeep", L"HtmlHelpShow", L"ShowBrowseFolder", L"ShowFloating", L"StdOut",
      L"Message_Box", L"Input_Box", L"Progress_Box"}},
    {"wait, or search whole disks",
     {L"NP", L"NotifyFileChange", L"Where_", L"Get_DiskSpace", L"Get_DiskFree"}},
};

WORD random_flags(RandomArguments& random, WORD flags) {
  constexpr WORD kAny[] = {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT,
                           DISPATCH_PROPERTYPUTREF, DISPATCH_METHOD | DISPATCH_PROPERTYGET};
  return random.below(8) == 0 ? kAny[random.below(std::size(kAny))] : flags;
}

std::string narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

char current_call[200];

void tell() {
  std::printf("CRASH in %s\n", current_call);
  std::fflush(stdout);
}
void on_abort(int) { tell(); }
LONG WINAPI on_exception(EXCEPTION_POINTERS*) {
  tell();
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

bool is_left_out(std::wstring_view member) {
  return std::ranges::any_of(kLeftOut, [&](const LeftOut& row) {
    return std::ranges::any_of(
        row.beginnings, [&](std::wstring_view beginning) { return member.starts_with(beginning); });
  });
}

HRESULT invoke_plainly(IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) {
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, parameters, result, exception,
                        bad_argument);
}

RandomCall call_at_random(RandomArguments& random, IDispatch* object, const MemberOf& member,
                          const Invoke& invoke) {
  const int described = static_cast<int>(member.parameters.size());
  const int extra = random.below(8) == 0 ? random.below(3) : 0;
  const int count = random.below(6) == 0 ? random.below(described + 1) : described + extra;
  std::vector<VARIANT> arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(random.argument());
  std::vector<DISPID> names;
  if (member.is_put() && count > 0) {
    names.push_back(DISPID_PROPERTYPUT);
  } else if (count > 0 && random.below(6) == 0) {
    names.push_back(random.below(described + 2));
  }
  DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(count),
                        static_cast<UINT>(names.size())};
  Value result;
  EXCEPINFO exception{};
  UINT bad_argument = 0;
  RandomCall call;
  call.status = invoke(object, member.id, random_flags(random, member.kind), &parameters,
                       random.below(6) == 0 ? nullptr : &result, &exception,
                       random.below(2) == 0 ? nullptr : &bad_argument);
  call.scode = exception.scode;
  EXPECT_TRUE(call.status != DISP_E_EXCEPTION || exception.scode != 0);
  EXPECT_LE(bad_argument, static_cast<UINT>(count));
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return call;
}

RandomCalls call_everything(const EntryPoints& entry_points, unsigned seed, int calls_per_member,
                            const Invoke& invoke) {
  const CrashReporter reporter;
  RandomArguments random(seed, entry_points);
  RandomCalls calls;
  for (const LibraryClass& description : library_classes()) {
    const auto object = entry_points.create<IDispatch>(description.class_id);
    for (const MemberOf& member : members_of(object.get())) {
      if (is_left_out(member.name)) continue;
      SCOPED_TRACE(narrow(member.name));
      CrashReporter::set(description.name + L"." + member.name);
      for (int i = 0; i < calls_per_member; ++i) {
        const RandomCall call = call_at_random(random, object.get(), member, invoke);
        ++(SUCCEEDED(call.status) ? calls.succeeded : calls.failed);
        random.clear();
        if (testing::Test::HasFailure()) return calls;
      }
    }
  }
  empty_thread_state(entry_points);
  return calls;
}

void empty_thread_state(const EntryPoints& entry_points) {
  empty_thread_state(entry_points.create<_KwRtLib>(CLSID_KwRtLib).get());
}

CrashReporter::CrashReporter()
    : filter_before_(SetUnhandledExceptionFilter(on_exception)),
      abort_before_(std::signal(SIGABRT, on_abort)) {}

CrashReporter::~CrashReporter() {
  SetUnhandledExceptionFilter(filter_before_);
  std::signal(SIGABRT, abort_before_);
}

void CrashReporter::set(const std::wstring& name) {
  std::snprintf(current_call, sizeof current_call, "%ls", name.c_str());
}

}  // namespace qv::tests
