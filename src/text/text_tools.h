// Tokens, words, padding, templates and small changes of texts. One character a position, positions
// from 1; every comparison is by character code. What is by reference and not const is changed in
// place. No function has a handler of its own but TranslMessage: run-time errors reach the caller.
#pragma once

#include "automation/variant.h"

namespace qv::text {

// Tokens (tokens.cpp). The separator is one whole text; an empty one separates nothing, so that the
// text is its own first token. The cost is one pass up to the token: nothing is kept between calls,
// since a caller may change a text in place and no call would know.
Text Get_Token(const Text& sSource, const Text& SepChars, Long TokenNo);
// Each "$" of the template is replaced by the next of the texts that stand in InsStr between "$".
Text Str_Format(const Text& FmtStr, const Text& InsStr);
// The same with "%%"; never fails.
Text TranslMessage(const Text& msg, const Text& TranslStr);

// Words (words.cpp): take the first word off a text, with the separator behind it and the blanks
// that follow.
Long Word_Delimiter(const Text& sString);
Text Word_Strip(Text& sString);
Text WordBlk_Strip(Text& sString);
Text WordText_Strip(Text& sString, const Variant& WrdSepChars);

// Fixed lengths (padding.cpp). A length below 0 is run-time error 5, and so is a fill that is
// needed and not given.
Text Pad_Left(const Text& a, Integer l);
Text Pad_Right(const Text& a, Integer l);
Text Pad_HexLeft(const Variant& n, Integer l);
Text Pad_NumLeft(const Variant& n, Integer l, const Text& pc);
Text Pad_NumRight(const Variant& n, Integer l, const Text& pc);
// Run-time error 6 where the integer part does not fit an Integer.
Text Round_Num(const Variant& n, Integer Size);

// Changes (text_changes.cpp). Replacing nothing changes nothing.
void Replace_Str(Text& sstr, const Text& MStr, const Text& rStr);
void Trunc_Last(Text& sstr);
void Trunc_IfLast(Text& sstr, const Text& sLast);
Text Label_Filter(const Text& Caption);
Text Label_Strip(const Text& Caption);
Text C_2_Str(const Text& s);

// The code pages (code_pages.cpp). Character 0 is no letter; an empty text has nothing that is
// none.
Boolean IsAlphaString(const Text& sstr, Boolean Strict);
Boolean IsAlNumString(const Text& sstr, Boolean Strict);
Text Ansi_2_Oem(const Text& a);
Text Oem_2_Ansi(const Text& a);

// Variables (exchange.cpp).
void Swap(Variant& v1, Variant& v2);
void SwapZ(Long& i, Long& j);

}  // namespace qv::text
