#include "runtime/application.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace qv {
namespace {

// Any address inside the module finds it.
const char kInside = 0;

}  // namespace

Long application_instance() noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&kInside), &module);
  return static_cast<Long>(reinterpret_cast<std::uintptr_t>(module));
}

Text application_path() {
  constexpr std::size_t kLongestPath = 32768;
  const Text buffer = Text::uninitialized(kLongestPath);
  const DWORD length =
      GetModuleFileNameW(nullptr, const_cast<wchar_t*>(buffer.data()), kLongestPath);
  const auto path = buffer.view().substr(0, length);
  return Text(path.substr(0, std::min(path.size(), path.rfind(L'\\'))));
}

}  // namespace qv
