#include "files/file_search.h"

#include <limits>
#include <vector>

#include "automation/thread_state.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "datetime/file_times.h"
#include "files/file_info.h"
#include "files/path_text.h"
#include "runtime/directory.h"
#include "runtime/do_events.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::files {
namespace {

constexpr Long kDevice = 0x40;

struct SearchState {
  Long found = 0;
  Long limit = 0;
  bool stopped = false;
};

// The entries of a folder that match a name with wildcards; one where there is none.
class Entries {
 public:
  explicit Entries(const Text& pattern)
      : handle_(FindFirstFileExW(system_name(pattern).c_str(), FindExInfoBasic, &entry_,
                                 FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH)) {
    capture_last_dll_error();
  }
  Entries(const Entries&) = delete;
  Entries& operator=(const Entries&) = delete;
  ~Entries() {
    if (handle_ != INVALID_HANDLE_VALUE) FindClose(handle_);
  }

  bool is_empty() const noexcept { return handle_ == INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& entry() const noexcept { return entry_; }
  bool next() noexcept {
    if (FindNextFileW(handle_, &entry_)) return true;
    capture_last_dll_error();
    return false;
  }

 private:
  WIN32_FIND_DATAW entry_;
  HANDLE handle_;
};

// The names go into the caller's array. It is brought up to date before events run, which may look
// at it and even redimension it, and at the end: growing it name by name would copy it each time.
class NameList {
 public:
  explicit NameList(Array<Text>& list) : list_(list) { list.redimension(1, 1); }

  static bool is_wanted(DWORD attributes, Long mask) noexcept {
    constexpr Long kNoFile = kVolume | kDirectory | kDevice;
    return mask != 0 || (static_cast<Long>(attributes) & kNoFile) == 0;
  }
  void add(const Text& folder, const WIN32_FIND_DATAW& entry) {
    pending_.push_back(concat({folder, entry.cFileName}));
  }
  void publish() {
    if (pending_.empty()) return;
    const std::size_t total = published_ + pending_.size();
    if (list_.dimensions() == 1) {
      SAFEARRAYBOUND bound{static_cast<ULONG>(total), 1};
      check(SafeArrayRedim(list_.get(), &bound));
    } else {
      list_.redimension(1, total);
    }
    const auto elements = list_.lock();
    std::move(pending_.begin(), pending_.end(), elements.begin() + published_);
    published_ = total;
    pending_.clear();
  }

 private:
  Array<Text>& list_;
  std::vector<Text> pending_;
  std::size_t published_ = 0;
};

// A record of each file goes into the caller's collection.
class RecordList {
 public:
  explicit RecordList(const Object<_kwCollection>& list) : list_(list) { collections::clear(list); }

  static bool is_wanted(DWORD, Long) noexcept { return true; }
  void add(const Text& folder, const WIN32_FIND_DATAW& entry) {
    const auto object = Object<_QvtFileInfo>::from(create_QvtFileInfo());
    QvtFileInfo& info = *own<QvtFileInfo>(object, kQvtFileInfoInfo);
    info.CreationTime = date_of(entry.ftCreationTime);
    info.LastAccessTime = date_of(entry.ftLastAccessTime);
    info.LastWriteTime = date_of(entry.ftLastWriteTime);
    info.FileName = concat({folder, entry.cFileName});
    info.FileAttributes = static_cast<Long>(entry.dwFileAttributes);
    info.FileSize = static_cast<Long>(entry.nFileSizeLow);
    collections::add(list_, Variant(Object<IDispatch>(object.get())));
  }
  void publish() {}

 private:
  static Date date_of(const FILETIME& time) {
    const auto date = datetime::local_date(time);
    if (!date) raise(kInvalidProcedureCall);
    return *date;
  }

  const Object<_kwCollection>& list_;
};

template <class List>
class Search {
 public:
  Search(const Text& spec, const Variant& mask, Long limit, List& list)
      : spec_(spec), mask_(mask), list_(list) {
    state_ = {.found = 0, .limit = limit < 0 ? std::numeric_limits<Long>::max() : limit};
  }

