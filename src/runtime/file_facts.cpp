#include "runtime/file_facts.h"

#include <limits>

#include "runtime/calendar.h"
#include "runtime/directory.h"
#include "runtime/err.h"
#include "runtime/file_errors.h"
#include "runtime/system_name.h"

namespace qv {
namespace {

WIN32_FILE_ATTRIBUTE_DATA facts_of(std::wstring_view name) {
  get_attr(name);  // raises for a name that no file can have
  const Text plain = system_name(name);
  WIN32_FILE_ATTRIBUTE_DATA facts;
  if (!GetFileAttributesExW(plain.c_str(), GetFileExInfoStandard, &facts)) {
    raise_file_error(plain.c_str());
  }
  capture_last_dll_error();
  return facts;
}

}  // namespace

Long file_len(std::wstring_view name) {
  const auto facts = facts_of(name);
  if (facts.nFileSizeHigh != 0 || facts.nFileSizeLow > std::numeric_limits<Long>::max()) {
    raise(kOverflow);
  }
  return static_cast<Long>(facts.nFileSizeLow);
}

Date file_date_time(std::wstring_view name) {
  const auto facts = facts_of(name);
  FILETIME local;
  SYSTEMTIME time;
  if (!FileTimeToLocalFileTime(&facts.ftLastWriteTime, &local) ||
      !FileTimeToSystemTime(&local, &time)) {
    raise(kInvalidProcedureCall);
  }
  return date_of(time);
}

}  // namespace qv
