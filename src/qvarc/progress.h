// A progress bar on the error stream, one line that is drawn over again.
#pragma once

#include <cstdint>
#include <string>

namespace qv::qvarc {

class Progress {
 public:
  Progress(bool is_shown, std::uint64_t total_bytes)
      : is_shown_(is_shown), total_bytes_(total_bytes) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  // A file's turn; `name` is what the user sees.
  void begin(const std::string& name);
  // Of this file so far.
  void advance_to(std::uint64_t bytes);
  // The file counts as whole from now on, whatever was done of it.
  void end(std::uint64_t file_bytes);
  // Takes the line away, for a message in its place.
  void clear();

 private:
  void draw();

  bool is_shown_;
  std::uint64_t total_bytes_;
  std::uint64_t done_bytes_ = 0;  // of the files before
  std::uint64_t file_bytes_ = 0;
  std::string name_;
  std::string line_;  // as it stands on the terminal
};

}  // namespace qv::qvarc
