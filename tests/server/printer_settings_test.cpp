// Page geometry by device contexts, the default printer, spool folders.
#include <windows.h>
// winspool.h needs windows.h before it.
#include <winspool.h>

#include <cmath>
#include <map>

#include "server/canvas.h"
#include "server/client.h"
#include "server/form_control.h"
#include "server/import_patch.h"
#include "server/message_watch.h"
#include "server/print_queue.h"

// The system's headers call it by one of its two forms.
#undef SetDefaultPrinter

namespace qv::tests {
namespace {

struct Geometry {
  LONG x_resolution, y_resolution;
  LONG left, top, right, bottom;
  LONG width, height, printable_width, printable_height;
  friend bool operator==(const Geometry&, const Geometry&) = default;
};

std::ostream& operator<<(std::ostream& out, const Geometry& g) {
  return out << g.x_resolution << "x" << g.y_resolution << " margins " << g.left << " " << g.top
             << " " << g.right << " " << g.bottom << " page " << g.width << "x" << g.height
             << " printable " << g.printable_width << "x" << g.printable_height;
}

Geometry geometry_of(const Pointer<_QvtPrinter>& printer) {
  Geometry g{};
  EXPECT_EQ(printer->get_XRes(&g.x_resolution), S_OK);
  EXPECT_EQ(printer->get_YRes(&g.y_resolution), S_OK);
  EXPECT_EQ(printer->get_LeftOffset(&g.left), S_OK);
  EXPECT_EQ(printer->get_TopOffset(&g.top), S_OK);
  EXPECT_EQ(printer->get_RightOffset(&g.right), S_OK);
  EXPECT_EQ(printer->get_BottomOffset(&g.bottom), S_OK);
  EXPECT_EQ(printer->get_Width(&g.width), S_OK);
  EXPECT_EQ(printer->get_Height(&g.height), S_OK);
  EXPECT_EQ(printer->get_ScaleWidth(&g.printable_width), S_OK);
  EXPECT_EQ(printer->get_ScaleHeight(&g.printable_height), S_OK);
  return g;
}

// By the definition of each measure.
Geometry expected_geometry(HDC device) {
  const auto caps = [device](int index) { return GetDeviceCaps(device, index); };
  const double x = caps(LOGPIXELSX);
  const double y = caps(LOGPIXELSY);
  Geometry g{};
  g.x_resolution = caps(LOGPIXELSX);
  g.y_resolution = caps(LOGPIXELSY);
  g.top = std::lrint(caps(PHYSICALOFFSETY) / y * 1440);
  g.left = std::lrint(caps(PHYSICALOFFSETY) / x * 1440);
  g.width = std::lrint(caps(PHYSICALWIDTH) / x * 1440);
  g.height = std::lrint(caps(PHYSICALHEIGHT) / y * 1440);
  g.printable_width = std::lrint(caps(HORZRES) / x * 1440);
  g.printable_height = std::lrint(caps(VERTRES) / y * 1440);
  g.right = g.width - (g.left + g.printable_width);
  g.bottom = g.height - (g.top + g.printable_height);
  return g;
}

LONG handle_of(HDC device) { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(device)); }

// What a device answers, by index.
std::map<int, int> device_answers;
int WINAPI answer_for_device(HDC, int index) { return device_answers[index]; }

class PrinterSettings : public testing::Test {
 protected:
  void SetUp() override { global->Reset_Error(); }
  void expect_record(LONG number, const wchar_t* source) {
    LONG recorded = 0;
    global->Error_Number(&recorded);
    EXPECT_EQ(recorded, number);
    String text;
    global->Error_Source(&text);
    EXPECT_EQ(text, source);
    global->Reset_Error();
  }
  VARIANT_BOOL get_parameters(LONG device, _QvtPrinter** record) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->GetPrinterParms(&device, record, &failed), S_OK);
    return failed;
  }

  Pointer<_KwRtLib> global = create_global();
  Pointer<_QvtPrinter> printer = create<_QvtPrinter>(CLSID_QvtPrinter);
};

TEST_F(PrinterSettings, A_new_record_is_all_zero) {
  EXPECT_EQ(geometry_of(printer), Geometry{});
  LONG device = 5;
  EXPECT_EQ(printer->get_HDC(&device), S_OK);
  EXPECT_EQ(device, 0);
}

