#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace qv::native::rtlib {

// Path text as the platform's C run time treats it. A text ends before its first character 0. For
// char and char16_t; char texts are taken byte by byte, so multi-byte names go the char16_t way.

// Room for a component, its closing character 0 counted: at most one character less is used.
inline constexpr std::size_t kMaxPath = 260;
inline constexpr std::size_t kMaxDrive = 3;
inline constexpr std::size_t kMaxDir = 256;
inline constexpr std::size_t kMaxFname = 256;
inline constexpr std::size_t kMaxExt = 256;

// Views into the text that was split; a missing component is empty.
template <class C>
struct PathParts {
  std::basic_string_view<C> drive;  // the first two characters, where the second is a colon
  std::basic_string_view<C> dir;    // up to and with the last "\" or "/"; UNC names begin here
  std::basic_string_view<C> fname;  // up to the last dot
  std::basic_string_view<C> ext;    // from the last dot on, the dot included
};

// Each component is cut at its limit. Without a cut, the four joined are the path again. A name of
// only one, leading dot is all extension; ".." is the name "." and the extension ".".
template <class C>
PathParts<C> split_path(std::basic_string_view<C> path);

// Joins the components into `out` and returns the number of characters written; no character 0 is
// added. Of the drive only the first letter counts and a colon goes behind it; a dir that ends in
// neither "\" nor "/" gets a "\", an ext without a leading dot gets one. Components are cut at
// their limits, the whole at the size of `out`.
template <class C>
std::size_t make_path(const PathParts<C>& parts, std::span<C> out);

// Writes the absolute path and returns its length; none when `out` is too small for it, or when the
// path is nothing but blanks. Nothing is
// looked up on a disk: `current_folder` is the current folder of the drive that the path names
// where it is relative to a drive ("C:a"), else that of the process, with or without a final "\".
//   ""           the current folder             "a\b"  below the current folder
//   "\a"         from the current folder's root (its drive, or its server and share)
//   "C:\a", "\\server\share\a", "\\?\...", "\\.\..."   absolute already
// "/" becomes "\"; "." and ".." levels go, never above the root; neighbouring separators become
// one; a dot that ends a folder's name, and dots and blanks at the end of the whole, go.
template <class C>
std::optional<std::size_t> full_path(std::basic_string_view<C> path,
                                     std::basic_string_view<C> current_folder, std::span<C> out);

}  // namespace qv::native::rtlib
