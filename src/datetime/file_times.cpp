#include "datetime/file_times.h"

#include <array>
#include <optional>

#include "constants.h"
#include "files/file_handles.h"
#include "frame/error_state.h"
#include "runtime/calendar.h"
#include "runtime/directory.h"
#include "runtime/err.h"

namespace qv::datetime {
namespace {

using frame::attempt;
using frame::handled;
using frame::kAppendSystemText;
using frame::kTakeError;

// Whether a platform service that gives non-zero for success did its work.
bool succeeded(BOOL result) noexcept {
  capture_last_dll_error();
  return result != FALSE;
}

// The fields of a value that converts to a date; nothing for one that doesn't, which the error
// state then tells.
std::optional<SYSTEMTIME> fields_of_value(const Variant& dt) {
  using Fields = std::optional<SYSTEMTIME>;
  return handled(L"KwRtLibMod.Date_2_SysTime", kTakeError, Fields(), [&]() -> Fields {
    const DateFields fields = fields_of(dt.to_date());
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(fields.year);
    time.wMonth = static_cast<WORD>(fields.month);
    time.wDayOfWeek = static_cast<WORD>(fields.weekday);
    time.wDay = static_cast<WORD>(fields.day);
    time.wHour = static_cast<WORD>(fields.hour);
    time.wMinute = static_cast<WORD>(fields.minute);
    time.wSecond = static_cast<WORD>(fields.second);
    return time;
  });
}

// Local time; nothing where a service refuses. What is no date goes on as a record of zeros.
bool to_file_time(const Variant& dt, FILETIME& time) {
  const SYSTEMTIME fields = fields_of_value(dt).value_or(SYSTEMTIME{});
  FILETIME local;
  return succeeded(SystemTimeToFileTime(&fields, &local)) &&
         succeeded(LocalFileTimeToFileTime(&local, &time));
}

// Local time; nothing where a service refuses.
std::optional<SYSTEMTIME> local_fields(const FILETIME& time) {
  FILETIME local;
  SYSTEMTIME fields;
  if (!succeeded(FileTimeToLocalFileTime(&time, &local)) ||
      !succeeded(FileTimeToSystemTime(&local, &fields))) {
    return std::nullopt;
  }
  return fields;
}

// The start of the count is what an unset file time holds. It means no date, and west of Greenwich
// has no local time either.
bool is_unset(const FILETIME& time) { return time.dwLowDateTime == 0 && time.dwHighDateTime == 0; }

// Into a variable as SysTime_2_Date does: what the date builder refuses leaves it alone.
bool assign_file_time(Variant& variable, const FILETIME& time) {
  const auto fields = local_fields(time);
  if (!fields && !is_unset(time)) return false;
  handled(L"KwRtLibMod.SysTime_2_Date", kTakeError, True, [&] {
    if (is_unset(time)) raise(kInvalidProcedureCall);
    variable.assign(date_of(*fields));
    return False;
  });
  return true;
}

using ZoneConversion = BOOL(WINAPI*)(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*);

[[noreturn]] void raise_refusal(const wchar_t* service) {
  raise({.number = frame::kFirstApplicationError, .description = service});
}

Boolean convert_zone(const wchar_t* source, const Object<_QvtSystemTime>& st,
                     ZoneConversion convert) {
  return handled(source, kTakeError, True, [&]() -> Boolean {
    const SYSTEMTIME given = system_time_of(st);
    SYSTEMTIME converted_time;
    const Boolean refused = handled(source, kAppendSystemText, True, [&] {
      TIME_ZONE_INFORMATION zone;
      const DWORD state = GetTimeZoneInformation(&zone);
      capture_last_dll_error();
      if (state == TIME_ZONE_ID_INVALID) raise_refusal(L"GetTimeZoneInformation");
      // One description for both ways.
      if (!succeeded(convert(&zone, &given, &converted_time))) {
        raise_refusal(L"SystemTimeToTzSpecificLocalTime");
      }
      return False;
    });
    if (!refused) put_system_time(st, converted_time);
    return refused;
  });
}

// A file for the length of a call: opened and closed here where the caller names it, else the
// caller's own.
class NamedOrOpenFile {
 public:
  explicit NamedOrOpenFile(const Variant& handle) : is_named_(handle.is_text()) {
    if (is_named_) {
      name_ = handle.to_text();
    } else {
      handle_ = handle.to_long();
    }
  }
  NamedOrOpenFile(const NamedOrOpenFile&) = delete;
  NamedOrOpenFile& operator=(const NamedOrOpenFile&) = delete;
  ~NamedOrOpenFile() {
    if (!is_named_) return;
    files::File_Close32(handle_);
    if (attributes_ != 0) {
      attempt([this] { set_attr(name_, attributes_); });
    }
  }

  // False = failure, told by the error state.
  bool open(Long flags) {
    Long attributes = 0;
    return !is_named_ || !files::File_Open32(name_, flags, 0, attributes, handle_);
  }
  // Takes the attributes off first, so that a read-only file opens too; they come back at the end,
  // but not where the file doesn't open.
  bool open_writable() {
    if (!is_named_) return true;
    const Long attributes = get_attr(name_);
    if (attributes != 0) set_attr(name_, 0);
    if (!open(File_Open_Const::O_RDWR)) return false;
    attributes_ = attributes;
    return true;
  }
  HANDLE get() const noexcept { return files::system_handle(handle_); }

