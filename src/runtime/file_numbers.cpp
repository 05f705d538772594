#include "runtime/file_numbers.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "automation/bytes.h"
#include "automation/run_time_error.h"
#include "automation/thread_state.h"
#include "runtime/file_errors.h"
#include "runtime/system_name.h"

namespace qv::file_numbers {
namespace {

constexpr Long kBadFileMode = 54;
constexpr Long kBadRecordLength = 59;
constexpr Long kBadRecordNumber = 63;

class SystemFile {
 public:
  explicit SystemFile(HANDLE handle) noexcept : handle_(handle) {}
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;
  ~SystemFile() {
    if (is_open()) CloseHandle(handle_);
  }
  bool is_open() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

// Which file of the system a handle leads to. Pipes and devices have no identity, and no two of
// them are the same file.
struct Identity {
  DWORD volume;
  std::uint64_t file;
  friend bool operator==(const Identity&, const Identity&) = default;
};

std::optional<Identity> identity_of(const SystemFile& file) noexcept {
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileInformationByHandle(file.get(), &information) == FALSE) return std::nullopt;
  return Identity{information.dwVolumeSerialNumber,
                  std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
}

// Asking without any access is granted whatever others have locked.
std::optional<Identity> identity_of(const Text& path) noexcept {
  const SystemFile file(CreateFileW(path.c_str(), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return identity_of(file);
}

bool is_text_output(const OpenOptions& options) noexcept {
  return options.mode == Mode::kOutput || options.mode == Mode::kAppend;
}

class OpenFile {
 public:
  OpenFile(const Text& path, const OpenOptions& options);

  bool is(Mode mode) const noexcept { return options_.mode == mode; }
  bool can_be_read() const noexcept {
    return is(Mode::kInput) || (is(Mode::kBinary) && options_.access != Access::kWrite);
  }
  bool can_be_printed() const noexcept { return is_text_output(options_); }
  bool can_be_put() const noexcept { return is(Mode::kBinary) && options_.access != Access::kRead; }
  const std::optional<Identity>& identity() const noexcept { return identity_; }

  std::int64_t length_bytes();
  // From 0.
  std::int64_t offset() noexcept { return offset_ + static_cast<std::int64_t>(gathered_.size()); }
  void seek(std::int64_t offset);
  std::size_t read(std::span<std::uint8_t> out);
  void write(std::span<const std::uint8_t> bytes);
  void gather(std::wstring_view text);
  void flush();
  void cut();

 private:
  OpenOptions options_;
  SystemFile file_;
  std::optional<Identity> identity_;
  std::int64_t offset_ = 0;             // of what is gathered, where something is
  std::vector<std::uint8_t> gathered_;  // printed text that has not gone to the file
};

DWORD access_of(const OpenOptions& options) noexcept {
  if (options.mode == Mode::kInput) return GENERIC_READ;
  if (options.mode != Mode::kBinary) return GENERIC_WRITE;
  switch (options.access) {
    case Access::kRead:
      return GENERIC_READ;
    case Access::kWrite:
      return GENERIC_WRITE;
    default:
      return GENERIC_READ | GENERIC_WRITE;
  }
}

DWORD sharing_of(const OpenOptions& options) noexcept {
  switch (options.lock) {
    case Lock::kRead:
      return FILE_SHARE_WRITE;
    case Lock::kWrite:
      return FILE_SHARE_READ;
    case Lock::kReadWrite:
      return 0;
    case Lock::kShared:
      return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default:
      break;
  }
  return is_text_output(options) ? FILE_SHARE_READ : FILE_SHARE_READ | FILE_SHARE_WRITE;
}

DWORD disposition_of(const OpenOptions& options) noexcept {
  const bool must_exist = options.mode == Mode::kInput ||
                          (options.mode == Mode::kBinary && options.access == Access::kRead);
  return must_exist ? OPEN_EXISTING : OPEN_ALWAYS;
}

OpenFile::OpenFile(const Text& path, const OpenOptions& options)
    : options_(options),
      file_(CreateFileW(path.c_str(), access_of(options), sharing_of(options), nullptr,
                        disposition_of(options), FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (!file_.is_open()) raise_file_error(path.c_str());
  identity_ = identity_of(file_);
  if (is(Mode::kAppend)) offset_ = length_bytes();
  if (is(Mode::kOutput)) cut();
}

std::int64_t OpenFile::length_bytes() {
  LARGE_INTEGER length;
  if (GetFileSizeEx(file_.get(), &length) == FALSE) raise_file_error();
  return std::max(length.QuadPart, gathered_.empty() ? 0 : offset());
}

void OpenFile::seek(std::int64_t offset) {
  flush();
  offset_ = offset;
}

OVERLAPPED place_at(std::int64_t offset) noexcept {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

constexpr std::size_t kMostAtOnce_bytes = 1U << 30;

std::size_t OpenFile::read(std::span<std::uint8_t> out) {
  std::size_t total_bytes = 0;
  while (total_bytes < out.size()) {
    const std::size_t wanted = std::min(out.size() - total_bytes, kMostAtOnce_bytes);
    OVERLAPPED place = place_at(offset_);
    DWORD done_bytes = 0;
    const BOOL ok = ReadFile(file_.get(), out.data() + total_bytes, static_cast<DWORD>(wanted),
                             &done_bytes, &place);
    if (ok == FALSE && GetLastError() != ERROR_HANDLE_EOF) raise_file_error();
    if (ok == FALSE || done_bytes == 0) break;
    total_bytes += done_bytes;
    offset_ += done_bytes;
  }
  return total_bytes;
}

void OpenFile::write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const std::size_t wanted = std::min(bytes.size(), kMostAtOnce_bytes);
    OVERLAPPED place = place_at(offset_);
    DWORD done_bytes = 0;
    if (WriteFile(file_.get(), bytes.data(), static_cast<DWORD>(wanted), &done_bytes, &place) ==
        FALSE) {
      raise_file_error();
    }
    // A full disk may take a part and say nothing.
    if (done_bytes == 0) raise(kDiskFull);
    offset_ += done_bytes;
    bytes = bytes.subspan(done_bytes);
  }
}

void OpenFile::gather(std::wstring_view text) {
  const std::size_t before = gathered_.size();
  gathered_.resize(before + text.size());
  get_bytes(text, gathered_.data() + before);
  if (gathered_.size() >= static_cast<std::size_t>(options_.record_length_bytes)) flush();
}

void OpenFile::flush() {
  // Emptied first: what could not be written once is not tried again by the close.
  const std::vector<std::uint8_t> bytes = std::exchange(gathered_, {});
  write(bytes);
}

void OpenFile::cut() {
  if (SetEndOfFile(file_.get()) == FALSE) raise_file_error();
}

struct OpenFiles {
  std::array<std::unique_ptr<OpenFile>, kLast> by_number;  // index 0 is number 1
};

std::unique_ptr<OpenFile>& slot(Long number) {
  if (number < kFirst || number > kLast) raise(kBadFileNameOrNumber);
  return per_thread<OpenFiles>().by_number[static_cast<std::size_t>(number - kFirst)];
}

OpenFile& file(Long number) {
  const auto& found = slot(number);
  if (!found) raise(kBadFileNameOrNumber);
  return *found;
}

bool is_open_already(const Text& path) {
  const auto wanted = identity_of(path);
  return wanted && std::ranges::any_of(per_thread<OpenFiles>().by_number, [&](const auto& other) {
           return other != nullptr && other->identity() == wanted;
         });
}

}  // namespace

Long free_file() {
  const auto& files = per_thread<OpenFiles>().by_number;
  const auto found = std::find(files.begin(), files.end(), nullptr);
  if (found == files.end()) raise(kTooManyFiles);
  return kFirst + static_cast<Long>(found - files.begin());
}

void open(Long number, std::wstring_view name, const OpenOptions& options) {
  auto& target = slot(number);
  if (target) raise(kFileAlreadyOpen);
  if (options.record_length_bytes < 1 || options.record_length_bytes > kMostRecordLength_bytes) {
    raise(kBadRecordLength);
  }
  const Text path = system_name(name);
  if (is_text_output(options) && is_open_already(path)) raise(kFileAlreadyOpen);
  target = std::make_unique<OpenFile>(path, options);
}

bool is_open(Long number) { return slot(number) != nullptr; }

void close(Long number) {
  const auto closing = std::move(slot(number));
  if (closing) closing->flush();
}

std::int64_t length_bytes(Long number) { return file(number).length_bytes(); }

std::int64_t position(Long number) { return file(number).offset() + 1; }

void seek(Long number, std::int64_t position) {
  OpenFile& target = file(number);
  if (position < 1) raise(kBadRecordNumber);
  target.seek(position - 1);
}

std::size_t get(Long number, std::span<std::uint8_t> out) {
  OpenFile& source = file(number);
  if (!source.can_be_read()) raise(kBadFileMode);
  return source.read(out);
}

void get_all(Long number, std::span<std::uint8_t> out) {
  if (get(number, out) != out.size()) raise(kInputPastEnd);
}

void put(Long number, std::span<const std::uint8_t> bytes) {
  OpenFile& target = file(number);
  if (!target.can_be_put()) raise(kBadFileMode);
  target.write(bytes);
}

void print(Long number, std::wstring_view text) {
  OpenFile& target = file(number);
  if (!target.can_be_printed()) raise(kBadFileMode);
  target.gather(text);
}

}  // namespace qv::file_numbers
