// The global object's own fields, and the few services that belong to the frame itself.
#pragma once

#include "automation/variant.h"

namespace qv::frame {

// The fields of one KwRtLib object; all other state is per thread.
class KwRtLib {};

// A number that this thread did not get before: the tick count, waited for until it moves. It also
// serves as a clock of milliseconds.
Long Unique_KeyLong();
void ThreadInfo(Long& hInstance, Long& PrevInstance, Long& ThreadId);
// 16 bytes as they lie in memory; Null where the system makes no identifier.
Variant Guid_Binary();
// In braces, upper case; "" where the system makes no identifier.
Text Guid_String();
Text Get_UserName();
// False, whether or not the system took what was written.
Boolean StdOut(const Text& Buffer);

Text get_CEM_CREATEFILE();
Text get_CEM_OPENFILE();
Text get_MSG_BLOOMSAVE();

}  // namespace qv::frame
