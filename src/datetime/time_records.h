// The platform's records of times and rectangles as objects, for clients that can't pass records.
#pragma once

#include <windows.h>

#include "automation/object.h"
#include "automation/types.h"
#include "interfaces.h"

namespace qv::datetime {

struct QvtSystemTime {
  Integer wYear = 0;
  Integer wMonth = 0;
  // 1 for Sunday where Date_2_SysTime has filled the record, 0 for Sunday where the system has. No
  // conversion reads it.
  Integer wDayOfWeek = 0;
  Integer wDay = 0;
  Integer wHour = 0;
  Integer wMinute = 0;
  Integer wSecond = 0;
  Integer wMilliseconds = 0;

  void CopyTo(const Object<_QvtSystemTime>& dTime) const;
};

struct QvtFileTime {
  Long dwLowDateTime = 0;
  Long dwHighDateTime = 0;
};

struct QvtRect {
  Long RcLeft = 0;
  Long RcTop = 0;
  Long RcRight = 0;
  Long RcBottom = 0;

  void CopyTo(const Object<_QvtRect>& dRect) const;
};

// The platform's record in an object, read and written at once; by way of its properties in an
// object that is not ours. Run-time error 91 for Nothing.
SYSTEMTIME system_time_of(const Object<_QvtSystemTime>& object);
void put_system_time(const Object<_QvtSystemTime>& object, const SYSTEMTIME& time);
FILETIME file_time_of(const Object<_QvtFileTime>& object);
void put_file_time(const Object<_QvtFileTime>& object, const FILETIME& time);

}  // namespace qv::datetime
