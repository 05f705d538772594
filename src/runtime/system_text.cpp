#include "runtime/system_text.h"

#include <algorithm>
#include <array>
#include <string>

namespace qv {

Text system_text(Long code) {
  std::array<wchar_t, 4096> buffer;
  // A text with inserts must come as it stands: there is nothing to insert.
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(code), 0, buffer.data(),
                                      static_cast<DWORD>(buffer.size()), nullptr);
  std::wstring text(buffer.data(), length);
  text.resize(std::min(text.size(), text.find(L'\0')));
  std::ranges::replace(text, L'\r', L' ');
  std::erase(text, L'\n');
  return Text(text);
}

}  // namespace qv
