// What the program says about a bag.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "qvbag/bag.h"

namespace qv::qvbag {

// Takes what is said, piece by piece.
using Output = std::function<void(std::string_view)>;

// The properties of these names, in any letter case; all where no name is given.
class Selection {
 public:
  // UTF-8. Throws Failure for a name that the bag has not.
  Selection(const Bag& bag, const std::vector<std::string>& names);
  bool holds(const Property& property) const;

 private:
  std::vector<std::u16string> names_;
};

// A line for the bag, and one for each property.
void show(const Bag& bag, const Selection& selection, const Output& output);
void show_json(const Bag& bag, const Selection& selection, const Output& output);
// A line for each thing that is wrong, without a name in front; nothing where all is well.
void tell_errors(const Bag& bag, const Selection& selection, const Output& output);

}  // namespace qv::qvbag
