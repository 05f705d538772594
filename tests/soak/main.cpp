// soak_tests [--seconds N] [options of GoogleTest]: the soak test, 10 seconds long by itself.
// soak_tests --write FOLDER, --check FOLDER: the two sides of kill_writers.py.
#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cwchar>
#include <string_view>

#include "soak/soak.h"

namespace qv::tests {
int soak_seconds = 10;
}

int wmain(int count, wchar_t** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&count, arguments);
  const std::wstring_view mode = count > 2 ? arguments[1] : L"";
  int code = 0;
  if (mode == L"--write") qv::tests::write_until_killed(arguments[2]);
  if (mode == L"--check") {
    qv::tests::check_what_is_left(arguments[2]);
  } else {
    if (mode == L"--seconds")
      qv::tests::soak_seconds = static_cast<int>(std::wcstol(arguments[2], nullptr, 10));
    code = RUN_ALL_TESTS();
  }
  CoUninitialize();
  return code;
}