TEST_F(PrinterSettings, Every_field_can_be_written) {
  EXPECT_EQ(printer->put_XRes(1), S_OK);
  EXPECT_EQ(printer->put_YRes(2), S_OK);
  EXPECT_EQ(printer->put_LeftOffset(3), S_OK);
  EXPECT_EQ(printer->put_TopOffset(4), S_OK);
  EXPECT_EQ(printer->put_RightOffset(5), S_OK);
  EXPECT_EQ(printer->put_BottomOffset(6), S_OK);
  EXPECT_EQ(printer->put_Width(7), S_OK);
  EXPECT_EQ(printer->put_Height(8), S_OK);
  EXPECT_EQ(printer->put_ScaleWidth(9), S_OK);
  EXPECT_EQ(printer->put_ScaleHeight(-10), S_OK);
  EXPECT_EQ(geometry_of(printer), (Geometry{1, 2, 3, 4, 5, 6, 7, 8, 9, -10}));
}

TEST_F(PrinterSettings, HDC_fills_the_record_from_a_device) {
  const ImportPatch caps("GetDeviceCaps", answer_for_device);
  ASSERT_TRUE(caps.is_in_place());
  device_answers = {{LOGPIXELSX, 600},     {LOGPIXELSY, 300},     {PHYSICALOFFSETX, 150},
                    {PHYSICALOFFSETY, 50}, {PHYSICALWIDTH, 4960}, {PHYSICALHEIGHT, 3507},
                    {HORZRES, 4660},       {VERTRES, 3400}};
  EXPECT_EQ(printer->put_HDC(77), S_OK);
  // The left margin is the top one, in the other direction's resolution.
  EXPECT_EQ(geometry_of(printer),
            (Geometry{600, 300, 120, 240, 600, 274, 11904, 16834, 11184, 16320}));
  LONG device = 0;
  EXPECT_EQ(printer->get_HDC(&device), S_OK);
  EXPECT_EQ(device, 77);
}

TEST_F(PrinterSettings, Measures_are_rounded_to_the_nearest_ties_to_even) {
  const ImportPatch caps("GetDeviceCaps", answer_for_device);
  device_answers = {{LOGPIXELSX, 2880}, {LOGPIXELSY, 2880},  {PHYSICALOFFSETY, 1},
                    {PHYSICALWIDTH, 3}, {PHYSICALHEIGHT, 5}, {HORZRES, 7},
                    {VERTRES, 2}};
  EXPECT_EQ(printer->put_HDC(77), S_OK);
  EXPECT_EQ(geometry_of(printer), (Geometry{2880, 2880, 0, 0, -2, 1, 2, 2, 4, 1}));
}

TEST_F(PrinterSettings, HDC_of_the_screen_has_no_paper) {
  const Canvas canvas(10, 10);
  EXPECT_EQ(printer->put_HDC(canvas.handle()), S_OK);
  EXPECT_EQ(geometry_of(printer), expected_geometry(canvas.device()));
  EXPECT_EQ(geometry_of(printer).width, 0);
  EXPECT_LT(geometry_of(printer).right, 0);
}

TEST_F(PrinterSettings, HDC_of_a_printer_is_its_page) {
  const PrintQueue queue(L"QvTestPage", L"LPT4:");
  ASSERT_TRUE(queue.is_ready());
  const HDC device = CreateICW(L"WINSPOOL", L"QvTestPage", nullptr, nullptr);
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(printer->put_HDC(handle_of(device)), S_OK);
  const Geometry geometry = geometry_of(printer);
  EXPECT_EQ(geometry, expected_geometry(device));
  // A sheet of A4, to a point.
  EXPECT_NEAR(geometry.width, 595 * 20, 20);
  EXPECT_NEAR(geometry.height, 842 * 20, 20);
  EXPECT_GT(geometry.bottom, 0);
  DeleteDC(device);
}

TEST_F(PrinterSettings, HDC_0_clears_the_record) {
  const Canvas canvas(10, 10);
  EXPECT_EQ(printer->put_HDC(canvas.handle()), S_OK);
  EXPECT_EQ(printer->put_HDC(0), S_OK);
  EXPECT_EQ(geometry_of(printer), Geometry{});
  LONG device = 5;
  EXPECT_EQ(printer->get_HDC(&device), S_OK);
  EXPECT_EQ(device, 0);
}

