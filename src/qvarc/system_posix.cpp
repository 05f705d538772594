#include <fcntl.h>
#include <sys/stat.h>

#include <ctime>

#include "qvarc/dates.h"
#include "qvarc/system.h"

namespace qv::qvarc {
namespace {

constexpr std::int32_t kReadOnly = 1;
constexpr std::int32_t kDirectory = 16;
constexpr std::int32_t kArchive = 32;
constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

double local_date(std::time_t time) {
  std::tm fields{};
  if (localtime_r(&time, &fields) == nullptr) return 0;
  return date_of(std::int64_t{time} + fields.tm_gmtoff);
}

std::optional<std::time_t> time_of(double date) {
  const auto seconds = local_seconds_of(date);
  if (!seconds) return std::nullopt;
  // The fields of the local time, read as if they were universal time.
  const auto as_universal = static_cast<std::time_t>(*seconds);
  std::tm fields{};
  if (gmtime_r(&as_universal, &fields) == nullptr) return std::nullopt;
  fields.tm_isdst = -1;
  return std::mktime(&fields);
}

}  // namespace

std::optional<FileFacts> facts_of(const Path& path) {
  struct statx facts {};
  if (statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0) {
    return std::nullopt;
  }
  const bool is_folder = S_ISDIR(facts.stx_mode);
  if (!is_folder && !S_ISREG(facts.stx_mode)) return std::nullopt;
  const bool has_birth = (facts.stx_mask & STATX_BTIME) != 0;
  FileFacts result;
  result.size_bytes = is_folder ? 0 : facts.stx_size;
  result.changed = local_date(facts.stx_mtime.tv_sec);
  result.created = has_birth ? local_date(facts.stx_btime.tv_sec) : result.changed;
  result.attributes = (is_folder ? kDirectory : kArchive) |
                      ((facts.stx_mode & kAnyWrite) == 0 ? kReadOnly : std::int32_t{});
  return result;
}

bool set_dates(const Path& path, double, double changed) {
  const auto time = time_of(changed);
  if (!time) return false;
  const timespec times[2] = {{0, UTIME_OMIT}, {*time, 0}};
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

bool set_attributes(const Path& path, std::int32_t attributes) {
  if ((attributes & kReadOnly) == 0) return true;
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 &&
         chmod(path.c_str(), facts.st_mode & 07777 & ~kAnyWrite) == 0;
}

}  // namespace qv::qvarc
