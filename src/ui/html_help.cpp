#include <algorithm>

#include "frame/error_state.h"
#include "runtime/characters.h"
#include "ui/help_dialogs.h"
#include "ui/help_session.h"
#include "ui/window_handle.h"

namespace qv::ui {
namespace {

// "file::/topic>window type".
Text help_target(const Text& file, const Text& topic, const Text& window_type) {
  Text path = topic;
  std::replace(path.data(), path.data() + path.size(), L'\\', L'/');
  const bool lacks_slash = !path.view().starts_with(L'/');
  return concat({file,
                 path.empty()  ? L""
                 : lacks_slash ? L"::/"
                               : L"::",
                 path, window_type.empty() ? L"" : L">", window_type});
}

}  // namespace

Boolean HtmlHelpShow(frame::KwRtLib& object, const Text& HelpFile, Long HelpCmd,
                     const Text& HtmlFile, const Text& WinType, const Variant& HelpContextId,
                     Long OwnerHwnd) {
  return frame::handled(L"KwRtLibMod.HtmlHelpShow", frame::kTakeError, True, [&]() -> Boolean {
    const HWND owner = window_handle(OwnerHwnd);
    auto& session = object.state<HelpSession>();
    if (!session.open(owner)) return True;
    const std::string target = narrow_text(help_target(HelpFile, HtmlFile, WinType));
    const auto command = static_cast<UINT>(HelpCmd);
    if (HelpContextId.is_text()) {
      const std::string text = narrow_text(HelpContextId.text_view());
      session.show(owner, target, command, reinterpret_cast<DWORD_PTR>(text.c_str()));
    } else {
      const Long number = HelpContextId.is_missing() ? 0 : HelpContextId.to_long();
      session.show(owner, target, command, static_cast<DWORD_PTR>(number));
    }
    return False;
  });
}

}  // namespace qv::ui
