#include "native/rtlib/path.h"

#include <algorithm>

#include "native/rtlib/c_string.h"

namespace qv::native::rtlib {
namespace {

template <class C>
bool is_separator(C character) {
  return character == C{'\\'} || character == C{'/'};
}

// Appends to a buffer of fixed size; what does not fit is left out.
template <class C>
class BoundedWriter {
 public:
  explicit BoundedWriter(std::span<C> out) : out_(out) {}

  void put(std::basic_string_view<C> text) {
    const std::size_t count = std::min(text.size(), out_.size() - length_);
    std::copy_n(text.begin(), count, out_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += count;
  }

  void put(C character) { put(std::basic_string_view<C>(&character, 1)); }

  std::size_t length() const { return length_; }

 private:
  std::span<C> out_;
  std::size_t length_ = 0;
};

}  // namespace

template <class C>
PathParts<C> split_path(std::basic_string_view<C> path) {
  path = c_text(path);
  const std::size_t drive = path.size() >= 2 && path[1] == C{':'} ? 2 : 0;
  const auto behind_dir = std::find_if(
      path.rbegin(), path.rend() - static_cast<std::ptrdiff_t>(drive), is_separator<C>);
  const auto name_at = static_cast<std::size_t>(path.rend() - behind_dir);
  const std::size_t dot = path.rfind(C{'.'});
  const std::size_t ext_at =
      dot == std::basic_string_view<C>::npos || dot < name_at ? path.size() : dot;
  return {path.substr(0, drive), path.substr(drive, std::min(name_at - drive, kMaxDir - 1)),
          path.substr(name_at, std::min(ext_at - name_at, kMaxFname - 1)),
          path.substr(ext_at, kMaxExt - 1)};
}

template <class C>
std::size_t make_path(const PathParts<C>& parts, std::span<C> out) {
  const auto drive = c_text(parts.drive);
  const auto dir = c_text(parts.dir).substr(0, kMaxDir - 1);
  const auto fname = c_text(parts.fname).substr(0, kMaxFname - 1);
  const auto ext = c_text(parts.ext).substr(0, kMaxExt - 1);
  BoundedWriter<C> writer(out);
  if (!drive.empty()) {
    writer.put(drive.front());
    writer.put(C{':'});
  }
  if (!dir.empty()) {
    writer.put(dir);
    if (!is_separator(dir.back())) writer.put(C{'\\'});
  }
  writer.put(fname);
  if (!ext.empty()) {
    if (ext.front() != C{'.'}) writer.put(C{'.'});
    writer.put(ext);
  }
  return writer.length();
}

template PathParts<char> split_path(std::string_view);
template PathParts<char16_t> split_path(std::u16string_view);
template std::size_t make_path(const PathParts<char>&, std::span<char>);
template std::size_t make_path(const PathParts<char16_t>&, std::span<char16_t>);

}  // namespace qv::native::rtlib
