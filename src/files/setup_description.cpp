#include "files/setup_description.h"

#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "config/ini_store.h"
#include "config/ini_struct.h"
#include "constants.h"
#include "files/file_info.h"
#include "files/file_versions.h"
#include "files/path_macros.h"
#include "files/path_text.h"
#include "files/type_library_reader.h"
#include "files/version_compare.h"
#include "frame/error_state.h"
#include "native/setup/file_line.h"
#include "runtime/calendar.h"
#include "runtime/characters.h"
#include "runtime/directory.h"
#include "runtime/file_facts.h"
#include "runtime/numbers.h"
#include "text/codecs.h"

namespace qv::files {
namespace {

namespace setup = native::setup;
using setup::FileLine;

constexpr const wchar_t* kReadSource = L"QvRtLibOle.KwRtLibMod.SetupIniRead";
constexpr const wchar_t* kLoadSource = L"QvRtLibOle.KwRtLibMod.SetupInfoLoad";

// Leads to the handler after a failure that the error state tells of already.
struct Told {};

template <std::size_t N>
std::u16string_view piece(const setup::Pieces<N>& split, std::size_t index) {
  if (index >= split.count) raise(kSubscriptOutOfRange);
  return split.pieces[index];
}

Text text_of(std::u16string_view characters) { return Text(wide_characters(characters)); }

Variant number_in(std::u16string_view text) { return Val(wide_characters(text)); }
Integer integer_in(std::u16string_view text) { return number_in(text).to_integer(); }

Integer added(Integer number, Integer summand) {
  return Variant(Long{number} + Long{summand}).to_integer();
}

bool equal_ignoring_case(const Text& a, const Text& b) {
  return CompareStringOrdinal(a.c_str(), a.length(), b.c_str(), b.length(), TRUE) == CSTR_EQUAL;
}

Long reg_mode(setup::Registration registration) {
  switch (registration) {
    case setup::Registration::kLibrary:
      return FileInfoRegMode::FIR_DLLSELFREGISTER;
    case setup::Registration::kProgram:
      return FileInfoRegMode::FIR_EXEREGISTER;
    case setup::Registration::kTypeLibrary:
      return FileInfoRegMode::FIR_TLBREGISTER;
    case setup::Registration::kNone:
      break;
  }
  return FileInfoRegMode::FIR_NONE;
}

// Descriptions have years of two digits; one of four is taken for one of two.
Integer full_year(Integer year) {
  constexpr Integer kFirstOfLastCentury = 20;
  return added(year, year >= kFirstOfLastCentury ? 1900 : 2000);
}

Date moment_in(std::u16string_view field) {
  const auto moment = setup::split_moment(field);
  const Integer month = integer_in(moment.month);
  const Integer day = integer_in(moment.day);
  const Integer year = full_year(integer_in(moment.year));
  const Integer hour = integer_in(moment.hour);
  const Integer minute = integer_in(moment.minute);
  const Integer second = integer_in(moment.second);
  // Twelve o'clock at noon is 24 too, and carries over into the next day.
  const Date date = date_serial(year, month, day);
  const Date time = time_serial(moment.is_afternoon ? added(hour, 12) : hour, minute, second);
  return {date.days + time.days};
}

struct Record {
  Object<_QvtFileInfo> object = Object<_QvtFileInfo>::from(create_QvtFileInfo());
  QvtFileInfo& info = *own<QvtFileInfo>(object, kQvtFileInfoInfo);
};

// One section of a description.
class SectionReader {
 public:
  SectionReader(const Text& file, const Object<_kwCollection>& list, Long flags)
      : list_(list), reads_type_libraries_((flags & SetupInfoFlags::SIF_SIMPLE) == 0) {
    own<config::QVtIniStruct>(ini_, kQVtIniStructInfo)->IniFile = file;
  }

  void read(const wchar_t* section) {
    program_ = value(L"Setup", L"AppExe");
    folder_ = value(L"Setup", L"DefaultDir");
    Text application(std::wstring_view(L"\0", 1));
    resolve(folder_, application);
    for (Long number = 1;; ++number) {
      const Text line = value(section, concat({L"File", decimal(number)}));
      if (line.empty()) return;
      read(setup::split_file_line(code_units(line)));
    }
  }

