// Stored bytes, one a character, and file names as the user sees them: in UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qv::console {

using Path = std::filesystem::path;

// UTF-8, as the command line gives it and messages show it.
Path path_of_text(std::string_view text);
std::string text_of_path(const Path& path);

std::u16string characters_of(std::string_view stored);

// UTF-8 for the user's eyes: control characters, which could steer a terminal, as "?".
std::string shown(std::string_view stored);

}  // namespace qv::console