TEST_F(PrinterSettings, HDC_of_what_is_no_device_context_raises_11) {
  const Canvas canvas(10, 10);
  EXPECT_EQ(printer->put_HDC(canvas.handle()), S_OK);
  const Geometry before = geometry_of(printer);
  EXPECT_EQ(printer->put_HDC(1), error_result(11));
  // The handle and the resolutions are those of the new one, the rest is as it was.
  Geometry expected = before;
  expected.x_resolution = expected.y_resolution = 0;
  EXPECT_EQ(geometry_of(printer), expected);
  LONG device = 0;
  EXPECT_EQ(printer->get_HDC(&device), S_OK);
  EXPECT_EQ(device, 1);
}

TEST_F(PrinterSettings, HDC_of_one_resolution_alone_raises_11) {
  const ImportPatch caps("GetDeviceCaps", answer_for_device);
  device_answers = {{LOGPIXELSX, 0}, {LOGPIXELSY, 600}, {PHYSICALOFFSETY, 10}};
  EXPECT_EQ(printer->put_HDC(77), error_result(11));
  EXPECT_EQ(geometry_of(printer).top, 24);
  device_answers = {{LOGPIXELSX, 600}, {LOGPIXELSY, 0}, {PHYSICALOFFSETY, 10}};
  EXPECT_EQ(printer->put_HDC(77), error_result(11));
}

TEST_F(PrinterSettings, A_measure_past_a_Long_raises_6) {
  const ImportPatch caps("GetDeviceCaps", answer_for_device);
  device_answers = {{LOGPIXELSX, 1}, {LOGPIXELSY, 1}, {PHYSICALWIDTH, 1491309}};
  EXPECT_EQ(printer->put_HDC(77), error_result(6));
  EXPECT_EQ(geometry_of(printer).width, 0);
  // Each measure fits, the sum of two does not.
  device_answers = {
      {LOGPIXELSX, 1}, {LOGPIXELSY, 1}, {PHYSICALOFFSETY, 1000000}, {HORZRES, 1000000}};
  EXPECT_EQ(printer->put_HDC(77), error_result(6));
  EXPECT_EQ(geometry_of(printer).left, 1440000000);
  EXPECT_EQ(geometry_of(printer).right, 0);
}

TEST_F(PrinterSettings, GetPrinterParms_fills_the_callers_record) {
  const Canvas canvas(10, 10);
  EXPECT_EQ(get_parameters(canvas.handle(), printer.variable()), VARIANT_FALSE);
  EXPECT_EQ(geometry_of(printer), expected_geometry(canvas.device()));
  EXPECT_EQ(get_parameters(0, printer.variable()), VARIANT_FALSE);
  EXPECT_EQ(geometry_of(printer), Geometry{});
}

TEST_F(PrinterSettings, GetPrinterParms_records_failures) {
  EXPECT_EQ(get_parameters(1, printer.variable()), VARIANT_TRUE);
  expect_record(11, L"KwRtLibMod.GetPrinterParms");
  _QvtPrinter* nothing = nullptr;
  EXPECT_EQ(get_parameters(0, &nothing), VARIANT_TRUE);
  expect_record(91, L"KwRtLibMod.GetPrinterParms");
  const ImportPatch caps("GetDeviceCaps", answer_for_device);
  device_answers = {{LOGPIXELSX, 1}, {LOGPIXELSY, 1}, {PHYSICALWIDTH, 1491309}};
  EXPECT_EQ(get_parameters(77, printer.variable()), VARIANT_TRUE);
  expect_record(6, L"KwRtLibMod.GetPrinterParms");
}

class DefaultPrinter : public PrinterSettings {
 protected:
  DefaultPrinter() : before_(stored()) {}
  ~DefaultPrinter() override {
    WritePrivateProfileStringW(L"windows", L"Device", before_.empty() ? nullptr : before_.c_str(),
                               win_ini().c_str());
    DestroyWindow(window);
  }

  static std::wstring win_ini() {
    wchar_t folder[260];
    GetWindowsDirectoryW(folder, 260);
    return std::wstring(folder) + L"\\win.ini";
  }
  static std::wstring stored() {
    wchar_t text[512];
    GetPrivateProfileStringW(L"windows", L"Device", L"", text, 512, win_ini().c_str());
    return text;
  }
  VARIANT_BOOL set(const wchar_t* device, const wchar_t* driver, const wchar_t* port) {
    String a(device);
    String b(driver);
    String c(port);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->SetDefaultPrinter(&a, &b, &c, &failed), S_OK);
    return failed;
  }

  const HWND window =
      CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  std::wstring told;
  MessageWatch watch{window, WM_WININICHANGE, [this](WPARAM, LPARAM section) {
                       told += reinterpret_cast<const wchar_t*>(section);
                       return 0;
                     }};

 private:
  std::wstring before_;
};

