// A type library written out in the notation of interface.txt.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "server/client.h"

namespace qv::tests {

// The line that begins a block (a class, an enumeration...) and the lines below it, in order.
using InterfaceBlocks = std::map<std::string, std::vector<std::string>>;

InterfaceBlocks blocks_of_table(const char* path);
InterfaceBlocks blocks_of_library(ITypeLib* library);

// What has no help string: "Class.Member", "Enumeration", "Enumeration.Constant"...
std::vector<std::string> names_without_help(ITypeLib* library);

}  // namespace qv::tests
