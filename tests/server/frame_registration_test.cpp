// Registration for the machine and for one user by the platform's own regsvr32, what unregistering
// leaves, and use without registration by the manifest that is shipped beside the library.
#include <fstream>
#include <map>
#include <set>

#include "server/frame_classes.h"

namespace qv::tests {
namespace {

using Snapshot = std::map<std::wstring, std::wstring>;  // "key|value name" to the value's bytes

void add_keys(HKEY parent, const std::wstring& path, Snapshot& snapshot) {
  snapshot[path + L"|"];
  wchar_t name[512];
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    DWORD bytes = 0;
    if (RegEnumValueW(parent, i, name, &length, nullptr, nullptr, nullptr, &bytes) != 0) break;
    std::wstring value(bytes / sizeof(wchar_t) + 1, L'\0');
    length = std::size(name);
    bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    RegEnumValueW(parent, i, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(value.data()),
                  &bytes);
    snapshot[path + L"|" + name] = value;
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    if (RegEnumKeyExW(parent, i, name, &length, nullptr, nullptr, nullptr, nullptr) != 0) break;
    HKEY child = nullptr;
    if (RegOpenKeyExW(parent, name, 0, KEY_READ, &child) != 0) continue;
    add_keys(child, path + L"\\" + name, snapshot);
    RegCloseKey(child);
  }
}

Snapshot snapshot_of(HKEY scope) {
  Snapshot snapshot;
  HKEY classes = nullptr;
  if (RegOpenKeyExW(scope, L"Software\\Classes", 0, KEY_READ, &classes) == 0) {
    add_keys(classes, L"", snapshot);
    RegCloseKey(classes);
  }
  return snapshot;
}

std::wstring value_of(HKEY scope, const std::wstring& key, const wchar_t* name = nullptr) {
  wchar_t text[MAX_PATH] = L"(missing)";
  DWORD bytes = sizeof text;
  const std::wstring path = L"Software\\Classes\\" + key;
  if (RegGetValueW(scope, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes) != 0) {
    return L"(missing)";
  }
  return text;
}

std::string narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// Runs a program to its end and gives its exit code.
DWORD run(const std::wstring& command, const wchar_t* folder = nullptr) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  std::wstring line = command;
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder, &start,
                     &process) == FALSE) {
    ADD_FAILURE() << narrow(command) << " did not start: " << GetLastError();
    return 99999;
  }
  WaitForSingleObject(process.hProcess, 60000);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

