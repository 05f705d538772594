#include "qvarc/opened_archive.h"

#include <algorithm>

#include "qvarc/names.h"

namespace qv::qvarc {
namespace {

namespace cpr = native::cpr;

char folded(char byte) {
  if (byte == '/') return '\\';
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

// For comparison: one separator, letters of ASCII in one case, none of the former at the end.
std::string folded(std::string_view text) {
  std::string result;
  for (const char byte : text) result += folded(byte);
  while (result.ends_with('\\')) result.pop_back();
  return result;
}

bool means(const std::string& wanted, const std::string& name) {
  return name.starts_with(wanted) && (name.size() == wanted.size() || name[wanted.size()] == '\\');
}

}  // namespace

OpenedArchive::OpenedArchive(const Path& path) : file_(path) {
  const std::string name = "\"" + text_of_path(path) + "\"";
  if (!file_.is_open()) throw Failure(name + " can't be opened");
  cpr::DecodedHead decoded = cpr::decode_head(file_);
  switch (decoded.code) {
    case cpr::HeadCode::done:
      break;
    case cpr::HeadCode::no_archive:
      throw Failure(name + " is no archive");
    case cpr::HeadCode::later_version:
      throw Failure(name + " was made by a later version of the library");
    case cpr::HeadCode::damaged:
      throw Failure(name + " is damaged: its head can't be read");
  }
  head_ = std::move(decoded.head);
}

std::string_view OpenedArchive::shown_name(const cpr::ArchiveEntry& entry) const {
  return below(entry.name, head_.parent_directory).value_or(entry.name);
}

std::vector<PlacedEntry> OpenedArchive::select(const std::vector<std::string>& names) const {
  std::vector<std::string> wanted;
  for (const std::string& name : names) {
    // In the bytes that entries have.
    const auto stored = stored_text(name);
    if (!stored) throw Failure("the archive has no entry \"" + name + "\"");
    wanted.push_back(folded(*stored));
  }
  std::vector<bool> is_found(wanted.size());
  std::vector<PlacedEntry> selected;
  auto position = static_cast<std::int64_t>(cpr::first_data_position(head_));
  for (const cpr::ArchiveEntry& entry : head_.entries) {
    bool is_meant = wanted.empty();
    const std::string whole = folded(entry.name);
    const std::string shown = folded(shown_name(entry));
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (!means(wanted[i], whole) && !means(wanted[i], shown)) continue;
      is_meant = true;
      is_found[i] = true;
    }
    if (is_meant) selected.push_back({&entry, position});
    position = entry.next_position;
  }
  const auto missing = std::ranges::find(is_found, false);
  if (missing != is_found.end()) {
    throw Failure("the archive has no entry \"" +
                  names[static_cast<std::size_t>(missing - is_found.begin())] + "\"");
  }
  return selected;
}

}  // namespace qv::qvarc
