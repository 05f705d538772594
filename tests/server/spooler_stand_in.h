// Stands in the place of the system's spooler as long as it lives: keeps what the server asks of
// it, refuses on demand, and tells handles that are none from its own, as the spooler does.
#pragma once

#include <windows.h>
// winspool.h needs windows.h before it.
#include <winspool.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "server/import_patch.h"

namespace qv::tests {

class SpoolerStandIn {
 public:
  // What it gives for a handle.
  enum class Handles {
    kCounted,  // 1, 2, 3...
    kWide,     // more than a Long holds, where handles are wider than that
    kAlike     // 7 each time: one printer at a time
  };
  explicit SpoolerStandIn(Handles handles = Handles::kCounted)
      : handles_(handles), outer_(std::exchange(current(), this)) {}
  SpoolerStandIn(const SpoolerStandIn&) = delete;
  SpoolerStandIn& operator=(const SpoolerStandIn&) = delete;
  ~SpoolerStandIn() { current() = outer_; }

  // From now on the service of that name fails with the system's error number; 0: works again.
  void fail(const std::string& service, DWORD error) { failing_[service] = error; }
  // Each call as "service printer", the printers numbered from 1, with what it was given behind.
  // Taken: asked again, only later calls are there.
  std::vector<std::string> calls() { return std::exchange(calls_, {}); }
  const std::string& bytes() const { return bytes_; }
  std::size_t open_printers() const { return open_.size(); }

 private:
  static SpoolerStandIn*& current() {
    static SpoolerStandIn* stand_in = nullptr;
    return stand_in;
  }
  static std::string narrow(const wchar_t* text) {
    if (text == nullptr) return "(none)";
    const std::wstring wide = text;
    return std::string(wide.begin(), wide.end());
  }

  HANDLE handle_of(std::size_t number) const {
    constexpr auto kTop = sizeof(void*) == 8 ? std::size_t{0x12345} << (sizeof(void*) * 4) : 0;
    if (handles_ == Handles::kWide) number |= kTop;
    return reinterpret_cast<HANDLE>(handles_ == Handles::kAlike ? 7 : number);
  }
  std::size_t number_of(HANDLE printer) const {
    for (const std::size_t number : open_) {
      if (handle_of(number) == printer) return number;
    }
    return 0;
  }

  // Logs the call; does the service do its work?
  bool take(const char* service, HANDLE printer, const std::string& details = "") {
    const std::size_t number = number_of(printer);
    calls_.push_back(std::string(service) + " " + std::to_string(number) + details);
    return works(service, number == 0 ? ERROR_INVALID_HANDLE : 0);
  }
  bool works(const char* service, DWORD error) {
    if (failing_[service] != 0) error = failing_[service];
    // What the system has left over from before must not pass for this call's.
    SetLastError(error);
    return error == 0;
  }

  static BOOL WINAPI open_printer(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults) {
    SpoolerStandIn& self = *current();
    self.calls_.push_back("OpenPrinter " + narrow(name) + (defaults != nullptr ? " defaults" : ""));
    *printer = reinterpret_cast<HANDLE>(-1);  // what a refusal leaves is no handle
    if (!self.works("OpenPrinter", 0)) return FALSE;
    const std::size_t number = ++self.last_number_;
    self.open_.insert(number);
    *printer = self.handle_of(number);
    return TRUE;
  }
  static DWORD WINAPI start_doc(HANDLE printer, DWORD level, LPBYTE data) {
    const auto& document = *reinterpret_cast<const DOC_INFO_1W*>(data);
    const std::string details = " " + std::to_string(level) + " " + narrow(document.pDocName) +
                                "|" + narrow(document.pOutputFile) + "|" +
                                narrow(document.pDatatype);
    return current()->take("StartDoc", printer, details) ? 77 : 0;
  }
  static BOOL WINAPI start_page(HANDLE printer) { return current()->take("StartPage", printer); }
  static BOOL WINAPI write_printer(HANDLE printer, LPVOID data, DWORD count, LPDWORD written) {
    if (!current()->take("Write", printer, " " + std::to_string(count))) return FALSE;
    current()->bytes_.append(static_cast<const char*>(data), count);
    *written = 0;  // not examined
    return TRUE;
  }
  static BOOL WINAPI end_page(HANDLE printer) { return current()->take("EndPage", printer); }
  static BOOL WINAPI end_doc(HANDLE printer) { return current()->take("EndDoc", printer); }
  static BOOL WINAPI abort_printer(HANDLE printer) { return current()->take("Abort", printer); }
  static BOOL WINAPI close_printer(HANDLE printer) {
    const std::size_t number = current()->number_of(printer);
    if (!current()->take("Close", printer)) return FALSE;
    current()->open_.erase(number);
    return TRUE;
  }

  Handles handles_;
  SpoolerStandIn* outer_;  // the one that stands in when this is gone
  std::map<std::string, DWORD> failing_;
  std::vector<std::string> calls_;
  std::string bytes_;
  std::set<std::size_t> open_;
  std::size_t last_number_ = 0;
  ImportPatch open_printer_{"OpenPrinterW", open_printer};
  ImportPatch start_doc_{"StartDocPrinterW", start_doc};
  ImportPatch start_page_{"StartPagePrinter", start_page};
  ImportPatch write_printer_{"WritePrinter", write_printer};
  ImportPatch end_page_{"EndPagePrinter", end_page};
  ImportPatch end_doc_{"EndDocPrinter", end_doc};
  ImportPatch abort_printer_{"AbortPrinter", abort_printer};
  ImportPatch close_printer_{"ClosePrinter", close_printer};
};

}  // namespace qv::tests
