#include "files/version_compare.h"

#include <array>

#include "frame/error_state.h"
#include "runtime/calendar.h"
#include "text/codecs.h"

namespace qv::files {
namespace {

std::array<Integer, 4> numbers_of(const FileVersion& version) {
  return {text::Hi_Word(version.high), text::Lo_Word(version.high), text::Hi_Word(version.low),
          text::Lo_Word(version.low)};
}

Integer difference(Integer a, Integer b) {
  using Limits = std::numeric_limits<Integer>;
  const int exact = a - b;
  if (exact < Limits::min() || exact > Limits::max()) raise(kOverflow);
  return static_cast<Integer>(exact);
}

Long sign(double value) { return value > 0 ? 1 : value < 0 ? -1 : 0; }

}  // namespace

FileVersion version_of(const QvtFileInfo& file) {
  return {file.MajVer, file.MinVer, file.LastWriteTime};
}

FileVersion version_of(const Object<_QvtFileInfo>& file) {
  LONG high = 0;
  LONG low = 0;
  DATE last_write = 0;
  check(file->get_MajVer(&high));
  check(file->get_MinVer(&low));
  check(file->get_LastWriteTime(&last_write));
  return {static_cast<Long>(high), static_cast<Long>(low), Date{last_write}};
}

Long VersionCompare(const FileVersion& a, const FileVersion& b) {
  return frame::handled(L"QvRtLibOle.KwRtLibMod.VersionCompare", frame::kTakeError,
                        kComparisonFailed, [&] {
                          const auto of_a = numbers_of(a);
                          const auto of_b = numbers_of(b);
                          for (std::size_t i = 0; i < of_a.size(); ++i) {
                            const Long order = sign(difference(of_a[i], of_b[i]));
                            if (order != 0) return order;
                          }
                          return sign(-minutes_between(a.last_write, b.last_write));
                        });
}

}  // namespace qv::files
