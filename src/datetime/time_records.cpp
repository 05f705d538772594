#include "datetime/time_records.h"

#include <bit>

#include "class_tables.h"

namespace qv::datetime {
namespace {

static_assert(sizeof(QvtSystemTime) == sizeof(SYSTEMTIME));
static_assert(sizeof(QvtFileTime) == sizeof(FILETIME));

}  // namespace

void QvtSystemTime::CopyTo(const Object<_QvtSystemTime>& dTime) const {
  check(dTime->put_wYear(wYear));
  check(dTime->put_wMonth(wMonth));
  check(dTime->put_wDayOfWeek(wDayOfWeek));
  check(dTime->put_wDay(wDay));
  check(dTime->put_wHour(wHour));
  check(dTime->put_wMinute(wMinute));
  check(dTime->put_wSecond(wSecond));
  check(dTime->put_wMilliseconds(wMilliseconds));
}

void QvtRect::CopyTo(const Object<_QvtRect>& dRect) const {
  check(dRect->put_RcLeft(RcLeft));
  check(dRect->put_RcTop(RcTop));
  check(dRect->put_RcRight(RcRight));
  check(dRect->put_RcBottom(RcBottom));
}

SYSTEMTIME system_time_of(const Object<_QvtSystemTime>& object) {
  if (const auto* record = own<QvtSystemTime>(object, kQvtSystemTimeInfo)) {
    return std::bit_cast<SYSTEMTIME>(*record);
  }
  QvtSystemTime record;
  check(object->get_wYear(&record.wYear));
  check(object->get_wMonth(&record.wMonth));
  check(object->get_wDayOfWeek(&record.wDayOfWeek));
  check(object->get_wDay(&record.wDay));
  check(object->get_wHour(&record.wHour));
  check(object->get_wMinute(&record.wMinute));
  check(object->get_wSecond(&record.wSecond));
  check(object->get_wMilliseconds(&record.wMilliseconds));
  return std::bit_cast<SYSTEMTIME>(record);
}

void put_system_time(const Object<_QvtSystemTime>& object, const SYSTEMTIME& time) {
  const auto fresh = std::bit_cast<QvtSystemTime>(time);
  if (auto* record = own<QvtSystemTime>(object, kQvtSystemTimeInfo)) {
    *record = fresh;
  } else {
    fresh.CopyTo(object);
  }
}

FILETIME file_time_of(const Object<_QvtFileTime>& object) {
  if (const auto* record = own<QvtFileTime>(object, kQvtFileTimeInfo)) {
    return std::bit_cast<FILETIME>(*record);
  }
  LONG low = 0;
  LONG high = 0;
  check(object->get_dwLowDateTime(&low));
  check(object->get_dwHighDateTime(&high));
  return {static_cast<DWORD>(low), static_cast<DWORD>(high)};
}

void put_file_time(const Object<_QvtFileTime>& object, const FILETIME& time) {
  if (auto* record = own<QvtFileTime>(object, kQvtFileTimeInfo)) {
    *record = std::bit_cast<QvtFileTime>(time);
    return;
  }
  auto low = static_cast<LONG>(time.dwLowDateTime);
  auto high = static_cast<LONG>(time.dwHighDateTime);
  check(object->put_dwLowDateTime(&low));
  check(object->put_dwHighDateTime(&high));
}

}  // namespace qv::datetime
