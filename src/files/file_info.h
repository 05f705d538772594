// The record in which a file's attributes, dates, size, version and setup marks travel through the
// library.
#pragma once

#include <windows.h>

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::files {

struct QvtFileInfo {
  Long FileAttributes = 0;
  // Local time.
  Date CreationTime;
  Date LastAccessTime;
  Date LastWriteTime;
  Long FileSize = 0;  // bytes; the low 32 bits of a larger size
  Text FileName;
  Long MajVer = 0;  // first number of the version in the high word, second in the low one
  Long MinVer = 0;  // third and fourth
  Text CLSID;
  Boolean IsAppExe;
  Boolean IsShared;
  Long RegMode = 0;
  Text RegName;
  Boolean Updated;
  // The file of a setup as it is on this machine.
  Object<_QvtFileInfo> Installed;
};

}  // namespace qv::files
