// The calling language's random generator, one per thread. It is no source of secrets.
#pragma once

#include "automation/text.h"

namespace qv {

// The next number: from 0 up to, not including, 1, with 53 random bits, so that choices among
// millions stay even. A thread that never called Randomize always gets the same sequence.
Double Rnd();

// Goes on from a place that the clock chooses.
void Randomize();

}  // namespace qv
