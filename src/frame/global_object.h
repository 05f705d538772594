// The global object's own fields, and the few services that belong to the frame itself.
#pragma once

#include <memory>
#include <vector>

#include "automation/variant.h"

namespace qv::frame {

// What a family of members keeps in each KwRtLib object; gone when the object ends.
struct InstanceState {
  InstanceState() = default;
  InstanceState(const InstanceState&) = delete;
  InstanceState& operator=(const InstanceState&) = delete;
  virtual ~InstanceState() = default;
};

// One KwRtLib object. All other state is per thread.
class KwRtLib {
 public:
  // Made when first asked for.
  template <class State>
  State& state() {
    for (const auto& held : states_) {
      if (auto* const found = dynamic_cast<State*>(held.get())) return *found;
    }
    auto made = std::make_unique<State>();
    State& state = *made;
    states_.push_back(std::move(made));
    return state;
  }

 private:
  std::vector<std::unique_ptr<InstanceState>> states_;
};

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