TEST_F(DefaultPrinter, SetDefaultPrinter_writes_the_entry_and_tells_all_windows) {
  EXPECT_EQ(set(L"QvPrinter", L"qvdriver", L"LPT9:"), VARIANT_FALSE);
  EXPECT_EQ(stored(), L"QvPrinter,qvdriver,LPT9:");
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 0U);
  EXPECT_EQ(told, L"windows");
  EXPECT_EQ(set(L"Another", L"qvdriver", L"LPT9:"), VARIANT_FALSE);
  EXPECT_EQ(stored(), L"Another,qvdriver,LPT9:");
  EXPECT_EQ(watch.seen().size(), 2U);
}

TEST_F(DefaultPrinter, SetDefaultPrinter_with_the_current_value_in_another_case_does_nothing) {
  EXPECT_EQ(set(L"QvPrinter", L"qvdriver", L"LPT9:"), VARIANT_FALSE);
  EXPECT_EQ(set(L"QVPRINTER", L"QvDriver", L"lpt9:"), VARIANT_FALSE);
  EXPECT_EQ(stored(), L"QvPrinter,qvdriver,LPT9:");
  EXPECT_EQ(watch.seen().size(), 1U);
}

TEST_F(DefaultPrinter, SetDefaultPrinter_of_nothing_is_two_commas) {
  EXPECT_EQ(set(L"", L"", L""), VARIANT_FALSE);
  EXPECT_EQ(stored(), L",,");
}

constexpr const wchar_t* kPrintersKey = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";

class SpoolPaths : public PrinterSettings {
 protected:
  SpoolPaths() {
    wchar_t text[260];
    DWORD size = sizeof text;
    had_default_ = RegGetValueW(HKEY_LOCAL_MACHINE, kPrintersKey, kDefault, RRF_RT_REG_SZ, nullptr,
                                text, &size) == ERROR_SUCCESS;
    if (had_default_) default_before_ = text;
    put(kPrintersKey, kDefault, L"C:\\spool");
    put(key_of(L"QvSpoolA"), L"SpoolDirectory", L"D:\\spool a");
    put(key_of(L"QvSpoolB"), L"Other", L"x");
    put(key_of(L"QvSpoolC"), L"SpoolDirectory", L"");
  }
  ~SpoolPaths() override {
    for (const wchar_t* name : {L"QvSpoolA", L"QvSpoolB", L"QvSpoolC"}) {
      RegDeleteKeyW(HKEY_LOCAL_MACHINE, key_of(name).c_str());
    }
    if (had_default_) {
      put(kPrintersKey, kDefault, default_before_.c_str());
    } else {
      RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kPrintersKey, kDefault);
    }
  }

  static std::wstring key_of(const wchar_t* name) {
    return std::wstring(kPrintersKey) + L"\\" + name;
  }
  static void put(const std::wstring& key, const wchar_t* name, const wchar_t* text) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text,
                    static_cast<DWORD>((lstrlenW(text) + 1) * sizeof(wchar_t)));
  }
  static std::vector<std::wstring> parts(const String& list) {
    std::vector<std::wstring> all(1);
    for (const wchar_t unit : list.view()) {
      if (unit == L'\0') {
        all.emplace_back();
      } else {
        all.back() += unit;
      }
    }
    return all;
  }
  VARIANT_BOOL get(String& fallback, String& names, String& spools, LONG flags) {
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->Get_SpoolPath(&fallback, &names, &spools, &flags, &failed), S_OK);
    return failed;
  }

  static constexpr const wchar_t* kDefault = L"DefaultSpoolDirectory";

 private:
  bool had_default_ = false;
  std::wstring default_before_;
};

TEST_F(SpoolPaths, Without_names_only_the_default_is_filled) {
  String fallback(L"before");
  String names;
  String spools(L"kept");
  EXPECT_EQ(get(fallback, names, spools, 0), VARIANT_FALSE);
  EXPECT_EQ(fallback, L"C:\\spool");
  EXPECT_EQ(names, L"");
  EXPECT_EQ(spools, L"kept");
}

