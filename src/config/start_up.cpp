#include "config/ini_store.h"
#include "constants.h"
#include "files/path_text.h"
#include "files/system_folders.h"
#include "frame/error_state.h"
#include "runtime/characters.h"
#include "runtime/err.h"

namespace qv::config {
namespace {

using Record = Object<_QVtIniStruct>;

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

using Getter = decltype(&_QVtIniStruct::get_IniFile);
Text get(const Record& Ini, Getter getter) {
  BSTR text = nullptr;
  check((Ini.operator->()->*getter)(&text));
  return Text::adopt(text);
}

Text ini_file(const Record& Ini) { return get(Ini, &_QVtIniStruct::get_IniFile); }
Text exe_path(const Record& Ini) { return get(Ini, &_QVtIniStruct::get_ExePath); }

void put_ini_file(const Record& Ini, const Text& name) { check(Ini->put_IniFile(lent(name))); }

void change_current_folder(const Text& folder) {
  SetCurrentDirectoryW(folder.c_str());
  capture_last_dll_error();
}

}  // namespace

void Start_Up(const Record& Ini, const Text& IniFile, Long Flags) {
  using frame::attempt;
  if ((Flags & Startup_Const::STUPF_NOCHANGEPATH) == 0) {
    attempt([&] { change_current_folder(exe_path(Ini)); });
  }
  attempt([&] { put_ini_file(Ini, upper_case(IniFile)); });
  attempt([&] { check(Ini->put_WinPath(lent(files::Full_Path(files::Get_WinPath())))); });
  attempt([&] { check(Ini->put_SysPath(lent(files::Full_Path(files::Get_SysPath())))); });
  attempt([&] {
    const Text name = ini_file(Ini);
    if ((Flags & Startup_Const::STUPF_SHAREDINI) != 0) {
      const Text folder = get(Ini, &_QVtIniStruct::get_WinPath);
      put_ini_file(Ini, concat({folder, files::Get_FileName(name)}));
    } else if (files::Get_Path(name).empty()) {
      put_ini_file(Ini, concat({files::Full_Path(exe_path(Ini)), name}));
    }
  });
  attempt([&] {
    const Text name = ini_file(Ini);
    // A dot in a folder's name counts too; applications have named their files by that.
    if (name.view().find(L'.') == std::wstring_view::npos) {
      put_ini_file(Ini, concat({name, L".INI"}));
    }
  });
  attempt([&] { check(Ini->put_TmpPath(lent(files::Get_TempPath()))); });
  err().forget_error();
}

}  // namespace qv::config
