// HTML help, and the system's dialog for folders. True = failure.
#pragma once

#include "automation/variant.h"
#include "frame/global_object.h"

namespace qv::ui {

// A help control that can't be called is a failure with nothing told; what it answers never is one.
// Every other failure is told by the error state.
Boolean HtmlHelpShow(frame::KwRtLib& object, const Text& HelpFile, Long HelpCmd,
                     const Text& HtmlFile, const Text& WinType, const Variant& HelpContextId,
                     Long OwnerHwnd);

// A dialog that the user cancels is run-time error 32755 in the error state.
Boolean ShowBrowseFolder(Text& FileName, Long hwndOwner, Text& DisplayName, const Text& DialogTitle,
                         Long Flags);

}  // namespace qv::ui
