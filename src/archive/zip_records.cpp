#include "archive/zip_records.h"

#include "archive/archive_reader.h"
#include "archive/archive_writer.h"

namespace qv::archive {
namespace {

VARIANT reference(Long& number) noexcept {
  VARIANT argument{};
  argument.vt = VT_BYREF | VT_I4;
  argument.plVal = reinterpret_cast<LONG*>(&number);
  return argument;
}

VARIANT reference(Boolean& truth) noexcept {
  VARIANT argument{};
  argument.vt = VT_BYREF | VT_BOOL;
  argument.pboolVal = reinterpret_cast<VARIANT_BOOL*>(&truth);
  return argument;
}

}  // namespace

Text ZipFile::get_FileName() const {
  const auto name = name_.view();
  return Text(name.substr(0, name.find(L'\0')));
}

Boolean ZipFile::FileZip(const Variant& Source, const Text& Target, const Text& ParentDir,
                         Long Flags) {
  return zip_files(Source, Target, ParentDir, Flags, [&](Long FileIndex, Long Percent) {
    Boolean Cancel;
    events_.raise_event(DISPID_ZipFile_ZipStatus,
                        {reference(FileIndex), reference(Percent), reference(Cancel)});
    return !Cancel;
  });
}

Boolean ZipFile::FileUnzip(const Text& Source, const Text& TargetPath, Long Flags,
                           const Object<_kwCollection>& FileList) {
  return unzip_files(
      Source, TargetPath, Flags, FileList, [&](Long FileIndex, Long TotPercent, Long Percent) {
        Boolean Cancel;
        events_.raise_event(
            DISPID_ZipFile_UnzipStatus,
            {reference(FileIndex), reference(TotPercent), reference(Percent), reference(Cancel)});
        return !Cancel;
      });
}

}  // namespace qv::archive
