// Files of the system as the streams of the portable core.
#pragma once

#include <cstdint>
#include <fstream>

#include "console/text.h"
#include "native/cpr/byte_stream.h"

namespace qv::console {

class InputFile final : public native::cpr::ByteSource {
 public:
  explicit InputFile(const Path& path) : stream_(path, std::ios::binary) {}

  bool is_open() const { return stream_.is_open(); }
  std::size_t read(std::span<std::uint8_t> bytes) override;
  // The first byte is 1.
  bool seek(std::int64_t position);
  std::int64_t position() { return static_cast<std::int64_t>(stream_.tellg()) + 1; }

 private:
  std::ifstream stream_;
};

// A file that is made anew, removed at the end unless it was kept, and never larger than a limit.
class OutputFile final : public native::cpr::ByteSink {
 public:
  explicit OutputFile(Path path, std::uint64_t most_bytes = UINT64_MAX);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() override;

  const Path& path() const { return path_; }
  bool is_open() const { return stream_.is_open(); }
  bool write(std::span<const std::uint8_t> bytes) override;
  // In place of as many bytes that were written first; nothing can be written behind them.
  bool write_at_start(std::span<const std::uint8_t> bytes);
  // The place of the next byte, from 1.
  std::int64_t position() const { return static_cast<std::int64_t>(written_bytes_) + 1; }
  bool is_full() const { return is_full_; }
  // Whether all that was written has arrived.
  bool close();
  // Gives the file, which is closed, its name, in place of another file that has it.
  bool keep_as(const Path& path);

 private:
  bool put(std::span<const std::uint8_t> bytes);

  Path path_;
  std::ofstream stream_;
  std::uint64_t most_bytes_;
  std::uint64_t written_bytes_ = 0;
  bool is_full_ = false;
  bool is_kept_ = false;
};

// A name in the folder that no file has.
Path unused_name(const Path& folder);

}  // namespace qv::console
