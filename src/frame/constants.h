// The constants that the language lacks, as read-only properties.
#pragma once

#include "automation/text.h"

namespace qv::frame {

class QvRtLib {
 public:
  static Text get_vbQuote() { return L"\""; }
  static Long get_vbApplicationNotModal() { return 8192; }
  static Long get_vbAsterisk() { return 64; }
  static Long get_vbIconHand() { return 16; }
  static Long get_vbStop() { return 16; }
  // The nearest values that a Currency holds.
  static Currency get_vbMaxCurrency() { return {9223372036854775807}; }
  static Currency get_vbMinCurrency() { return {-9223372036854775807}; }
  // Rounded limits, not the machine's own: applications compare with these.
  static Double get_vbMaxDouble() { return 1.7E+308; }
  static Double get_vbMinDouble() { return 1.7E-308; }
  static Single get_vbMaxSingle() { return 3.4E+38F; }
  static Single get_vbMinSingle() { return 3.4E-38F; }
  static Long get_vbMaxLong() { return 2147483647; }
  static Long get_vbMinLong() { return -2147483647 - 1; }
  static Integer get_vbMinInt() { return -32768; }
  static Integer get_vbMaxInt() { return 32767; }
  static Long get_vbTwipsPerInch() { return 1440; }
  static Long get_vbTwipsPerCent() { return 567; }
  static Single get_vbTwipsPerMill() { return 56.7F; }
  static Long get_vbTwipsPerChaX() { return 120; }
  static Long get_vbTwipsPerCharY() { return 240; }
  static Long get_vbPointsPerInch() { return 72; }
  static Single get_vbPointsPerCent() { return 28.34F; }
  static Single get_vbPointsPerMill() { return 2.83F; }
  static Single get_vbCentPerInch() { return 2.54F; }
  static Long get_vbicons() { return 112; }
};

}  // namespace qv::frame
