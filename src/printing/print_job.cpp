#include "printing/print_job.h"

// winspool.h needs windows.h before it.
#include <winspool.h>

#include <utility>

#include "automation/bytes.h"
#include "frame/error_state.h"

namespace qv::printing {
namespace {

using frame::kAppendSystemText;
using frame::kChain;
using frame::Set_Error;

// Did a service of the spooler, which gives non-zero for success, do its work?
bool succeeded(DWORD result) noexcept {
  capture_last_dll_error();
  return result != 0;
}

void record_refusal() { Set_Error({.Number = frame::kFirstApplicationError}, kAppendSystemText); }

Boolean failed_in(const wchar_t* function) {
  Set_Error({.Source = function}, kChain);
  return True;
}

// The platform's services take names that they do not change as variables.
wchar_t* name_for_service(const Text& name) { return const_cast<wchar_t*>(name.c_str()); }

}  // namespace

Boolean PrintJob::open(const Text& printer, const Text& document, const Text& data_type) {
  if (succeeded(OpenPrinterW(name_for_service(printer), &printer_, nullptr))) {
    DOC_INFO_1W description{name_for_service(document), nullptr,
                            data_type.empty() ? nullptr : name_for_service(data_type)};
    const DWORD job = StartDocPrinterW(printer_, 1, reinterpret_cast<BYTE*>(&description));
    if (succeeded(job)) return False;
  } else {
    printer_ = nullptr;
  }
  record_refusal();
  failed_in(L"KwRtLibMod.DirectOpenPrinter");
  abort();
  return True;
}

Boolean PrintJob::start_page() {
  if (succeeded(StartPagePrinter(printer_))) {
    has_open_page_ = true;
    return False;
  }
  record_refusal();
  return failed_in(L"KwRtLibMod.DirectStartPage");
}

Boolean PrintJob::end_page() {
  has_open_page_ = false;
  if (succeeded(EndPagePrinter(printer_))) return False;
  record_refusal();
  return failed_in(L"KwRtLibMod.DirectEndPage");
}

Boolean PrintJob::write(const Text& data) {
  auto bytes = bytes_of_text(data);
  const auto count = static_cast<DWORD>(bytes.size());
  bytes.push_back(0);  // an empty text has an address too
  DWORD written = 0;
  if (succeeded(WritePrinter(printer_, bytes.data(), count, &written))) return False;
  return failed_in(L"KwRtLibMod.DirectWritePrinter");
}

Boolean PrintJob::close() {
  constexpr const wchar_t* kSource = L"KwRtLibMod.DirectClosePrinter";
  if (has_open_page_ && end_page()) return failed_in(kSource);
  if (!succeeded(EndDocPrinter(printer_))) {
    record_refusal();
    return failed_in(kSource);
  }
  ClosePrinter(std::exchange(printer_, nullptr));
  return False;
}

void PrintJob::abort() noexcept {
  const HANDLE printer = std::exchange(printer_, nullptr);
  if (printer == nullptr) return;
  AbortPrinter(printer);
  ClosePrinter(printer);
}

}  // namespace qv::printing
