#include "datetime/date_locale.h"

#include <array>
#include <initializer_list>

#include "frame/error_state.h"
#include "runtime/err.h"
#include "runtime/system_text.h"

namespace qv::datetime {
namespace {

Text setting(LCID locale, LCTYPE item) {
  std::array<wchar_t, 1024> buffer;
  const int length = GetLocaleInfoW(locale, item, buffer.data(), static_cast<int>(buffer.size()));
  capture_last_dll_error();
  if (length == 0) {
    raise(
        {.number = frame::kFirstApplicationError, .description = system_text(err().LastDllError)});
  }
  return Text(buffer.data());
}

// What the system's text means: the value of the row with that text, else of a row without one.
struct Meaning {
  const wchar_t* text;
  Variant value;
};

void assign_text(Variant& variable, LCID locale, LCTYPE item) {
  if (!variable.is_missing()) variable.assign(setting(locale, item));
}

void assign_meaning(Variant& variable, LCID locale, LCTYPE item,
                    std::initializer_list<Meaning> meanings) {
  if (variable.is_missing()) return;
  const Text text = setting(locale, item);
  for (const auto& meaning : meanings) {
    if (meaning.text == nullptr || text == meaning.text) return variable.assign(meaning.value);
  }
}

void assign_order(Variant& variable, LCID locale, LCTYPE item) {
  assign_meaning(variable, locale, item, {{L"0", L"MDY"}, {L"1", L"DMY"}, {L"2", L"YMD"}});
}

}  // namespace

Boolean GetDateLocaleInfo(Boolean User, Variant& LongDateFmt, Variant& ShortDateFmt,
                          Variant& LongDateFmtOrder, Variant& ShortDateFmtOrder,
                          Variant& DateSepChar, Variant& YearMonthFmt, Variant& CenturySize,
                          Variant& DayLeadingZero, Variant& MonthLeadingZero,
                          Variant& FirstDayOfWeek, Variant& FirstWeekOfYear) {
  return frame::handled(L"KwRtLibMod.GetDateLocaleInfo", frame::kTakeError, True, [&] {
    const LCID locale = User ? LOCALE_USER_DEFAULT : LOCALE_SYSTEM_DEFAULT;
    // In this order: what comes before a failure keeps its new value.
    assign_text(ShortDateFmt, locale, LOCALE_SSHORTDATE);
    assign_text(DateSepChar, locale, LOCALE_SDATE);
    assign_text(YearMonthFmt, locale, LOCALE_SYEARMONTH);
    assign_text(LongDateFmt, locale, LOCALE_SLONGDATE);
    assign_order(ShortDateFmtOrder, locale, LOCALE_IDATE);
    assign_order(LongDateFmtOrder, locale, LOCALE_ILDATE);
    assign_meaning(CenturySize, locale, LOCALE_ICENTURY,
                   {{L"0", Integer{2}}, {nullptr, Integer{4}}});
    assign_meaning(DayLeadingZero, locale, LOCALE_IDAYLZERO, {{L"0", False}, {nullptr, True}});
    assign_meaning(MonthLeadingZero, locale, LOCALE_IMONLZERO, {{L"0", False}, {nullptr, True}});
    // The system counts days from Monday, the language from Sunday as 1.
    assign_meaning(FirstDayOfWeek, locale, LOCALE_IFIRSTDAYOFWEEK,
                   {{L"0", Long{2}},
                    {L"1", Long{3}},
                    {L"2", Long{4}},
                    {L"3", Long{5}},
                    {L"4", Long{6}},
                    {L"5", Long{7}},
                    {L"6", Long{1}}});
    assign_meaning(FirstWeekOfYear, locale, LOCALE_IFIRSTWEEKOFYEAR,
                   {{L"0", Long{1}}, {L"1", Long{3}}, {L"2", Long{2}}});
    return False;
  });
}

}  // namespace qv::datetime
