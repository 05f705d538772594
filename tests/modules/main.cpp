// module_tests: the modules from inside, for what no client can reach.
#include <windows.h>
// objbase.h needs windows.h before it.
#include <objbase.h>

#include <gtest/gtest.h>

#include "automation/class_object.h"
#include "automation/thread_state.h"

namespace qv::server {
// The modules live in this program and not in the server.
void count_object(int) noexcept {}
HRESULT type_info_of(const GUID&, ITypeInfo** info) noexcept {
  *info = nullptr;
  return E_NOTIMPL;
}
}  // namespace qv::server

int main(int count, char** arguments) {
  qv::thread_state::attach();
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&count, arguments);
  const int code = RUN_ALL_TESTS();
  CoUninitialize();
  qv::thread_state::detach();
  return code;
}