  Long run(const Text& path) {
    search(Full_Path(path));
    skip_errors([&] { list_.publish(); });
    return state_.found;
  }

 private:
  template <class Step>
  static void skip_errors(Step&& step) {
    try {
      step();
    } catch (...) {
      return;  // what was found so far is the result
    }
  }

  bool is_at_limit() const noexcept { return state_.found >= state_.limit; }

  // A folder that fails is left behind, and the search goes on with the next.
  void search(const Text& folder) {
    skip_errors([&] {
      const auto folders = list_files(folder);
      for (const Text& name : folders) {
        search(concat({folder, name, L"\\"}));
        if (state_.stopped || is_at_limit()) return;
      }
    });
  }

  // Files of a folder to the list; gives the folders to go on with. Nothing is open any more while
  // those are searched, so a deep tree takes no handles.
  std::vector<Text> list_files(const Text& folder) {
    const Long mask = mask_.to_long();
    const bool finds_all = spec_ == L"*" || spec_ == L"*.*";
    std::vector<Text> folders;
    const bool goes_on = walk(concat({folder, spec_}), [&](const WIN32_FIND_DATAW& entry) {
      if (is_at_limit()) return false;
      if (finds_all) add_folder(folders, entry);
      const bool has_mask = (static_cast<Long>(entry.dwFileAttributes) & mask) == mask;
      if (!is_hidden_by_dot(entry) && has_mask && List::is_wanted(entry.dwFileAttributes, mask)) {
        ++state_.found;
        list_.add(folder, entry);
      }
      return true;
    });
    if (!goes_on) return {};
    if (finds_all) return folders;
    const bool got_all = walk(concat({folder, L"*.*"}), [&](const WIN32_FIND_DATAW& entry) {
      add_folder(folders, entry);
      return true;
    });
    return got_all ? folders : std::vector<Text>();
  }

  static bool is_hidden_by_dot(const WIN32_FIND_DATAW& entry) { return entry.cFileName[0] == L'.'; }

  static void add_folder(std::vector<Text>& folders, const WIN32_FIND_DATAW& entry) {
    const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (is_folder && !is_hidden_by_dot(entry)) folders.emplace_back(entry.cFileName);
  }

  // False where the search was stopped or `examine` wants no more.
  template <class Examine>
  bool walk(const Text& pattern, Examine&& examine) {
    Entries entries(pattern);
    if (!give_way()) return false;
    if (entries.is_empty()) return true;
    do {
      if (!examine(entries.entry())) return false;
      if (!give_way()) return false;
    } while (entries.next());
    return true;
  }

  // Lets events run that wait; false once the search is to stop. Asking the system whether any wait
  // costs more than an entry does, so without any it is asked once a tick of the clock, and after
  // one at every entry, since events tend to follow each other.
  bool give_way() {
    const DWORD now_ms = GetTickCount();
    if (events_wait_ || now_ms != asked_ms_) {
      asked_ms_ = now_ms;
      events_wait_ = HIWORD(GetQueueStatus(QS_ALLINPUT)) != 0;
      if (events_wait_) {
        list_.publish();
        do_events();
      }
    }
    return !state_.stopped;
  }

  SearchState& state_ = per_thread<SearchState>();
  const Text& spec_;
  const Variant& mask_;
  List& list_;
  bool events_wait_ = true;
  DWORD asked_ms_ = 0;
};

}  // namespace

Integer Where_Is(const Text& Path, const Text& FileSpec, const Variant& AttrMask,
                 Array<Text>& FileList, Integer MaxFiles) {
  NameList names(FileList);
  const Long found = Search(FileSpec, AttrMask, MaxFiles, names).run(Path);
  if (found > std::numeric_limits<Integer>::max()) raise(kOverflow);
  return static_cast<Integer>(found);
}

Long Where_IsEx(const Text& Path, const Text& FileSpec, const Variant& AttrMask,
                const Object<_kwCollection>& FileList, Long MaxFiles) {
  RecordList records(FileList);
  return Search(FileSpec, AttrMask, MaxFiles, records).run(Path);
}

void Where_Stop() { per_thread<SearchState>().stopped = true; }

}  // namespace qv::files
