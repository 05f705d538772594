#include <filesystem>

#include "server/client.h"

namespace qv::tests {
namespace {

class FileTimes : public testing::Test {
 protected:
  FileTimes() {
    EXPECT_EQ(global_->Reset_Error(), S_OK);
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    file_ = std::wstring(folder) + L"qv file times.tmp";
    SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_NORMAL);
    CloseHandle(CreateFileW(file_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  }
  ~FileTimes() override {
    SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(file_.c_str());
  }

  void expect_error(LONG number, std::wstring_view source) {
    LONG found = -1;
    String found_source;
    EXPECT_EQ(global_->Error_Number(&found), S_OK);
    EXPECT_EQ(global_->Error_Source(&found_source), S_OK);
    EXPECT_EQ(found, number);
    EXPECT_EQ(found_source, source);
    EXPECT_EQ(global_->Reset_Error(), S_OK);
  }
  LONG last_dll_error() {
    LONG code = 0;
    EXPECT_EQ(global_->Error_LastDLLError(&code), S_OK);
    return code;
  }

  static Value date(double days) {
    Value value;
    value.vt = VT_DATE;
    value.date = days;
    return value;
  }
  void fill(double days) {
    Value dt = date(days);
    Value result(1);
    EXPECT_EQ(global_->Date_2_SysTime(&dt, time_.variable(), &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
  }
  using Getter = HRESULT (STDMETHODCALLTYPE _QvtSystemTime::*)(SHORT*);
  SHORT get(Getter getter) {
    SHORT field = -1;
    EXPECT_EQ((time_.get()->*getter)(&field), S_OK);
    return field;
  }
  void put_all(SHORT year, SHORT month, SHORT day, SHORT hour, SHORT minute, SHORT second) {
    EXPECT_EQ(time_->put_wYear(year), S_OK);
    EXPECT_EQ(time_->put_wMonth(month), S_OK);
    EXPECT_EQ(time_->put_wDay(day), S_OK);
    EXPECT_EQ(time_->put_wHour(hour), S_OK);
    EXPECT_EQ(time_->put_wMinute(minute), S_OK);
    EXPECT_EQ(time_->put_wSecond(second), S_OK);
  }
  Value read_back() {
    Value dt;
    Value result(1);
    EXPECT_EQ(global_->SysTime_2_Date(time_.variable(), &dt, &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    return dt;
  }
  SHORT get_times(const Value& handle, Value* creation, Value* access, Value* write) {
    SHORT failed = 7;
    Value given(handle);
    EXPECT_EQ(global_->Get_FileTime(&given, creation, access, write, &failed), S_OK);
    return failed;
  }
  SHORT set_times(const Value& handle, Value* creation, Value* access, Value* write) {
    SHORT failed = 7;
    Value given(handle);
    EXPECT_EQ(global_->Set_FileTime(&given, creation, access, write, &failed), S_OK);
    return failed;
  }

  const Pointer<_KwRtLib> global_ = create_global();
  Pointer<_QvtSystemTime> time_ = create<_QvtSystemTime>(CLSID_QvtSystemTime);
  Pointer<_QvtFileTime> file_time_ = create<_QvtFileTime>(CLSID_QvtFileTime);
  std::wstring file_;
};

TEST_F(FileTimes, Date_2_SysTime_counts_weekdays_from_1_for_Sunday) {
  fill(45382.75);  // Sunday, 31 March 2024, 18:00
  EXPECT_EQ(get(&_QvtSystemTime::get_wYear), 2024);
  EXPECT_EQ(get(&_QvtSystemTime::get_wMonth), 3);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDay), 31);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDayOfWeek), 1);
  EXPECT_EQ(get(&_QvtSystemTime::get_wHour), 18);
  EXPECT_EQ(get(&_QvtSystemTime::get_wMilliseconds), 0);
  fill(45381);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDayOfWeek), 7);
}

TEST_F(FileTimes, a_time_before_1899_counts_forward_from_its_day) {
  fill(-2.25);  // 28 December 1899, 6:00
  EXPECT_EQ(get(&_QvtSystemTime::get_wDay), 28);
  EXPECT_EQ(get(&_QvtSystemTime::get_wHour), 6);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDayOfWeek), 5);
  // Back it is the sum of a day and a time, as the language adds them.
  EXPECT_EQ(read_back().date, -1.75);
}

TEST_F(FileTimes, the_last_half_second_of_a_day_belongs_to_the_next) {
  fill(45381 + 86399.6 / 86400);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDay), 31);
  EXPECT_EQ(get(&_QvtSystemTime::get_wHour), 0);
  EXPECT_EQ(get(&_QvtSystemTime::get_wSecond), 0);
}

