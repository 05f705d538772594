#include "printing/printer_settings.h"

#include <cstdint>
#include <vector>

#include "automation/foreign_error.h"
#include "class_tables.h"
#include "config/ini_store.h"
#include "config/registry_store.h"
#include "constants.h"
#include "files/path_text.h"
#include "files/system_folders.h"
#include "frame/error_state.h"
#include "printing/device_context.h"
#include "runtime/err.h"

namespace qv::printing {
namespace {

using frame::handled;
using frame::kTakeError;

constexpr const wchar_t* kPrintersKey = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";
constexpr wchar_t kSeparator = L'\0';

Long long_of(std::int64_t number) { return Variant(static_cast<Double>(number)).to_long(); }

// The page geometry that a device context tells of.
class Page {
 public:
  explicit Page(Long device) : device_(device_context(device)) {}

  Long pixels(int index) const {
    const int value = GetDeviceCaps(device_, index);
    capture_last_dll_error();
    return value;
  }
  Long twips(int index, Long pixels_per_inch) const {
    constexpr Double kTwipsPerInch = 1440;
    if (pixels_per_inch == 0) raise(kDivisionByZero);
    const Double inches = static_cast<Double>(pixels(index)) / pixels_per_inch;
    return Variant(inches * kTwipsPerInch).to_long();
  }

 private:
  HDC device_;
};

// What is left of a whole behind a margin and the printable part.
Long margin_behind(Long whole, Long margin, Long printable) {
  const Long covered = long_of(std::int64_t{margin} + printable);
  return long_of(std::int64_t{whole} - covered);
}

bool equal_ignoring_case(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

Object<_QVtIniStruct> win_ini() {
  auto ini = Object<_QVtIniStruct>::from(create_QVtIniStruct());
  const Text file = files::Full_Path(concat({files::Get_WinPath(), L"win.ini"}));
  check(ini->put_IniFile(const_cast<BSTR>(file.c_str())));
  return ini;
}

std::vector<Text> parts_of(std::wstring_view list) {
  std::vector<Text> parts;
  for (;;) {
    const std::size_t end = list.find(kSeparator);
    parts.emplace_back(list.substr(0, end));
    if (end == std::wstring_view::npos) return parts;
    list.remove_prefix(end + 1);
  }
}

void append(Text& list, const Text& entry, bool is_first) {
  if (!is_first) list += std::wstring_view(&kSeparator, 1);
  list += entry;
}

}  // namespace

void QvtPrinter::put_HDC(Long device) {
  device_ = device;
  if (device == 0) {
    *this = QvtPrinter();
    return;
  }
  const Page page(device);
  XRes = page.pixels(LOGPIXELSX);
  YRes = page.pixels(LOGPIXELSY);
  TopOffset = page.twips(PHYSICALOFFSETY, YRes);
  // Programs have always been told the top margin here, and correct it themselves.
  LeftOffset = page.twips(PHYSICALOFFSETY, XRes);
  Width = page.twips(PHYSICALWIDTH, XRes);
  Height = page.twips(PHYSICALHEIGHT, YRes);
  ScaleWidth = page.twips(HORZRES, XRes);
  ScaleHeight = page.twips(VERTRES, YRes);
  RightOffset = margin_behind(Width, LeftOffset, ScaleWidth);
  BottomOffset = margin_behind(Height, TopOffset, ScaleHeight);
}

Boolean GetPrinterParms(Long device, const Object<_QvtPrinter>& PParms) {
  return handled(L"KwRtLibMod.GetPrinterParms", kTakeError, True, [&] {
    check_foreign(PParms, PParms->put_HDC(device));
    return False;
  });
}

Boolean SetDefaultPrinter(const Text& DeviceName, const Text& DriverName, const Text& Port) {
  constexpr const wchar_t* kSection = L"windows";
  constexpr const wchar_t* kKey = L"Device";
  return handled(L"KwRtLibMod.SetDefaultPrinter", kTakeError, True, [&] {
    const auto ini = win_ini();
    const Text fresh = concat({DeviceName, L",", DriverName, L",", Port});
    const Text stored = config::Ini_Get(kSection, kKey, L"", ini).to_text();
    if (equal_ignoring_case(stored, fresh)) return False;
    config::Ini_Put(kSection, kKey, fresh, ini);
    SendMessageW(HWND_BROADCAST, WM_WININICHANGE, 0, reinterpret_cast<LPARAM>(kSection));
    capture_last_dll_error();
    return False;
  });
}

Boolean Get_SpoolPath(Text& defaultSpool, Text& prnNames, Text& prnSpools, Long Flags) {
  constexpr const wchar_t* kSource = L"QvRtLibOle.KwRtLibMod.Get_SpoolPath";
  return handled(kSource, kTakeError, True, [&] {
    defaultSpool = files::machine_text(kPrintersKey, L"DefaultSpoolDirectory").value_or(Text());
    std::vector<Text> names;
    if ((Flags & GetSpoolPathFlags::GSP_ENUMALLPRINTERS) != 0) {
      Array<Text> keys;
      if (config::RegistryListKeys(kPrintersKey, keys, Registry_Keys::HKEY_LOCAL_MACHINE)) {
        frame::Set_Error({.Source = kSource}, frame::kChain);
        return True;
      }
      const auto elements = keys.lock();
      names.assign(elements.begin(), elements.end());
    } else {
      if (prnNames.empty()) return False;
      names = parts_of(prnNames);
    }
    prnNames = Text();
    prnSpools = Text();
    bool is_first = true;
    for (const Text& name : names) {
      if (name.empty()) continue;
      const Text key = concat({kPrintersKey, L"\\", name});
      const Text spool = files::machine_text(key, L"SpoolDirectory").value_or(Text());
      append(prnNames, name, is_first);
      append(prnSpools, spool.empty() ? defaultSpool : spool, is_first);
      is_first = false;
    }
    return False;
  });
}

}  // namespace qv::printing