TEST_F(SpoolPaths, Lists_run_in_step_and_a_printer_without_a_folder_has_the_default) {
  String fallback;
  String names(std::wstring_view(L"QvSpoolA\0QvSpoolB\0\0QvSpoolC\0QvNone\0", 35));
  String spools;
  EXPECT_EQ(get(fallback, names, spools, 0), VARIANT_FALSE);
  EXPECT_EQ(names.view(), std::wstring_view(L"QvSpoolA\0QvSpoolB\0QvSpoolC\0QvNone", 33));
  EXPECT_EQ(spools.view(), std::wstring_view(L"D:\\spool a\0C:\\spool\0C:\\spool\0C:\\spool", 37));
}

TEST_F(SpoolPaths, One_name_has_no_separator) {
  String fallback;
  String names(L"QvSpoolA");
  String spools(L"before");
  EXPECT_EQ(get(fallback, names, spools, 0), VARIANT_FALSE);
  EXPECT_EQ(names, L"QvSpoolA");
  EXPECT_EQ(spools, L"D:\\spool a");
}

TEST_F(SpoolPaths, Empty_entries_alone_give_empty_lists) {
  String fallback;
  String names(std::wstring_view(L"\0\0", 2));
  String spools(L"before");
  EXPECT_EQ(get(fallback, names, spools, 0), VARIANT_FALSE);
  EXPECT_EQ(names, L"");
  EXPECT_EQ(spools, L"");
}

TEST_F(SpoolPaths, Without_a_default_folder_entries_are_empty) {
  RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kPrintersKey, kDefault);
  String fallback(L"before");
  String names(std::wstring_view(L"QvSpoolA\0QvSpoolB\0QvSpoolC", 26));
  String spools;
  EXPECT_EQ(get(fallback, names, spools, 0), VARIANT_FALSE);
  EXPECT_EQ(fallback, L"");
  EXPECT_EQ(spools.view(), std::wstring_view(L"D:\\spool a\0\0", 12));
}

TEST_F(SpoolPaths, All_printers_are_those_of_the_registry) {
  String fallback;
  String names(L"not looked at");
  String spools;
  EXPECT_EQ(get(fallback, names, spools, 1), VARIANT_FALSE);
  const auto all_names = parts(names);
  const auto all_spools = parts(spools);
  ASSERT_EQ(all_names.size(), all_spools.size());
  std::map<std::wstring, std::wstring> found;
  for (std::size_t i = 0; i < all_names.size(); ++i) found[all_names[i]] = all_spools[i];
  EXPECT_EQ(found[L"QvSpoolA"], L"D:\\spool a");
  EXPECT_EQ(found[L"QvSpoolB"], L"C:\\spool");
  EXPECT_EQ(found[L"QvSpoolC"], L"C:\\spool");
  EXPECT_FALSE(found.contains(L""));
  EXPECT_FALSE(found.contains(L"not looked at"));
}

TEST_F(SpoolPaths, Other_flags_play_no_part) {
  String fallback;
  String names(L"QvSpoolA");
  String spools;
  EXPECT_EQ(get(fallback, names, spools, 6), VARIANT_FALSE);
  EXPECT_EQ(names, L"QvSpoolA");
}

TEST_F(SpoolPaths, Arguments_may_be_left_out) {
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->Get_SpoolPath(nullptr, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

LSTATUS WINAPI open_no_key(HKEY, LPCWSTR, DWORD, REGSAM, PHKEY) { return ERROR_ACCESS_DENIED; }

TEST_F(SpoolPaths, A_list_of_printers_that_is_refused_is_recorded) {
  const ImportPatch opening("RegOpenKeyExW", open_no_key);
  ASSERT_TRUE(opening.is_in_place());
  String fallback(L"before");
  String names(L"names");
  String spools(L"spools");
  EXPECT_EQ(get(fallback, names, spools, 1), VARIANT_TRUE);
  EXPECT_EQ(fallback, L"");
  EXPECT_EQ(names, L"names");
  EXPECT_EQ(spools, L"spools");
  expect_record(20000, L"KwRtLibMod.RegistryListKeys < QvRtLibOle.KwRtLibMod.Get_SpoolPath");
}

}  // namespace
}  // namespace qv::tests
