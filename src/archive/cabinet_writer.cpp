#include "archive/cabinet_writer.h"

#include <windows.h>
// fci.h needs windows.h before it.
#include <fci.h>
#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>

#include "archive/cabinet_files.h"
#include "files/path_text.h"
#include "native/cpr/archive_names.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::archive {
namespace {

constexpr ULONG kNoLimit_bytes = 0x7FFFFFFF;
constexpr Long kNoSource = FCIERR_OPEN_SRC;
constexpr Long kNoCabinet = FCIERR_CAB_FILE;
constexpr Long kNoRoom = 9;  // the service tells limits of the format by this number

// What every cabinet of a set has beside names and data: its head, the record of a folder, that of
// a file and that of a block.
constexpr std::size_t kFixed_bytes = 36 + 8 + 16 + 8;
constexpr std::uint64_t kMostCabinets = 65535;  // numbered in two bytes

constexpr std::array<const wchar_t*, 10> kFailures = {
    L"Errore nella creazione del cabinet.",
    L"Impossibile aprire il file ",
    L"Errore di lettura del file ",
    L"Memoria insufficiente.",
    L"Impossibile creare un file temporaneo.",
    L"Tipo di compressione sconosciuto.",
    L"Impossibile scrivere il cabinet.",
    L"Procedura interrotta dall'utente.",
    L"Errore nella libreria di compressione.",
    L"Il cabinet supera i limiti del formato.",
};

bool is_ascii(std::string_view text) {
  return std::ranges::all_of(text,
                             [](char unit) { return static_cast<unsigned char>(unit) < 128; });
}

// The name that a file is stored under.
Text stored_name(const Text& file) {
  const auto units = file.view();
  const bool stays = native::cpr::stays_in_folder(
      std::u16string_view(reinterpret_cast<const char16_t*>(units.data()), units.size()));
  if (!stays) return files::Get_FileName(file);
  Text name = file;
  std::replace(name.data(), name.data() + name.size(), L'/', L'\\');
  return name;
}

// "set.cab", "set2.cab", ...; "disk1.cab", "disk2.cab", ...
Text numbered(const Text& name, Long number) {
  if (number == 1) return name;
  const auto units = name.view();
  const std::size_t stem_end = std::min(units.rfind(L'.'), units.size());
  std::size_t digits = 0;
  while (digits < 6 && digits < stem_end && units[stem_end - digits - 1] >= L'0' &&
         units[stem_end - digits - 1] <= L'9') {
    ++digits;
  }
  Long first = 0;
  for (std::size_t i = stem_end - digits; i < stem_end; ++i) first = first * 10 + (units[i] - L'0');
  const Long next = digits == 0 ? number : first + number - 1;
  return concat({units.substr(0, stem_end - digits), decimal(next), units.substr(stem_end)});
}

template <std::size_t Size>
void fill(char (&field)[Size], const std::string& text) {
  if (text.size() >= Size) raise_cabinet_error(kNoCabinet, kFailures[kNoCabinet]);
  std::memcpy(field, text.c_str(), text.size() + 1);
}

class SetWriter {
 public:
  SetWriter(const Text& folder, const Text& name, ULONG largest_bytes)
      : folder_(folder), name_(name) {
    cabinet_.cb = largest_bytes;
    cabinet_.cbFolderThresh = kNoLimit_bytes;
    cabinet_.iCab = 1;
    cabinet_.setID = static_cast<USHORT>(GetTickCount());
    fill(cabinet_.szCabPath, utf8_of(folder));
    fill(cabinet_.szCab, utf8_of(name));
    cabinets_.emplace(utf8_of(folder) + utf8_of(name), false);
    writer_ = FCICreate(
        &failure_, [](PCCAB, char*, LONG, BOOL, void*) { return 0; }, allocate, release, open, read,
        write, close, seek, remove, temporary_name, &cabinet_, this);
    if (writer_ == nullptr) refuse(Text());
  }
  SetWriter(const SetWriter&) = delete;
  SetWriter& operator=(const SetWriter&) = delete;
  // A set that did not come to its end is removed.
  ~SetWriter() {
    if (writer_ != nullptr) FCIDestroy(writer_);
    if (is_done_) return;
    for (const auto& [path, is_made] : cabinets_) {
      if (is_made) DeleteFileW(system_name(text_of_utf8(path)).c_str());
    }
  }

  void add(const Text& file) {
    std::string source = utf8_of(file);
    std::string stored = utf8_of(stored_name(file));
    has_utf8_name_ = !is_ascii(stored);
    shortest_name_ = std::min(shortest_name_, stored.size());
    ++files_;
    if (FCIAddFile(writer_, source.data(), stored.data(), FALSE, next_cabinet, status, open_info,
                   tcompTYPE_MSZIP) == FALSE) {
      refuse(file);
    }
  }

  Long finish() {
    if (FCIFlushCabinet(writer_, FALSE, next_cabinet, status) == FALSE) refuse(Text());
    is_done_ = true;
    return count_;
  }

 private:
  [[noreturn]] void refuse(const Text& file) const {
    const auto code = has_no_room_
                          ? kNoRoom
                          : std::clamp(failure_.erfOper, 0, static_cast<int>(kFailures.size()) - 1);
    const bool names_file = code == FCIERR_OPEN_SRC || code == FCIERR_READ_SRC;
    raise_cabinet_error(code, names_file ? concat({kFailures[code], file}) : Text(kFailures[code]));
  }

