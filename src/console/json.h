// Texts in JSON.
#pragma once

#include <string>
#include <string_view>

namespace qv::console {

// In quotes, and of ASCII characters alone, so that no code page changes it on its way.
std::string json_text(std::u16string_view text);

}  // namespace qv::console
