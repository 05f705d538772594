// Cabinet files: the public members around the platform's services.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::archive {

// All: True = failure, told by the error state as 20000 plus the service's code.

// FileList gets the terminators that it lacks.
Boolean CABFileCreate(Text& FileList, const Text& CabFilePath, const Text& CABFileName,
                      Long CabFolderSize);
Boolean CABFileCreateEx(Text& FileList, const Text& CabFilePath, const Text& CABFileName,
                        Long CabFolderSize, Long& CabsCount);

// The list as text: of each file the name, a character 0, then size (4 characters), packed date,
// packed time and attributes (2 each).
Boolean CABFileInfo(const Text& CABFileName, Text& RetFileList);
Boolean CABFileInfoEx(const Text& CABFileName, Text& RetFileList, Long& CabsCount);
// Adds a QvtFileInfo for each file.
Boolean CABFileInfoExEx(const Text& CABFileName, const Object<_kwCollection>& RetFileList,
                        Long& CabsCount);

// An empty FileList means all files. Flags: 1 restores stored folders.
Boolean CABFileExtract(const Text& CABFileName, const Text& FileList, const Text& TargetPath,
                       Long Flags);

}  // namespace qv::archive
