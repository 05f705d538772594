// Lists and extracts cabinets through the platform's services.
#pragma once

#include <vector>

#include "automation/text.h"

namespace qv::archive {

struct CabinetEntry {
  Text name;
  Long size_bytes = 0;
  Integer date = 0;  // packed, as datetime/packed_dates.h has them
  Integer time = 0;
  Integer attributes = 0;
};

struct CabinetList {
  std::vector<CabinetEntry> entries;
  Long cabinets = 0;
};

// All functions raise 20000 plus the service's code. A set is followed from its first cabinet on; a
// file that goes on in the next one is told once.

// Ends before a cabinet of the set that is not there.
CabinetList list_cabinets(const Text& name);

// Extracts the files named, or all for an empty list, into `folder`, which ends in a separator;
// with their stored folders or without. A stored name never leads out of the folder. An existing
// file is replaced once its new bytes are whole. Files before the one that fails stay.
void extract_cabinets(const Text& name, const std::vector<Text>& files, const Text& folder,
                      bool with_folders);

}  // namespace qv::archive
