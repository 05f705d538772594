#include "services/service_manager.h"

#include <windows.h>

#include "config/registry_store.h"
#include "constants.h"
#include "files/path_text.h"
#include "files/system_folders.h"
#include "services/failure_chain.h"
#include "services/processes.h"
#include "text/primitives.h"

namespace qv::services {
namespace {

constexpr const wchar_t* kInstaller = L"instsrv.exe";
constexpr const wchar_t* kRunner = L"srvany.exe";

[[noreturn]] void fail(Text description) {
  raise({.number = frame::kFirstApplicationError, .description = std::move(description)});
}

Text system_program(const wchar_t* name) {
  return concat({files::Full_Path(files::Get_SysPath()), name});
}

Text found_program(const wchar_t* name) {
  Text path = system_program(name);
  if (text::Access(path, Access_Mode::CHK_EX) != 0) {
    fail(concat({L"Impossibile localizzare ", name}));
  }
  return path;
}

// Waits for its end.
Boolean run(const Text& program, const Text& arguments) {
  const Variant missing = Variant::missing();
  return Spawn(program, arguments, missing, missing, missing, missing, missing, missing, missing,
               missing, missing);
}

Text service_key(const Text& name) {
  return concat({L"SYSTEM\\CurrentControlSet\\Services\\", name});
}

bool is_same_path(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

Boolean ServiceInstall(const Text& Name, const Text& AppFile, const Text& AppParms) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.KwRtLibMod.ServiceInstall, 0";
  return frame::handled(kSource, frame::kTakeError, True, [&] {
    ServiceUninstall(Name);
    const Text installer = found_program(kInstaller);
    const Text runner = found_program(kRunner);
    if (run(installer, concat({Name, L" \"", runner, L"\""}))) return chained(kSource, True);
    if (ServiceVerify(Name)) fail(L"Servizio non installato correttamente.");
    const std::wstring_view blank = AppParms.empty() ? L"" : L" ";
    const Variant command(concat({L"\"", AppFile, L"\"", blank, AppParms}));
    if (config::RegistryWrite(concat({service_key(Name), L"\\Parameters"}), L"Application", command,
                              Registry_Keys::HKEY_LOCAL_MACHINE, Registry_DataType::REG_SZ)) {
      return chained(kSource, True);
    }
    return False;
  });
}

Boolean ServiceUninstall(const Text& Name) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.KwRtLibMod.ServiceUninstall, 0";
  return frame::handled(kSource, frame::kTakeError, True, [&] {
    const Text installer = found_program(kInstaller);
    if (run(installer, concat({Name, L" REMOVE"}))) return chained(kSource, True);
    return False;
  });
}

Boolean ServiceVerify(const Text& Name) {
  // Applications know its failures under its neighbour's name.
  constexpr const wchar_t* kSource = L"QvRtLibOle.KwRtLibMod.ServiceUninstall, 0";
  return frame::handled(kSource, frame::kTakeError, True, [&] {
    Variant program;
    if (config::RegistryRead(service_key(Name), L"ImagePath", program,
                             Registry_Keys::HKEY_LOCAL_MACHINE)) {
      return chained(kSource, True);
    }
    return Boolean(!is_same_path(program.to_text(), system_program(kRunner)));
  });
}

}  // namespace qv::services
