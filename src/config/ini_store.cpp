#include "config/ini_store.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/system_name.h"

namespace qv::config {
namespace {

constexpr std::size_t kBufferLength = 8192;

// As the profile services take it: of a longer name some make another file.
Text file_of(const Object<_QVtIniStruct>& Ini) {
  constexpr const wchar_t* kNothingOpensThis = L"\\\\.\\";
  BSTR name = nullptr;
  check(Ini->get_IniFile(&name));
  return limited_name(Text::adopt(name)).value_or(kNothingOpensThis);
}

// The text as a narrow service receives it: what the code page has no character for is replaced.
Text through_code_page(Text text) {
  const auto is_ascii = [](wchar_t character) { return character < 0x80; };
  if (std::ranges::all_of(text.view(), is_ascii)) return text;
  const int length = static_cast<int>(text.size());
  std::string bytes(text.size() * 4, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  std::wstring back(bytes.size(), L'\0');
  back.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), back.data(),
                          static_cast<int>(back.size()))));
  return Text(back);
}

// A key that is null stands for all keys of the section, a value that is null for no value.
void write(const Text& section, const wchar_t* key, const wchar_t* value,
           const Object<_QVtIniStruct>& Ini) {
  WritePrivateProfileStringW(through_code_page(section).c_str(), key, value, file_of(Ini).c_str());
  capture_last_dll_error();
}

bool is_boolean(const Variant& value) { return value.type() == VT_BOOL; }

// The same in every language of the system.
const wchar_t* boolean_text(const Variant& value) {
  return value.to_boolean() ? L"True" : L"False";
}

Text text_to_store(const Variant& value) {
  return is_boolean(value) ? Text(boolean_text(value)) : through_code_page(value.to_text());
}

// A section or key as Ini_Get is given it; nothing where all names are asked for.
struct Name {
  explicit Name(const Variant& given)
      : text(given.is_null() ? Text() : through_code_page(given.to_text())) {}
  const wchar_t* pointer() const { return text.empty() ? nullptr : text.c_str(); }

  Text text;
};

bool equal_ignoring_case(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// Files written by hand may hold the Italian words.
Text translated_boolean(Text value) {
  if (equal_ignoring_case(value, L"vero")) return L"True";
  if (equal_ignoring_case(value, L"falso")) return L"False";
  return value;
}

}  // namespace

Variant Ini_Get(const Variant& Sect, const Variant& Par, const Variant& DefVal,
                const Object<_QVtIniStruct>& Ini) {
  frame::Reset_Error();
  return frame::handled(L"KwRtLibMod.Ini_Get", frame::kTakeError, Variant(), [&]() -> Variant {
    const Text fallback = text_to_store(DefVal);
    const Name section(Sect);
    const Name key(section.pointer() == nullptr ? Variant() : Par);
    std::array<wchar_t, kBufferLength> buffer;
    const DWORD length =
        GetPrivateProfileStringW(section.pointer(), key.pointer(), fallback.c_str(), buffer.data(),
                                 static_cast<DWORD>(buffer.size()), file_of(Ini).c_str());
    capture_last_dll_error();
    Text value(std::wstring_view(buffer.data(), length));
    return is_boolean(DefVal) ? translated_boolean(std::move(value)) : std::move(value);
  });
}

void Ini_Put(const Text& Sect, const Text& Par, const Variant& NewVal,
             const Object<_QVtIniStruct>& Ini) {
  const Text value = text_to_store(NewVal);
  write(Sect, through_code_page(Par).c_str(), value.c_str(), Ini);
}

void Ini_GetSect(const Text& Sect, Array<Text>& RetVal, const Object<_QVtIniStruct>& Ini) {
  RetVal.redimension(0, 1);
  // The service ends the list with a second character 0; where it writes nothing the list is empty.
  std::array<wchar_t, kBufferLength + 1> buffer{};
  GetPrivateProfileSectionW(through_code_page(Sect).c_str(), buffer.data(), kBufferLength,
                            file_of(Ini).c_str());
  capture_last_dll_error();
  std::vector<std::wstring_view> lines;
  for (const wchar_t* line = buffer.data(); *line != L'\0'; line += lines.back().size() + 1) {
    lines.emplace_back(line);
  }
  Array<Text> list(0, lines.size() + 1);
  std::ranges::copy(lines, list.lock().begin() + 1);
  RetVal = std::move(list);
}

Boolean Ini_PutSect(const Text& Sect, const Array<Text>& Values, const Object<_QVtIniStruct>& Ini) {
  return frame::handled(L"KwRtLibMod.Ini_PutSect", frame::kTakeError, True, [&] {
    std::wstring lines;
    const Long last = Values.upper_bound();
    const Long first = Values.lower_bound();
    const auto elements = Values.lock();
    for (Long i = 1; i <= last; ++i) {
      if (i < first) raise(kSubscriptOutOfRange);
      lines += through_code_page(elements[static_cast<std::size_t>(i - first)]);
      lines += L'\0';
    }
    WritePrivateProfileSectionW(through_code_page(Sect).c_str(), lines.c_str(),
                                file_of(Ini).c_str());
    capture_last_dll_error();
    return False;
  });
}

void Ini_DeleteSection(const Text& Sect, const Object<_QVtIniStruct>& Ini) {
  write(Sect, nullptr, nullptr, Ini);
}

void Ini_DeletePar(const Text& Sect, const Text& Par, const Object<_QVtIniStruct>& Ini) {
  write(Sect, through_code_page(Par).c_str(), nullptr, Ini);
}

}  // namespace qv::config
