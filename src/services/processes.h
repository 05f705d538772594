// Programs and documents started through the shell, and helpers around windows.
#pragma once

#include "automation/text.h"
#include "automation/variant.h"

namespace qv::services {

// True = failure, told by the error state, or that StopProc asked to stop. Unless NoLock says
// otherwise the call lasts until the program has ended, with the application's events running; its
// exit code is the record's LastDLLError then. The form frm is disabled and minimised meanwhile.
Boolean Spawn(const Text& AppName, const Variant& CmdLine, const Variant& Path,
              const Variant& WindowState, const Variant& NoLock, const Variant& frm,
              const Variant& Message, const Variant& AviFile, const Variant& QVPrgObj,
              const Variant& Action, const Variant& StopProc);

// Always True. Applications that call it have never seen a focus change, and keep theirs.
Boolean Process_SetFocus(Long ProcessId);

// The first window of the class among all descendants of ParentHWnd, of the desktop where that is
// 0; 0 where there is none.
// Excluded is made of handles of 4 characters each, as Long_2_Str gives them.
Long Find_Window(Long ParentHWnd, const Text& ClassName, const Text& Excluded);

// True = failure, told by the error state.
Boolean SysTray(Long hwnd, Long Action, Long Icon, const Variant& Tip, const Variant& Message);

}  // namespace qv::services
