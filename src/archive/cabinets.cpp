#include "archive/cabinets.h"

#include <vector>

#include "archive/cabinet_reader.h"
#include "archive/cabinet_writer.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "datetime/packed_dates.h"
#include "files/path_text.h"
#include "frame/error_state.h"
#include "runtime/calendar.h"
#include "text/codecs.h"

namespace qv::archive {
namespace {

constexpr const wchar_t* kInfoSource = L"KwRtLibMod.CABFileInfo";
constexpr std::wstring_view kTerminator(L"\0", 1);

// Each name ends with a character 0, and the whole with one more.
void terminate(Text& list) {
  if (list.empty() || list.view().back() != L'\0') list += kTerminator;
  if (!list.view().ends_with(std::wstring_view(L"\0\0", 2))) list += kTerminator;
}

std::vector<Text> names_in(std::wstring_view list) {
  std::vector<Text> names;
  while (!list.empty()) {
    const std::size_t length = std::min(list.find(L'\0'), list.size());
    if (length == 0) break;
    names.emplace_back(list.substr(0, length));
    list.remove_prefix(std::min(length + 1, list.size()));
  }
  return names;
}

Text record_of(const CabinetEntry& entry) {
  return concat({entry.name, kTerminator, text::Long_2_Str(entry.size_bytes),
                 text::Int_2_Str(entry.date), text::Int_2_Str(entry.time),
                 text::Int_2_Str(entry.attributes)});
}

// Through the public operations on packed dates, with all that they make of late years and seconds.
Date date_of(const CabinetEntry& entry) {
  using namespace datetime;
  const Date day =
      date_serial(Date_2_Year(entry.date), Date_2_Month(entry.date), Date_2_Day(entry.date));
  const Date time =
      time_serial(Time_2_Hour(entry.time), Time_2_Minute(entry.time), Time_2_Second(entry.time));
  return {day.days + time.days};
}

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

void add(const Object<_kwCollection>& list, const CabinetEntry& entry) {
  const auto info = Object<_QvtFileInfo>::from(create_QvtFileInfo());
  const Date date = date_of(entry);
  check(info->put_FileName(lent(entry.name)));
  check(info->put_FileSize(entry.size_bytes));
  check(info->put_LastWriteTime(date.days));
  check(info->put_CreationTime(date.days));
  check(info->put_FileAttributes(entry.attributes));
  collections::add(list, Variant(Object<IDispatch>(info.get())));
}

}  // namespace

Boolean CABFileCreate(Text& FileList, const Text& CabFilePath, const Text& CABFileName,
                      Long CabFolderSize) {
  Long dropped = 0;
  return CABFileCreateEx(FileList, CabFilePath, CABFileName, CabFolderSize, dropped);
}

Boolean CABFileCreateEx(Text& FileList, const Text& CabFilePath, const Text& CABFileName,
                        Long CabFolderSize, Long& CabsCount) {
  return frame::handled(L"KwRtLibMod.CABFileCreate", frame::kTakeError, True, [&] {
    terminate(FileList);
    CabsCount = create_cabinets(names_in(FileList), files::Full_Path(CabFilePath), CABFileName,
                                CabFolderSize);
    return False;
  });
}

Boolean CABFileInfo(const Text& CABFileName, Text& RetFileList) {
  Long dropped = 0;
  return CABFileInfoEx(CABFileName, RetFileList, dropped);
}

Boolean CABFileInfoEx(const Text& CABFileName, Text& RetFileList, Long& CabsCount) {
  return frame::handled(kInfoSource, frame::kTakeError, True, [&] {
    const CabinetList list = list_cabinets(CABFileName);
    Text records;
    for (const CabinetEntry& entry : list.entries) records += record_of(entry);
    records.cut(records.size());
    RetFileList = std::move(records);
    CabsCount = list.cabinets;
    return False;
  });
}

Boolean CABFileInfoExEx(const Text& CABFileName, const Object<_kwCollection>& RetFileList,
                        Long& CabsCount) {
  return frame::handled(kInfoSource, frame::kTakeError, True, [&] {
    const CabinetList list = list_cabinets(CABFileName);
    // Nothing is a caller that wants the count alone.
    if (RetFileList) {
      for (const CabinetEntry& entry : list.entries) add(RetFileList, entry);
    }
    CabsCount = list.cabinets;
    return False;
  });
}

Boolean CABFileExtract(const Text& CABFileName, const Text& FileList, const Text& TargetPath,
                       Long Flags) {
  constexpr Long kWithFolders = 1;
  return frame::handled(L"KwRtLibMod.CABFileExtract", frame::kTakeError, True, [&] {
    extract_cabinets(CABFileName, names_in(FileList), files::Full_Path(TargetPath),
                     (Flags & kWithFolders) != 0);
    return False;
  });
}

}  // namespace qv::archive
