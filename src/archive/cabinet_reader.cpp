#include "archive/cabinet_reader.h"

#include <windows.h>
// fdi.h needs windows.h before it.
#include <fdi.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "archive/cabinet_files.h"
#include "automation/run_time_error.h"
#include "automation/thread_state.h"
#include "files/file_operations.h"
#include "files/path_text.h"
#include "native/cpr/archive_names.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::archive {
namespace {

constexpr Long kNotFound = FDIERROR_CABINET_NOT_FOUND;
constexpr Long kCorrupt = FDIERROR_CORRUPT_CABINET;
constexpr Long kNoTarget = FDIERROR_TARGET_FILE;
// Beyond the service's own codes: a file asked for that the set does not have.
constexpr Long kNoSuchFile = 53;

constexpr std::array<const wchar_t*, 13> kFailures = {
    L"Errore nella lettura del cabinet.", L"Cabinet non trovato: ",
    L"Il file non è un cabinet: ",        L"Versione del cabinet sconosciuta: ",
    L"Il cabinet è corrotto: ",           L"Memoria insufficiente.",
    L"Tipo di compressione sconosciuto.", L"Errore nell'espansione del cabinet: ",
    L"Impossibile scrivere il file ",     L"Cabinet di un'altra serie: ",
    L"Cabinet di un'altra serie: ",       L"Procedura interrotta dall'utente.",
    L"Fine inattesa del cabinet: ",
};
constexpr bool names_something(Long code) {
  return code != 0 && code != FDIERROR_ALLOC_FAIL && code != FDIERROR_BAD_COMPR_TYPE &&
         code != FDIERROR_USER_ABORT;
}

[[noreturn]] void refuse(Long code, const Text& name) {
  const Long known = std::clamp<Long>(code, 0, static_cast<Long>(kFailures.size()) - 1);
  const Text text(kFailures[static_cast<std::size_t>(known)]);
  raise_cabinet_error(code, names_something(known) ? concat({text, name}) : text);
}

// The file that is being extracted, which the service may close by itself when it fails; only the
// closing knows.
struct Extraction {
  INT_PTR file = cabinet_files::kNoFile;
};
INT_PTR& extracted_file() { return per_thread<Extraction>().file; }

int DIAMONDAPI close_file(INT_PTR file) {
  if (file == extracted_file()) extracted_file() = cabinet_files::kNoFile;
  return cabinet_files::close(file);
}

constexpr std::size_t kLongestPart = CB_MAX_CAB_PATH - 1;

// Goes through the cabinets of a set, one after the other. What happens to each file is for the
// classes below.
class SetReader {
 public:
  explicit SetReader(const Text& name) {
    const auto units = name.view();
    const std::size_t separator = units.find_last_of(L"\\/:");
    const std::size_t start = separator == std::wstring_view::npos ? 0 : separator + 1;
    folder_ = utf8_of(units.substr(0, start));
    current_ = utf8_of(units.substr(start));
    extracted_file() = cabinet_files::kNoFile;  // here, where memory may still be short
    reader_ = FDICreate([](ULONG bytes) { return cabinet_files::allocate(bytes); },
                        [](void* block) { cabinet_files::release(block); }, open_file, read_file,
                        write_file, close_file, seek_file, cpuUNKNOWN, &failure_);
    if (reader_ == nullptr) refuse(failure_.erfOper, name);
  }
  SetReader(const SetReader&) = delete;
  SetReader& operator=(const SetReader&) = delete;
  virtual ~SetReader() {
    if (reader_ != nullptr) FDIDestroy(reader_);
  }

  Long cabinets() const noexcept { return cabinets_; }

