// The date settings of the user, as set in the control panel.
#include <vector>

#include "server/error_record_client.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kPanel = L"Control Panel\\International";

// Settings of the panel, put back as they were.
class Panel {
 public:
  Panel() {
    RegCreateKeyExW(HKEY_CURRENT_USER, kPanel, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                    nullptr);
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
      DWORD length = 256;
      DWORD type = 0;
      BYTE data[512];
      DWORD size = sizeof data;
      if (RegEnumValueW(key_, i, name, &length, nullptr, &type, data, &size) != 0) break;
      old_.push_back({name, type, std::string(reinterpret_cast<char*>(data), size)});
    }
  }
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel() {
    for (const auto& [item, text] : texts_) SetLocaleInfoW(LOCALE_USER_DEFAULT, item, text.c_str());
    wchar_t name[256];
    DWORD length = 256;
    while (RegEnumValueW(key_, 0, name, &length, nullptr, nullptr, nullptr, nullptr) == 0) {
      RegDeleteValueW(key_, name);
      length = 256;
    }
    for (const auto& value : old_) {
      RegSetValueExW(key_, value.name.c_str(), 0, value.type,
                     reinterpret_cast<const BYTE*>(value.data.data()),
                     static_cast<DWORD>(value.data.size()));
    }
    RegCloseKey(key_);
  }

  bool set(LCTYPE item, const wchar_t* text) {
    wchar_t old[100];
    GetLocaleInfoW(LOCALE_USER_DEFAULT, item, old, 100);
    texts_.emplace(texts_.begin(), item, old);
    return SetLocaleInfoW(LOCALE_USER_DEFAULT, item, text) != FALSE;
  }

 private:
  struct Stored {
    std::wstring name;
    DWORD type;
    std::string data;
  };
  HKEY key_ = nullptr;
  std::vector<Stored> old_;
  std::vector<std::pair<LCTYPE, std::wstring>> texts_;
};

class DateLocale : public WithErrorRecord {
 protected:
  // In the order of the arguments.
  enum Output {
    kLongDateFmt,
    kShortDateFmt,
    kLongDateFmtOrder,
    kShortDateFmtOrder,
    kDateSepChar,
    kYearMonthFmt,
    kCenturySize,
    kDayLeadingZero,
    kMonthLeadingZero,
    kFirstDayOfWeek,
    kFirstWeekOfYear,
    kOutputs,
  };

  bool read(Value (&outputs)[kOutputs], bool user = true) {
    VARIANT_BOOL of_user = user ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(
        global_->GetDateLocaleInfo(&of_user, &outputs[0], &outputs[1], &outputs[2], &outputs[3],
                                   &outputs[4], &outputs[5], &outputs[6], &outputs[7], &outputs[8],
                                   &outputs[9], &outputs[10], &failed),
        S_OK);
    return failed == VARIANT_FALSE;
  }
  Value one(Output which, const Value& before = Value()) {
    Value outputs[kOutputs];
    for (auto& output : outputs) output = Value::missing();
    outputs[which] = before;
    EXPECT_TRUE(read(outputs));
    for (int i = 0; i < kOutputs; ++i) {
      if (i == which) continue;
      EXPECT_EQ(outputs[i].vt, VT_ERROR);
    }
    return outputs[which];
  }
};

