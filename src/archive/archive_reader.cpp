#include "archive/archive_reader.h"

#include <string_view>

#include "archive/block_coder.h"
#include "archive/file_streams.h"
#include "archive/opened_archive.h"
#include "automation/bytes.h"
#include "collections/keyed_collection.h"
#include "constants.h"
#include "datetime/file_times.h"
#include "files/file_operations.h"
#include "files/path_text.h"
#include "frame/error_state.h"
#include "frame/file_retry.h"
#include "native/cpr/archive_data.h"
#include "native/cpr/archive_names.h"
#include "runtime/directory.h"
#include "runtime/do_events.h"
#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"
#include "runtime/system_name.h"

namespace qv::archive {
namespace {

namespace cpr = native::cpr;
using namespace File_Open_Const;
using frame::kFirstApplicationError;

constexpr Long kCrcDiffers = kFirstApplicationError + 2;
constexpr Long kNoTemporaryFile = kFirstApplicationError + 3;
constexpr Long kNoStructure = kFirstApplicationError + 4;
constexpr Long kCancelled = kFirstApplicationError + 10;
// What can be given to a file: the marks of a folder, of compression and the like are the system's.
constexpr Long kRestorableAttributes = kReadOnly | kHidden | kSystem | kArchive;

// A step that failed and has told the error state: what there is to do is to clean up.
struct Told {};

// The language's Name statement, from one folder to another of any drive. A file that has the name
// is not replaced.
void rename(const Text& from, const Text& to) {
  if (MoveFileExW(system_name(from).c_str(), system_name(to).c_str(), MOVEFILE_COPY_ALLOWED) !=
      FALSE) {
    return;
  }
  if (GetLastError() == ERROR_ALREADY_EXISTS) raise(kFileAlreadyExists);
  raise_file_error(to.c_str());
}

class Extractor {
 public:
  Extractor(const Text& source, const Text& target_path, Long flags,
            const Object<_kwCollection>& list, const UnzipReceiver& receiver)
      : archive_(source),
        folder_(files::Full_Path(target_path)),
        flags_(flags),
        list_(list),
        receiver_(receiver) {
    if (!has(FileZipConst::FZC_STOREPATH)) return;
    relative_start_ = head().parent_directory.size();
    if (relative_start_ == 0) {
      raise({.number = kNoStructure,
             .description = L"Impossibile ripristinare la struttura originaria della directory."});
    }
  }
  Extractor(const Extractor&) = delete;
  Extractor& operator=(const Extractor&) = delete;
  ~Extractor() {
    frame::File_CloseRetry(file_);
    if (!temporary_.empty()) files::File_Kill(temporary_);
  }

  void extract() {
    files::Path_Create(folder_);
    temporary_ = files::Get_TempFile(Variant(folder_), L"TMP");
    std::int64_t position = file_numbers::position(archive_.number());
    for (std::size_t i = 0; i < head().entries.size(); ++i) {
      const cpr::ArchiveEntry& entry = head().entries[i];
      if (position < 1) archive_.refuse();
      file_numbers::seek(archive_.number(), position);
      tell(i, 0);
      extract_selected(i);
      position = entry.next_position;
    }
  }

 private:
  const cpr::ArchiveHead& head() const noexcept { return archive_.head(); }
  bool has(Long flag) const noexcept { return (flags_ & flag) != 0; }

  void tell(std::size_t index, Long percent) {
    if (!receiver_) return;
    const auto read_bytes =
        static_cast<std::uint64_t>(file_numbers::position(archive_.number()) - 1);
    const bool goes_on = receiver_(static_cast<Long>(index) + 1,
                                   percentage(read_bytes, archive_.length_bytes()), percent);
    do_events();
    if (!goes_on) {
      raise({.number = kCancelled, .description = L"Procedura interrotta dall'utente."});
    }
  }

  void extract_selected(std::size_t index) {
    const cpr::ArchiveEntry& entry = head().entries[index];
    const Text stored = text_of_stored(entry.name);
    Text given;
    if (list_) {
      const Variant key(stored);
      if (!collections::exists(list_, key)) return;
      given = collections::item(list_, key).to_text();
    }
    if (entry.is_directory()) {
      files::Path_Create(usual_name(stored, true));
    } else {
      extract_file(index, stored, final_name(stored, given));
    }
  }

  Text final_name(const Text& stored, const Text& given) const {
    return has(FileZipConst::FZC_STOREPATH) || given.empty() ? usual_name(stored, false) : given;
  }

  // Where an entry goes by its stored name: never anywhere outside the target folder. A folder may
  // be that folder itself.
  Text usual_name(const Text& stored, bool is_folder) const {
    Text name;
    if (!has(FileZipConst::FZC_STOREPATH)) {
      name = files::Get_FileName(stored);
    } else if (stored.size() > relative_start_) {
      name = Text(stored.view().substr(relative_start_));
    }
    if (!(is_folder && name.empty()) && !is_safe(name)) {
      raise({.number = kFirstApplicationError,
             .description =
                 concat({L"Il nome ", stored, L" conduce fuori dalla cartella di destinazione."})});
    }
    return concat({folder_, name});
  }