 private:
  bool is_named_;
  Text name_;
  Long handle_ = 0;
  Long attributes_ = 0;
};

enum TimeOfFile { kCreation, kLastAccess, kLastWrite, kTimeCount };
using FileTimes = std::array<FILETIME, kTimeCount>;

bool read_times(HANDLE file, FileTimes& times) {
  return succeeded(GetFileTime(file, &times[kCreation], &times[kLastAccess], &times[kLastWrite]));
}

bool write_times(HANDLE file, const FileTimes& times) {
  return succeeded(SetFileTime(file, &times[kCreation], &times[kLastAccess], &times[kLastWrite]));
}

// What a refusing service leaves: no number, and LastDLLError for the cause.
Integer refused(const wchar_t* source) {
  frame::Set_Error({.Source = source}, kTakeError);
  return True;
}

}  // namespace

std::optional<Date> local_date(const FILETIME& time) {
  if (is_unset(time)) return Date{};
  const auto fields = local_fields(time);
  if (!fields) return std::nullopt;
  try {
    return date_of(*fields);
  } catch (const RunTimeError&) {
    return Date{};
  }
}

Variant Date_2_SysTime(const Variant& dt, const Object<_QvtSystemTime>& sTime) {
  handled(L"KwRtLibMod.Date_2_SysTime", kTakeError, True, [&] {
    if (const auto fields = fields_of_value(dt)) put_system_time(sTime, *fields);
    return False;
  });
  return {};
}

Variant SysTime_2_Date(const Object<_QvtSystemTime>& sTime, Variant& dt) {
  handled(L"KwRtLibMod.SysTime_2_Date", kTakeError, True, [&] {
    dt.assign(date_of(system_time_of(sTime)));
    return False;
  });
  return {};
}

Boolean Date_2_FileTime(Date dt, const Object<_QvtFileTime>& fTime) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.Date_2_FileTime";
  return handled(kSource, kTakeError, True, [&]() -> Boolean {
    FILETIME time;
    if (!to_file_time(dt, time)) {
      refused(kSource);
      return True;
    }
    put_file_time(fTime, time);
    return False;
  });
}

Date FileTime_2_Date(const Object<_QvtFileTime>& fTime) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.FileTime_2_Date";
  constexpr Long kFlags = frame::kAppendSystemText | frame::kChain;
  return handled(kSource, kFlags, Date{}, [&] {
    Variant date{Date{}};
    if (!assign_file_time(date, file_time_of(fTime))) {
      frame::Set_Error({.Source = kSource}, kFlags);
    }
    return date.to_date();
  });
}

Boolean LocalTimeToSystemTime(const Object<_QvtSystemTime>& st) {
  return convert_zone(L"QvRtLibOle.KwRtLibMod.LocalTimeToSystemTime", st,
                      &TzSpecificLocalTimeToSystemTime);
}

Boolean SystemTimeToLocalTime(const Object<_QvtSystemTime>& st) {
  return convert_zone(L"QvRtLibOle.KwRtLibMod.SystemTimeToLocalTime", st,
                      &SystemTimeToTzSpecificLocalTime);
}

void Get_SystemTime(const Object<_QvtSystemTime>& SysTime) {
  SYSTEMTIME time;
  GetSystemTime(&time);
  put_system_time(SysTime, time);
}

void Get_LocalTime(const Object<_QvtSystemTime>& SysTime) {
  SYSTEMTIME time;
  GetLocalTime(&time);
  put_system_time(SysTime, time);
}

Integer Get_FileTime(const Variant& Handle, Variant& CreationTime, Variant& LastAccessTime,
                     Variant& LastWriteTime) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.Get_FileTime";
  return handled(kSource, kTakeError, Integer{True}, [&]() -> Integer {
    NamedOrOpenFile file(Handle);
    if (!file.open(File_Open_Const::O_RDONLY)) return True;
    FileTimes times;
    if (!read_times(file.get(), times)) return refused(kSource);
    Variant* const variables[] = {&CreationTime, &LastAccessTime, &LastWriteTime};
    for (const auto which : {kCreation, kLastAccess, kLastWrite}) {
      if (variables[which]->is_missing()) continue;
      if (!assign_file_time(*variables[which], times[which])) return refused(kSource);
    }
    return False;
  });
}

Integer Set_FileTime(const Variant& Handle, const Variant& CreationTime,
                     const Variant& LastAccessTime, const Variant& LastWriteTime) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.Set_FileTime";
  return handled(kSource, kTakeError, Integer{True}, [&]() -> Integer {
    NamedOrOpenFile file(Handle);
    if (!file.open_writable()) return True;
    FileTimes times;
    if (!read_times(file.get(), times)) return refused(kSource);
    const Variant* const values[] = {&CreationTime, &LastAccessTime, &LastWriteTime};
    for (const auto which : {kCreation, kLastAccess, kLastWrite}) {
      if (values[which]->is_missing()) continue;
      if (!to_file_time(*values[which], times[which])) return refused(kSource);
    }
    return write_times(file.get(), times) ? Integer{False} : refused(kSource);
  });
}

}  // namespace qv::datetime