  static SetWriter& self(void* pointer) noexcept { return *static_cast<SetWriter*>(pointer); }
  static void* DIAMONDAPI allocate(ULONG bytes) { return cabinet_files::allocate(bytes); }
  static void DIAMONDAPI release(void* block) { cabinet_files::release(block); }
  static INT_PTR DIAMONDAPI open(char* name, int flags, int, int* error, void* writer) {
    const INT_PTR file = cabinet_files::open(name, flags);
    if (file == cabinet_files::kNoFile) {
      *error = static_cast<int>(GetLastError());
    } else if ((flags & _O_CREAT) != 0) {
      const auto cabinet = self(writer).cabinets_.find(name);
      if (cabinet != self(writer).cabinets_.end()) cabinet->second = true;
    }
    return file;
  }
  static UINT DIAMONDAPI read(INT_PTR file, void* bytes, UINT count, int*, void*) {
    return cabinet_files::read(file, bytes, count);
  }
  static UINT DIAMONDAPI write(INT_PTR file, void* bytes, UINT count, int*, void*) {
    return cabinet_files::write(file, bytes, count);
  }
  static int DIAMONDAPI close(INT_PTR file, int*, void*) { return cabinet_files::close(file); }
  static LONG DIAMONDAPI seek(INT_PTR file, LONG distance, int origin, int*, void*) {
    // The service may go back to the start of contents that never came, and so have no file: those
    // of empty files behind one that has filled its cabinet.
    if (file == cabinet_files::kNoFile) return 0;
    return cabinet_files::seek(file, distance, origin);
  }
  static int DIAMONDAPI remove(char* name, int*, void*) {
    try {
      return DeleteFileW(system_name(text_of_utf8(name)).c_str()) != FALSE ? 0 : -1;
    } catch (...) {
      return -1;
    }
  }
  static BOOL DIAMONDAPI temporary_name(char* name, int size, void*) {
    try {
      const std::string path = utf8_of(files::Get_TempFile(Variant::null(), L"CAB"));
      if (path.empty() || path.size() >= static_cast<std::size_t>(size)) return FALSE;
      std::memcpy(name, path.c_str(), path.size() + 1);
      return TRUE;
    } catch (...) {
      return FALSE;
    }
  }
  static BOOL DIAMONDAPI next_cabinet(PCCAB cabinet, ULONG, void* writer) {
    try {
      const std::string name = utf8_of(numbered(self(writer).name_, ++self(writer).count_));
      if (!self(writer).can_go_on(name)) return FALSE;
      fill(cabinet->szCab, name);
      self(writer).cabinets_.emplace(utf8_of(self(writer).folder_) + name, false);
      return TRUE;
    } catch (...) {
      return FALSE;
    }
  }
  // The service itself would make cabinets without end that have no room for data.
  bool can_go_on(const std::string& next_name) noexcept {
    // Each name has a terminator, and an empty disk's name behind it.
    const std::size_t names_bytes = 2 * (next_name.size() + 2) + shortest_name_ + 1;
    // Each cabinet has a byte of data or a file that was in none before; packed data can be a
    // little larger than the files.
    const std::uint64_t most = std::min(kMostCabinets, 2 * (source_bytes_ + files_) + 16);
    has_no_room_ =
        cabinet_.cb <= kFixed_bytes + names_bytes || static_cast<std::uint64_t>(count_) > most;
    return !has_no_room_;
  }
  static LONG DIAMONDAPI status(UINT type, ULONG, ULONG estimated_bytes, void*) {
    return type == statusCabinet ? static_cast<LONG>(estimated_bytes) : 0;
  }
  static INT_PTR DIAMONDAPI open_info(char* name, USHORT* date, USHORT* time, USHORT* attributes,
                                      int* error, void* writer) {
    constexpr DWORD kStored = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                              FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    const INT_PTR file = cabinet_files::open(name, _O_RDONLY);
    BY_HANDLE_FILE_INFORMATION facts;
    FILETIME local;
    if (file == cabinet_files::kNoFile ||
        GetFileInformationByHandle(cabinet_files::handle_of(file), &facts) == FALSE ||
        FileTimeToLocalFileTime(&facts.ftLastWriteTime, &local) == FALSE) {
      *error = static_cast<int>(GetLastError());
      if (file != cabinet_files::kNoFile) cabinet_files::close(file);
      return cabinet_files::kNoFile;
    }
    self(writer).source_bytes_ += std::uint64_t{facts.nFileSizeHigh} << 32 | facts.nFileSizeLow;
    // Dates outside 1980 to 2107 have no packed form.
    if (FileTimeToDosDateTime(&local, date, time) == FALSE) *date = *time = 0;
    *attributes = static_cast<USHORT>(facts.dwFileAttributes & kStored);
    if (self(writer).has_utf8_name_) *attributes |= _A_NAME_IS_UTF;
    return file;
  }

  const Text& folder_;
  const Text& name_;
  ERF failure_{};
  CCAB cabinet_{};  // the service may go on using the caller's own
  HFCI writer_ = nullptr;
  Long count_ = 1;
  std::map<std::string, bool, std::less<>> cabinets_;  // the path of each, and whether it was made
  bool has_utf8_name_ = false;
  bool has_no_room_ = false;
  std::uint64_t files_ = 0;
  std::uint64_t source_bytes_ = 0;
  std::size_t shortest_name_ = CB_MAX_FILENAME;
  bool is_done_ = false;
};

}  // namespace

Long create_cabinets(const std::vector<Text>& files, const Text& folder, const Text& name,
                     Long largest_bytes) {
  if (files.empty()) raise_cabinet_error(kNoSource, L"Nessun file da comprimere.");
  const ULONG limit_bytes = largest_bytes < 1 ? kNoLimit_bytes : static_cast<ULONG>(largest_bytes);
  SetWriter writer(folder, name, limit_bytes);
  for (const Text& file : files) writer.add(file);
  return writer.finish();
}

}  // namespace qv::archive
