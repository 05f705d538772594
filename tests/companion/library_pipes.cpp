#include <windows.h>

#include <cstdio>

#include "companion/companion.h"
#include "companion/library.h"
#include "companion/pipe_dialogue.h"

namespace qv::companion {
namespace {

// The library and one request, for the life of the process.
struct Library {
  Library() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    global = create<_KwRtLib>(CLSID_KwRtLib);
    request = create<_kwPipeData>(CLSID_kwPipeData);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    request->Release();
    global->Release();
    CoUninitialize();
  }
  void fill(LONG id, const std::wstring& data) const {
    request->put_ReqId(id);
    request->put_ReqDate(dialogue::kDate);
    const BSTR text = SysAllocStringLen(data.data(), static_cast<UINT>(data.size()));
    request->put_ReqData(text);
    SysFreeString(text);
  }

  _KwRtLib* global = nullptr;
  _kwPipeData* request = nullptr;
};

}  // namespace

int library_server(const Arguments& arguments) {
  Library library;
  BSTR name = SysAllocString(arguments[0].c_str());
  LONG pipe = 0;
  library.global->NPServerOpen(&name, &pipe);
  VARIANT_BOOL failed = VARIANT_FALSE;
  // A new pipe takes a client at once, which NPServerRead would not see: whoever is the first, we
  // or a client, is disconnected.
  CloseHandle(CreateFileW(name, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  SysFreeString(name);
  library.fill(dialogue::kNotYet, L"");
  library.global->NPServerWrite(&pipe, &library.request, &failed);
  for (int left = std::stoi(arguments[1]); left > 0; --left) {
    library.fill(0, std::wstring(dialogue::kRoom, L'r'));
    LONG result = 0;
    library.global->NPServerRead(&pipe, &library.request, &result);
    library.fill(dialogue::kAnswer, L"");
    library.global->NPServerWrite(&pipe, &library.request, &failed);
    std::printf("%ld %d\n", result, failed);
  }
  library.global->NPServerClose(&pipe, &failed);
  return 0;
}

int library_client(const Arguments& arguments) {
  Library library;
  BSTR name = SysAllocString(arguments[0].c_str());
  LONG time_out_ms = 10000;
  LONG result = 0;
  LONG id = 0;
  for (int tries = 0; tries < 1000; ++tries) {
    library.fill(dialogue::kRequest, arguments[1]);
    library.global->NPClientRequest(&name, &library.request, &time_out_ms, &result);
    library.request->get_ReqId(&id);
    LONG reason = 0;
    library.global->Error_LastDLLError(&reason);
    const bool is_absent = result == -1 && reason == ERROR_FILE_NOT_FOUND;
    if (!is_absent && id != dialogue::kNotYet >> 8) break;
    Sleep(10);
  }
  SysFreeString(name);
  DATE date = 0;
  BSTR data = nullptr;
  library.request->get_ReqDate(&date);
  library.request->get_ReqData(&data);
  std::string date_bytes(reinterpret_cast<const char*>(&date), sizeof date);
  std::printf("%ld %ld %s %u\n", result, id, hex_of(date_bytes).c_str(), SysStringLen(data));
  SysFreeString(data);
  return 0;
}

}  // namespace qv::companion
