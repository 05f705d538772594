#include "archive/archive_writer.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "archive/file_streams.h"
#include "automation/bytes.h"
#include "constants.h"
#include "datetime/file_times.h"
#include "files/file_operations.h"
#include "files/file_versions.h"
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

constexpr Long kCancelled = kFirstApplicationError + 10;
constexpr Long kNoVersion = kFirstApplicationError;
constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<Long>::max());

// A step that failed and has told the error state: what there is to do is to clean up.
struct Told {};

[[noreturn]] void refuse_name(const Text& name) {
  raise({.number = kFirstApplicationError,
         .description = concat({L"Il nome ", name, L" non può stare in un archivio."})});
}

// The bytes of a name as the head has it: none is stored that would come back as another.
std::string stored_name(const Text& name, bool (*fits)(std::string_view)) {
  const auto bytes = bytes_of_text(name);
  std::string stored(bytes.begin(), bytes.end());
  if (!fits(stored) || !(text_of_bytes(bytes) == name)) refuse_name(name);
  return stored;
}

Text absolute(const Text& name) {
  Text path;
  if (files::FullPath(path, name)) refuse_name(name);
  return path;
}

std::vector<Text> names_of(const Variant& source) {
  if (!source.is_array()) return {source.to_text()};
  SAFEARRAY* const array = source.array();
  if (array == nullptr || SafeArrayGetDim(array) != 1) raise(kSubscriptOutOfRange);
  std::vector<Text> names;
  const auto take = [&](const auto& elements) {
    for (const auto& element : elements) names.push_back(Variant(element).to_text());
  };
  switch (source.type()) {
    case VT_ARRAY | VT_BSTR:
      take(LockedElements<Text>(array));
      break;
    case VT_ARRAY | VT_VARIANT:
      take(LockedElements<Variant>(array));
      break;
    default:
      raise(kTypeMismatch);
  }
  if (names.empty()) raise(kSubscriptOutOfRange);
  return names;
}

