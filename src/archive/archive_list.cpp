#include "archive/archive_reader.h"
#include "archive/opened_archive.h"
#include "class_tables.h"
#include "frame/error_state.h"

namespace qv::archive {
namespace {

namespace cpr = native::cpr;

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

Object<_QvtFileInfo> info_of(const cpr::ArchiveEntry& entry) {
  const auto info = Object<_QvtFileInfo>::from(create_QvtFileInfo());
  check(info->put_CreationTime(entry.created));
  check(info->put_FileAttributes(entry.attributes));
  check(info->put_FileName(lent(text_of_stored(entry.name))));
  check(info->put_FileSize(entry.size_bytes));
  check(info->put_LastAccessTime(entry.changed));
  check(info->put_LastWriteTime(entry.changed));
  check(info->put_MajVer(entry.major_version));
  check(info->put_MinVer(entry.minor_version));
  return info;
}

void add(const Object<_kwCollection>& list, const Object<_QvtFileInfo>& info) {
  const Variant item(Object<IDispatch>(info.get()));
  const Variant missing = Variant::missing();
  check(list->Add(item.raw(), missing.raw(), missing.raw(), missing.raw()));
}

}  // namespace

Boolean FileUnzipInfo(const Text& Source, const Object<_kwCollection>& RetInfo, Long) {
  return frame::handled(L"Module.FileUnzipInfo", frame::kTakeError, True, [&] {
    check(RetInfo->Clear());
    const OpenedArchive archive(Source);
    for (const cpr::ArchiveEntry& entry : archive.head().entries) add(RetInfo, info_of(entry));
    return False;
  });
}

}  // namespace qv::archive
