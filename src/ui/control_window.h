// A form's control as the helpers see it: an object with late-bound members, and the window that it
// names by its property "hwnd".
#pragma once

#include <windows.h>

#include "automation/object.h"
#include "automation/types.h"

namespace qv::ui {

// Run-time error 438 for a control without a window of its own, 91 for Nothing.
HWND window_of(const Object<IDispatch>& control);

// The low 32 bits of the window's answer; 0 from a window that is gone. Texts go in wide form: the
// system hands them to narrow windows in theirs.
Long send(HWND window, UINT message, WPARAM word = 0, LPARAM value = 0);
// With the address of a text or a record.
Long send(HWND window, UINT message, WPARAM word, const void* data);

// The control's own way to draw itself anew.
void refresh(const Object<IDispatch>& control);

// Is the control the language's ComboBox, ListBox? The name of the object's type tells, or else the
// class of its window. Run-time error 91 for Nothing.
bool is_combo_box(const Object<IDispatch>& control);
bool is_list_box(const Object<IDispatch>& control);

}  // namespace qv::ui
