#include "qvbag/shown_bag.h"

#include <algorithm>
#include <system_error>

#include "console/json.h"
#include "console/program.h"
#include "console/text.h"
#include "qvbag/value.h"

namespace qv::qvbag {
namespace {

// Names longer than this stand where they are, and what follows them further right.
constexpr std::size_t kMostNameColumns = 32;
constexpr std::size_t kTypeColumns = 8;

// Lower-case letters of the code pages and how far their capitals lie below them, as the library
// folds the names that it stores.
struct Letters {
  char16_t first;
  char16_t last;
  int distance;
};
constexpr Letters kSmallLetters[] = {
    {u'a', u'z', 32},           {u'\u00E0', u'\u00F6', 32},
    {u'\u00F8', u'\u00FE', 32}, {u'\u00FF', u'\u00FF', -121},
    {u'\u0153', u'\u0153', 1},  {u'\u0161', u'\u0161', 1},
    {u'\u017E', u'\u017E', 1},  {u'\u0430', u'\u044F', 32},
    {u'\u0450', u'\u045F', 80},
};

char16_t capital(char16_t character) {
  const auto* found = std::ranges::find_if(kSmallLetters, [&](const Letters& letters) {
    return character >= letters.first && character <= letters.last;
  });
  return found == std::end(kSmallLetters) ? character
                                          : static_cast<char16_t>(character - found->distance);
}

std::u16string capitals(std::u16string text) {
  std::ranges::transform(text, text.begin(), capital);
  return text;
}

std::string padded(std::string text, std::size_t columns) {
  const auto used = static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
  return text.append(columns - std::min(used, columns), ' ');
}

struct Extent {
  std::size_t properties = 0;
  std::size_t name_columns = 0;
};

Extent extent_of(const Bag& bag, const Selection& selection) {
  Extent extent;
  bag.for_each_property([&](const Property& property) {
    if (!selection.holds(property)) return;
    ++extent.properties;
    extent.name_columns = std::max(extent.name_columns, property.name.size());
  });
  extent.name_columns = std::min(extent.name_columns, kMostNameColumns);
  return extent;
}

}  // namespace

Selection::Selection(const Bag& bag, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    try {
      names_.push_back(capitals(console::path_of_text(name).u16string()));
    } catch (const std::system_error&) {
      throw console::Failure("the bag has no property \"" + name + "\"");
    }
  }
  std::vector<bool> found(names_.size(), false);
  bag.for_each_property([&](const Property& property) {
    if (names_.empty()) return;
    const auto place = std::ranges::find(names_, capitals(console::characters_of(property.name)));
    if (place != names_.end()) found[static_cast<std::size_t>(place - names_.begin())] = true;
  });
  for (std::size_t i = 0; i < found.size(); ++i) {
    // A name that is given twice is found at its first place.
    if (!found[i] && std::ranges::find(names_, names_[i]) - names_.begin() == std::ptrdiff_t(i)) {
      throw console::Failure("the bag has no property \"" + names[i] + "\"");
    }
  }
}

bool Selection::holds(const Property& property) const {
  if (names_.empty()) return true;
  const auto name = capitals(console::characters_of(property.name));
  return std::ranges::find(names_, name) != names_.end();
}

void show(const Bag& bag, const Selection& selection, const Output& output) {
  const Extent extent = extent_of(bag, selection);
  output(std::string(bag.form() == 1 ? "first" : "second") + " form, version " +
         std::to_string(bag.version()) + ", " + std::to_string(extent.properties) +
         (extent.properties == 1 ? " property\n" : " properties\n"));
  const SpanSource values = bag.values();
  bag.for_each_property([&](const Property& property) {
    if (!selection.holds(property)) return;
    const std::string name = padded(console::shown(property.name), extent.name_columns);
    if (property.error.empty()) {
      output(name + "  " + padded(type_text(values, property.value), kTypeColumns) + "  " +
             shown_value(values, property.value) + "\n");
    } else {
      output(name + "  (" + property.error + ")\n");
    }
  });
}

void show_json(const Bag& bag, const Selection& selection, const Output& output) {
  const auto ascii = [](const std::string& text) {
    return console::json_text(std::u16string(text.begin(), text.end()));
  };
  output("{\n  \"form\": " + std::to_string(bag.form()) +
         ",\n  \"version\": " + std::to_string(bag.version()) + ",\n");
  if (!bag.error().empty()) output("  \"error\": " + ascii(bag.error()) + ",\n");
  output("  \"properties\": [");
  const SpanSource values = bag.values();
  const char* between = "\n";
  bag.for_each_property([&](const Property& property) {
    if (!selection.holds(property)) return;
    output(between + std::string("    {\"name\": ") +
           console::json_text(console::characters_of(property.name)) + ", " +
           (property.error.empty() ? json_members(values, property.value)
                                   : "\"error\": " + ascii(property.error)) +
           "}");
    between = ",\n";
  });
  output(*between == ',' ? "\n  ]\n}\n" : "]\n}\n");
}

void tell_errors(const Bag& bag, const Selection& selection, const Output& output) {
  if (!bag.error().empty()) output(bag.error());
  bag.for_each_property([&](const Property& property) {
    if (property.error.empty() || !selection.holds(property)) return;
    output(console::shown(property.name) + ": " + property.error);
  });
}

}  // namespace qv::qvbag
