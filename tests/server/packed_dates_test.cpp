#include <array>
#include <cmath>

#include "server/client.h"

namespace qv::tests {
namespace {

class PackedDates : public testing::Test {
 protected:
  SHORT set(SHORT day, SHORT month, SHORT year) {
    SHORT packed = 0;
    EXPECT_EQ(global_->Date_Set(&day, &month, &year, &packed), S_OK);
    return packed;
  }
  using Reader = HRESULT (STDMETHODCALLTYPE _KwRtLib::*)(SHORT*, SHORT*);
  SHORT read(Reader reader, SHORT packed) {
    SHORT field = -1;
    EXPECT_EQ((global_.get()->*reader)(&packed, &field), S_OK);
    return field;
  }
  SHORT month_days(SHORT year, SHORT month) {
    SHORT days = 0;
    EXPECT_EQ(global_->Get_Month_Days(&year, &month, &days), S_OK);
    return days;
  }
  double easter(LONG year) {
    DATE date = 0;
    EXPECT_EQ(global_->Easter_Day(&year, &date), S_OK) << year;
    return date;
  }

  const Pointer<_KwRtLib> global_ = create_global();
};

// A calendar of its own: one day after the other.
struct Day {
  int year;
  int month = 1;
  int day = 1;
  double number;  // of a Date

  bool is_leap() const { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0); }
  int month_days() const {
    constexpr std::array kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && is_leap() ? 1 : 0);
  }
  void step() {
    number += 1;
    if (++day <= month_days()) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
};

TEST_F(PackedDates, every_day_from_1980_to_2043_reads_back_as_packed) {
  for (Day day{.year = 1980, .number = 29221}; day.year < 2044; day.step()) {
    const auto year = static_cast<SHORT>(day.year);
    const auto month = static_cast<SHORT>(day.month);
    const auto day_of_month = static_cast<SHORT>(day.day);
    const SHORT packed = set(day_of_month, month, year);
    ASSERT_EQ(read(&_KwRtLib::Date_2_Day, packed), day_of_month);
    ASSERT_EQ(read(&_KwRtLib::Date_2_Month, packed), month);
    ASSERT_EQ(read(&_KwRtLib::Date_2_Year, packed), year);
    ASSERT_EQ(month_days(year, month), day.month_days());
  }
}

TEST_F(PackedDates, every_day_from_2044_to_2107_reads_month_and_year_one_too_high) {
  for (Day day{.year = 2044, .number = 52597}; day.year < 2108; day.step()) {
    const SHORT packed = set(static_cast<SHORT>(day.day), static_cast<SHORT>(day.month),
                             static_cast<SHORT>(day.year));
    ASSERT_LT(packed, 0);
    ASSERT_EQ(read(&_KwRtLib::Date_2_Day, packed), day.day);
    ASSERT_EQ(read(&_KwRtLib::Date_2_Month, packed), day.month + 1);
    // The field of 7 bits has no number behind that of 2107.
    ASSERT_EQ(read(&_KwRtLib::Date_2_Year, packed), day.year == 2107 ? 1980 : day.year + 1);
  }
}

TEST_F(PackedDates, Date_Set_packs_the_first_the_last_positive_and_the_first_negative_date) {
  EXPECT_EQ(set(1, 1, 1980), 33);
  EXPECT_EQ(set(31, 12, 2043), 32671);
  EXPECT_EQ(set(1, 1, 2044), -32735);
  EXPECT_EQ(set(31, 12, 2107), -97);
}

TEST_F(PackedDates, Date_Set_lets_a_day_of_40_spill_into_the_month) {
  EXPECT_EQ(set(40, 1, 1980), 32 + 40);
  EXPECT_EQ(read(&_KwRtLib::Date_2_Month, set(40, 1, 1980)), 2);
  EXPECT_EQ(read(&_KwRtLib::Date_2_Day, set(40, 1, 1980)), 8);
}

TEST_F(PackedDates, Date_Set_keeps_a_small_negative_sum_and_refuses_what_does_not_fit) {
  EXPECT_EQ(set(1, 1, 1979), 33 - 512);
  EXPECT_EQ(set(0, 0, 1916), -32768);
  SHORT packed = 7;
  SHORT day = 1;
  SHORT month = 1;
  SHORT year = 2108;
  EXPECT_EQ(global_->Date_Set(&day, &month, &year, &packed), error_result(6));
  year = 1900;
  EXPECT_EQ(global_->Date_Set(&day, &month, &year, &packed), error_result(6));
  day = -1;
  month = 0;
  year = 1916;
  EXPECT_EQ(global_->Date_Set(&day, &month, &year, &packed), error_result(6));
  EXPECT_EQ(packed, 7);
}

TEST_F(PackedDates, every_packed_time_gives_its_fields) {
  for (int hour = 0; hour < 24; ++hour) {
    for (int minute = 0; minute < 60; ++minute) {
      for (const int unit : {0, 1, 29, 31}) {
        const auto packed = static_cast<SHORT>(hour << 11 | minute << 5 | unit);
        ASSERT_EQ(read(&_KwRtLib::Time_2_Hour, packed), hour);
        ASSERT_EQ(read(&_KwRtLib::Time_2_Minute, packed), minute);
        ASSERT_EQ(read(&_KwRtLib::Time_2_Second, packed), unit);
      }
    }
  }
}

TEST_F(PackedDates, Leap_Year_is_minus_1_or_0_and_Get_Year_Days_follows) {
  const std::pair<int, bool> years[] = {{1900, false}, {2000, true}, {2024, true}, {2023, false},
                                        {0, true},     {-4, true},   {-100, false}};
  for (const auto& [year, leap] : years) {
    EXPECT_EQ(read(&_KwRtLib::Leap_Year, static_cast<SHORT>(year)), leap ? -1 : 0) << year;
    EXPECT_EQ(read(&_KwRtLib::Get_Year_Days, static_cast<SHORT>(year)), leap ? 366 : 365) << year;
  }
}

TEST_F(PackedDates, Get_Month_Days_of_a_month_out_of_range_is_error_94) {
  EXPECT_EQ(month_days(2024, 2), 29);
  EXPECT_EQ(month_days(2023, 2), 28);
  for (const int number : {0, 13, -1, 32767}) {
    SHORT year = 2024;
    auto month = static_cast<SHORT>(number);
    SHORT days = 0;
    EXPECT_EQ(global_->Get_Month_Days(&year, &month, &days), error_result(94)) << number;
  }
}

TEST_F(PackedDates, names_out_of_range_are_error_5) {
  for (const int number : {0, 13, -1}) {
    auto month = static_cast<SHORT>(number);
    String name;
    EXPECT_EQ(global_->Get_Month_Name(&month, &name), error_result(5));
    LONG day = number == 13 ? 8 : number;
    EXPECT_EQ(global_->Get_Day_Name(&day, &name), error_result(5));
  }
}

TEST_F(PackedDates, names_begin_with_a_capital_letter_and_are_all_different) {
  std::wstring names;
  for (SHORT month = 1; month <= 12; ++month) {
    String name;
    EXPECT_EQ(global_->Get_Month_Name(&month, &name), S_OK);
    ASSERT_GT(name.length(), 0U);
    EXPECT_EQ(IsCharUpperW(name.view()[0]), TRUE);
    EXPECT_EQ(names.find(name.view()), std::wstring::npos);
    names += name.view();
  }
}

TEST_F(PackedDates, Date_Today_is_today) {
  SYSTEMTIME before;
  SYSTEMTIME after;
  String today;
  do {
    GetLocalTime(&before);
    EXPECT_EQ(global_->Date_Today(&today), S_OK);
    GetLocalTime(&after);
  } while (before.wDay != after.wDay);
  wchar_t expected[32];
  wchar_t separator[8];
  GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDATE, separator, 8);
  swprintf(expected, 32, L"%02d%ls%02d%ls%04d", after.wDay, separator, after.wMonth, separator,
           after.wYear);
  EXPECT_EQ(today.view(), expected);
}

