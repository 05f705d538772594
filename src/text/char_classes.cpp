#include "native/rtlib/char_class.h"
#include "text/primitives.h"

namespace qv::text {

using native::rtlib::CharClass;
using native::rtlib::is_class;

Boolean IsAlnum(Integer c) { return is_class(c, CharClass::kAlnum); }
Boolean IsAlpha(Integer c) { return is_class(c, CharClass::kAlpha); }
Boolean IsAscii(Integer c) { return is_class(c, CharClass::kAscii); }
Boolean IsCntrl(Integer c) { return is_class(c, CharClass::kCntrl); }
Boolean IsCsym(Integer c) { return is_class(c, CharClass::kCsym); }
Boolean IsCsymf(Integer c) { return is_class(c, CharClass::kCsymf); }
Boolean IsDigit(Integer c) { return is_class(c, CharClass::kDigit); }
Boolean IsGraph(Integer c) { return is_class(c, CharClass::kGraph); }
Boolean IsLower(Integer c) { return is_class(c, CharClass::kLower); }
Boolean IsPrint(Integer c) { return is_class(c, CharClass::kPrint); }
Boolean IsPunct(Integer c) { return is_class(c, CharClass::kPunct); }
Boolean IsSpace(Integer c) { return is_class(c, CharClass::kSpace); }
Boolean IsUpper(Integer c) { return is_class(c, CharClass::kUpper); }
Boolean IsXdigit(Integer c) { return is_class(c, CharClass::kXdigit); }

}  // namespace qv::text
