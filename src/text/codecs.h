// Values and their bytes: each byte of a value's little-endian memory image is one character of a
// String.
#pragma once

#include "automation/array.h"
#include "automation/text.h"

namespace qv::text {

Text Int_2_Str(Integer SInt);
Text Long_2_Str(Long SLong);
Text Single_2_Str(Single SSingle);
Text Double_2_Str(Double SDbl);
Text Date_2_Str(Date SDate);
Text Currency_2_Str(Currency SCur);

// A text shorter than the value is 0; what is longer is passed over. The text itself is left as the
// ANSI code page gives it back.
Integer Str_2_Int(Text& sString);
Long Str_2_Long(Text& sString);
Single Str_2_Single(Text& sString);
Double Str_2_Double(Text& sstr);
Date Str_2_Date(Text& sstr);
Currency Str_2_Currency(Text& sstr);

Text Str_2_ZStr(const Text& a);
void Str_2_Byte(Text& sstr, Array<Byte>& DByte);
Text Byte_2_Str(const Array<Byte>& DByte);

Integer Hi_Byte(Integer SInt);
Integer Lo_Byte(Integer SInt);
Integer Hi_Word(Long SLong);
Integer Lo_Word(Long SLong);
Integer Make_Int(Integer bLow, Integer bHigh);
Long Make_Long(Integer uLow, Integer uHigh);

}  // namespace qv::text
