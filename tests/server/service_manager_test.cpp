// ServiceInstall, ServiceUninstall and ServiceVerify, with stand-ins for the two helper programs
// that keep how they were called and change the registry as those do.
#include <string>

#include "server/client.h"
#include "server/process.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

const std::wstring kServices = L"SYSTEM\\CurrentControlSet\\Services\\";

class ServiceManager : public testing::Test {
 protected:
  ServiceManager() {
    global_->Reset_Error();
    String path;
    EXPECT_EQ(global_->Get_SysPath(&path), S_OK);
    system_ = path.view();
    put(L"instsrv.exe");
    put(L"srvany.exe");
  }
  ~ServiceManager() override {
    for (const wchar_t* name : {L"instsrv.exe", L"srvany.exe", L"instsrv.log"}) take(name);
    for (const auto& name : names_) RegDeleteTreeW(HKEY_LOCAL_MACHINE, key(name).c_str());
  }

  std::wstring key(const std::wstring& name) const { return kServices + name; }
  std::wstring path(const wchar_t* name) const { return system_ + name; }
  void put(const wchar_t* name) const {
    EXPECT_TRUE(
        CopyFileW((program_folder() + L"companion.exe").c_str(), path(name).c_str(), FALSE));
  }
  void take(const wchar_t* name) const { DeleteFileW(path(name).c_str()); }
  std::wstring name_of_service(std::wstring name = L"QvRtTest") {
    return names_.emplace_back(std::move(name));
  }
  // The command lines of the installer, in order.
  std::vector<std::wstring> calls() const {
    std::vector<std::wstring> lines;
    const std::string text = bytes_of_file(path(L"instsrv.log"));
    const std::string mark = "arguments=";
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1)) {
      const std::size_t begin = at + mark.size();
      const std::string line = text.substr(begin, text.find('\n', begin) - begin);
      lines.emplace_back(line.begin(), line.end());
    }
    return lines;
  }
  std::wstring quoted_runner() const { return L"\"" + path(L"srvany.exe") + L"\""; }

  bool install(const std::wstring& name, const std::wstring& program,
               const std::wstring& parameters) {
    String text(name);
    String file(program);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->ServiceInstall(&text, &file, String(parameters), &failed), S_OK);
    EXPECT_EQ(text.view(), name);
    EXPECT_EQ(file.view(), program);
    return failed != VARIANT_FALSE;
  }
  bool uninstall(const std::wstring& name) {
    String text(name);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->ServiceUninstall(&text, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  VARIANT_BOOL verify(const std::wstring& name) {
    String text(name);
    VARIANT_BOOL result = 7;
    EXPECT_EQ(global_->ServiceVerify(&text, &result), S_OK);
    return result;
  }
  // A service that another installer has made.
  void set_program(const std::wstring& name, const std::wstring& program, DWORD type = REG_SZ) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key(name).c_str(), L"ImagePath", type, program.c_str(),
                    static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t)));
  }
  struct Stored {
    std::wstring text;
    DWORD type = 0;
  };
  Stored application(const std::wstring& name) const {
    wchar_t text[1024];
    DWORD bytes = sizeof text;
    Stored stored;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, (key(name) + L"\\Parameters").c_str(), L"Application",
                     RRF_RT_ANY, &stored.type, text, &bytes) == ERROR_SUCCESS) {
      stored.text = text;
    }
    return stored;
  }

  LONG error_number() {
    LONG number = -1;
    global_->Error_Number(&number);
    return number;
  }
  void expect_error(LONG number, const std::wstring& description, const std::wstring& source) {
    String text;
    EXPECT_EQ(error_number(), number);
    global_->Error_Description(text.receive());
    EXPECT_EQ(std::wstring(text.view()), description);
    global_->Error_Source(text.receive());
    EXPECT_EQ(std::wstring(text.view()), source);
    global_->Reset_Error();
  }
  std::wstring system_text(LONG code) {
    String text;
    global_->SystemError(&code, &text);
    return std::wstring(text.view()) + L" (DLL#" + std::to_wstring(code) + L")";
  }

  static constexpr const wchar_t* kInstall = L"QvRtLibOle.KwRtLibMod.ServiceInstall, 0";
  static constexpr const wchar_t* kUninstall = L"QvRtLibOle.KwRtLibMod.ServiceUninstall, 0";

  Pointer<_KwRtLib> global_ = create_global();
  std::wstring system_;
  std::vector<std::wstring> names_;
};