TEST_F(DateLocale, a_call_without_outputs_asks_for_nothing) {
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(
      global_->GetDateLocaleInfo(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, nullptr, nullptr, nullptr, &failed),
      S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  expect_no_error();
}

// The tests run under American English.
TEST_F(DateLocale, every_setting_has_its_type) {
  for (const bool user : {true, false}) {
    Value outputs[kOutputs];
    EXPECT_TRUE(read(outputs, user));
    EXPECT_EQ(outputs[kLongDateFmt].text(), L"dddd, MMMM d, yyyy");
    EXPECT_EQ(outputs[kShortDateFmt].text(), L"M/d/yyyy");
    EXPECT_EQ(outputs[kLongDateFmtOrder].text(), L"MDY");
    EXPECT_EQ(outputs[kShortDateFmtOrder].text(), L"MDY");
    EXPECT_EQ(outputs[kDateSepChar].text(), L"/");
    EXPECT_EQ(outputs[kYearMonthFmt].text(), L"MMMM yyyy");
    EXPECT_EQ(outputs[kCenturySize].vt, VT_I2);
    EXPECT_EQ(outputs[kCenturySize].iVal, 4);
    EXPECT_EQ(outputs[kDayLeadingZero].vt, VT_BOOL);
    EXPECT_EQ(outputs[kDayLeadingZero].boolVal, VARIANT_FALSE);
    EXPECT_EQ(outputs[kMonthLeadingZero].vt, VT_BOOL);
    EXPECT_EQ(outputs[kMonthLeadingZero].boolVal, VARIANT_FALSE);
    EXPECT_EQ(outputs[kFirstDayOfWeek].vt, VT_I4);
    EXPECT_EQ(outputs[kFirstDayOfWeek].lVal, 1);
    EXPECT_EQ(outputs[kFirstWeekOfYear].vt, VT_I4);
    EXPECT_EQ(outputs[kFirstWeekOfYear].lVal, 1);
  }
  expect_no_error();
}

TEST_F(DateLocale, the_first_day_of_the_week_is_in_the_languages_numbers) {
  Panel panel;
  const struct {
    const wchar_t* setting;
    LONG day;
  } days[] = {{L"0", 2}, {L"1", 3}, {L"2", 4}, {L"3", 5}, {L"4", 6}, {L"5", 7}, {L"6", 1}};
  for (const auto& row : days) {
    ASSERT_TRUE(panel.set(LOCALE_IFIRSTDAYOFWEEK, row.setting));
    const Value day = one(kFirstDayOfWeek);
    EXPECT_EQ(day.vt, VT_I4);
    EXPECT_EQ(day.lVal, row.day);
  }
}

TEST_F(DateLocale, the_first_week_of_the_year_is_in_the_languages_numbers) {
  Panel panel;
  const struct {
    const wchar_t* setting;
    LONG week;
  } weeks[] = {{L"0", 1}, {L"1", 3}, {L"2", 2}};
  for (const auto& row : weeks) {
    ASSERT_TRUE(panel.set(LOCALE_IFIRSTWEEKOFYEAR, row.setting));
    const Value week = one(kFirstWeekOfYear);
    EXPECT_EQ(week.vt, VT_I4);
    EXPECT_EQ(week.lVal, row.week);
  }
}

TEST_F(DateLocale, pictures_and_what_follows_from_them) {
  Panel panel;
  ASSERT_TRUE(panel.set(LOCALE_SSHORTDATE, L"yy-MM-dd"));
  EXPECT_EQ(one(kShortDateFmt).text(), L"yy-MM-dd");
  EXPECT_EQ(one(kShortDateFmtOrder).text(), L"YMD");
  EXPECT_EQ(one(kCenturySize).iVal, 2);
  EXPECT_EQ(one(kDayLeadingZero).boolVal, VARIANT_TRUE);
  EXPECT_EQ(one(kMonthLeadingZero).boolVal, VARIANT_TRUE);
  ASSERT_TRUE(panel.set(LOCALE_SSHORTDATE, L"d.M.yyyy"));
  EXPECT_EQ(one(kShortDateFmtOrder).text(), L"DMY");
  EXPECT_EQ(one(kCenturySize).iVal, 4);
  EXPECT_EQ(one(kDayLeadingZero).boolVal, VARIANT_FALSE);
  EXPECT_EQ(one(kMonthLeadingZero).boolVal, VARIANT_FALSE);
  ASSERT_TRUE(panel.set(LOCALE_SLONGDATE, L"yyyy MMMM dd"));
  EXPECT_EQ(one(kLongDateFmt).text(), L"yyyy MMMM dd");
  EXPECT_EQ(one(kLongDateFmtOrder).text(), L"YMD");
}

TEST_F(DateLocale, a_setting_without_a_meaning_leaves_the_variable_alone) {
  Panel panel;
  ASSERT_TRUE(panel.set(LOCALE_IFIRSTDAYOFWEEK, L"9"));
  EXPECT_EQ(one(kFirstDayOfWeek, Value(L"before")).text(), L"before");
  ASSERT_TRUE(panel.set(LOCALE_IFIRSTWEEKOFYEAR, L"9"));
  EXPECT_EQ(one(kFirstWeekOfYear, Value(L"before")).text(), L"before");
  expect_no_error();
}

TEST_F(DateLocale,
       a_typed_variable_gets_the_value_in_its_type_and_a_failure_keeps_what_came_before) {
  SHORT day = 0;
  Value outputs[kOutputs];
  outputs[kFirstDayOfWeek].vt = VT_BYREF | VT_I2;
  outputs[kFirstDayOfWeek].piVal = &day;
  EXPECT_TRUE(read(outputs));
  EXPECT_EQ(day, 1);
  // The long picture is fetched after the short one and before the first day.
  outputs[kLongDateFmt] = Value();
  outputs[kLongDateFmt].vt = VT_BYREF | VT_I2;
  SHORT number = 7;
  outputs[kLongDateFmt].piVal = &number;
  outputs[kShortDateFmt] = Value(L"before");
  day = 0;
  EXPECT_FALSE(read(outputs));
  EXPECT_EQ(outputs[kShortDateFmt].text(), L"M/d/yyyy");
  EXPECT_EQ(number, 7);
  EXPECT_EQ(day, 0);
  EXPECT_EQ(recorded_description(), L"Type mismatch");
  expect_error(13, L"KwRtLibMod.GetDateLocaleInfo");
}

}  // namespace
}  // namespace qv::tests
