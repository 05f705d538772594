// The directory of a property bag: its entries one after the other, in order of insertion. Each is
// character 0, the name in upper case, character 1, the position of the value (4 bytes, from 1) and
// character 0. docs/formats/property-bag-2.md tells the format.
//
// The characters are bytes in a stored bag and wide ones in a bag that is being worked on, where a
// name may be one that no byte string can hold. Positions count from 0.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv::native::bags {

inline constexpr std::size_t kPositionBytes = 4;
// What an entry has beside its name.
inline constexpr std::size_t kEntryOverhead = 7;

template <class Character>
inline constexpr Character kEntryStart{0};
template <class Character>
inline constexpr Character kNameEnd{1};

// Where the entry of a name, given in upper case, begins; npos if there is none. A name that holds
// character 0 or 1 may lead astray.
template <class Character>
std::size_t find_entry(std::basic_string_view<Character> directory,
                       std::basic_string_view<Character> name) {
  std::basic_string<Character> wanted;
  wanted.reserve(name.size() + 2);
  wanted += kEntryStart<Character>;
  wanted += name;
  wanted += kNameEnd<Character>;
  return directory.find(wanted);
}

// Where the position of the value stands, of the entry that begins there. It may lie behind the end
// of a directory that was cut short.
inline constexpr std::size_t value_position_of(std::size_t entry, std::size_t name_length) {
  return entry + name_length + 2;
}

// Goes through the names in order. A damaged directory gives odd names, and an end.
template <class Character>
class Names {
 public:
  explicit Names(std::basic_string_view<Character> directory)
      : rest_(directory.substr(directory.empty() ? 0 : 1)) {}

  bool next() {
    const std::size_t end = rest_.find(kNameEnd<Character>);
    if (end == rest_.npos) return false;
    name_ = rest_.substr(0, end);
    position_ = rest_.substr(end + 1, kPositionBytes);
    const std::size_t taken = end + kEntryOverhead;
    rest_ = rest_.substr(taken < rest_.size() ? taken : rest_.size());
    return true;
  }
  std::basic_string_view<Character> name() const { return name_; }
  // Fewer than 4 characters at the end of a directory that was cut short.
  std::basic_string_view<Character> value_position() const { return position_; }

 private:
  std::basic_string_view<Character> rest_;
  std::basic_string_view<Character> name_;
  std::basic_string_view<Character> position_;
};

}  // namespace qv::native::bags