// The server stays registered for the tests that follow, whatever happens here.
class Frame_Registration : public testing::Test {
 protected:
  void TearDown() override { regsvr32(L"/s"); }
  DWORD regsvr32(const std::wstring& options) {
    return run(L"regsvr32 " + options + L" \"" + path_ + L"\"");
  }
  void expect_same(const Snapshot& before, const Snapshot& after) {
    for (const auto& [name, value] : after) {
      const auto found = before.find(name);
      EXPECT_TRUE(found != before.end() && found->second == value) << narrow(name) << " is new";
    }
    for (const auto& [name, value] : before) {
      EXPECT_TRUE(after.contains(name)) << narrow(name) << " is gone";
    }
  }
  // The keys of all classes, interfaces and of the type library.
  void expect_registered(HKEY scope) {
    const std::wstring library_id = guid_text(LIBID_QvRtLibOle);
    for (const LibraryClass& description : classes_) {
      const std::wstring name = L"QvRtLibOle." + description.name;
      const std::wstring id = guid_text(description.class_id);
      const std::wstring tree = L"CLSID\\" + id;
      EXPECT_EQ(value_of(scope, name), name);
      EXPECT_EQ(value_of(scope, name + L"\\CLSID"), id);
      EXPECT_EQ(value_of(scope, name + L"\\CurVer"), name + L".1");
      EXPECT_EQ(value_of(scope, name + L".1\\CLSID"), id);
      EXPECT_EQ(value_of(scope, tree), name);
      EXPECT_EQ(value_of(scope, tree + L"\\InprocServer32"), path_);
      EXPECT_EQ(value_of(scope, tree + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
      EXPECT_EQ(value_of(scope, tree + L"\\ProgID"), name + L".1");
      EXPECT_EQ(value_of(scope, tree + L"\\VersionIndependentProgID"), name);
      EXPECT_EQ(value_of(scope, tree + L"\\TypeLib"), library_id);
      EXPECT_EQ(value_of(scope, tree + L"\\Version"), L"28.3");
      EXPECT_EQ(value_of(scope, tree + L"\\Programmable"), L"");
    }
    for (const IID& alias : {IID_KwRtLib___v0, IID_KwRtLib___v1, IID_QVtError___v0}) {
      const std::wstring tree = L"Interface\\" + guid_text(alias);
      EXPECT_EQ(value_of(scope, tree + L"\\ProxyStubClsid32"),
                L"{00020424-0000-0000-C000-000000000046}");
      EXPECT_EQ(value_of(scope, tree + L"\\TypeLib"), library_id);
      EXPECT_EQ(value_of(scope, tree + L"\\TypeLib", L"Version"), L"28.3");
    }
    const std::wstring system = sizeof(void*) == 8 ? L"win64" : L"win32";
    EXPECT_EQ(value_of(scope, L"TypeLib\\" + library_id + L"\\28.3\\409\\" + system), path_);
    EXPECT_EQ(value_of(scope, L"TypeLib\\" + library_id + L"\\28.3\\0\\" + system), path_);
    for (const LibraryClass& description : classes_) {
      for (const IID& id : {description.interface_id, description.events_id}) {
        if (IsEqualIID(id, IID{})) continue;
        const std::wstring tree = L"Interface\\" + guid_text(id);
        EXPECT_EQ(value_of(scope, tree + L"\\TypeLib"), library_id);
        EXPECT_EQ(value_of(scope, tree + L"\\TypeLib", L"Version"), L"28.3");
        EXPECT_NE(value_of(scope, tree + L"\\ProxyStubClsid32"), L"(missing)");
      }
    }
  }

  const std::wstring path_ = server_path();
  const std::vector<LibraryClass> classes_ = library_classes();
};

TEST_F(Frame_Registration, for_the_machine_writes_the_keys_and_unregistering_leaves_none) {
  ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  const Snapshot before = snapshot_of(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(regsvr32(L"/s"), 0U);
  expect_registered(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  expect_same(before, snapshot_of(HKEY_LOCAL_MACHINE));
}

TEST_F(Frame_Registration, may_be_repeated) {
  ASSERT_EQ(regsvr32(L"/s"), 0U);
  ASSERT_EQ(regsvr32(L"/s"), 0U);
  expect_registered(HKEY_LOCAL_MACHINE);
  ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  EXPECT_EQ(regsvr32(L"/s /u"), 0U);
}

// Wine activates classes from the machine's keys alone, so that of the user's keys only the content
// can be shown here.
TEST_F(Frame_Registration, for_one_user_writes_the_keys_and_unregistering_leaves_none) {
  // Every Windows has this key, a new prefix of Wine has not.
  HKEY classes = nullptr;
  ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Classes", &classes), ERROR_SUCCESS);
  RegCloseKey(classes);
  ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  ASSERT_EQ(regsvr32(L"/s /u /n /i:user"), 0U);
  const Snapshot machine = snapshot_of(HKEY_LOCAL_MACHINE);
  const Snapshot before = snapshot_of(HKEY_CURRENT_USER);
  ASSERT_EQ(regsvr32(L"/s /n /i:user"), 0U);
  expect_registered(HKEY_CURRENT_USER);
  ASSERT_EQ(regsvr32(L"/s /u /n /i:user"), 0U);
  expect_same(before, snapshot_of(HKEY_CURRENT_USER));
  expect_same(machine, snapshot_of(HKEY_LOCAL_MACHINE));
}

TEST_F(Frame_Registration, unregistering_leaves_the_type_library_of_the_other_bitness) {
  const std::wstring library = L"Software\\Classes\\TypeLib\\" + guid_text(LIBID_QvRtLibOle);
  HKEY key = nullptr;
  for (const wchar_t* locale : {L"409", L"0"}) {
    ASSERT_EQ(regsvr32(L"/s"), 0U);
    const std::wstring other =
        library + L"\\28.3\\" + locale + (sizeof(void*) == 8 ? L"\\win32" : L"\\win64");
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, other.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    ASSERT_EQ(regsvr32(L"/s /u"), 0U);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, other.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(key);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, other.c_str());
  }
  // The last one takes the rest along.
  ASSERT_EQ(regsvr32(L"/s"), 0U);
  ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, library.c_str(), 0, KEY_READ, &key),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(Frame_Registration, install_knows_one_command) {
  const EntryPoints entry_points;
  const auto install = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(BOOL, const wchar_t*)>(
      reinterpret_cast<void*>(GetProcAddress(entry_points.module(), "DllInstall")));
  EXPECT_EQ(install(TRUE, nullptr), E_INVALIDARG);
  EXPECT_EQ(install(TRUE, L""), E_INVALIDARG);
  EXPECT_EQ(install(FALSE, L"machine"), E_INVALIDARG);
}

// Use without registration.

class Frame_SideBySide : public Frame_Registration {
 protected:
  void SetUp() override {
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    static int folders = 0;
    folder_ = std::wstring(temp) + L"qvrt_side_by_side_" + std::to_wstring(GetCurrentProcessId()) +
              L"_" + std::to_wstring(++folders);
    CreateDirectoryW(folder_.c_str(), nullptr);
    const std::wstring source = path_.substr(0, path_.rfind(L'\\') + 1);
    copy(path_, L"QvRtLibOle.dll");
    copy(source + L"QvRtLib.manifest", L"QvRtLib.manifest");
    ASSERT_EQ(regsvr32(L"/s /u"), 0U);
  }
  void TearDown() override {
    CoFreeUnusedLibrariesEx(0, 0);
    for (const std::wstring& file : files_) DeleteFileW(file.c_str());
    RemoveDirectoryW(folder_.c_str());
    Frame_Registration::TearDown();
  }
  void copy(const std::wstring& source, const wchar_t* name) {
    files_.insert(folder_ + L"\\" + name);
    ASSERT_NE(CopyFileW(source.c_str(), (folder_ + L"\\" + name).c_str(), FALSE), FALSE)
        << narrow(source);
  }
  void write(const wchar_t* name, const std::string& text) {
    files_.insert(folder_ + L"\\" + name);
    const HANDLE file = CreateFileW((folder_ + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(written, text.size());
  }

  std::wstring folder_;
  std::set<std::wstring> files_;
};

TEST_F(Frame_SideBySide, an_activation_context_of_the_manifest_gives_classes_and_type_library) {
  CLSID class_id{};
  ASSERT_NE(CLSIDFromProgID(L"QvRtLibOle.KwRtLib", &class_id), S_OK);
  const std::wstring manifest = folder_ + L"\\QvRtLib.manifest";
  ACTCTXW request{};
  request.cbSize = sizeof request;
  request.lpSource = manifest.c_str();
  const HANDLE context = CreateActCtxW(&request);
  ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
  ULONG_PTR cookie = 0;
  ASSERT_NE(ActivateActCtx(context, &cookie), FALSE);

  for (const LibraryClass& description : classes_) {
    const std::wstring name = L"QvRtLibOle." + description.name;
    EXPECT_EQ(CLSIDFromProgID((name + L".1").c_str(), &class_id), S_OK) << narrow(name);
    EXPECT_EQ(CLSIDFromProgID(name.c_str(), &class_id), S_OK) << narrow(name);
    Pointer<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, description.interface_id,
                               reinterpret_cast<void**>(object.receive())),
              S_OK)
        << narrow(name);
  }
  Pointer<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_QvRtLibOle, 40, 3, 0x409, library.receive()), S_OK);
  LONG number = 0x41424344;
  String text;
  EXPECT_EQ(create_global()->Long_2_Str(&number, &text), S_OK);
  EXPECT_EQ(text.view(), L"DCBA");

  library = {};
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
}

TEST_F(Frame_SideBySide, a_script_host_with_a_manifest_of_its_own_needs_no_registration) {
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  copy(std::wstring(system) + L"\\cscript.exe", L"cscript.exe");
  const std::string architecture = sizeof(void*) == 8 ? "amd64" : "x86";
  write(L"cscript.exe.manifest",
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
        "<assemblyIdentity type=\"win32\" name=\"ScriptHost\" version=\"1.0.0.0\" "
        "processorArchitecture=\"" +
            architecture +
            "\"/>\n"
            "<dependency><dependentAssembly><assemblyIdentity type=\"win32\" name=\"QvRtLib\" "
            "version=\"5.0.0.267\" processorArchitecture=\"" +
            architecture + "\"/></dependentAssembly></dependency>\n</assembly>\n");
  write(L"test.vbs",
        "Dim lib, text\r\n"
        "Set lib = CreateObject(\"QvRtLibOle.KwRtLib\")\r\n"
        "text = lib.Long_2_Str(CLng(&H41424344))\r\n"
        "If text = \"DCBA\" Then WScript.Quit 42\r\n");
  EXPECT_EQ(run(L"\"" + folder_ + L"\\cscript.exe\" //nologo test.vbs", folder_.c_str()), 42U);
}

// The file itself.

std::set<std::string> imported_libraries(const BYTE* module) {
  std::set<std::string> names;
  const auto* head = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
  const auto* image = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + head->e_lfanew);
  const auto& directory = image->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* row =
      reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(module + directory.VirtualAddress);
  for (; row->Name != 0; ++row) {
    std::string name = reinterpret_cast<const char*>(module + row->Name);
    for (char& letter : name) letter = static_cast<char>(std::tolower(letter));
    names.insert(name);
  }
  EXPECT_EQ(image->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT].Size, 0U);
  return names;
}

