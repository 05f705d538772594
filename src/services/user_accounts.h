// Accounts of users in a directory. The directory's server and domain are set when the library is
// built: QVRT_DIRECTORY_SERVER and QVRT_DIRECTORY_DOMAIN.
#pragma once

#include "automation/text.h"

namespace qv::services {

// True = failure, told by the error state; what was made before it stays.
Boolean UserCreate(const Text& ServerName, const Text& UserName, const Text& Password,
                   const Text& GroupName, const Text& Properties);

}  // namespace qv::services
