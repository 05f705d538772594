#include "config/ini_struct.h"

namespace qv::config {
namespace {

// Passing a text by value leaves it the giver's.
BSTR lent(const Text& text) noexcept { return const_cast<wchar_t*>(text.data()); }

}  // namespace

void QVtIniStruct::CopyTo(const Object<_QVtIniStruct>& Ini) const {
  check(Ini->put_IniFile(lent(IniFile)));
  check(Ini->put_WinPath(lent(WinPath)));
  check(Ini->put_SysPath(lent(SysPath)));
  check(Ini->put_ExePath(lent(ExePath)));
  check(Ini->put_TmpPath(lent(TmpPath)));
}

}  // namespace qv::config
