// A stored property bag of either form: its head, and its properties. Nothing in it is believed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "native/bags/directory.h"
#include "native/bags/typed_value.h"

namespace qv::qvbag {

using native::bags::SpanSource;
using native::bags::ValuePlace;

struct Property {
  std::string_view name;  // stored bytes
  ValuePlace value;       // in Bag::values(), where there is no error
  std::string error;      // what is wrong with the value, for the user
};

class Bag {
 public:
  // The bytes of a file. An empty one stands for an empty bag. Throws Failure for what is no bag.
  explicit Bag(std::vector<std::uint8_t> bytes);
  Bag(const Bag&) = delete;
  Bag& operator=(const Bag&) = delete;

  int form() const { return form_; }
  std::int32_t version() const { return version_; }
  // Of the head or the directory, for the user; "" where all is well.
  const std::string& error() const { return error_; }
  SpanSource values() const { return SpanSource(values_); }

  // In order of insertion.
  template <class Visit>
  void for_each_property(Visit&& visit) const {
    std::uint64_t left_bytes = kMostTimes * values_.size();
    for (native::bags::Names<char> entry(directory_); entry.next();) {
      visit(property(entry, left_bytes));
    }
  }

 private:
  // Values of a sound bag lie one after the other, and after deletions a few may overlap. Without a
  // limit on the bytes that are looked at, a small file could name one large value over and over.
  static constexpr std::uint64_t kMostTimes = 4;

  void take_contents();
  Property property(const native::bags::Names<char>& entry, std::uint64_t& left_bytes) const;

  std::vector<std::uint8_t> bytes_;
  int form_ = 2;
  std::int32_t version_ = 0;
  std::string error_;
  std::string_view directory_;
  std::span<const std::uint8_t> values_;
};

}  // namespace qv::qvbag
