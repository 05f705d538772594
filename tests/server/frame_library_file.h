// Where the registered server lies, and its type library: as it stands in that file and as the
// registration gives it.
#pragma once

#include <string>

#include "server/client.h"

namespace qv::tests {

inline std::wstring guid_text(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

// The full name of the registered server's file.
inline std::wstring server_path() {
  const std::wstring key = L"CLSID\\" + guid_text(CLSID_KwRtLib) + L"\\InprocServer32";
  wchar_t path[MAX_PATH] = {};
  DWORD bytes = sizeof path;
  const LONG status =
      RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &bytes);
  EXPECT_EQ(status, ERROR_SUCCESS);
  return path;
}

inline Pointer<ITypeLib> compiled_library() {
  Pointer<ITypeLib> library;
  EXPECT_EQ(LoadTypeLibEx(server_path().c_str(), REGKIND_NONE, library.receive()), S_OK);
  return library;
}

inline Pointer<ITypeLib> registered_library() {
  Pointer<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_QvRtLibOle, kQvRtLibOleMajor, kQvRtLibOleMinor, 0x409,
                           library.receive()),
            S_OK);
  return library;
}

}  // namespace qv::tests
