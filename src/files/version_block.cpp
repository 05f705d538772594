#include "files/version_block.h"

#include <winver.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "automation/thread_state.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::files {
namespace {

// The services believe the lengths that a damaged block states: 16 bits each, in at most three
// levels and a value. Zeros that far behind the block keep them within memory of our own; the pages
// are not touched unless a block lies.
constexpr std::size_t kSlack_bytes = std::size_t{8} << 16;

constexpr std::wstring_view kFallbackCode = L"040904E4";
constexpr std::size_t kCodeLength = 8;

std::wstring padded(std::wstring digits, std::size_t width) {
  if (digits.size() < width) digits.insert(0, width - digits.size(), L'0');
  return digits;
}

std::wstring locale_text(LCID locale, LCTYPE item) {
  std::array<wchar_t, 32> buffer{};
  GetLocaleInfoW(locale, item, buffer.data(), static_cast<int>(buffer.size()));
  return buffer.data();
}

struct UserLanguage {
  std::wstring code;
};

// Made once per thread. The code page stands in it in decimal digits, although blocks are named in
// hexadecimal ones: where the two differ no block of the user's is found and the file's own order
// of languages decides. What is shown for a file has always been chosen so.
const std::wstring& user_code() {
  std::wstring& code = per_thread<UserLanguage>().code;
  if (code.empty()) {
    const LCID user = GetUserDefaultLCID();
    if (user > 0) {
      code = locale_text(user, LOCALE_IDEFAULTLANGUAGE) +
             padded(locale_text(user, LOCALE_IDEFAULTCODEPAGE), 4);
    }
    code = padded(std::move(code), kCodeLength);
  }
  return code;
}

// An entry of the table of translations: language in the low word, code page in the high one.
std::wstring code_of_entry(std::span<const std::uint8_t> entry) {
  constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
  std::wstring code;
  for (const std::size_t place : {1, 0, 3, 2}) {
    code += kDigits[entry[place] >> 4];
    code += kDigits[entry[place] & 15];
  }
  return code;
}

}  // namespace

VersionBlock::Reading VersionBlock::read(const Text& file_name) {
  const Text name = system_name(file_name);
  DWORD handle = 0;
  const DWORD size_bytes = GetFileVersionInfoSizeW(name.c_str(), &handle);
  capture_last_dll_error();
  if (size_bytes == 0) return Reading::kNone;
  memory_.reset(static_cast<std::uint8_t*>(
      VirtualAlloc(nullptr, size_bytes + kSlack_bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE)));
  if (memory_ == nullptr) raise(kOutOfMemory);
  size_bytes_ = size_bytes;
  const BOOL success = GetFileVersionInfoW(name.c_str(), handle, size_bytes, memory_.get());
  capture_last_dll_error();
  return success ? Reading::kRead : Reading::kUnreadable;
}

// Only what lies in the block whole; the service counts text in characters.
std::optional<std::span<const std::uint8_t>> VersionBlock::value(const Text& path,
                                                                 std::size_t unit_bytes) const {
  void* found = nullptr;
  UINT units = 0;
  const BOOL success = VerQueryValueW(memory_.get(), path.c_str(), &found, &units);
  capture_last_dll_error();
  if (!success) return std::nullopt;
  if (units == 0) return std::span<const std::uint8_t>();
  const auto* start = static_cast<const std::uint8_t*>(found);
  if (start < memory_.get() || start > memory_.get() + size_bytes_) return std::nullopt;
  const std::size_t left_bytes = size_bytes_ - static_cast<std::size_t>(start - memory_.get());
  return std::span(start, std::min(units * unit_bytes, left_bytes));
}

std::optional<VS_FIXEDFILEINFO> VersionBlock::fixed_info() const {
  const auto found = value(L"\\", 1);
  if (!found || found->size() < sizeof(VS_FIXEDFILEINFO)) return std::nullopt;
  VS_FIXEDFILEINFO info;
  std::memcpy(&info, found->data(), sizeof info);
  return info;
}

bool VersionBlock::has_language(std::wstring_view code) const {
  return value(concat({L"\\StringFileInfo\\", code}), sizeof(wchar_t)).has_value();
}

Text VersionBlock::language_code() const {
  auto table = value(L"\\VarFileInfo\\Translation", 1);
  if (!table) return Text(kFallbackCode);
  if (has_language(user_code())) return Text(user_code());
  constexpr std::size_t kEntry_bytes = 4;
  for (; table->size() >= kEntry_bytes; *table = table->subspan(kEntry_bytes)) {
    const std::wstring code = code_of_entry(table->first(kEntry_bytes));
    if (has_language(code)) return Text(code);
  }
  return Text(kFallbackCode);
}

std::optional<Text> VersionBlock::text(std::wstring_view key) const {
  const auto found =
      value(concat({L"\\StringFileInfo\\", language_code(), L"\\", key}), sizeof(wchar_t));
  if (!found) return std::nullopt;
  std::wstring characters(found->size() / sizeof(wchar_t), L'\0');
  if (!characters.empty()) {
    std::memcpy(characters.data(), found->data(), characters.size() * sizeof(wchar_t));
  }
  return Text(std::wstring_view(characters).substr(0, characters.find(L'\0')));
}

}  // namespace qv::files
