// A printer's page geometry, the default printer, and where the spooler keeps its files.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::printing {

// Resolutions in pixels per inch, everything else in twips.
class QvtPrinter {
 public:
  Long XRes = 0;
  Long YRes = 0;
  Long BottomOffset = 0;
  Long LeftOffset = 0;
  Long RightOffset = 0;
  Long TopOffset = 0;
  Long Height = 0;
  Long Width = 0;
  Long ScaleHeight = 0;
  Long ScaleWidth = 0;

  Long get_HDC() const noexcept { return device_; }
  // Fills the fields from a device context, or clears them for 0. Run-time error 11 for what is no
  // device context, 6 where a measure does not fit a Long; the fields before that one are filled
  // then.
  void put_HDC(Long device);

 private:
  Long device_ = 0;
};

// True = failure, told by the error state.
Boolean GetPrinterParms(Long device, const Object<_QvtPrinter>& PParms);
Boolean SetDefaultPrinter(const Text& DeviceName, const Text& DriverName, const Text& Port);
// Names and folders are separated by characters 0. A failure to list the printers leaves all as it
// was but defaultSpool.
Boolean Get_SpoolPath(Text& defaultSpool, Text& prnNames, Text& prnSpools, Long Flags);

}  // namespace qv::printing
