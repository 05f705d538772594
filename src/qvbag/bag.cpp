#include "qvbag/bag.h"

#include <algorithm>
#include <utility>

#include "console/program.h"
#include "native/bags/stored_bag.h"

namespace qv::qvbag {
namespace {

namespace bags = native::bags;
using bags::BagStatus;
using bags::ReadStatus;
using console::Failure;

constexpr std::int32_t kVersionOfNothing = 512;

// Of magic or typed version, version and size of the directory.
constexpr std::size_t head_bytes(int form) { return form == 1 ? 9 : 11; }

const char* reason_of(const SpanSource& values, const ValuePlace& value) {
  switch (value.status) {
    case ReadStatus::kCutShort:
      return "the bag ends within its value";
    case ReadStatus::kUnknownTag:
      return "its value is of an unknown type";
    case ReadStatus::kNegativeLength:
      return "the length of its value is negative";
    case ReadStatus::kDone:
      break;
  }
  if (value.tag != static_cast<std::uint8_t>(bags::Tag::kArray)) return nullptr;
  const auto fitting_bytes = array_bytes(values, value, bags::fixed_width(value.element));
  return fitting_bytes != value.data_bytes ? "the bounds of its array don't fit the elements"
                                           : nullptr;
}

}  // namespace

Bag::Bag(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
  if (bytes_.empty()) {
    version_ = kVersionOfNothing;
  } else {
    take_contents();
  }
}

void Bag::take_contents() {
  const SpanSource source(bytes_);
  bags::BagParts parts = bags::find_bag_2(source);
  if (parts.status == BagStatus::kNoBag) {
    form_ = 1;
    parts = bags::find_bag_1(source);
  }
  if (parts.status == BagStatus::kNoBag) throw Failure("the file holds no property bag");
  version_ = parts.version;
  const std::size_t head = head_bytes(form_);
  if (bytes_.size() < head) {
    error_ = "the file ends within the head of the bag";
    return;
  }
  if (parts.status == BagStatus::kNegativeSize) {
    error_ = "the size of the directory is negative";
    return;
  }
  const auto asked_bytes = static_cast<std::size_t>(
      bags::read_number<std::int32_t>(source, head - sizeof(std::int32_t)));
  if (asked_bytes > parts.directory_bytes) error_ = "the file ends within the directory of the bag";
  const auto whole = std::span<const std::uint8_t>(bytes_);
  const auto directory = whole.subspan(parts.directory, parts.directory_bytes);
  directory_ = {reinterpret_cast<const char*>(directory.data()), directory.size()};
  values_ = whole.subspan(parts.data, parts.data_bytes);
}

Property Bag::property(const bags::Names<char>& entry, std::uint64_t& left_bytes) const {
  Property property{.name = entry.name(), .value = {}, .error = {}};
  const auto stored = entry.value_position();
  if (stored.size() < bags::kPositionBytes) {
    property.error = "the directory ends within its entry";
    return property;
  }
  const SpanSource position_bytes(
      {reinterpret_cast<const std::uint8_t*>(stored.data()), stored.size()});
  const auto position = bags::read_number<std::int32_t>(position_bytes, 0);
  if (position < 1 || static_cast<std::size_t>(position) > values_.size()) {
    property.error = "no value lies at its position " + std::to_string(position);
    return property;
  }
  const auto start = static_cast<std::size_t>(position - 1);
  if (left_bytes > 0) property.value = bags::find_value(values(), start);
  const std::size_t read_bytes = property.value.end - std::min(start, property.value.end);
  if (left_bytes == 0 || read_bytes > left_bytes) {
    left_bytes = 0;
    property.error = "its value is one of too many that overlap";
    return property;
  }
  left_bytes -= read_bytes;
  if (const char* reason = reason_of(values(), property.value)) property.error = reason;
  return property;
}

}  // namespace qv::qvbag
