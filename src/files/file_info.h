// A file's attributes, dates, size and version, and how a setup installs it.
#pragma once

#include <windows.h>

#include "automation/object.h"
#include "automation/text.h"
#include "automation/types.h"
#include "interfaces.h"

namespace qv::files {

struct QvtFileInfo {
  Long FileAttributes = 0;
  Date CreationTime;
  Date LastAccessTime;
  Date LastWriteTime;
  Long FileSize = 0;  // bytes; a search gives the low 32 bits of a larger size
  Text FileName;
  Long MajVer = 0;  // of a version a.b.c.d, a in the high word and b in the low one
  Long MinVer = 0;  // c and d likewise
  Text CLSID;       // of the file's type library, in braces
  Boolean IsAppExe;
  Boolean IsShared;
  Long RegMode = 0;
  Text RegName;     // of the file's type library
  Boolean Updated;  // the installed file is the newer one
  Object<_QvtFileInfo> Installed;

  // "" reads the file that FileName names. A file without a version succeeds, with an entry in the
  // error state. True = failure, told there too; run-time error 6 for a size past a Long.
  Boolean GetFileInfo(const Text& sFileName);
  // "a.b.c.d", each a signed 16-bit number.
  Text get_VersionString() const;
};

}  // namespace qv::files
