// Values of a bag as texts.
#pragma once

#include <string>

#include "native/bags/typed_value.h"

namespace qv::qvbag {

using native::bags::SpanSource;
using native::bags::ValuePlace;

// All of these are for a value without an error.
// The language's name of the type: "Long", "Long(1 To 2, 0 To 9)".
std::string type_text(const SpanSource& values, const ValuePlace& value);
// UTF-8 for the user's eyes: on one line, and cut where it is long.
std::string shown_value(const SpanSource& values, const ValuePlace& value);
// The members "type" and "value" of an object, and "bounds" of an array. A date is a text such as
// "2026-11-21T05:22:00", or its number where there is no such date; what is no number is a text.
std::string json_members(const SpanSource& values, const ValuePlace& value);

}  // namespace qv::qvbag
