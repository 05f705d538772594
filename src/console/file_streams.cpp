#include "console/file_streams.h"

#include <string>
#include <system_error>
#include <utility>

namespace qv::console {

std::size_t InputFile::read(std::span<std::uint8_t> bytes) {
  stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return static_cast<std::size_t>(stream_.gcount());
}

bool InputFile::seek(std::int64_t position) {
  stream_.clear();
  return position > 0 && stream_.seekg(static_cast<std::streamoff>(position - 1));
}

OutputFile::OutputFile(Path path, std::uint64_t most_bytes)
    : path_(std::move(path)),
      stream_(path_, std::ios::binary | std::ios::trunc),
      most_bytes_(most_bytes) {}

OutputFile::~OutputFile() {
  if (is_kept_) return;
  stream_.close();
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

bool OutputFile::write(std::span<const std::uint8_t> bytes) {
  if (bytes.size() > most_bytes_ - written_bytes_) {
    is_full_ = true;
    return false;
  }
  written_bytes_ += bytes.size();
  return put(bytes);
}

bool OutputFile::write_at_start(std::span<const std::uint8_t> bytes) {
  return stream_.seekp(0) && put(bytes);
}

bool OutputFile::put(std::span<const std::uint8_t> bytes) {
  return static_cast<bool>(stream_.write(reinterpret_cast<const char*>(bytes.data()),
                                         static_cast<std::streamsize>(bytes.size())));
}

bool OutputFile::close() {
  stream_.close();
  return static_cast<bool>(stream_);
}

bool OutputFile::keep_as(const Path& path) {
  std::error_code error;
  std::filesystem::rename(path_, path, error);
  is_kept_ = !error;
  return is_kept_;
}

Path unused_name(const Path& folder) {
  for (unsigned number = 0;; ++number) {
    Path path = folder / ("qv-" + std::to_string(number) + ".tmp");
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    if (!std::filesystem::exists(status)) return path;
  }
}

}  // namespace qv::console
