#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <vector>

#include "console/file_streams.h"
#include "native/cpr/archive_data.h"
#include "native/cpr/archive_names.h"
#include "qvarc/commands.h"
#include "qvarc/dates.h"
#include "qvarc/names.h"
#include "qvarc/opened_archive.h"
#include "qvarc/progress.h"

namespace qv::qvarc {
namespace {

namespace cpr = native::cpr;
namespace fs = std::filesystem;

constexpr std::size_t kDateColumns = 16;

class Nowhere final : public cpr::ByteSink {
 public:
  bool write(std::span<const std::uint8_t>) override { return true; }
};

std::uint64_t size_of(const cpr::ArchiveEntry& entry) {
  return static_cast<std::uint64_t>(std::max<std::int32_t>(entry.size_bytes, 0));
}

std::uint64_t packed_size_of(const cpr::ArchiveEntry& entry) {
  if (entry.is_directory()) return 0;
  return std::accumulate(entry.blocks.begin(), entry.blocks.end(), std::uint64_t{},
                         [](std::uint64_t bytes, const cpr::ArchiveBlock& block) {
                           return bytes + block.packed_bytes;
                         });
}

// "2026-11-21 05:22", and blanks for what is no date.
std::string date_text(double date) {
  constexpr std::int64_t kMinute_s = 60;
  const auto seconds = local_seconds_of(date);
  if (!seconds) return std::string(kDateColumns, ' ');
  const std::int64_t day =
      *seconds >= 0 ? *seconds / kSecondsPerDay : (*seconds + 1) / kSecondsPerDay - 1;
  const auto minutes = static_cast<int>((*seconds - day * kSecondsPerDay) / kMinute_s);
  const std::chrono::year_month_day fields{std::chrono::sys_days{std::chrono::days{day}}};
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d", int{fields.year()},
                unsigned{fields.month()}, unsigned{fields.day()}, minutes / 60, minutes % 60);
  return text.data();
}

// One entry of the list, and its last line.
std::string row(std::uint64_t size, std::uint64_t packed, const std::string& date,
                const std::string& name) {
  std::array<char, 80> numbers{};
  std::snprintf(numbers.data(), numbers.size(), "%11llu %11llu  ",
                static_cast<unsigned long long>(size), static_cast<unsigned long long>(packed));
  return numbers.data() + date + "  " + name + "\n";
}

const char* reason_of(cpr::EntryCode code) {
  switch (code) {
    case cpr::EntryCode::source_ended:
      return "the archive ends before it does";
    case cpr::EntryCode::sink_failed:
      return "it can't be written; is the disk full?";
    case cpr::EntryCode::crc_differs:
      return "its checksum is wrong";
    default:
      return "it is damaged";
  }
}

// What test and extract share: going through the entries, and telling what fails.
class Reader {
 public:
  explicit Reader(const Options& options)
      : options_(options),
        archive_(options.archive),
        selected_(archive_.select(options.names)),
        progress_(options.shows_progress, total_bytes()) {}
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  virtual ~Reader() = default;

  // Goes on behind an entry that fails.
  bool run(const char* done) {
    std::size_t failed = 0;
    for (const PlacedEntry& placed : selected_) {
      const std::string name = shown(archive_.shown_name(*placed.entry));
      progress_.begin(name);
      try {
        handle(placed);
      } catch (const Failure& failure) {
        ++failed;
        progress_.clear();
        write(Stream::error, "qvarc: " + name + ": " + failure.what() + "\n");
      }
      progress_.end(size_of(*placed.entry));
    }
    progress_.clear();
    if (!options_.is_quiet) {
      write(Stream::output, std::to_string(selected_.size() - failed) + " entries " + done +
                                (failed == 0 ? "" : ", " + std::to_string(failed) + " failed") +
                                "\n");
    }
    return failed == 0;
  }

 protected:
  virtual void handle(const PlacedEntry& placed) = 0;

  const Options& options() const { return options_; }
  const OpenedArchive& archive() const { return archive_; }