TEST_F(FileTimes, every_day_of_8_centuries_comes_back) {
  for (double day = -109205; day <= 182621; ++day) {  // 1601 to 2399
    fill(day);
    ASSERT_EQ(read_back().date, day);
  }
}

TEST_F(FileTimes, Date_2_SysTime_takes_what_converts_to_a_date) {
  Value result;
  Value text(L"2024-03-31 18:00:05");
  EXPECT_EQ(global_->Date_2_SysTime(&text, time_.variable(), &result), S_OK);
  EXPECT_EQ(get(&_QvtSystemTime::get_wSecond), 5);
  Value number(LONG{1});
  EXPECT_EQ(global_->Date_2_SysTime(&number, time_.variable(), &result), S_OK);
  EXPECT_EQ(get(&_QvtSystemTime::get_wYear), 1899);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDay), 31);
}

TEST_F(FileTimes, what_is_no_date_leaves_the_record_alone_and_only_the_error_state_tells) {
  fill(45382);
  const std::pair<Value, LONG> bad[] = {{Value(L"no date"), 13},
                                        {Value(L""), 13},
                                        {date(3e6), 5},
                                        {date(-657435), 5},
                                        {Value(1e10), 6}};
  for (const auto& [value, number] : bad) {
    Value given(value);
    Value result(1);
    EXPECT_EQ(global_->Date_2_SysTime(&given, time_.variable(), &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    expect_error(number, L"KwRtLibMod.Date_2_SysTime");
    EXPECT_EQ(get(&_QvtSystemTime::get_wYear), 2024);
  }
  Value null;
  null.vt = VT_NULL;
  Value result;
  EXPECT_EQ(global_->Date_2_SysTime(&null, time_.variable(), &result), S_OK);
  expect_error(94, L"KwRtLibMod.Date_2_SysTime");
}

TEST_F(FileTimes, a_record_that_is_Nothing_is_error_91) {
  Pointer<_QvtSystemTime> nothing;
  Value dt = date(1);
  Value result;
  EXPECT_EQ(global_->Date_2_SysTime(&dt, nothing.variable(), &result), S_OK);
  expect_error(91, L"KwRtLibMod.Date_2_SysTime");
  EXPECT_EQ(global_->SysTime_2_Date(nothing.variable(), &dt, &result), S_OK);
  expect_error(91, L"KwRtLibMod.SysTime_2_Date");
  EXPECT_EQ(dt.date, 1.0);
  EXPECT_EQ(global_->Get_SystemTime(nothing.variable()), error_result(91));
  EXPECT_EQ(global_->Get_LocalTime(nothing.variable()), error_result(91));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global_->LocalTimeToSystemTime(nothing.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_error(91, L"QvRtLibOle.KwRtLibMod.LocalTimeToSystemTime");
  Pointer<_QvtFileTime> no_file_time;
  DATE day = 45382;
  EXPECT_EQ(global_->Date_2_FileTime(&day, no_file_time.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_error(91, L"KwRtLibMod.Date_2_FileTime");
  // Chained: the number of the error does not come along.
  EXPECT_EQ(global_->FileTime_2_Date(no_file_time.variable(), &day), S_OK);
  EXPECT_EQ(day, 0.0);
  expect_error(0, L" < KwRtLibMod.FileTime_2_Date");
}

TEST_F(FileTimes, SysTime_2_Date_carries_months_days_and_hours) {
  put_all(2023, 13, 1, 0, 0, 0);
  EXPECT_EQ(read_back().vt, VT_DATE);
  EXPECT_EQ(read_back().date, 45292.0);  // 1 January 2024
  put_all(2024, 2, 30, 24, 0, 0);
  EXPECT_EQ(read_back().date, 45353.0);  // 2 March 2024
  put_all(2024, 3, 0, 0, -30, 0);
  EXPECT_EQ(read_back().date, 45351 - 30.0 / 1440);
}

TEST_F(FileTimes, SysTime_2_Date_completes_years_of_two_digits) {
  put_all(24, 1, 1, 0, 0, 0);
  EXPECT_EQ(read_back().date, 45292.0);
  put_all(99, 1, 1, 0, 0, 0);
  EXPECT_EQ(read_back().date, 36161.0);
}

TEST_F(FileTimes, SysTime_2_Date_of_no_date_leaves_the_variable_alone) {
  put_all(-5, 1, 1, 0, 0, 0);
  EXPECT_EQ(read_back().vt, VT_EMPTY);
  expect_error(5, L"KwRtLibMod.SysTime_2_Date");
  put_all(9999, 12, 32, 0, 0, 0);
  EXPECT_EQ(read_back().vt, VT_EMPTY);
  expect_error(5, L"KwRtLibMod.SysTime_2_Date");
}

TEST_F(FileTimes, SysTime_2_Date_converts_to_the_type_of_the_variable) {
  put_all(2024, 3, 31, 12, 0, 0);
  double number = 0;
  Value reference;
  reference.vt = VT_BYREF | VT_R8;
  reference.pdblVal = &number;
  Value result;
  EXPECT_EQ(global_->SysTime_2_Date(time_.variable(), &reference, &result), S_OK);
  EXPECT_EQ(number, 45382.5);
  reference.vt = VT_EMPTY;
}

TEST_F(FileTimes, CopyTo_copies_all_fields) {
  put_all(2024, 3, 31, 18, 5, 7);
  EXPECT_EQ(time_->put_wDayOfWeek(3), S_OK);
  EXPECT_EQ(time_->put_wMilliseconds(999), S_OK);
  auto copy = create<_QvtSystemTime>(CLSID_QvtSystemTime);
  EXPECT_EQ(time_->CopyTo(copy.variable()), S_OK);
  time_ = copy;
  EXPECT_EQ(get(&_QvtSystemTime::get_wYear), 2024);
  EXPECT_EQ(get(&_QvtSystemTime::get_wMonth), 3);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDayOfWeek), 3);
  EXPECT_EQ(get(&_QvtSystemTime::get_wDay), 31);
  EXPECT_EQ(get(&_QvtSystemTime::get_wHour), 18);
  EXPECT_EQ(get(&_QvtSystemTime::get_wMinute), 5);
  EXPECT_EQ(get(&_QvtSystemTime::get_wSecond), 7);
  EXPECT_EQ(get(&_QvtSystemTime::get_wMilliseconds), 999);
  Pointer<_QvtSystemTime> nothing;
  EXPECT_EQ(time_->CopyTo(nothing.variable()), error_result(91));
}

TEST_F(FileTimes, a_rectangle_copies_its_four_edges) {
  auto rect = create<_QvtRect>(CLSID_QvtRect);
  auto copy = create<_QvtRect>(CLSID_QvtRect);
  EXPECT_EQ(rect->put_RcLeft(1), S_OK);
  EXPECT_EQ(rect->put_RcTop(2), S_OK);
  EXPECT_EQ(rect->put_RcRight(3), S_OK);
  EXPECT_EQ(rect->put_RcBottom(-4), S_OK);
  EXPECT_EQ(rect->CopyTo(copy.variable()), S_OK);
  LONG left = 0;
  LONG top = 0;
  LONG right = 0;
  LONG bottom = 0;
  EXPECT_EQ(copy->get_RcLeft(&left), S_OK);
  EXPECT_EQ(copy->get_RcTop(&top), S_OK);
  EXPECT_EQ(copy->get_RcRight(&right), S_OK);
  EXPECT_EQ(copy->get_RcBottom(&bottom), S_OK);
  EXPECT_EQ(left, 1);
  EXPECT_EQ(top, 2);
  EXPECT_EQ(right, 3);
  EXPECT_EQ(bottom, -4);
}

TEST_F(FileTimes, a_date_becomes_a_file_time_in_UTC_and_comes_back) {
  DATE day = 45382.75;
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global_->Date_2_FileTime(&day, file_time_.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  LONG low = 0;
  LONG high = 0;
  EXPECT_EQ(file_time_->get_dwLowDateTime(&low), S_OK);
  EXPECT_EQ(file_time_->get_dwHighDateTime(&high), S_OK);
  const FILETIME utc{static_cast<DWORD>(low), static_cast<DWORD>(high)};
  FILETIME local;
  SYSTEMTIME fields;
  EXPECT_TRUE(FileTimeToLocalFileTime(&utc, &local));
  EXPECT_TRUE(FileTimeToSystemTime(&local, &fields));
  EXPECT_EQ(fields.wDay, 31);
  EXPECT_EQ(fields.wHour, 18);
  EXPECT_EQ(global_->FileTime_2_Date(file_time_.variable(), &day), S_OK);
  EXPECT_EQ(day, 45382.75);
}

TEST_F(FileTimes, a_date_that_no_file_time_holds_fails_and_LastDLLError_tells) {
  for (DATE day : {-200000.0, -109206.0}) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(global_->Date_2_FileTime(&day, file_time_.variable(), &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_TRUE);
    EXPECT_EQ(last_dll_error(), ERROR_INVALID_PARAMETER);
    expect_error(0, L"KwRtLibMod.Date_2_FileTime");
  }
  LONG low = 1;
  EXPECT_EQ(file_time_->get_dwLowDateTime(&low), S_OK);
  EXPECT_EQ(low, 0);
}

TEST_F(FileTimes, a_file_time_of_0_is_no_date) {
  DATE day = 1;
  EXPECT_EQ(global_->FileTime_2_Date(file_time_.variable(), &day), S_OK);
  EXPECT_EQ(day, 0.0);
  expect_error(5, L"KwRtLibMod.SysTime_2_Date");
}

TEST_F(FileTimes, a_file_time_beyond_all_dates_adds_to_the_source_that_stands) {
  LONG high = -1;
  EXPECT_EQ(file_time_->put_dwHighDateTime(&high), S_OK);
  DATE day = 1;
  EXPECT_EQ(global_->FileTime_2_Date(file_time_.variable(), &day), S_OK);
  EXPECT_EQ(day, 0.0);
  expect_error(0, L" < KwRtLibMod.FileTime_2_Date");
}

TEST_F(FileTimes, the_clock_fills_the_record_with_weekdays_from_0) {
  SYSTEMTIME now;
  GetSystemTime(&now);
  EXPECT_EQ(global_->Get_SystemTime(time_.variable()), S_OK);
  EXPECT_EQ(get(&_QvtSystemTime::get_wYear), now.wYear);
  EXPECT_LT(get(&_QvtSystemTime::get_wDayOfWeek), 7);
  EXPECT_EQ(global_->Get_LocalTime(time_.variable()), S_OK);
  GetLocalTime(&now);
  EXPECT_EQ(get(&_QvtSystemTime::get_wYear), now.wYear);
}

TEST_F(FileTimes, a_time_that_no_zone_converts_stays_and_the_description_names_one_service) {
  put_all(2024, 13, 1, 0, 0, 0);
  for (const bool to_system : {true, false}) {
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(to_system ? global_->LocalTimeToSystemTime(time_.variable(), &failed)
                        : global_->SystemTimeToLocalTime(time_.variable(), &failed),
              S_OK);
    EXPECT_EQ(failed, VARIANT_TRUE);
    String description;
    EXPECT_EQ(global_->Error_Description(&description), S_OK);
    EXPECT_TRUE(description.view().starts_with(L"SystemTimeToTzSpecificLocalTime\r\n"));
    expect_error(20000, to_system ? L"QvRtLibOle.KwRtLibMod.LocalTimeToSystemTime"
                                  : L"QvRtLibOle.KwRtLibMod.SystemTimeToLocalTime");
    EXPECT_EQ(get(&_QvtSystemTime::get_wMonth), 13);
  }
}

TEST_F(FileTimes, Get_FileTime_reads_a_file_a_folder_and_an_open_handle) {
  EXPECT_EQ(get_times(Value(file_), nullptr, nullptr, nullptr), 0);
  Value write;
  EXPECT_EQ(get_times(Value(file_), nullptr, nullptr, &write), 0);
  EXPECT_EQ(write.vt, VT_DATE);
  SYSTEMTIME now;
  GetLocalTime(&now);
  double today = 0;
  EXPECT_TRUE(SystemTimeToVariantTime(&now, &today));
  EXPECT_NEAR(write.date, today, 1.0 / 24);
  const auto folder = std::filesystem::path(file_).parent_path().wstring();
  Value creation;
  Value access;
  EXPECT_EQ(get_times(Value(folder), &creation, &access, &write), 0);
  EXPECT_EQ(creation.vt, VT_DATE);
  EXPECT_EQ(access.vt, VT_DATE);

  const HANDLE handle =
      CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const Value number(static_cast<LONG>(reinterpret_cast<INT_PTR>(handle)));
  EXPECT_EQ(get_times(number, nullptr, nullptr, &write), 0);
  EXPECT_TRUE(CloseHandle(handle));
}

TEST_F(FileTimes, Get_FileTime_of_a_missing_file_and_of_a_bad_handle_fails) {
  DeleteFileW(file_.c_str());
  Value write(7);
  EXPECT_EQ(get_times(Value(file_), nullptr, nullptr, &write), -1);
  expect_error(53, L"KwRtLibMod.File_Open32");
  EXPECT_EQ(get_times(Value(0x7FFFFF0), nullptr, nullptr, &write), -1);
  EXPECT_EQ(last_dll_error(), ERROR_INVALID_HANDLE);
  expect_error(0, L"KwRtLibMod.Get_FileTime");
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(get_times(null, nullptr, nullptr, &write), -1);
  expect_error(94, L"KwRtLibMod.Get_FileTime");
  EXPECT_EQ(get_times(Value(L""), nullptr, nullptr, &write), -1);
  expect_error(53, L"KwRtLibMod.File_Open32");
  EXPECT_EQ(write.lVal, 7);
}

TEST_F(FileTimes, Set_FileTime_sets_what_is_given_and_keeps_the_rest) {
  Value access = date(40000.5);
  Value write = date(41000.25);
  EXPECT_EQ(set_times(Value(file_), nullptr, &access, &write), 0);
  Value found_access;
  Value found_write;
  EXPECT_EQ(get_times(Value(file_), nullptr, &found_access, &found_write), 0);
  EXPECT_EQ(found_access.date, 40000.5);
  EXPECT_EQ(found_write.date, 41000.25);
  Value later = date(42000);
  EXPECT_EQ(set_times(Value(file_), nullptr, nullptr, &later), 0);
  EXPECT_EQ(get_times(Value(file_), nullptr, &found_access, &found_write), 0);
  EXPECT_EQ(found_access.date, 40000.5);
  EXPECT_EQ(found_write.date, 42000.0);
}

TEST_F(FileTimes, Set_FileTime_changes_a_read_only_file_and_puts_the_attribute_back) {
  EXPECT_TRUE(SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY));
  Value write = date(41000);
  EXPECT_EQ(set_times(Value(file_), nullptr, nullptr, &write), 0);
  EXPECT_NE(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
  Value found;
  EXPECT_EQ(get_times(Value(file_), nullptr, nullptr, &found), 0);
  EXPECT_EQ(found.date, 41000.0);
}

TEST_F(FileTimes, Set_FileTime_on_a_handle_leaves_attributes_alone_and_the_handle_open) {
  const HANDLE handle =
      CreateFileW(file_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_TRUE(SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY));
  Value write = date(41000);
  const Value number(static_cast<LONG>(reinterpret_cast<INT_PTR>(handle)));
  EXPECT_EQ(set_times(number, nullptr, nullptr, &write), 0);
  EXPECT_NE(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
  DWORD information = 0;
  EXPECT_TRUE(GetHandleInformation(handle, &information));
  EXPECT_TRUE(CloseHandle(handle));
}

TEST_F(FileTimes, Set_FileTime_of_a_folder_or_a_missing_file_fails) {
  const auto folder = file_ + L" folder";
  CreateDirectoryW(folder.c_str(), nullptr);
  Value write = date(41000);
  EXPECT_EQ(set_times(Value(folder), nullptr, nullptr, &write), -1);
  expect_error(20000, L"KwRtLibMod.File_Open32");
  RemoveDirectoryW(folder.c_str());
  EXPECT_EQ(set_times(Value(folder), nullptr, nullptr, &write), -1);
  expect_error(53, L"KwRtLibMod.Set_FileTime");
}

TEST_F(FileTimes, Set_FileTime_that_cannot_open_the_file_leaves_its_attributes_off) {
  EXPECT_TRUE(SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY));
  const HANDLE locked =
      CreateFileW(file_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  Value write = date(41000);
  EXPECT_EQ(set_times(Value(file_), nullptr, nullptr, &write), -1);
  expect_error(20000, L"KwRtLibMod.File_Open32");
  EXPECT_EQ(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
  EXPECT_TRUE(CloseHandle(locked));
}

TEST_F(FileTimes, Set_FileTime_with_what_is_no_date_changes_nothing_and_restores_attributes) {
  EXPECT_TRUE(SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY));
  Value before;
  EXPECT_EQ(get_times(Value(file_), nullptr, nullptr, &before), 0);
  Value access = date(41000);
  Value write(L"no date");
  EXPECT_EQ(set_times(Value(file_), nullptr, &access, &write), -1);
  expect_error(0, L"KwRtLibMod.Set_FileTime");
  EXPECT_NE(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
  Value after;
  EXPECT_EQ(get_times(Value(file_), nullptr, &after, nullptr), 0);
  EXPECT_NE(after.date, 41000.0);
}

TEST_F(FileTimes, names_outside_the_code_page_work) {
  const auto other = file_ + L" \x4F60\x597D";
  DeleteFileW(other.c_str());
  ASSERT_TRUE(MoveFileW(file_.c_str(), other.c_str()));
  Value write = date(41000);
  EXPECT_EQ(set_times(Value(other), nullptr, nullptr, &write), 0);
  Value found;
  EXPECT_EQ(get_times(Value(other), nullptr, nullptr, &found), 0);
  EXPECT_EQ(found.date, 41000.0);
  EXPECT_TRUE(DeleteFileW(other.c_str()));
}

}  // namespace
}  // namespace qv::tests
