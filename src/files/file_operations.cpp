#include "files/file_operations.h"

// lzexpand.h needs windows.h before it.
#include <lzexpand.h>

#include <algorithm>
#include <string>
#include <vector>

#include "constants.h"
#include "files/file_handles.h"
#include "files/path_text.h"
#include "frame/error_state.h"
#include "runtime/directory.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::files {
namespace {

constexpr Long kFolderOrVolume = kDirectory | kVolume;
constexpr Long kEveryFile = kReadOnly | kHidden | kSystem | kArchive;
constexpr Long kEveryFolder = kHidden | kSystem | kDirectory | kArchive;

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t start = std::min(text.find_first_not_of(L' '), text.size());
  const std::size_t end = text.find_last_not_of(L' ') + 1;
  return text.substr(start, end - std::min(start, end));
}

// The lists are complete before anything is done to what they name: a search may or may not see
// what happens in its folder meanwhile.
std::vector<Text> files_in(std::wstring_view pattern, Long search, Long required) {
  std::vector<Text> names;
  for (DirectorySearch found(pattern, search); found.next();) {
    const Long attributes = found.attributes();
    if ((attributes & kFolderOrVolume) == 0 && (attributes & required) == required) {
      names.emplace_back(found.name());
    }
  }
  return names;
}

std::vector<Text> folders_in(const Text& folder, Long search) {
  std::vector<Text> names;
  for (DirectorySearch found(concat({folder, L"*.*"}), search); found.next();) {
    const bool is_folder = (found.attributes() & kDirectory) != 0;
    if (is_folder && !found.name().starts_with(L'.')) names.emplace_back(found.name());
  }
  return names;
}

// The number of the run-time error that ends a step, 0 where none does.
template <class Step>
Integer error_number_of(Step&& step) {
  try {
    step();
    return 0;
  } catch (...) {
    return static_cast<Integer>(current_run_time_error().number);
  }
}

// Ends a step in the middle with the number that an inner step gave.
void pass_on(Integer number) {
  if (number != 0) raise(number);
}

void clear_attributes(const Text& name) {
  error_number_of([&] { set_attr(name, 0); });
}

void copy_file(const Text& source, const Text& target, Long remove) {
  File_Kill(target);
  file_copy(source, target);
  if (remove == 0) return;
  const Long attributes = get_attr(target);
  if ((attributes & remove) != 0) set_attr(target, attributes & ~remove);
}

bool is_same_folder(const Text& a, const Text& b) {
  const Text first = absolute_name(a);
  const Text second = absolute_name(b);
  return CompareStringOrdinal(first.c_str(), static_cast<int>(first.size()), second.c_str(),
                              static_cast<int>(second.size()), TRUE) == CSTR_EQUAL;
}

struct Copy {
  const Text& spec;
  Long attributes;
  Long remove;
  bool recurses;
  // Where the whole copy goes, absolute: it may lie below its source, and is not copied into
  // itself.
  const Text& whole_target;
};

// Both folders with their final backslash. True = failure.
Boolean copy_folder(const Copy& copy, const Text& source, const Text& target) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.File_Copy";
  return frame::handled(kSource, frame::kTakeError, True, [&]() -> Boolean {
    for (const Text& name :
         files_in(concat({source, copy.spec}), copy.attributes, copy.attributes)) {
      copy_file(concat({source, name}), concat({target, name}), copy.remove);
    }
    if (!copy.recurses) return False;
    for (const Text& name : folders_in(source, kDirectory)) {
      const Text from = concat({source, name, L"\\"});
      if (is_same_folder(from, copy.whole_target)) continue;
      const Text to = concat({target, name, L"\\"});
      Path_Create(to);
      if (copy_folder(copy, from, to)) {
        frame::Set_Error({.Source = kSource}, frame::kChain);
        return True;
      }
    }
    return False;
  });
}

}  // namespace

Boolean File_Copy(const Text& SourcePath, const Text& TargetPath, const Text& FileSpec, Long Attrib,
                  Long RemoveAttr, Long Flags) {
  const Text target = Full_Path(TargetPath);
  const bool recurses = (Flags & FileCopyFlags::FCOPY_RECURSE) != 0;
  return copy_folder({FileSpec, Attrib, RemoveAttr, recurses, target}, Full_Path(SourcePath),
                     target);
}

Integer File_Kill(const Text& FileName) {
  return error_number_of([&] {
    const auto path = FileName.view();
    // The search understands all three, so the names found belong behind any of them.
    const auto folder = path.substr(0, path.find_last_of(L"\\/:") + 1);
    if (trimmed(path.substr(folder.size())).empty()) return;
    for (const Text& name : files_in(path, kEveryFile, 0)) {
      const Text file = concat({folder, name});
      clear_attributes(file);
      kill(file);
    }
  });
}

Integer Path_Kill(const Text& PathName) {
  return error_number_of([&] {
    if (path_exists(PathName)) {
      const Text folder = Full_Path(PathName);
      pass_on(File_Kill(concat({folder, L"*.*"})));
      for (const Text& name : folders_in(folder, kEveryFolder | kReadOnly)) {
        pass_on(Path_Kill(concat({folder, name})));
      }
      clear_attributes(PathName);
    }
    rm_dir(PathName);
  });
}

Integer Path_Create(const Text& PathName) {
  std::wstring slashed(PathName.view());
  std::ranges::replace(slashed, L'/', L'\\');
  const Text path = Full_Path(Text(slashed));
  const auto whole = path.view();
  Integer result = 0;
  for (std::size_t end = 0; (end = whole.find(L'\\', end)) != std::wstring_view::npos; ++end) {
    result = error_number_of([&] { mk_dir(whole.substr(0, end)); });
  }
  return result;
}

Integer File_Verify(const Text& FileName) {
  bool is_file = false;
  error_number_of([&] { is_file = (get_attr(FileName) & kDirectory) == 0; });
  return Boolean(is_file);
}

Integer Path_Verify(const Text& PathName) {
  bool is_folder = false;
  error_number_of([&] {
    const auto name = trimmed(PathName);
    if (name.empty()) return;
    DirectorySearch content(concat({Full_Path(Text(name)), L"*.*"}), kEveryFolder);
    is_folder = content.next();
  });
  return Boolean(is_folder);
}

Integer File_Expand(const Text& SrcFile, const Text& DestFile) {
  constexpr Long kReadFlags = File_Open_Const::O_RDONLY | File_Open_Const::O_BINARY;
  constexpr Long kWriteFlags = File_Open_Const::O_RDWR | File_Open_Const::O_CREAT |
                               File_Open_Const::O_TRUNC | File_Open_Const::O_BINARY;
  bool failed = true;
  Long source = 0;
  Long target = 0;
  Long source_attributes = 0;
  Long target_attributes = 0;
  if (!File_Open32(SrcFile, kReadFlags, File_Open_Const::SH_DENYWR, source_attributes, source) &&
      !File_Open32(DestFile, kWriteFlags, File_Open_Const::SH_DENYRW, target_attributes, target)) {
    failed = LZCopy(source, target) < 0;
    capture_last_dll_error();
  }
  File_Close32(source);
  return Boolean(failed);
}

}  // namespace qv::files
