#include "runtime/format_date.h"

#include <array>
#include <cwchar>

namespace qv {

Text day_and_minute(const SYSTEMTIME& time) {
  std::array<wchar_t, 32> text;
  const int length = std::swprintf(text.data(), text.size(), L"%02u-%02u-%04u %02u:%02u", time.wDay,
                                   time.wMonth, time.wYear, time.wHour, time.wMinute);
  return Text(std::wstring_view(text.data(), static_cast<std::size_t>(length)));
}

}  // namespace qv
