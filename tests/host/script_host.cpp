// A small script host for tests: script_host FILE... runs VBScript files as one program. What the
// platform's own host lacks and tests need: the members of the global object can be called without
// an object, events arrive, errors tell their line, and the exit code is real: 0 when the script
// ended by itself, 1 after an error. With --watch_allocations before the files they run twice, and
// what the second run leaves allocated is an error: the first may fill caches of the platform. The
// second run shows failures alone.
#include <windows.h>
// activscp.h needs windows.h before it.
#include <activscp.h>
#include <ocidl.h>
#include <olectl.h>

#include <cguid.h>
#include <cstdio>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "host/desk_object.h"
#include "host/event_sink.h"
#include "host/host_object.h"
#include "interfaces.h"
#include "server/allocations.h"
#include "server/thread_state.h"

namespace {

using qv::tests::DeskObject;
using qv::tests::HostObject;

constexpr CLSID kVbScript = {
    0xb54f3741, 0x5b07, 0x11cf, {0xa4, 0xb0, 0x00, 0xaa, 0x00, 0x4a, 0x55, 0xe8}};
constexpr const wchar_t* kHostName = L"Host";
constexpr const wchar_t* kDeskName = L"Desk";
constexpr const wchar_t* kGlobalName = L"KwRtLibGlobal";
constexpr const wchar_t* kConstantsName = L"QvRtLibGlobal";

std::wstring widened(const std::string& bytes) {
  const int length =
      MultiByteToWideChar(1252, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(1252, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(), length);
  return text;
}

class Site final : public IActiveScriptSite, public IActiveScriptSiteWindow {
 public:
  bool failed = false;
  IUnknown* host = nullptr;
  IUnknown* desk = nullptr;
  IUnknown* global = nullptr;
  IUnknown* constants = nullptr;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IActiveScriptSite)) {
      *object = static_cast<IActiveScriptSite*>(this);
    } else if (IsEqualIID(id, IID_IActiveScriptSiteWindow)) {
      *object = static_cast<IActiveScriptSiteWindow*>(this);
    } else {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    return S_OK;
  }
  // Lives on main's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override {
    *locale = GetUserDefaultLCID();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** item,
                                        ITypeInfo** info) override {
    if (info != nullptr) *info = nullptr;
    if ((mask & SCRIPTINFO_IUNKNOWN) == 0 || item == nullptr) return S_OK;
    const std::wstring wanted = name;
    *item = wanted == kHostName     ? host
            : wanted == kDeskName   ? desk
            : wanted == kGlobalName ? global
                                    : constants;
    if (*item == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    (*item)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    failed = true;
    EXCEPINFO info{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetExceptionInfo(&info);
    error->GetSourcePosition(&context, &line, &column);
    std::printf("FAILED script error %08lX (%ls) in line %lu\n",
                static_cast<unsigned long>(info.scode),
                info.bstrDescription != nullptr ? info.bstrDescription : L"", line + 1);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = GetDesktopWindow();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
};

std::wstring read_scripts(int count, wchar_t** names) {
  std::string text;
  for (int i = 1; i < count; ++i) {
    char narrow[MAX_PATH];
    WideCharToMultiByte(CP_ACP, 0, names[i], -1, narrow, MAX_PATH, nullptr, nullptr);
    std::ifstream file(narrow, std::ios::binary);
    if (!file) std::printf("FAILED no script %s\n", narrow);
    text.append(std::istreambuf_iterator<char>(file), {});
    text += "\r\n";
  }
  return widened(text);
}

int run(int count, wchar_t** names, bool shows_all) {
  Site site;
  HostObject host(shows_all);
  DeskObject desk;
  site.host = &host;
  site.desk = &desk;
  CoCreateInstance(CLSID_KwRtLib, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                   reinterpret_cast<void**>(&site.global));
  CoCreateInstance(CLSID_QvRtLib, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                   reinterpret_cast<void**>(&site.constants));
  if (site.global == nullptr || site.constants == nullptr) {
    std::printf("FAILED the server can't be created\n");
    return 1;
  }
  IActiveScript* script = nullptr;
  IActiveScriptParse* parser = nullptr;
  HRESULT status = CoCreateInstance(kVbScript, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                                    reinterpret_cast<void**>(&script));
  if (SUCCEEDED(status)) {
    status =
        script->QueryInterface(__uuidof(IActiveScriptParse), reinterpret_cast<void**>(&parser));
  }
  if (FAILED(status)) {
    std::printf("FAILED no script engine\n");
    return 1;
  }
  script->SetScriptSite(&site);
  parser->InitNew();
  script->AddNamedItem(kHostName, SCRIPTITEM_ISVISIBLE);
  script->AddNamedItem(kDeskName, SCRIPTITEM_ISVISIBLE);
  constexpr DWORD kGlobal = SCRIPTITEM_ISVISIBLE | SCRIPTITEM_GLOBALMEMBERS;
  script->AddNamedItem(kGlobalName, kGlobal);
  script->AddNamedItem(kConstantsName, kGlobal);
  host.set_script(script);
  const std::wstring text = read_scripts(count, names);
  script->SetScriptState(SCRIPTSTATE_CONNECTED);
  status = parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                   SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
  if (FAILED(status) && !site.failed) {
    std::printf("FAILED the script can't be parsed (%08lX)\n", static_cast<unsigned long>(status));
    site.failed = true;
  }
  host.set_script(nullptr);
  script->Close();
  parser->Release();
  script->Release();
  _KwRtLib* global = nullptr;
  site.global->QueryInterface(__uuidof(_KwRtLib), reinterpret_cast<void**>(&global));
  qv::tests::empty_thread_state(global);
  global->Release();
  site.global->Release();
  site.constants->Release();
  return site.failed ? 1 : 0;
}

}  // namespace

int wmain(int count, wchar_t** names) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const bool is_watched = count > 1 && std::wcscmp(names[1], L"--watch_allocations") == 0;
  const int skipped = is_watched ? 1 : 0;
  int code = run(count - skipped, names + skipped, true);
  if (is_watched && code == 0) {
    qv::tests::allocations::begin();
    code = run(count - skipped, names + skipped, false);
    const std::string left = qv::tests::allocations::end();
    if (!left.empty()) {
      std::printf("FAILED what the second run leaves allocated: %s\n", left.c_str());
      code = 1;
    }
  }
  CoUninitialize();
  return code;
}