  // A pattern is no name, and deleting by it would take the folder's other files along.
  static bool is_safe(const Text& name) {
    const auto units = name.view();
    return units.find_first_of(L"*?") == std::wstring_view::npos &&
           cpr::stays_in_folder({reinterpret_cast<const char16_t*>(units.data()), units.size()});
  }

  void extract_file(std::size_t index, const Text& stored, const Text& name) {
    open_temporary();
    expand(index, stored);
    frame::File_CloseRetry(file_);
    put_in_place(head().entries[index], name);
  }

  void open_temporary() {
    Long record_length = 0;
    const Long refusal = frame::File_OpenRetry(temporary_, O_RDWR | O_CREAT | O_TRUNC | O_BINARY,
                                               SH_DENYNO, record_length, file_, kPermissionDenied);
    if (refusal != 0) {
      raise({.number = kNoTemporaryFile,
             .description = concat({L"Impossibile creare il file temporaneo ", temporary_})});
    }
  }

  void expand(std::size_t index, const Text& stored) {
    const cpr::ArchiveEntry& entry = head().entries[index];
    FileSource archive(archive_.number());
    FileSink file(file_);
    const auto size = static_cast<std::uint64_t>(std::max<Long>(entry.size_bytes, 0));
    const auto progress = [&](std::uint64_t written_bytes) {
      tell(index, percentage(written_bytes, size));
      return true;
    };
    switch (cpr::unpack_entry(archive, file, entry, progress)) {
      case cpr::EntryCode::sink_failed:
        file.raise_failure();
      case cpr::EntryCode::bad_dictionary:
        refuse_block(cpr::CoderCode::bad_dictionary);
      case cpr::EntryCode::bad_mode:
        refuse_block(cpr::CoderCode::bad_mode);
      case cpr::EntryCode::damaged:
        refuse_block(cpr::CoderCode::damaged);
      case cpr::EntryCode::source_ended:
        if (archive.has_failed()) archive.raise_failure();
        // Bytes that the archive has lost are as wrong as others.
        [[fallthrough]];
      case cpr::EntryCode::crc_differs:
        raise({.number = kCrcDiffers, .description = concat({L"Errore di CRC nel file ", stored})});
      default:
        break;
    }
  }

  // The block's failure is told as that of PkUnzip.
  [[noreturn]] static void refuse_block(cpr::CoderCode code) {
    frame::handled(L"KwRtLibMod.PkUnzip", frame::kTakeError, True, [&] {
      check_coder(code);
      return False;
    });
    throw Told();
  }

  void put_in_place(const cpr::ArchiveEntry& entry, const Text& name) {
    const auto separator = name.view().rfind(L'\\');
    if (separator != std::wstring_view::npos) {
      const Text folder(name.view().substr(0, separator));
      if (!path_exists(folder)) files::Path_Create(folder);
    }
    // Looking for what is not there takes the longer the more files a folder has.
    if (path_exists(name)) files::File_Kill(name);
    rename(temporary_, name);
    if (has(FileZipConst::FZC_KEEPATTRIBUTES)) {
      set_attr(name, entry.attributes & kRestorableAttributes);
    }
    const Integer failed = datetime::Set_FileTime(Variant(name), Variant(Date{entry.created}),
                                                  Variant::missing(), Variant(Date{entry.changed}));
    if (failed != 0) throw Told();
  }

  OpenedArchive archive_;
  Text folder_;  // with its final separator
  Long flags_;
  const Object<_kwCollection> list_;
  const UnzipReceiver& receiver_;
  std::size_t relative_start_ = 0;  // in a stored name
  Text temporary_;
  Long file_ = 0;
};

}  // namespace

Boolean unzip_files(const Text& Source, const Text& TargetPath, Long Flags,
                    const Object<_kwCollection>& FileList, const UnzipReceiver& receiver) {
  return frame::handled(L"Module.FileUnzip", frame::kTakeError, True, [&] {
    try {
      Extractor(Source, TargetPath, Flags, FileList, receiver).extract();
      return False;
    } catch (const Told&) {
      return True;
    }
  });
}

Boolean FileUnzipEx(const Text& Source, const Text& TargetPath, Long Flags,
                    const Object<_kwCollection>& FileList) {
  return unzip_files(Source, TargetPath, Flags, FileList, nullptr);
}

Boolean FileUnzip(const Text& Source, const Text& TargetPath, Long Flags) {
  return unzip_files(Source, TargetPath, Flags, nullptr, nullptr);
}

}  // namespace qv::archive