  void expand(const PlacedEntry& placed, cpr::ByteSink& sink) {
    if (!archive_.file().seek(placed.position)) {
      throw Failure(reason_of(cpr::EntryCode::source_ended));
    }
    const auto code =
        cpr::unpack_entry(archive_.file(), sink, *placed.entry, [&](std::uint64_t bytes) {
          progress_.advance_to(bytes);
          return true;
        });
    if (code != cpr::EntryCode::done) throw Failure(reason_of(code));
  }

 private:
  std::uint64_t total_bytes() const {
    std::uint64_t bytes = 0;
    for (const PlacedEntry& placed : selected_) bytes += size_of(*placed.entry);
    return bytes;
  }

  const Options& options_;
  OpenedArchive archive_;
  std::vector<PlacedEntry> selected_;
  Progress progress_;
};

class Tester final : public Reader {
 public:
  using Reader::Reader;

 private:
  void handle(const PlacedEntry& placed) override {
    Nowhere nowhere;
    if (!placed.entry->is_directory()) expand(placed, nowhere);
  }
};

class Extractor final : public Reader {
 public:
  using Reader::Reader;

 private:
  void handle(const PlacedEntry& placed) override {
    const cpr::ArchiveEntry& entry = *placed.entry;
    const Path path = path_of(entry);
    if (entry.is_directory()) {
      if (!options().is_flat) make_folder(path);
      return;
    }
    make_folder(path.parent_path());
    console::OutputFile file(console::unused_name(path.parent_path()));
    if (!file.is_open()) throw Failure("no file can be made in its folder");
    expand(placed, file);
    if (!file.close()) throw Failure(reason_of(cpr::EntryCode::sink_failed));
    make_replaceable(path);
    if (!file.keep_as(path)) throw Failure("the file of that name can't be replaced");
    // In this order: a read-only file's dates can't be set everywhere.
    const bool is_dated = set_dates(path, entry.created, entry.changed);
    if (options().keeps_attributes && !set_attributes(path, entry.attributes)) {
      throw Failure("restored, but its attributes can't be set");
    }
    if (!is_dated) throw Failure("restored, but its dates can't be set");
  }

  // Where an entry goes: never anywhere outside the target folder.
  Path path_of(const cpr::ArchiveEntry& entry) const {
    const std::string& parent = archive().head().parent_directory;
    std::string_view name;
    if (options().is_flat || parent.empty()) {
      name = last_component(entry.name);
    } else {
      const auto rest = below(entry.name, parent);
      if (!rest) throw Failure("it does not lie below the stored parent folder");
      name = *rest;
    }
    if (!cpr::stays_in_folder(name)) throw Failure("its name leads out of the target folder");
    return options().target / relative_path(name);
  }

  static void make_folder(const Path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!fs::is_directory(folder, error)) throw Failure("its folder can't be made");
  }

  // Where a read-only file would resist.
  static void make_replaceable(const Path& path) {
    std::error_code ignored;
    if (fs::is_regular_file(path, ignored)) {
      fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, ignored);
    }
  }
};

}  // namespace

bool list(const Options& options) {
  const OpenedArchive archive(options.archive);
  const cpr::ArchiveHead& head = archive.head();
  if (!head.parent_directory.empty()) {
    write(Stream::output, "below " + shown(head.parent_directory) + "\n");
  }
  write(Stream::output, "       size      packed  changed           name\n");
  std::uint64_t size = 0;
  std::uint64_t packed = 0;
  for (const cpr::ArchiveEntry& entry : head.entries) {
    const std::string name = shown(archive.shown_name(entry)) + (entry.is_directory() ? "\\" : "");
    write(Stream::output,
          row(size_of(entry), packed_size_of(entry), date_text(entry.changed), name));
    size += size_of(entry);
    packed += packed_size_of(entry);
  }
  write(Stream::output, row(size, packed, std::string(kDateColumns, ' '),
                            std::to_string(head.entries.size()) + " entries"));
  return true;
}

bool test(const Options& options) { return Tester(options).run("are right"); }
bool extract(const Options& options) { return Extractor(options).run("restored"); }

}  // namespace qv::qvarc
