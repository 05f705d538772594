// The record that names an application's INI file and the standard folders of its machine.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::config {

struct QVtIniStruct {
  Text IniFile;
  Text WinPath;
  Text SysPath;
  Text ExePath;
  Text TmpPath;

  void CopyTo(const Object<_QVtIniStruct>& Ini) const;
};

}  // namespace qv::config
