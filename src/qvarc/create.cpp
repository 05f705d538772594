#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "console/file_streams.h"
#include "native/cpr/archive_data.h"
#include "native/cpr/archive_names.h"
#include "native/cpr/archive_records.h"
#include "qvarc/commands.h"
#include "qvarc/names.h"
#include "qvarc/progress.h"

namespace qv::qvarc {
namespace {

namespace cpr = native::cpr;
namespace fs = std::filesystem;

// Positions behind the last byte are counted from 1 in signed fields.
constexpr std::uint64_t kMostArchive_bytes = std::numeric_limits<std::int32_t>::max() - 1;
constexpr std::uint64_t kMostFile_bytes = std::numeric_limits<std::int32_t>::max();

std::string quoted(const Path& path) { return "\"" + text_of_path(path) + "\""; }

// Without "." and "..", and without a separator at its end unless it is a root.
Path whole_path(const Path& path) {
  const Path whole = fs::absolute(path).lexically_normal();
  return whole.has_filename() ? whole : whole.parent_path();
}

// The deepest folder that both lie in or are; empty where they have no common root.
Path common_folder(const Path& a, const Path& b) {
  Path common;
  auto one = a.begin();
  auto other = b.begin();
  for (; one != a.end() && other != b.end() && *one == *other; ++one, ++other) common /= *one;
  return common;
}

bool lies_in(const Path& path, const Path& folder) { return common_folder(path, folder) == folder; }

struct Source {
  Path path;
  cpr::ArchiveEntry entry;
};

class Gatherer {
 public:
  explicit Gatherer(const Options& options) : archive_(whole_path(options.archive)) {
    for (const std::string& name : options.names) {
      roots_.push_back(whole_path(path_of_text(name)));
    }
    parent_ = options.parent.empty() ? parent_of_all() : whole_path(options.parent);
    for (const Path& root : roots_) {
      if (!lies_in(root, parent_)) {
        throw Failure(quoted(root) + " does not lie in " + quoted(parent_));
      }
    }
  }

  std::vector<Source> gather() {
    for (const Path& root : roots_) take(root, true);
    if (sources_.empty()) throw Failure("there is nothing to pack");
    return std::move(sources_);
  }

  // As the archive's head has it: with its final separator.
  std::string stored_parent() const {
    if (parent_.empty()) return {};
    std::string stored = name_of(parent_);
    if (!stored.ends_with('\\')) stored += '\\';
    if (!cpr::parent_directory_fits(stored)) refuse_name(parent_, "is too long for an archive");
    return stored;
  }

 private:
  [[noreturn]] static void refuse_name(const Path& path, const char* reason) {
    throw Failure("the name " + quoted(path) + " " + reason);
  }

  static std::string name_of(const Path& path) {
    auto stored = stored_name(path);
    if (!stored) refuse_name(path, "has characters that an archive has not");
    return *std::move(stored);
  }

  Path parent_of_all() const {
    Path common = roots_.front().parent_path();
    for (const Path& root : roots_) common = common_folder(common, root.parent_path());
    return common;
  }

  void take(const Path& path, bool is_named) {
    // The archive that is about to be replaced is no part of the new one.
    if (path == archive_) return;
    const auto facts = facts_of(path);
    if (!facts && is_named)
      throw Failure(quoted(path) + " is not there, or neither file nor folder");
    const bool is_folder = fs::is_directory(path);
    // A link to a folder may lead back to where it lies.
    if (!facts || (is_folder && !is_named && fs::is_symlink(path))) {
      write(Stream::error, "qvarc: " + quoted(path) + " left out: neither file nor folder\n");
      return;
    }
    if (path != parent_) add(path, *facts);
    if (is_folder) take_contents(path);
  }

  void take_contents(const Path& folder) {
    std::vector<Path> paths;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
      paths.push_back(entry->path());
    }
    if (error) throw Failure("the folder " + quoted(folder) + " can't be read");
    std::ranges::sort(paths);
    for (const Path& path : paths) take(path, false);
  }

