// Path names as text: taking one apart, putting one together, temporary names, names shortened for
// display. Only the temporary names look at a disk. Components are cut at the C run time's limits
// (MAX_DRIVE, MAX_DIR, MAX_FNAME, MAX_EXT, the closing character 0 counted).
#pragma once

#include "automation/variant.h"

namespace qv::files {

// An empty name gives four empty texts, whatever the variables are.
void Split_Path(const Text& FullName, Variant& Drive, Variant& Path, Variant& FileName,
                Variant& FileExt);
void SplitPath(const Text& sPath, Variant& sDrive, Variant& sDir, Variant& sFName, Variant& sExt);
// At most 260 characters come together.
void MakePath(Text& sPath, const Text& sDrive, const Text& sDir, const Text& sFName,
              const Text& sExt);
// True = failure: the path is longer than 260 characters or nothing but blanks. Buffer is 261
// blanks then, the room that was made for the path.
Boolean FullPath(Text& Buffer, const Text& PathName);

Text Get_Path(const Text& FileSpec);
Text Get_FileNameNoExt(const Text& FileSpec);
Text Get_FileName(const Text& FileSpec);
Text Get_FileExt(const Text& FileSpec);
Text Get_Drive(const Text& FileSpec);

// With a backslash at the end; "" stays "".
Text Full_Path(const Text& PS);
Text CurDrive();
Text Get_TempPath();
// "" = failure, such as a folder that is not there.
Text Get_TempFile(const Variant& Path, const Text& Ext);
// "" = failure, told by the error state.
Text CompactPath(const Text& SrcPath, Long MaxChars);

}  // namespace qv::files
