#include "files/path_macros.h"

#include "constants.h"
#include "files/path_text.h"
#include "files/system_folders.h"
#include "frame/error_state.h"
#include "native/setup/path_macro.h"
#include "runtime/application.h"
#include "runtime/characters.h"
#include "runtime/directory.h"

namespace qv::files {
namespace {

namespace setup = native::setup;

constexpr const wchar_t* kSource = L"KwRtLibMod.ResolveFileName";

Text text_of(std::u16string_view characters) { return Text(wide_characters(characters)); }

Text folder_above(const Text& path) { return text_of(setup::folder_above(code_units(path))); }

// The folders that stand in the registry, and the application's own. They are read for every name,
// since applications see in the error state what the registry lacks.
struct MachineFolders {
  explicit MachineFolders(const Text& application_folder) : application(application_folder) {
    if (auto common = machine_text(kCurrentVersionKey, L"CommonFilesDir")) {
      common_files = std::move(*common);
    } else {
      common_files = concat({Full_Path(Get_ProgramFilesPath()), L"Common Files"});
    }
    if (const auto library =
            machine_text(L"SOFTWARE\\Microsoft\\Shared Tools\\dao360.dll", L"Path")) {
      data_access = folder_above(*library);
    } else {
      data_access = concat({Full_Path(common_files), L"Microsoft Shared\\DAO"});
    }
  }