 protected:
  // One cabinet; false where the set has no other behind it.
  bool read_cabinet() {
    const Text path = current_path();
    if (folder_.size() > kLongestPart || current_.size() > kLongestPart) refuse(kNotFound, path);
    next_.clear();
    failure_ = {};
    missing_.clear();
    const BOOL ok = FDICopy(reader_, current_.data(), folder_.data(), 0, notify, nullptr, this);
    if (raised_) raise(*raised_);
    if (!missing_.empty()) refuse(refusal_, text_of_utf8(folder_ + missing_));
    if (ok == FALSE) refuse(failure_.erfOper, path);
    // The service may pass over bytes that could not be written.
    if (!incomplete_.empty()) refuse(kNoTarget, incomplete_);
    // Names of cabinets have no path, and a set has no circle.
    if (next_.find_first_of("\\/:") != std::string::npos) refuse(kCorrupt, path);
    ++cabinets_;
    seen_.push_back(current_);
    current_ = next_;
    return !current_.empty() && std::ranges::find(seen_, current_) == seen_.end();
  }
  Text current_path() const { return text_of_utf8(folder_ + current_); }

  // A file that begins in this cabinet: kNoFile ends the reading, 0 passes it over.
  virtual INT_PTR take(const CabinetEntry& entry) = 0;
  // A file that was taken has ended, whether with all its bytes or before.
  virtual void complete(INT_PTR file) = 0;

  Text incomplete_;  // one that ended before

 private:
  static INT_PTR DIAMONDAPI open_file(char* name, int flags, int) {
    return cabinet_files::open(name, flags);
  }
  static UINT DIAMONDAPI read_file(INT_PTR file, void* bytes, UINT count) {
    return cabinet_files::read(file, bytes, count);
  }
  static UINT DIAMONDAPI write_file(INT_PTR file, void* bytes, UINT count) {
    return cabinet_files::write(file, bytes, count);
  }
  static LONG DIAMONDAPI seek_file(INT_PTR file, LONG distance, int origin) {
    return cabinet_files::seek(file, distance, origin);
  }

  static CabinetEntry entry_of(const FDINOTIFICATION& news) {
    const std::string_view name(news.psz1);
    CabinetEntry entry;
    entry.name = text_of_utf8(name);
    entry.size_bytes = news.cb;
    entry.date = static_cast<Integer>(news.date);
    entry.time = static_cast<Integer>(news.time);
    entry.attributes = static_cast<Integer>(news.attribs & ~_A_NAME_IS_UTF);
    return entry;
  }

  static INT_PTR DIAMONDAPI notify(FDINOTIFICATIONTYPE type, PFDINOTIFICATION news) {
    constexpr INT_PTR kAbort = -1;
    auto& self = *static_cast<SetReader*>(news->pv);
    try {
      switch (type) {
        case fdintCABINET_INFO:
          if (self.next_.empty()) self.next_ = news->psz1;
          return 0;
        case fdintCOPY_FILE:
          return self.take(entry_of(*news));
        case fdintCLOSE_FILE_INFO:
          self.complete(news->hf);
          return TRUE;
        case fdintNEXT_CABINET:
          if (news->fdie == FDIERROR_NONE) return 0;
          // Asked again where the cabinet is missing or wrong.
          self.missing_ = news->psz1;
          self.refusal_ = news->fdie;
          return kAbort;
        default:
          return 0;
      }
    } catch (...) {
      self.raised_ = current_run_time_error();
      return kAbort;
    }
  }

  std::string folder_;
  std::string current_;
  std::string next_;
  std::string missing_;  // the next one, where it was refused
  Long refusal_ = FDIERROR_NONE;
  std::vector<std::string> seen_;
  Long cabinets_ = 0;
  ERF failure_{};
  HFDI reader_ = nullptr;
  std::optional<RunTimeError> raised_;
};

class Lister final : public SetReader {
 public:
  using SetReader::SetReader;

  CabinetList list() {
    while (read_cabinet() && is_there(current_path())) continue;
    list_.cabinets = cabinets();
    return std::move(list_);
  }

