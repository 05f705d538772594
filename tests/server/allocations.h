// Counts what goes through the allocator of Automation (texts, arrays, results) from begin() to
// end().
#pragma once

#include <string>

namespace qv::tests::allocations {

// The platform's cache of texts is switched off for good: it would hide what is leaked.
void begin();
// Ends the watch; "" when everything that was allocated meanwhile is free again, else what is left.
std::string end();

}  // namespace qv::tests::allocations
