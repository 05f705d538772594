// The commands; each throws Failure and returns whether all was well.
#pragma once

#include "qvarc/options.h"

namespace qv::qvarc {

bool create(const Options& options);
bool list(const Options& options);
bool test(const Options& options);
bool extract(const Options& options);

}  // namespace qv::qvarc
