// A program that is killed in the middle of its work leaves files that are whole, or that are
// refused, and never one that passes for what it is not.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "server/client.h"
#include "server/temp_folder.h"
#include "soak/soak.h"

namespace qv::tests {
namespace {

namespace fs = std::filesystem;

constexpr int kSources = 6;
constexpr LONG kFilterBits = 4000000;
constexpr LONG kLongestStep = 9;
constexpr int kKeys = 60;

std::wstring source_name(int number) { return L"source" + std::to_wstring(number) + L".bin"; }

std::string source_bytes(int number) {
  std::string bytes;
  std::uint32_t state = static_cast<std::uint32_t>(number);
  for (int i = 0; i < 40000 * (number + 1); ++i) {
    state = state * 1664525 + 1013904223;
    bytes += i % 3 == 0 ? static_cast<char>(state >> 24) : 'x';
  }
  return bytes;
}

Value sources_in(const std::wstring& folder) {
  SAFEARRAYBOUND bound{kSources, 0};
  Value list;
  list.vt = VT_ARRAY | VT_BSTR;
  list.parray = SafeArrayCreate(VT_BSTR, 1, &bound);
  for (LONG i = 0; i < kSources; ++i) {
    SafeArrayPutElement(list.parray, &i, String(folder + source_name(i)));
  }
  return list;
}

std::wstring key_text(int number) { return L"Key" + std::to_wstring(number); }
std::wstring value_text(int number) {
  return L"value of key " + std::to_wstring(number) + std::wstring(40, L'.');
}

void write_filter(const std::wstring& folder, LONG step) {
  const auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  LONG size = kFilterBits;
  VARIANT_BOOL failed = VARIANT_FALSE;
  filter->Init(&size, &failed);
  for (LONG bit = 0; bit < kFilterBits / 8; bit += step) {
    SHORT one = 1;
    SHORT old = 0;
    filter->BitSet(&bit, &one, &old);
  }
  String file(folder + L"set.flt");
  filter->Save(&file, &failed);
}

bool is_one_of_the_filters(_QvtBloomFilter* filter) {
  LONG first = -1;
  filter->NextBit(&first, &first);
  LONG second = first;
  filter->NextBit(&second, &second);
  const LONG step = second - first;
  if (first != 0 || step < 2 || step > kLongestStep) return false;
  LONG count = 0;
  filter->Count(&count);
  LONG last = 0;
  for (LONG bit = 0; bit >= 0; filter->NextBit(&bit, &bit)) {
    if (bit % step != 0) return false;
    last = bit;
  }
  return count == (kFilterBits / 8 - 1) / step + 1 && last == (count - 1) * step;
}

// Files of a folder that have a source's name and not a source's bytes.
int damaged_in(const std::wstring& folder) {
  int damaged = 0;
  for (int i = 0; i < kSources; ++i) {
    const std::wstring path = folder + source_name(i);
    if (fs::exists(path)) damaged += bytes_of_file(path) != source_bytes(i) ? 1 : 0;
  }
  return damaged;
}

void check(const char* what, bool holds, LONG detail = 0) {
  if (holds) {
    std::printf("ok %s\n", what);
  } else {
    std::printf("FAILED %s: %ld\n", what, detail);
  }
}

void check_archive(_KwRtLib* global, const std::wstring& folder) {
  String archive(folder + L"a.kwc");
  String target(folder + L"check");
  VARIANT_BOOL failed = VARIANT_FALSE;
  LONG number = 0;
  fs::remove_all(target.view());
  global->FileUnzip(&archive, &target, nullptr, &failed);
  global->Error_Number(&number);
  const std::wstring restored = folder + L"check\\";
  check("no damaged file is restored", damaged_in(restored) == 0);
  if (failed == VARIANT_FALSE) {
    int whole = 0;
    for (int i = 0; i < kSources; ++i) whole += fs::exists(restored + source_name(i)) ? 1 : 0;
    check("an archive that is read is whole", whole == kSources, whole);
  } else {
    check("an archive that is not whole is refused", number >= 20000 && number <= 20030, number);
  }
  global->Reset_Error();
}

}  // namespace

void write_until_killed(const std::wstring& folder) {
  const auto global = create_global();
  for (int i = 0; i < kSources; ++i) write_file(folder + source_name(i), source_bytes(i));
  auto ini = create<_QVtIniStruct>(CLSID_QVtIniStruct);
  ini->put_IniFile(String(folder + L"settings.ini"));
  for (LONG step = 2;; step = step == kLongestStep ? 2 : step + 1) {
    Value source = sources_in(folder);
    String archive(folder + L"a.kwc");
    String target(folder + L"out");
    VARIANT_BOOL failed = VARIANT_FALSE;
    global->FileZip(&source, &archive, nullptr, nullptr, &failed);
    global->FileUnzip(&archive, &target, nullptr, &failed);
    write_filter(folder, step);
    for (int i = 0; i < kKeys; ++i) {
      String section(L"Section");
      String key(key_text(i));
      Value value(value_text(i));
      global->Ini_Put(&section, &key, &value, ini.variable());
    }
    write_file(folder + L"ready", "");
  }
}

void check_what_is_left(const std::wstring& folder) {
  const auto global = create_global();
  check_archive(global.get(), folder);
  check("files restored before are whole", damaged_in(folder + L"out\\") == 0);

  const auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  String file(folder + L"set.flt");
  VARIANT_BOOL failed = VARIANT_FALSE;
  filter->Load(&file, &failed);
  check("a filter is whole or refused",
        failed != VARIANT_FALSE || is_one_of_the_filters(filter.get()));

  auto ini = create<_QVtIniStruct>(CLSID_QVtIniStruct);
  ini->put_IniFile(String(folder + L"settings.ini"));
  LONG kept = 0;
  for (int i = 0; i < kKeys; ++i) {
    Value section(L"Section");
    Value key(key_text(i));
    Value fallback(L"");
    Value found;
    global->Ini_Get(&section, &key, &fallback, ini.variable(), &found);
    kept += found.bstrVal == value_text(i) ? 1 : 0;
  }
  check("an INI file keeps its values", kept == kKeys, kept);
  std::puts("done");
}

}  // namespace qv::tests