TEST_F(ServiceManager, a_service_is_removed_made_and_given_its_program) {
  const auto name = name_of_service();
  EXPECT_FALSE(install(name, L"C:\\the program.exe", L"one \"two\""));
  EXPECT_EQ(calls(), (std::vector<std::wstring>{name + L" REMOVE", name + L" " + quoted_runner()}));
  const Stored stored = application(name);
  EXPECT_EQ(stored.text, L"\"C:\\the program.exe\" one \"two\"");
  EXPECT_EQ(stored.type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(verify(name), VARIANT_FALSE);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ServiceManager, without_parameters_the_quoted_program_stands_alone) {
  const auto name = name_of_service();
  EXPECT_FALSE(install(name, L"C:\\program.exe", L""));
  EXPECT_EQ(application(name).text, L"\"C:\\program.exe\"");
}

TEST_F(ServiceManager, an_old_service_of_the_name_goes_first) {
  const auto name = name_of_service();
  EXPECT_FALSE(install(name, L"C:\\old.exe", L"old"));
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, key(name).c_str(), L"Left", REG_SZ, L"x", 4);
  EXPECT_FALSE(install(name, L"C:\\new.exe", L""));
  EXPECT_EQ(application(name).text, L"\"C:\\new.exe\"");
  EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, key(name).c_str(), L"Left", RRF_RT_ANY, nullptr,
                         nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(ServiceManager, uninstalling_removes_the_service_and_waits_for_the_helper) {
  const auto name = name_of_service();
  EXPECT_FALSE(install(name, L"C:\\program.exe", L""));
  EXPECT_FALSE(uninstall(name));
  EXPECT_EQ(calls().back(), name + L" REMOVE");
  HKEY handle = nullptr;
  EXPECT_EQ(RegOpenKeyW(HKEY_LOCAL_MACHINE, key(name).c_str(), &handle), ERROR_FILE_NOT_FOUND);
}

TEST_F(ServiceManager, the_helpers_exit_code_does_not_count) {
  EXPECT_FALSE(uninstall(L"exit=5"));
  LONG code = 0;
  global_->Error_LastDLLError(&code);
  EXPECT_EQ(code, 5);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ServiceManager, without_the_installer_nothing_is_installed_or_removed) {
  take(L"instsrv.exe");
  EXPECT_TRUE(uninstall(name_of_service()));
  expect_error(20000, L"Impossibile localizzare instsrv.exe", kUninstall);
  EXPECT_TRUE(install(L"QvRtTest", L"C:\\program.exe", L""));
  expect_error(20000, L"Impossibile localizzare instsrv.exe", kInstall);
  EXPECT_EQ(application(L"QvRtTest").text, L"");
}

TEST_F(ServiceManager, without_the_runner_nothing_is_installed_but_the_old_service_is_gone) {
  const auto name = name_of_service();
  EXPECT_FALSE(install(name, L"C:\\program.exe", L""));
  take(L"srvany.exe");
  EXPECT_TRUE(install(name, L"C:\\program.exe", L""));
  expect_error(20000, L"Impossibile localizzare srvany.exe", kInstall);
  EXPECT_EQ(calls().back(), name + L" REMOVE");
  EXPECT_FALSE(uninstall(name)) << "the runner is not needed for that";
}

TEST_F(ServiceManager, an_installer_that_does_not_start_is_a_failure) {
  write_file(path(L"instsrv.exe"), "this is no program");
  EXPECT_TRUE(uninstall(name_of_service()));
  String text;
  global_->Error_Description(text.receive());
  const std::wstring description(text.view());
  EXPECT_TRUE(description.starts_with(L"Impossibile eseguire il processo " + path(L"instsrv.exe") +
                                      L".\r\n"))
      << description;
  expect_error(20000, description, std::wstring(L"KwRtLibMod.Spawn < ") + kUninstall);
  EXPECT_TRUE(install(L"QvRtTest", L"C:\\program.exe", L""));
  expect_error(20000, description, std::wstring(L"KwRtLibMod.Spawn < ") + kInstall);
}

TEST_F(ServiceManager, a_service_that_does_not_come_out_right_is_a_failure) {
  EXPECT_TRUE(install(name_of_service(L"OtherQvRtTest"), L"C:\\program.exe", L""));
  expect_error(20000, L"Servizio non installato correttamente.", kInstall);
  EXPECT_TRUE(install(name_of_service(L"DeafQvRtTest"), L"C:\\program.exe", L""));
  expect_error(20000, L"Servizio non installato correttamente.", kInstall);
}

TEST_F(ServiceManager, a_registry_that_takes_no_parameters_is_a_failure) {
  constexpr LONG kChildMustBeVolatile = 1021;
  EXPECT_TRUE(install(name_of_service(L"VolatileQvRtTest"), L"C:\\program.exe", L""));
  expect_error(20000, system_text(kChildMustBeVolatile),
               std::wstring(L"KwRtLibMod.RegistryWrite < ") + kInstall);
}

TEST_F(ServiceManager, a_service_run_by_the_runner_is_in_order_in_whatever_case) {
  const auto name = name_of_service();
  std::wstring runner = path(L"srvany.exe");
  set_program(name, runner);
  EXPECT_EQ(verify(name), VARIANT_FALSE);
  for (wchar_t& character : runner) character = static_cast<wchar_t>(towupper(character));
  set_program(name, runner, REG_EXPAND_SZ);
  EXPECT_EQ(verify(name), VARIANT_FALSE);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ServiceManager, a_service_run_by_another_program_is_not_and_no_error_is_recorded) {
  const auto name = name_of_service();
  for (const std::wstring& program :
       {std::wstring(L"C:\\other.exe"), path(L"srvany.exe") + L" ", quoted_runner(),
        std::wstring(L"srvany.exe"), std::wstring()}) {
    set_program(name, program);
    EXPECT_EQ(verify(name), VARIANT_TRUE) << program;
    EXPECT_EQ(error_number(), 0) << program;
  }
}

TEST_F(ServiceManager, the_error_of_an_unknown_service_names_the_neighbour) {
  EXPECT_EQ(verify(L"QvRtUnknown"), VARIANT_TRUE);
  expect_error(20000, system_text(ERROR_FILE_NOT_FOUND),
               std::wstring(L"KwRtLibMod.RegistryRead < ") + kUninstall);
}

TEST_F(ServiceManager, a_program_that_is_no_text_is_an_error) {
  const auto name = name_of_service();
  const BYTE bytes[] = {1, 2, 3};
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, key(name).c_str(), L"ImagePath", REG_MULTI_SZ, bytes, 2);
  EXPECT_EQ(verify(name), VARIANT_TRUE);
  expect_error(13, L"Type mismatch", kUninstall);
}

}  // namespace
}  // namespace qv::tests
