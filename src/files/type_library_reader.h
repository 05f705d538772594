// The type-library reader, an outside component that not every machine has.
#pragma once

#include "automation/object.h"
#include "files/file_info.h"

namespace qv::files {

class TypeLibraryReader {
 public:
  // Stores name and GUID of a file's type library in the record. Where there is no component or no
  // library, and whatever else fails, they stay as they are.
  void describe(const Text& file, QvtFileInfo& record);

 private:
  Object<IDispatch> component_;  // made on first use
};

}  // namespace qv::files
