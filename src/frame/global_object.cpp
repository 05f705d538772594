#include "frame/global_object.h"

#include <array>
#include <cstring>

#include "automation/bytes.h"
#include "automation/thread_state.h"
#include "runtime/application.h"
#include "runtime/err.h"

namespace qv::frame {
namespace {

struct LastKey {
  DWORD tick_ms = 0;
};

bool make_guid(GUID& id) {
  const HRESULT status = CoCreateGuid(&id);
  capture_last_dll_error();
  return SUCCEEDED(status);
}

}  // namespace

Long Unique_KeyLong() {
  auto& last = per_thread<LastKey>();
  DWORD now_ms = GetTickCount();
  while (now_ms == last.tick_ms) now_ms = GetTickCount();
  last.tick_ms = now_ms;
  return static_cast<Long>(now_ms);
}

void ThreadInfo(Long& hInstance, Long& PrevInstance, Long& ThreadId) {
  hInstance = application_instance();
  PrevInstance = 0;  // each process has its own copy of the library
  ThreadId = static_cast<Long>(GetCurrentThreadId());
}

Variant Guid_Binary() {
  GUID id;
  if (!make_guid(id)) return Variant::null();
  Array<Byte> bytes(0, sizeof id);
  std::memcpy(bytes.lock().begin(), &id, sizeof id);
  return bytes;
}

Text Guid_String() {
  GUID id;
  if (!make_guid(id)) return {};
  std::array<wchar_t, 40> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

Text Get_UserName() {
  std::array<wchar_t, 1024> name{};
  DWORD length = name.size();
  GetUserNameW(name.data(), &length);
  capture_last_dll_error();
  return name.data();
}

Boolean StdOut(const Text& Buffer) {
  try {
    const auto bytes = bytes_of_text(Buffer);
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
              &written, nullptr);
    capture_last_dll_error();
    return False;
  } catch (...) {
    return True;
  }
}

Text get_CEM_CREATEFILE() { return L"Impossibile creare il file %%."; }
Text get_CEM_OPENFILE() { return L"Impossibile aprire il file %%."; }
Text get_MSG_BLOOMSAVE() { return L"Errore durante il salvataggio del filtro-b."; }

}  // namespace qv::frame
