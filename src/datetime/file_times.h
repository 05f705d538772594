// Conversions between a Date, which is local time, a system-time record and a file time, which is
// UTC; the clock; the dates of files.
#pragma once

#include <optional>

#include "automation/variant.h"
#include "datetime/time_records.h"

namespace qv::datetime {

// For the library's own lists of files: the local date of a file time, the Date 0 for one that is
// unset or beyond all dates, nothing where a system service refuses. Records nothing.
std::optional<Date> local_date(const FILETIME& time);

// Both give Empty whether or not they fail; a failure is told by the error state alone, and what
// was to be filled stays as it was.
Variant Date_2_SysTime(const Variant& dt, const Object<_QvtSystemTime>& sTime);
Variant SysTime_2_Date(const Object<_QvtSystemTime>& sTime, Variant& dt);

// True = failure. A system service that refuses has no number: LastDLLError tells.
Boolean Date_2_FileTime(Date dt, const Object<_QvtFileTime>& fTime);
// 0 = failure. A refusing service only adds to the Source of the error that stands.
Date FileTime_2_Date(const Object<_QvtFileTime>& fTime);

// In place, by the daylight rule of the date in question. True = failure.
Boolean LocalTimeToSystemTime(const Object<_QvtSystemTime>& st);
Boolean SystemTimeToLocalTime(const Object<_QvtSystemTime>& st);

void Get_SystemTime(const Object<_QvtSystemTime>& SysTime);
void Get_LocalTime(const Object<_QvtSystemTime>& SysTime);

// A String is a name, everything else a handle of File_Open32. True = failure.
Integer Get_FileTime(const Variant& Handle, Variant& CreationTime, Variant& LastAccessTime,
                     Variant& LastWriteTime);
// A read-only file is changed as well. Where the file can't be opened, the attributes that were
// taken off for that stay off.
Integer Set_FileTime(const Variant& Handle, const Variant& CreationTime,
                     const Variant& LastAccessTime, const Variant& LastWriteTime);

}  // namespace qv::datetime
