// The calling language's DoEvents.
#pragma once

namespace qv {

// Lets everything run that waits in this thread's message queue, and other threads of the system.
// The application may enter the library again meanwhile. A message that ends the application stays
// for its own loop.
void do_events() noexcept;

}  // namespace qv
