// Names as archives store them, one byte a character and "\" between folders, and as the system
// and the user see them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "qvarc/system.h"

namespace qv::qvarc {

// Of an absolute path. Nothing where a character has no byte, or would be taken for a separator.
std::optional<std::string> stored_name(const Path& path);
// Of a text of the user's, its separators as they are.
std::optional<std::string> stored_text(std::string_view text);
// Below the folder that it is put behind.
Path relative_path(std::string_view stored);

// What is left of a stored name behind a stored folder, which ends in "\"; nothing where the name
// does not lie below it.
std::optional<std::string_view> below(std::string_view stored, std::string_view folder);
// What is left behind the last separator.
std::string_view last_component(std::string_view stored);

}  // namespace qv::qvarc
