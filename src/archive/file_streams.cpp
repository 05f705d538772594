#include "archive/file_streams.h"

#include <algorithm>
#include <cmath>

#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"

namespace qv::archive {

void FileStream::raise_failure() const {
  if (failure_) raise(*failure_);
  raise(kInputPastEnd);
}

std::size_t FileSource::read(std::span<std::uint8_t> bytes) {
  try {
    return file_numbers::get(number(), bytes);
  } catch (...) {
    keep_failure();
    return 0;
  }
}

bool FileSink::write(std::span<const std::uint8_t> bytes) {
  try {
    file_numbers::put(number(), bytes);
    return true;
  } catch (...) {
    keep_failure();
    return false;
  }
}

Long percentage(std::uint64_t part, std::uint64_t whole) noexcept {
  constexpr double kAll = 100;
  if (whole == 0) return static_cast<Long>(kAll);
  const double share = static_cast<double>(part) / static_cast<double>(whole) * kAll;
  return static_cast<Long>(std::nearbyint(std::min(share, kAll)));
}

}  // namespace qv::archive
