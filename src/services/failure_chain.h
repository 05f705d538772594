// A failure on its way up: a step that has failed and recorded why adds one more level.
#pragma once

#include "frame/error_state.h"

namespace qv::services {

template <class Failure>
Failure chained(const wchar_t* source, Failure failure) {
  frame::Set_Error({.Source = source}, frame::kChain);
  return failure;
}

}  // namespace qv::services
