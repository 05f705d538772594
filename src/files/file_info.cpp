#include "files/file_info.h"

#include "datetime/file_times.h"
#include "files/file_versions.h"
#include "frame/error_state.h"
#include "runtime/directory.h"
#include "runtime/file_facts.h"
#include "text/codecs.h"

namespace qv::files {
Boolean QvtFileInfo::GetFileInfo(const Text& sFileName) {
  return frame::handled(L"QvtFileInfo.GetFileInfo", frame::kTakeError, True, [&] {
    if (!sFileName.empty()) FileName = sFileName;
    FileAttributes = get_attr(FileName);
    Variant created;
    Variant accessed;
    Variant written;
    if (datetime::Get_FileTime(FileName, created, accessed, written) != 0) return True;
    CreationTime = created.to_date();
    LastAccessTime = accessed.to_date();
    LastWriteTime = written.to_date();
    FileSize = file_len(FileName);
    // Only the two halves are kept.
    Long part = 0;
    Long high = 0;
    Long low = 0;
    GetFileVersion(FileName, part, part, part, high, low);
    MajVer = high;
    MinVer = low;
    return False;
  });
}

Text QvtFileInfo::get_VersionString() const {
  return concat({decimal(text::Hi_Word(MajVer)), L".", decimal(text::Lo_Word(MajVer)), L".",
                 decimal(text::Hi_Word(MinVer)), L".", decimal(text::Lo_Word(MinVer))});
}

}  // namespace qv::files
