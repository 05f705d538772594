#include "files/path_text.h"

#include <algorithm>
#include <array>
#include <string>

#include "frame/error_state.h"
#include "frame/global_object.h"
#include "native/rtlib/path.h"
#include "runtime/characters.h"
#include "runtime/directory.h"
#include "runtime/err.h"
#include "runtime/file_errors.h"

namespace qv::files {
namespace {

namespace rtlib = native::rtlib;

// Copies of the components: the variables that receive them may be the one that held the path.
struct Components {
  explicit Components(const Text& path) {
    const auto parts = rtlib::split_path(code_units(path));
    drive = wide_characters(parts.drive);
    dir = wide_characters(parts.dir);
    name = wide_characters(parts.fname);
    ext = wide_characters(parts.ext);
  }

  Text drive;
  Text dir;
  Text name;
  Text ext;
};

Text joined(std::wstring_view drive, std::wstring_view dir, std::wstring_view name,
            std::wstring_view ext) {
  std::array<char16_t, rtlib::kMaxPath> path;
  const std::size_t length = rtlib::make_path<char16_t>(
      {code_units(drive), code_units(dir), code_units(name), code_units(ext)}, path);
  return Text(wide_characters({path.data(), length}));
}

void assign_if_given(Variant& variable, Text& component) {
  if (!variable.is_missing()) variable.assign(std::move(component));
}

Text hexadecimal(Long number) {
  constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
  std::wstring digits;
  for (auto left = static_cast<std::uint32_t>(number); left != 0 || digits.empty(); left /= 16) {
    digits.insert(digits.begin(), kDigits[left % 16]);
  }
  return Text(digits);
}

// A name in a folder that is not there could never become a file.
void require_folder_of(std::wstring_view path) {
  const std::size_t length = path.find_last_of(L"\\/:") + 1;
  if (length == 0) return;
  if ((get_attr(path.substr(0, length)) & kDirectory) == 0) raise(kPathNotFound);
}

// Stands for one level that was taken out of a folder's name. No name holds a character 0, so it
// can't be mistaken for a folder called "...".
constexpr std::wstring_view kElided(L"\0\0\0", 3);
constexpr std::wstring_view kElidedLevel(L"\\\0\0\0\\", 5);

// Takes folders out of the name from the left, then joins elided levels, then drops backslashes,
// until the name fits. No name fits in fewer than 0 characters, the empty one included.
std::wstring shortened(std::wstring folder, Long limit) {
  const auto is_too_long = [&] { return static_cast<Long>(folder.size()) > limit; };
  for (std::size_t at = 0; is_too_long();) {
    const std::size_t before = folder.find(L'\\', at);
    if (before == std::wstring::npos) break;
    const std::size_t behind = std::min(folder.find(L'\\', before + 1), folder.size());
    folder.replace(before + 1, behind - before - 1, kElided);
    at = before + 1 + kElided.size();
  }
  if (!is_too_long()) return folder;
  folder.insert(0, kElided);
  while (is_too_long()) {
    const std::size_t at = folder.find(kElidedLevel);
    if (at == std::wstring::npos) break;
    folder.erase(at, kElidedLevel.size() - 1);
  }
  while (is_too_long()) {
    const std::size_t at = folder.find(L'\\');
    if (at == std::wstring::npos) break;
    folder.erase(at, 1);
  }
  return folder;
}

}  // namespace

void SplitPath(const Text& sPath, Variant& sDrive, Variant& sDir, Variant& sFName, Variant& sExt) {
  Components parts(sPath);
  assign_if_given(sDrive, parts.drive);
  assign_if_given(sDir, parts.dir);
  assign_if_given(sFName, parts.name);
  assign_if_given(sExt, parts.ext);
}

void Split_Path(const Text& FullName, Variant& Drive, Variant& Path, Variant& FileName,
                Variant& FileExt) {
  if (!FullName.empty()) return SplitPath(FullName, Drive, Path, FileName, FileExt);
  for (Variant* variable : {&Drive, &Path, &FileName, &FileExt}) {
    frame::attempt([&] {
      Text nothing;
      assign_if_given(*variable, nothing);
    });
  }
  err().forget_error();
}

void MakePath(Text& sPath, const Text& sDrive, const Text& sDir, const Text& sFName,
              const Text& sExt) {
  sPath = joined(sDrive, sDir, sFName, sExt);
}

Boolean FullPath(Text& Buffer, const Text& PathName) {
  const auto path = PathName.view();
  const bool names_a_drive = path.size() >= 2 && path[1] == L':';
  const Text current = cur_dir(names_a_drive ? path.substr(0, 1) : std::wstring_view());
  std::array<char16_t, rtlib::kMaxPath> full;
  const auto length = rtlib::full_path<char16_t>(code_units(path), code_units(current), full);
  Buffer =
      length ? Text(wide_characters({full.data(), *length})) : Text::filled(full.size() + 1, L' ');
  return !length.has_value();
}

Text Get_Path(const Text& FileSpec) { return Components(FileSpec).dir; }
Text Get_FileNameNoExt(const Text& FileSpec) { return Components(FileSpec).name; }
Text Get_FileExt(const Text& FileSpec) { return Components(FileSpec).ext; }
Text Get_Drive(const Text& FileSpec) { return Components(FileSpec).drive; }

Text Get_FileName(const Text& FileSpec) {
  const Components parts(FileSpec);
  return concat({parts.name, parts.ext});
}

Text Full_Path(const Text& PS) {
  const bool is_complete = PS.empty() || PS.view().back() == L'\\';
  return is_complete ? PS : concat({PS, L"\\"});
}

Text CurDrive() {
  const Text folder = cur_dir();
  const std::size_t colon = folder.view().find(L':');
  return colon == std::wstring_view::npos ? Text() : Text(folder.view().substr(0, colon + 1));
}

Text Get_TempPath() {
  Text folder = Text::uninitialized(MAX_PATH + 1);
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size() + 1), folder.data());
  capture_last_dll_error();
  folder.cut(std::min<std::size_t>(length, folder.size()));
  return folder;
}

Text Get_TempFile(const Variant& Path, const Text& Ext) {
  try {
    const Text path = Path.is_null() ? Get_TempPath() : Path.to_text();
    require_folder_of(path);
    const bool lacks_dot = !Ext.empty() && Ext[0] != L'.';
    for (;;) {
      Text name = concat({path, hexadecimal(frame::Unique_KeyLong()), lacks_dot ? L"." : L"", Ext});
      if (!DirectorySearch(name, 0).next()) return name;
    }
  } catch (...) {
    return {};
  }
}

Text CompactPath(const Text& SrcPath, Long MaxChars) {
  return frame::handled(L"KwRtLibMod.CompactPath", frame::kTakeError, Text(), [&] {
    const Components parts(SrcPath);
    auto folder = parts.dir.view();
    if (folder.ends_with(L'\\')) folder.remove_suffix(1);
    const auto length = static_cast<Long>(folder.size());
    if (length <= MaxChars) return SrcPath;
    auto shown = shortened(std::wstring(folder), MaxChars);
    std::ranges::replace(shown, L'\0', L'.');
    return joined(parts.drive, shown, Get_FileName(SrcPath), {});
  });
}

}  // namespace qv::files
