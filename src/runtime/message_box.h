// The calling language's MsgBox.
#pragma once

#include "automation/text.h"

namespace qv {

// Shows a box of the system over the thread's active window and waits for a button. `buttons` is
// the language's message-box style; other bits are passed over. The result is the language's: 1 OK,
// 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No; 0 where no box could be shown.
Long message_box(const Text& prompt, Long buttons, const Text& title);

}  // namespace qv