 private:
  Text value(const wchar_t* section, const Text& key) const {
    return config::Ini_Get(section, key, L"", ini_).to_text();
  }

  static void resolve(Text& name, Text& folder) {
    if (ResolveFileName(name, folder)) throw Told{};
  }

  void read(const FileLine& line) {
    const Record described;
    const Record installed;
    described.info.Installed = installed.object;
    describe(line, described.info, installed.info);
    if (is_dropped(described.info)) return;
    const Text& file = installed.info.FileName;
    Long part = 0;
    Long high = 0;
    Long low = 0;
    if (!GetFileVersion(file, part, part, part, high, low)) {
      installed.info.MajVer = high;
      installed.info.MinVer = low;
      installed.info.LastWriteTime = file_date_time(file);
      installed.info.FileAttributes = get_attr(file);
      installed.info.FileSize = file_len(file);
      if (compared(version_of(installed.info), version_of(described.info)) > 0) {
        described.info.Updated = True;
        installed.info.Updated = True;
      }
      if (reads_type_libraries_) type_libraries_.describe(file, installed.info);
    }
    collections::add(list_, Variant(Object<IDispatch>(described.object.get())),
                     described.info.FileName);
  }

  void describe(const FileLine& line, QvtFileInfo& described, QvtFileInfo& installed) {
    described.FileName = text_of(setup::name_in(piece(line, FileLine::kName)));
    described.IsAppExe = equal_ignoring_case(described.FileName, program_);
    installed.FileName =
        concat({Full_Path(text_of(piece(line, FileLine::kFolder))), described.FileName});
    resolve(installed.FileName, folder_);
    described.RegMode = reg_mode(setup::registration_in(piece(line, FileLine::kRegistration)));
    described.IsShared = setup::is_shared(piece(line, FileLine::kSharing));
    described.LastWriteTime = moment_in(piece(line, FileLine::kMoment));
    described.FileSize = number_in(piece(line, FileLine::kSize)).to_long();
    const auto version = setup::split_version(piece(line, FileLine::kVersion));
    const auto number = [&](std::size_t index) { return integer_in(piece(version, index)); };
    described.MajVer = text::Make_Long(number(1), number(0));
    described.MinVer = text::Make_Long(number(3), number(2));
  }

  // The first line of a file stays. A later one of an older file goes on to the collection, which
  // refuses its key.
  bool is_dropped(const QvtFileInfo& described) const {
    if (!collections::exists(list_, described.FileName)) return false;
    const auto object = collections::item(list_, described.FileName).to_object();
    const auto earlier = Object<_QvtFileInfo>::from(object.get());
    if (!earlier) raise(kTypeMismatch);
    return compared(version_of(earlier), version_of(described)) <= 0;
  }

  static Long compared(const FileVersion& a, const FileVersion& b) {
    const Long order = VersionCompare(a, b);
    if (order == kComparisonFailed) throw Told{};
    return order;
  }

  const Object<_kwCollection>& list_;
  bool reads_type_libraries_;
  Object<_QVtIniStruct> ini_ = Object<_QVtIniStruct>::from(create_QVtIniStruct());
  Text program_;
  Text folder_;
  TypeLibraryReader type_libraries_;
};

Boolean SetupIniRead(const wchar_t* section, const Text& file, const Object<_kwCollection>& list,
                     Long flags) {
  return frame::handled(kReadSource, frame::kChain, True, [&] {
    SectionReader(file, list, flags).read(section);
    return False;
  });
}

}  // namespace

Boolean SetupInfoLoad(const Text& SetupFile, const Object<_kwCollection>& RetInfo, Long Flags) {
  return frame::handled(kLoadSource, frame::kChain, True, [&]() -> Boolean {
    const bool reads_all = (Flags & SetupInfoFlags::SIF_NOBOOT) == 0;
    if ((reads_all && SetupIniRead(L"Bootstrap Files", SetupFile, RetInfo, Flags)) ||
        SetupIniRead(L"Setup1 Files", SetupFile, RetInfo, Flags)) {
      frame::Set_Error({.Source = kLoadSource}, frame::kChain);
      return True;
    }
    return False;
  });
}

}  // namespace qv::files