TEST(Frame_File, imports_only_what_the_system_ships) {
  const std::set<std::string> shipped = {
      "activeds.dll", "advapi32.dll", "cabinet.dll",  "comctl32.dll", "comdlg32.dll",
      "gdi32.dll",    "kernel32.dll", "lz32.dll",     "mpr.dll",      "msvcrt.dll",
      "netapi32.dll", "ole32.dll",    "oleaut32.dll", "shell32.dll",  "shlwapi.dll",
      "user32.dll",   "userenv.dll",  "version.dll",  "winmm.dll",    "winspool.drv"};
  const EntryPoints entry_points;
  const auto names = imported_libraries(reinterpret_cast<const BYTE*>(entry_points.module()));
  EXPECT_GE(names.size(), 4U);
  for (const std::string& name : names) EXPECT_TRUE(shipped.contains(name)) << name;
}

TEST(Frame_File, exports_the_five_entry_points_and_nothing_else) {
  const EntryPoints entry_points;
  const auto* module = reinterpret_cast<const BYTE*>(entry_points.module());
  const auto* head = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
  const auto* image = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + head->e_lfanew);
  const auto& directory = image->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* exports =
      reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(module + directory.VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(module + exports->AddressOfNames);
  std::set<std::string> found;
  for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
    found.insert(reinterpret_cast<const char*>(module + names[i]));
  }
  EXPECT_EQ(found, (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                                          "DllRegisterServer", "DllUnregisterServer"}));
  EXPECT_EQ(exports->NumberOfFunctions, 5U);
}

}  // namespace
}  // namespace qv::tests
