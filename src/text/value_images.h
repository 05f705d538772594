// The image of a value in a buffer or a file: the bytes that its type has in memory, little-endian,
// in a text one character each; that of a String is the text itself.
#pragma once

#include "automation/variant.h"

namespace qv::text {

// Characters of the image of a type; run-time error 13 for a type without one, and for String,
// where each text has its own length.
Long image_width(VARTYPE type);

// The value that an image of that type's width holds; a String for any other type. A Byte is read
// as a digit (run-time error 13 for anything else).
Variant value_of_image(Text image, VARTYPE type);

}  // namespace qv::text
