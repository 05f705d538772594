// A failure that ends a command; its text is for the user.
#pragma once

#include <stdexcept>

namespace qv::qvarc {

class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace qv::qvarc