// Easter Sunday by the method of Oudin: another way to the same rule.
int easter_day_from_1_march(int year) {
  const int century = year / 100;
  const int golden = year % 19;
  const int correction = (century - 17) / 25;
  int i = (century - century / 4 - (century - correction) / 3 + 19 * golden + 15) % 30;
  i -= i / 28 * (1 - i / 28 * (29 / (i + 1)) * ((21 - golden) / 11));
  const int j = (year + year / 4 + i + 2 - century + century / 4) % 7;
  const int l = i - j;
  const int month = 3 + (l + 40) / 44;
  return l + 28 - 31 * (month / 4) + (month == 4 ? 31 : 0);
}

TEST_F(PackedDates, Easter_Day_agrees_with_another_algorithm_from_1583_to_4099) {
  Day first_of_march{.year = 1583, .number = -115780};  // 1 January 1583
  for (int year = 1583; year <= 4099; ++year) {
    while (first_of_march.year < year || first_of_march.month != 3) first_of_march.step();
    ASSERT_EQ(easter(year), first_of_march.number + easter_day_from_1_march(year) - 1) << year;
  }
}

TEST_F(PackedDates, Easter_Day_of_known_years) {
  const struct {
    LONG year;
    SHORT month;
    SHORT day;
  } known[] = {{2024, 3, 31}, {2025, 4, 20}, {2026, 4, 5},
               {2000, 4, 23}, {2038, 4, 25}, {1954, 4, 18}};
  for (const auto& row : known) {
    SYSTEMTIME time;
    ASSERT_TRUE(VariantTimeToSystemTime(easter(row.year), &time));
    EXPECT_EQ(time.wYear, row.year);
    EXPECT_EQ(time.wMonth, row.month);
    EXPECT_EQ(time.wDay, row.day);
  }
}

// 9006 is the first year whose epact is reduced from a negative number: the calendar's own Easter
// is on 20 April.
TEST_F(PackedDates, Easter_Day_keeps_the_magnitude_of_a_negative_epact) {
  SYSTEMTIME time;
  ASSERT_TRUE(VariantTimeToSystemTime(easter(9006), &time));
  EXPECT_EQ(time.wYear, 9006);
  EXPECT_EQ(time.wMonth, 4);
  EXPECT_EQ(time.wDay, 13);
}

TEST_F(PackedDates, Easter_Day_of_a_year_that_is_no_Integer_is_error_6) {
  DATE date = 1;
  for (LONG year : {32768L, 2147483647L, -2147483647L - 1}) {
    EXPECT_EQ(global_->Easter_Day(&year, &date), error_result(6)) << year;
  }
  for (LONG year : {10000L, 32767L, -1L}) {
    EXPECT_EQ(global_->Easter_Day(&year, &date), error_result(5)) << year;
  }
  EXPECT_EQ(date, 1);
}

}  // namespace
}  // namespace qv::tests