  void add(const Path& path, const FileFacts& facts) {
    if (facts.size_bytes > kMostFile_bytes) {
      throw Failure(quoted(path) + " has more than 2 GB, which an archive can't tell");
    }
    Source source{path, {}};
    cpr::ArchiveEntry& entry = source.entry;
    entry.name = name_of(path);
    if (!cpr::entry_name_fits(entry.name)) refuse_name(path, "is too long for an archive");
    if (!cpr::stays_in_folder(std::string_view(entry.name).substr(stored_parent().size()))) {
      refuse_name(path, "could not be restored from an archive");
    }
    entry.size_bytes = static_cast<std::int32_t>(facts.size_bytes);
    entry.major_version = facts.major_version;
    entry.minor_version = facts.minor_version;
    entry.created = facts.created;
    entry.changed = facts.changed;
    entry.attributes = facts.attributes;
    entry.blocks = cpr::divided_into_blocks(entry.size_bytes);
    sources_.push_back(std::move(source));
  }

  Path archive_;
  std::vector<Path> roots_;
  Path parent_;
  std::vector<Source> sources_;
};

class Packer {
 public:
  Packer(const Options& options, std::vector<Source> sources, std::string parent)
      : options_(options),
        sources_(std::move(sources)),
        file_(console::unused_name(whole_path(options.archive).parent_path()), kMostArchive_bytes),
        progress_(options.shows_progress, total_bytes()) {
    head_.flags = kStorePath | kKeepAttributes;
    head_.parent_directory = std::move(parent);
    for (const Source& source : sources_) head_.entries.push_back(source.entry);
  }

  void pack() {
    if (cpr::first_data_position(head_) > kMostArchive_bytes) refuse_size();
    if (!file_.is_open()) throw Failure("no file can be made beside " + quoted(options_.archive));
    if (!file_.write(cpr::encode_head(head_).value())) refuse_writing();
    for (std::size_t i = 0; i < sources_.size(); ++i) pack_entry(sources_[i], head_.entries[i]);
    if (!file_.write_at_start(cpr::encode_head(head_).value()) || !file_.close()) refuse_writing();
    if (!file_.keep_as(options_.archive)) {
      throw Failure(quoted(options_.archive) + " can't be replaced");
    }
    progress_.clear();
    if (!options_.is_quiet) tell_summary();
  }

 private:
  // The flags of FileZip, which tell a reader what the archive was made for.
  static constexpr std::int32_t kStorePath = 1;
  static constexpr std::int32_t kKeepAttributes = 2;

  std::uint64_t total_bytes() const {
    std::uint64_t bytes = 0;
    for (const Source& source : sources_) {
      bytes += static_cast<std::uint64_t>(source.entry.size_bytes);
    }
    return bytes;
  }

  [[noreturn]] void refuse_writing() const {
    if (file_.is_full()) refuse_size();
    throw Failure(quoted(options_.archive) + " can't be written; is the disk full?");
  }
  [[noreturn]] void refuse_size() const {
    throw Failure(quoted(options_.archive) + " would have more than 2 GB");
  }

  void pack_entry(const Source& source, cpr::ArchiveEntry& entry) {
    progress_.begin(text_of_path(source.path));
    if (!entry.is_directory()) pack_contents(source, entry);
    entry.next_position = static_cast<std::int32_t>(file_.position());
    progress_.end(static_cast<std::uint64_t>(entry.size_bytes));
  }

  void pack_contents(const Source& source, cpr::ArchiveEntry& entry) {
    console::InputFile file(source.path);
    if (!file.is_open()) throw Failure(quoted(source.path) + " can't be opened");
    const auto type = options_.is_text ? cpr::DataType::text : cpr::DataType::binary;
    const auto effort = options_.is_smallest ? cpr::Effort::smallest : cpr::Effort::standard;
    const auto code = cpr::pack_entry(file, file_, entry, type, effort, [&](std::uint64_t bytes) {
      progress_.advance_to(bytes);
      return true;
    });
    if (code == cpr::EntryCode::sink_failed) refuse_writing();
    if (code != cpr::EntryCode::done) {
      throw Failure(quoted(source.path) + " can't be read, or has become shorter meanwhile");
    }
  }

  void tell_summary() const {
    const std::uint64_t original = total_bytes();
    const auto packed = static_cast<std::uint64_t>(file_.position() - 1);
    write(Stream::output, std::to_string(head_.entries.size()) + " entries, " +
                              std::to_string(original) + " bytes in " + std::to_string(packed) +
                              "\n");
  }

  const Options& options_;
  std::vector<Source> sources_;
  console::OutputFile file_;
  cpr::ArchiveHead head_;
  Progress progress_;
};

}  // namespace

bool create(const Options& options) {
  Gatherer gatherer(options);
  auto sources = gatherer.gather();
  Packer(options, std::move(sources), gatherer.stored_parent()).pack();
  return true;
}

}  // namespace qv::qvarc
