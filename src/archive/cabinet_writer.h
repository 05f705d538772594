// Makes cabinets through the platform's services.
#pragma once

#include <vector>

#include "automation/text.h"

namespace qv::archive {

// Packs the files into `name` in `folder` (which ends in a separator) and, where they exceed
// `largest_bytes`, into further cabinets of the same set: behind the stem of "set.cab" comes the
// number from 2, "set2.cab"; a number that the stem ends with is counted on, "disk1.cab",
// "disk2.cab". A size below 1 means a single cabinet of any size.
// A relative name is stored with its folders, an absolute one, and one that climbs, without.
// Returns the number of cabinets. Raises 20000 plus the service's code, and then leaves none of
// them behind.
Long create_cabinets(const std::vector<Text>& files, const Text& folder, const Text& name,
                     Long largest_bytes);

}  // namespace qv::archive
