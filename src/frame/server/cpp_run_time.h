// What the C++ run time keeps of its own while the library is loaded.
#pragma once

namespace qv::cpp_run_time {

// Gives back what the run time took when the library was loaded and would leave behind.
void detach() noexcept;

}  // namespace qv::cpp_run_time
