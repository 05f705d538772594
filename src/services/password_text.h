// Passwords as printable text for INI files and the registry. This hides them from a glance and is
// no encryption: the text holds all that is needed to restore them.
//
// Short text: the hexadecimal text of the scrambled password. Full text: three such fields joined
// by "-", of the password, of the decimal text of the code that it is scrambled with, and of the
// decimal text of a checksum over the text before it. The last two are scrambled with code 0.
#pragma once

#include "automation/text.h"

namespace qv::services {

// True = failure, told by the error state, with Password empty: 6 for a StartCode above 32767. 0
// scrambles by position, a negative StartCode chooses a code of 0 to 255 at random.
Boolean PasswordCryptEx(Text& Password, Long StartCode);
Boolean PasswordCrypt(Text& Password);

// True = failure, with Password as it was: 20000 "cryptcode" where the check value does not fit, 13
// for what is no hexadecimal digit, 9 for two fields alone, 6 for a code that is no Integer.
Boolean PasswordDecrypt(Text& Password);

}  // namespace qv::services
