// The classes of the server, and the ids that earlier releases gave some interfaces; generated.
#pragma once

#include <span>

#include "automation/class_object.h"

namespace qv {

struct ClassEntry {
  const ClassInfo* info;
  IUnknown* (*create)();  // a new object with no reference yet
};
struct AliasEntry {
  const wchar_t* name;
  IID id;
};

std::span<const ClassEntry> class_catalogue() noexcept;
std::span<const AliasEntry> alias_catalogue() noexcept;

}  // namespace qv
