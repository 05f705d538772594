#include <windows.h>
// shlobj.h needs windows.h before it.
#include <shlobj.h>

#include <array>

#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/item_id_list.h"
#include "ui/help_dialogs.h"
#include "ui/window_handle.h"

namespace qv::ui {
namespace {

constexpr std::size_t kNameRoom = 260;

// The number by which the language's own dialogs report it.
constexpr Long kCancelled = 32755;

}  // namespace

Boolean ShowBrowseFolder(Text& FileName, Long hwndOwner, Text& DisplayName, const Text& DialogTitle,
                         Long Flags) {
  return frame::handled(L"KwRtLibMod.ShowBrowseFolder", frame::kTakeError, True, [&] {
    const HWND owner = window_handle(hwndOwner);
    const auto desktop = ItemIdList::special_folder(owner, CSIDL_DESKTOP);
    // One of the results may be the variable that holds the title.
    const Text title(DialogTitle.view());
    std::array<wchar_t, kNameRoom> name{};
    BROWSEINFOW dialog{};
    dialog.hwndOwner = owner;
    dialog.pidlRoot = desktop.get();
    dialog.pszDisplayName = name.data();
    dialog.lpszTitle = title.c_str();
    dialog.ulFlags = static_cast<UINT>(Flags);
    FileName = Text();
    DisplayName = Text();
    const ItemIdList chosen(SHBrowseForFolderW(&dialog));
    capture_last_dll_error();
    if (!chosen) raise({.number = kCancelled, .description = L"Operazione annullata."});
    FileName = chosen.path();
    DisplayName = name.data();
    return False;
  });
}

}  // namespace qv::ui
