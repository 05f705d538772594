// How letters fold in sort keys, in the code page of the running system.
#pragma once

#include "native/zstr/latin_fold.h"

namespace qv::text {

// Made on first use. Code page 1252 has a table of its own; elsewhere the system tells the capital
// of a letter and what a Latin or Greek letter is without its accent. Where the code page does not
// hold the answer, the letter stays.
const native::zstr::Folding& folding_of_code_page();

}  // namespace qv::text
