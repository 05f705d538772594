// Arguments of every kind that Automation knows, picked at random, for calls that must survive
// them.
#pragma once

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "server/frame_classes.h"

namespace qv::tests {

// Owns what it hands out until the next clear().
class RandomArguments {
 public:
  // Objects among the arguments are made by that library.
  RandomArguments(unsigned seed, const EntryPoints& entry_points)
      : random_(seed), entry_points_(entry_points) {}
  RandomArguments(const RandomArguments&) = delete;
  RandomArguments& operator=(const RandomArguments&) = delete;
  ~RandomArguments() { clear(); }

  // A number from 0 to limit - 1.
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  // A value, a variable or a reference to a typed variable.
  VARIANT argument();
  // Clears everything; each variable must still be sound.
  void clear();

 private:
  VARIANT value();
  VARIANT array();
  VARIANT object();

  std::mt19937 random_;
  const EntryPoints& entry_points_;
  std::deque<VARIANT> owned_;
};

}  // namespace qv::tests
