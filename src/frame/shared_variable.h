// The Variant that all code of an application on one thread shares.
#pragma once

#include "automation/variant.h"

namespace qv::frame {

Variant get_SharedVar();
// An object is kept by reference; it is let go at the latest when the thread leaves its apartment,
// while the object's own server is still there.
void put_SharedVar(const Variant& Value);

}  // namespace qv::frame
