// The commands; each throws Failure and returns whether all was well.
#pragma once

#include "qvflt/options.h"

namespace qv::qvflt {

bool info(const Options& options);
bool list(const Options& options);
bool convert(const Options& options);

}  // namespace qv::qvflt