bool is_same_name(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// A file that is to be read and written at once would be lost.
void keep_target_out_of(const std::vector<Text>& sources, const Text& target) {
  Text target_path;
  if (files::FullPath(target_path, target)) return;
  for (const Text& source : sources) {
    Text path;
    if (files::FullPath(path, source) || !is_same_name(path, target_path)) continue;
    raise({.number = kPermissionDenied,
           .description = concat({L"Errore di accesso al file ", path})});
  }
}

[[noreturn]] void refuse_size(const Text& name) {
  raise({.number = kOverflow, .description = concat({L"Il file ", name, L" supera i 2 GB."})});
}

Long file_length(const Text& name) {
  WIN32_FILE_ATTRIBUTE_DATA facts{};
  if (GetFileAttributesExW(system_name(name).c_str(), GetFileExInfoStandard, &facts) == FALSE) {
    raise_file_error(name.c_str());
  }
  const auto length = std::uint64_t{facts.nFileSizeHigh} << 32 | facts.nFileSizeLow;
  if (length > kLargest) refuse_size(name);
  return static_cast<Long>(length);
}

void read_version(const Text& name, cpr::ArchiveEntry& entry) {
  Long major = 0;
  Long minor = 0;
  Long revision = 0;
  const bool failed =
      files::GetFileVersion(name, major, minor, revision, entry.major_version, entry.minor_version);
  if (!failed) return;
  if (frame::Last_Error() != kNoVersion) throw Told();
  entry.major_version = entry.minor_version = 0;
}

void read_facts(const Text& name, cpr::ArchiveEntry& entry) {
  Variant created{Date()};
  Variant accessed = Variant::missing();
  Variant changed{Date()};
  if (datetime::Get_FileTime(Variant(name), created, accessed, changed) != 0) throw Told();
  entry.created = created.to_date().days;
  entry.changed = changed.to_date().days;
  entry.size_bytes = file_length(name);
  read_version(name, entry);
  entry.attributes = get_attr(name);
  entry.blocks = cpr::divided_into_blocks(entry.size_bytes);
}

class ArchiveWriter {
 public:
  ArchiveWriter(const Text& target, const ZipReceiver& receiver)
      : target_(target), receiver_(receiver) {}
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;
  ~ArchiveWriter() { close(); }

  void write(const std::vector<Text>& sources, const Text& ParentDir, Long Flags) {
    Long record_length = 0;
    const Long refusal =
        frame::File_OpenRetry(target_, O_RDWR | O_CREAT | O_TRUNC | O_BINARY, SH_DENYNO,
                              record_length, archive_, kPermissionDenied);
    if (refusal != 0) {
      raise({.number = refusal, .description = concat({L"Impossibile creare il file ", target_})});
    }
    head_.flags = Flags;
    if (!ParentDir.empty()) {
      head_.parent_directory =
          stored_name(files::Full_Path(absolute(ParentDir)), cpr::parent_directory_fits);
    }
    for (const Text& source : sources) {
      paths_.push_back(absolute(source));
      head_.entries.emplace_back().name = stored_name(paths_.back(), cpr::entry_name_fits);
    }
    for (std::size_t i = 0; i < paths_.size(); ++i) read_facts(paths_[i], head_.entries[i]);
    if (cpr::first_data_position(head_) > kLargest) refuse_size(target_);
    write_head();
    for (std::size_t i = 0; i < paths_.size(); ++i) write_entry(i);
    file_numbers::seek(archive_, 1);
    write_head();
  }

  void close() {
    frame::File_CloseRetry(archive_);
    frame::File_CloseRetry(source_);
  }

 private:
  void write_head() {
    // Every name has been found to fit.
    file_numbers::put(archive_, cpr::encode_head(head_).value());
  }

  void tell(std::size_t index, Long percent) {
    if (!receiver_) return;
    const bool goes_on = receiver_(static_cast<Long>(index) + 1, percent);
    do_events();
    if (!goes_on) {
      raise({.number = kCancelled, .description = L"Procedura interrotta dall'utente."});
    }
  }

  void write_entry(std::size_t index) {
    cpr::ArchiveEntry& entry = head_.entries[index];
    tell(index, 0);
    if (!entry.is_directory()) write_contents(index);
    entry.next_position = position();
    frame::File_CloseRetry(source_);
  }

  // Behind what has been written.
  Long position() const {
    const std::int64_t position = file_numbers::position(archive_);
    if (static_cast<std::uint64_t>(position) > kLargest) refuse_size(target_);
    return static_cast<Long>(position);
  }

  void write_contents(std::size_t index) {
    cpr::ArchiveEntry& entry = head_.entries[index];
    Long record_length = 0;
    const Long refusal = frame::File_OpenRetry(paths_[index], O_RDONLY | O_BINARY, SH_DENYWR,
                                               record_length, source_, kPermissionDenied);
    if (refusal != 0) refuse_access(index, refusal);
    FileSource file(source_);
    FileSink archive(archive_);
    const auto progress = [&](std::uint64_t read_bytes) {
      position();
      tell(index, percentage(read_bytes, static_cast<std::uint64_t>(entry.size_bytes)));
      return true;
    };
    switch (cpr::pack_entry(file, archive, entry, cpr::DataType::binary, cpr::Effort::standard,
                            progress)) {
      case cpr::EntryCode::source_ended:
        file.raise_failure();
      case cpr::EntryCode::sink_failed:
        archive.raise_failure();
      default:
        break;
    }
  }

  [[noreturn]] void refuse_access(std::size_t index, Long number) const {
    raise(
        {.number = number, .description = concat({L"Errore di accesso al file ", paths_[index]})});
  }

  const Text& target_;
  const ZipReceiver& receiver_;
  cpr::ArchiveHead head_;
  std::vector<Text> paths_;  // of the entries
  Long archive_ = 0;
  Long source_ = 0;
};

// A pattern names no archive, and would delete whatever it matches.
bool is_pattern(const Text& name) {
  return name.view().find_first_of(L"*?") != std::wstring_view::npos;
}

void remove_archive(const Text& target) {
  frame::Error_Lock();
  if (!is_pattern(target)) files::File_Kill(target);
  frame::Error_Unlock();
}

}  // namespace

Boolean zip_files(const Variant& Source, const Text& Target, const Text& ParentDir, Long Flags,
                  const ZipReceiver& receiver) {
  // The application may change its variable in an event.
  const Text target = Target;
  bool has_begun = false;
  const Boolean failed = frame::handled(L"Module.FileZip", frame::kTakeError, True, [&] {
    const auto sources = names_of(Source);
    keep_target_out_of(sources, target);
    has_begun = true;
    try {
      ArchiveWriter(target, receiver).write(sources, ParentDir, Flags);
      return False;
    } catch (const Told&) {
      return True;
    }
  });
  if (failed && has_begun) remove_archive(target);
  return failed;
}

Boolean FileZip(const Variant& Source, const Text& Target, const Text& ParentDir, Long Flags) {
  return zip_files(Source, Target, ParentDir, Flags, nullptr);
}

}  // namespace qv::archive
