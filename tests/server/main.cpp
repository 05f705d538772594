// server_tests: a typed client of the registered server.
#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include <gtest/gtest.h>

int main(int count, char** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&count, arguments);
  const int code = RUN_ALL_TESTS();
  CoUninitialize();
  return code;
}
