// The calling language's file and folder statements. Each raises the language's run-time error:
//   52  a name that no file can have: wildcards, forbidden characters, a server that is not there
//   53  the file is missing; 76 the folder is
//   70  somebody else uses the file, or the disk is protected
//   75  everything else that the path forbids: a read-only file, a folder in place of a file (and
//       the reverse), a folder that exists or is not empty
//   57, 61, 67, 68, 71  the device fails, is full, has no handle left, is missing, is not ready
// Names of any length and in any script; they end before a character 0.
#pragma once

#include <windows.h>

#include "automation/text.h"

namespace qv {

// What GetAttr gives and SetAttr takes; the search below is given a sum of them.
inline constexpr Long kReadOnly = 1;
inline constexpr Long kHidden = 2;
inline constexpr Long kSystem = 4;
inline constexpr Long kVolume = 8;
inline constexpr Long kDirectory = 16;
inline constexpr Long kArchive = 32;

// A search as the language's Dir makes it. Each has its own state, so searches can be nested.
class DirectorySearch {
 public:
  // Files are found whatever their read-only and archive marks; hidden and system files and folders
  // only where `attributes` asks for them. A pattern without a name ("", "C:\a\") finds everything
  // in its folder. A folder that is not there holds nothing.
  DirectorySearch(std::wstring_view pattern, Long attributes);
  DirectorySearch(const DirectorySearch&) = delete;
  DirectorySearch& operator=(const DirectorySearch&) = delete;
  ~DirectorySearch();

  // False at the end. Folders come with their "." and ".." entries.
  bool next();
  // Of the entry that next() has moved to, until it moves on.
  std::wstring_view name() const noexcept { return entry_.cFileName; }
  Long attributes() const noexcept { return static_cast<Long>(entry_.dwFileAttributes); }

 private:
  bool is_wanted() const noexcept;

  Long left_out_;
  HANDLE handle_ = INVALID_HANDLE_VALUE;
  WIN32_FIND_DATAW entry_;
  bool is_first_ = true;
};

// Is there a file or folder of that name? Answered by its attributes alone, so a locked file is
// there too.
bool path_exists(std::wstring_view name);

Long get_attr(std::wstring_view name);
void set_attr(std::wstring_view name, Long attributes);
// Replaces an existing target; attributes and dates come along.
void file_copy(std::wstring_view source, std::wstring_view target);
// One file.
void kill(std::wstring_view name);
void mk_dir(std::wstring_view name);
void rm_dir(std::wstring_view name);
// The current folder, of the drive named or of the process, without a final backslash except in a
// root.
Text cur_dir(std::wstring_view drive = {});

}  // namespace qv
