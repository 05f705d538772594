// For applications that lay out text themselves: measuring, breaking into lines, drawing at an
// angle, filling a form with a fade. `device` is the handle of a device context.
#pragma once

#include "automation/text.h"
#include "automation/variant.h"

namespace qv::printing {

// In logical units of the device; of no device (0) the number of characters. 0 where the system
// can't measure, run-time error 6 past an Integer.
Integer Text_Extent(Long device, const Text& Buffer);

// Takes a line of width Wdt, in units of Text_Extent, off the front of Buffer. Idt characters 160
// are put in front first; run-time error 5 for fewer than none. Measures the whole of Buffer, so
// its extent must fit an Integer (6). When it raises, Buffer is as it was.
Text Text_Justify(Text& Buffer, Long device, Integer Idt, Integer Wdt);

// True = failure, told by the error state.
Boolean Text_Rotate(Long device, const Text& text, Long DegreesTenths, Long XPixel, Long YPixel);

// On a form or picture box, by way of its ScaleHeight, ScaleWidth and Line. Run-time error 11 for
// one without height, 424 for what is no object. The result is Empty.
Variant Gradient(const Variant& Ctl, const Variant& Band, const Variant& Direction);

}  // namespace qv::printing