 private:
  static bool is_there(const Text& path) {
    return GetFileAttributesW(system_name(path).c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  INT_PTR take(const CabinetEntry& entry) override {
    list_.entries.push_back(entry);
    return 0;
  }
  void complete(INT_PTR) override {}

  CabinetList list_;
};

bool is_same_name(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

class Extractor final : public SetReader {
 public:
  Extractor(const Text& name, const std::vector<Text>& files, const Text& folder, bool with_folders)
      : SetReader(name),
        files_(files),
        is_found_(files.size()),
        folder_(folder),
        with_folders_(with_folders) {}
  ~Extractor() override {
    // The service may have closed it or not.
    if (extracted_file() != cabinet_files::kNoFile) close_file(extracted_file());
    if (!temporary_.empty()) DeleteFileW(system_name(temporary_).c_str());
  }

  void extract() {
    files::Path_Create(folder_);
    temporary_ = files::Get_TempFile(Variant(folder_), L"TMP");
    while (read_cabinet() && !is_all_found()) continue;
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (!is_found_[i]) {
        raise_cabinet_error(kNoSuchFile, concat({L"Il cabinet non contiene il file ", files_[i]}));
      }
    }
  }

 private:
  bool is_all_found() const {
    return !files_.empty() && std::ranges::find(is_found_, false) == is_found_.end();
  }

  bool is_wanted(const Text& name) {
    if (files_.empty()) return true;
    bool is_wanted = false;
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (!is_same_name(files_[i], name)) continue;
      is_found_[i] = true;
      is_wanted = true;
    }
    return is_wanted;
  }

  Text target_of(const Text& stored) const {
    Text part = stored;
    std::replace(part.data(), part.data() + part.size(), L'/', L'\\');
    if (!with_folders_) {
      const std::size_t separator = part.view().rfind(L'\\');
      if (separator != std::wstring_view::npos) part = Text(part.view().substr(separator + 1));
    }
    const auto units = part.view();
    if (!native::cpr::stays_in_folder(
            std::u16string_view(reinterpret_cast<const char16_t*>(units.data()), units.size()))) {
      raise_cabinet_error(kNoTarget, concat({L"Il nome ", stored,
                                             L" conduce fuori dalla cartella di destinazione."}));
    }
    return concat({folder_, part});
  }

  INT_PTR take(const CabinetEntry& entry) override {
    if (!is_wanted(entry.name)) return 0;
    const Text path = target_of(entry.name);
    const std::size_t separator = path.view().rfind(L'\\');
    if (separator != std::wstring_view::npos) {
      files::Path_Create(Text(path.view().substr(0, separator)));
    }
    const HANDLE file = CreateFileW(system_name(temporary_).c_str(), GENERIC_READ | GENERIC_WRITE,
                                    0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    capture_last_dll_error();
    if (file == INVALID_HANDLE_VALUE) refuse(kNoTarget, path);
    entry_ = entry;
    path_ = path;
    extracted_file() = reinterpret_cast<INT_PTR>(file);
    return extracted_file();
  }

  void complete(INT_PTR file) override {
    const HANDLE handle = cabinet_files::handle_of(file);
    LARGE_INTEGER size;
    const bool is_whole = GetFileSizeEx(handle, &size) != FALSE &&
                          size.QuadPart == static_cast<std::uint32_t>(entry_.size_bytes);
    FILETIME local;
    FILETIME time;
    if (DosDateTimeToFileTime(static_cast<WORD>(entry_.date), static_cast<WORD>(entry_.time),
                              &local) != FALSE &&
        LocalFileTimeToFileTime(&local, &time) != FALSE) {
      SetFileTime(handle, &time, nullptr, &time);
    }
    close_file(file);
    if (!is_whole) {
      incomplete_ = path_;
      return;
    }
    const auto path = system_name(path_);
    // A read-only file is replaced too.
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const BOOL moved =
        MoveFileExW(system_name(temporary_).c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
    capture_last_dll_error();
    if (moved == FALSE) refuse(kNoTarget, path_);
    constexpr DWORD kRestored = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    const DWORD attributes = static_cast<DWORD>(entry_.attributes) & kRestored;
    SetFileAttributesW(path.c_str(), attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes);
  }

  const std::vector<Text>& files_;
  std::vector<bool> is_found_;
  const Text& folder_;
  bool with_folders_;
  Text temporary_;      // gets a file's bytes, and then its name
  CabinetEntry entry_;  // that is being extracted
  Text path_;           // where to
};

}  // namespace

CabinetList list_cabinets(const Text& name) { return Lister(name).list(); }

void extract_cabinets(const Text& name, const std::vector<Text>& files, const Text& folder,
                      bool with_folders) {
  Extractor(name, files, folder, with_folders).extract();
}

}  // namespace qv::archive