  Text programs = Get_ProgramFilesPath();
  Text common_files;
  Text data_access;
  const Text& application;
};

struct Macro {
  std::u16string_view name;
  Text (*value)(const MachineFolders& folders, Long shell_folder);
  Long shell_folder = 0;
};

Text windows(const MachineFolders&, Long) { return Get_WinPath(); }
Text system(const MachineFolders&, Long) { return Get_SysPath(); }
Text programs(const MachineFolders& folders, Long) { return folders.programs; }
Text common_files(const MachineFolders& folders, Long) { return folders.common_files; }
Text common_system(const MachineFolders& folders, Long) {
  return concat({Full_Path(folders.common_files), L"System"});
}
Text data_access(const MachineFolders& folders, Long) { return folders.data_access; }
Text temporary(const MachineFolders&, Long) { return Get_TempPath(); }
Text current(const MachineFolders&, Long) { return cur_dir(); }
Text application(const MachineFolders& folders, Long) { return folders.application; }
Text shell(const MachineFolders&, Long id) { return Get_SpecialPath(id); }

// In the order in which they are replaced: a value may itself hold a macro that stands further
// down.
constexpr Macro kMacros[] = {
    {u"$(WinPath)", windows},
    {u"$(WinSysPath)", system},
    {u"$(WinSysPathSysFile)", system},
    {u"$(ProgramFiles)", programs},
    {u"$(Programs)", programs},
    {u"$(AppData)", shell, SpecialFolders::CSIDL_APPDATA},
    {u"$(CommonFiles)", common_files},
    {u"$(CommonFilesSys)", common_system},
    {u"$(TempPath)", temporary},
    {u"$(Fonts)", shell, SpecialFolders::CSIDL_FONTS},
    {u"$(CommonAppData)", shell, SpecialFolders::CSIDL_COMMON_APPDATA},
    {u"$(CommonDesktop)", shell, SpecialFolders::CSIDL_COMMON_DESKTOPDIRECTORY},
    {u"$(CommonDocuments)", shell, SpecialFolders::CSIDL_COMMON_DOCUMENTS},
    {u"$(CommonPrograms)", shell, SpecialFolders::CSIDL_COMMON_PROGRAMS},
    {u"$(CommonStartMenu)", shell, SpecialFolders::CSIDL_COMMON_STARTMENU},
    {u"$(CommonStartUp)", shell, SpecialFolders::CSIDL_COMMON_STARTUP},
    {u"$(Cookies)", shell, SpecialFolders::CSIDL_COOKIES},
    {u"$(Favorites)", shell, SpecialFolders::CSIDL_FAVORITES},
    {u"$(History)", shell, SpecialFolders::CSIDL_HISTORY},
    {u"$(Personal)", shell, SpecialFolders::CSIDL_PERSONAL},
    {u"$(Documents)", shell, SpecialFolders::CSIDL_PERSONAL},
    {u"$(InternetCache)", shell, SpecialFolders::CSIDL_INTERNET_CACHE},
    {u"$(LocalAppData)", shell, SpecialFolders::CSIDL_LOCAL_APPDATA},
    {u"$(NetHood)", shell, SpecialFolders::CSIDL_NETHOOD},
    {u"$(MyMusic)", shell, SpecialFolders::CSIDL_MYMUSIC},
    {u"$(MyPictures)", shell, SpecialFolders::CSIDL_MYPICTURES},
    {u"$(PrintHood)", shell, SpecialFolders::CSIDL_PRINTHOOD},
    {u"$(PrivateDesktop)", shell, SpecialFolders::CSIDL_DESKTOPDIRECTORY},
    {u"$(PrivatePrograms)", shell, SpecialFolders::CSIDL_PROGRAMS},
    {u"$(PrivateStartMenu)", shell, SpecialFolders::CSIDL_STARTMENU},
    {u"$(PrivateStartUp)", shell, SpecialFolders::CSIDL_STARTUP},
    {u"$(ProgramFiles)", shell, SpecialFolders::CSIDL_PROGRAM_FILES},
    {u"$(ProgramFilesCommon)", shell, SpecialFolders::CSIDL_PROGRAM_FILES_COMMON},
    {u"$(Recent)", shell, SpecialFolders::CSIDL_RECENT},
    {u"$(Resources)", shell, SpecialFolders::CSIDL_RESOURCES},
    {u"$(ResourcesLocalized)", shell, SpecialFolders::CSIDL_RESOURCES_LOCALIZED},
    {u"$(SendTo)", shell, SpecialFolders::CSIDL_SENDTO},
    {u"$(System)", shell, SpecialFolders::CSIDL_SYSTEM},
    {u"$(Templates)", shell, SpecialFolders::CSIDL_TEMPLATES},
    {u"$(Windows)", shell, SpecialFolders::CSIDL_WINDOWS},
    {u"$(MSDAOPath)", data_access},
    {u"$(CurPath)", current},
    {u"$(AppPath)", application},
};

// True where the text held it.
bool replace(Text& text, std::u16string_view wanted, const Text& value) {
  const auto changed = setup::replaced(code_units(text), wanted, code_units(value));
  if (changed) text = text_of(*changed);
  return changed.has_value();
}

void replace_macros(Text& name, const MachineFolders& folders) {
  for (const Macro& macro : kMacros) {
    if (!setup::holds(code_units(name), macro.name)) continue;
    replace(name, macro.name, macro.value(folders, macro.shell_folder));
  }
}

// False where a program is not registered, which the error state then tells. Paths of programs may
// themselves hold macros of programs; where these lead round in a circle, the name becomes longer
// than any path or the replacing has no end.
bool replace_program_macros(Text& name) {
  constexpr std::size_t kLongestPath = 32767;
  constexpr int kMostReplacements = 100;
  int count = 0;
  while (const auto macro = setup::find_program_macro(code_units(name))) {
    if (!macro->is_closed || name.size() > kLongestPath || ++count > kMostReplacements) {
      raise(kInvalidProcedureCall);
    }
    const auto path = registered_program_path(wide_characters(macro->program));
    if (!path) return false;
    replace(name, macro->whole, folder_above(*path));
  }
  return true;
}

}  // namespace

Boolean ResolveFileName(Text& FileName, Text& AppPath) {
  return frame::handled(kSource, frame::kTakeError, True, [&]() -> Boolean {
    if (FileName.empty()) return False;
    FileName = text_of(setup::mark_backslashes(code_units(FileName)));
    if (AppPath == std::wstring_view(L"\0", 1)) AppPath = application_path();
    replace_macros(FileName, MachineFolders(AppPath));
    if (!replace_program_macros(FileName)) {
      frame::Set_Error({.Source = kSource}, frame::kChain);
      return True;
    }
    FileName = text_of(setup::join_backslashes(code_units(FileName)));
    const auto relative = setup::relative_name(code_units(FileName), code_units(AppPath));
    if (relative) {
      FileName = concat({Full_Path(text_of(relative->folder)), wide_characters(relative->name)});
    }
    return False;
  });
}

}  // namespace qv::files
