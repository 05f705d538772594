#include "native/setup/file_line.h"

#include <algorithm>

#include "native/setup/ascii_case.h"

namespace qv::native::setup {
namespace {

struct Marker {
  std::u16string_view text;
  Registration registration;
};

constexpr Marker kMarkers[] = {
    {u"$(DLLSELFREGISTER)", Registration::kLibrary},
    {u"$(EXESELFREGISTER)", Registration::kProgram},
    {u"$(TLBREGISTER)", Registration::kTypeLibrary},
};

// Takes the text up to a separator off the front, with the separator.
std::u16string_view take(std::u16string_view& text, char16_t separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const auto piece = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return piece;
}

template <std::size_t N>
Pieces<N> split(std::u16string_view text, char16_t separator) {
  Pieces<N> split;
  if (text.empty()) return split;
  for (bool is_last = false; !is_last && split.count < N; ++split.count) {
    is_last = text.find(separator) == std::u16string_view::npos;
    split.pieces[split.count] = take(text, separator);
  }
  return split;
}

void skip_blanks(std::u16string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
}

}  // namespace

FileLine split_file_line(std::u16string_view line) { return {split<7>(line, u',')}; }

std::u16string_view name_in(std::u16string_view field) {
  return field.substr(std::min<std::size_t>(1, field.size()));
}

Registration registration_in(std::u16string_view field) {
  const auto found = std::ranges::find_if(
      kMarkers, [&](const Marker& marker) { return equal_ignoring_case(field, marker.text); });
  return found != std::end(kMarkers) ? found->registration : Registration::kNone;
}

bool is_shared(std::u16string_view field) { return equal_ignoring_case(field, u"$(Shared)"); }

MomentText split_moment(std::u16string_view field) {
  MomentText moment;
  moment.month = take(field, u'/');
  moment.day = take(field, u'/');
  moment.year = take(field, u' ');
  skip_blanks(field);
  moment.hour = take(field, u':');
  moment.minute = take(field, u':');
  moment.second = take(field, u' ');
  skip_blanks(field);
  moment.is_afternoon = equal_ignoring_case(field, u"PM");
  return moment;
}

VersionText split_version(std::u16string_view field) { return split<4>(field, u'.'); }

}  // namespace qv::native::setup
