#include "archive/archive_reader.h"
#include "archive/opened_archive.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "frame/error_state.h"

namespace qv::archive {
namespace {

namespace cpr = native::cpr;

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

Object<_QvtFileInfo> info_of(const cpr::ArchiveEntry& entry) {
  auto info = Object<_QvtFileInfo>::from(create_QvtFileInfo());
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

}  // namespace

Boolean FileUnzipInfo(const Text& Source, const Object<_kwCollection>& RetInfo, Long) {
  return frame::handled(L"Module.FileUnzipInfo", frame::kTakeError, True, [&] {
    collections::clear(RetInfo);
    const OpenedArchive archive(Source);
    for (const cpr::ArchiveEntry& entry : archive.head().entries) {
      collections::add(RetInfo, Variant(Object<IDispatch>(info_of(entry).get())));
    }
    return False;
  });
}

}  // namespace qv::archive
