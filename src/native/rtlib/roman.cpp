#include "native/rtlib/roman.h"

#include <limits>

namespace qv::native::rtlib {
namespace {

struct Group {
  std::u16string_view letters;
  std::int32_t value;
  bool repeats;
};

constexpr Group kGroups[] = {
    {u"M", 1000, true}, {u"CM", 900, false}, {u"D", 500, false}, {u"CD", 400, false},
    {u"C", 100, true},  {u"XC", 90, false},  {u"L", 50, false},  {u"XL", 40, false},
    {u"X", 10, true},   {u"IX", 9, false},   {u"V", 5, false},   {u"IV", 4, false},
    {u"I", 1, true},
};

constexpr std::int32_t kGreatest = 4999;

bool begins_with(std::u16string_view text, std::u16string_view letters) {
  if (text.size() < letters.size()) return false;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (text[i] != letters[i] && text[i] != letters[i] + (u'a' - u'A')) return false;
  }
  return true;
}

}  // namespace

std::u16string roman_from_number(std::int32_t number) {
  std::u16string roman;
  if (number > kGreatest) return roman;
  for (const Group& group : kGroups) {
    for (; number >= group.value; number -= group.value) roman += group.letters;
  }
  return roman;
}

std::optional<std::int32_t> number_from_roman(std::u16string_view roman) {
  std::int64_t sum = 0;
  for (const Group& group : kGroups) {
    while (begins_with(roman, group.letters)) {
      sum += group.value;
      roman.remove_prefix(group.letters.size());
      if (!group.repeats) break;
    }
  }
  if (sum > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(sum);
}

}  // namespace qv::native::rtlib
