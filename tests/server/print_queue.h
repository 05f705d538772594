// A real print queue of the system whose port leads to a file. It is there as long as this lives.
#pragma once

#include <windows.h>
// winspool.h needs windows.h before it.
#include <winspool.h>

#include <cstdlib>
#include <string>

#include "server/temp_folder.h"

namespace qv::tests {

class PrintQueue {
 public:
  PrintQueue(const wchar_t* name, const wchar_t* port) : port_(port) {
    add_driver();
    lead_port_to(output_path());
    PRINTER_INFO_2W info{};
    info.pPrinterName = const_cast<wchar_t*>(name);
    info.pPortName = port_.data();
    info.pDriverName = kDriver;
    info.pPrintProcessor = const_cast<wchar_t*>(L"WinPrint");
    info.pDatatype = const_cast<wchar_t*>(L"RAW");
    queue_ = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
  }
  PrintQueue(const PrintQueue&) = delete;
  PrintQueue& operator=(const PrintQueue&) = delete;
  ~PrintQueue() {
    DeletePrinter(queue_);
    ClosePrinter(queue_);
    lead_port_to(L"");
  }

  bool is_ready() const { return queue_ != nullptr; }
  // The bytes of the last job that reached the port.
  std::string output() const { return folder_.read(kOutput); }
  bool has_printed() const { return folder_.exists(kOutput); }
  void forget() const { DeleteFileW(folder_.file(kOutput).c_str()); }
  // As the system that runs the tests calls the file.
  std::wstring output_path() const {
    using ToUnix = char*(CDECL*)(const wchar_t*);
    const auto to_unix = reinterpret_cast<ToUnix>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (to_unix == nullptr) return L"";
    char* const name = to_unix(folder_.file(kOutput).c_str());
    const std::string text = name;
    HeapFree(GetProcessHeap(), 0, name);
    return std::wstring(text.begin(), text.end());
  }

 private:
  static constexpr const wchar_t* kOutput = L"out.prn";
  static inline wchar_t kDriver[] = L"Test Driver";

  // As little as the system takes for the description of a printer.
  static constexpr const char* kDescription =
      "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
      "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"TEST.PPD\"\n"
      "*Manufacturer: \"Test\"\n*Product: \"(Test)\"\n*ModelName: \"Test\"\n"
      "*ShortNickName: \"Test\"\n*NickName: \"Test\"\n*PSVersion: \"(3010.000) 0\"\n"
      "*LanguageLevel: \"3\"\n*ColorDevice: True\n*DefaultColorSpace: RGB\n*FileSystem: False\n"
      "*DefaultResolution: 600dpi\n"
      "*OpenUI *PageSize: PickOne\n*DefaultPageSize: A4\n"
      "*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n*CloseUI: *PageSize\n"
      "*OpenUI *PageRegion: PickOne\n*DefaultPageRegion: A4\n"
      "*PageRegion A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n*CloseUI: *PageRegion\n"
      "*DefaultImageableArea: A4\n*ImageableArea A4: \"20 30 575 812\"\n"
      "*DefaultPaperDimension: A4\n*PaperDimension A4: \"595 842\"\n";

  static void add_driver() {
    wchar_t folder[260];
    DWORD size = 0;
    if (GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder),
                                   sizeof folder, &size) == FALSE) {
      return;
    }
    const std::wstring versions = std::wstring(folder) + L"\\3";
    CreateDirectoryW(versions.c_str(), nullptr);
    std::wstring description = versions + L"\\qvtest.ppd";
    const HANDLE file = CreateFileW(description.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    WriteFile(file, kDescription, static_cast<DWORD>(lstrlenA(kDescription)), &size, nullptr);
    CloseHandle(file);
    DRIVER_INFO_3W info{};
    info.cVersion = 3;
    info.pName = kDriver;
    info.pDriverPath = const_cast<wchar_t*>(L"wineps.drv");
    info.pConfigFile = const_cast<wchar_t*>(L"wineps.drv");
    info.pDataFile = description.data();
    info.pDefaultDataType = const_cast<wchar_t*>(L"RAW");
    AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&info));
  }

  void lead_port_to(const std::wstring& target) const {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Wine\\Printing\\Spooler", 0, nullptr, 0,
                    KEY_WRITE, nullptr, &key, nullptr);
    if (target.empty()) {
      RegDeleteValueW(key, port_.c_str());
    } else {
      RegSetValueExW(key, port_.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(target.c_str()),
                     static_cast<DWORD>((target.size() + 1) * sizeof(wchar_t)));
    }
    RegCloseKey(key);
  }

  TempFolder folder_;
  std::wstring port_;
  HANDLE queue_ = nullptr;
};

}  // namespace qv::tests
