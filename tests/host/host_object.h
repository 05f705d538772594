// The object "Host" of test scripts: what VBScript lacks here.
//   Host.Echo text            a line on the standard output
//   Host.Connect object, p    events of the object call the script's p_Event; False: it has none
//   Host.Disconnect           ends all connections
//   Host.ChrW(n), Host.AscW(s), Host.Sleep ms
//   Host.Bytes(b0, b1, ...)   an array of Byte; Host.Longs(...), Host.Strings(...) likewise
//   Host.Empty_Array(type)    an array variable of that type that is not allocated (VT_... number)
//   Host.Same(a, b)           are two texts equal, character by character, character 0 included?
//   Host.VarType(v)           the type number, also for types that VBScript refuses
//   Host.Missing              what a left-out argument is
//   Host.Press_Button n       presses button n (1 OK, 2 Cancel, ...) of the next message box
//   Host.Box_Title, Host.Box_Text   what that box showed
//   Host.Start(command)       starts a program of the tests' folder; its number
//   Host.Output(number)       waits for that program's end and gives what it has printed
//   Host.Folder               the folder of the test programs, with its final backslash
//   Host.End number           ends that program
//   Host.Directory_Begin      a stand-in takes the place of the directory, for UserCreate
//   Host.Directory_End        ends that and gives what was done to it, a line a call
//   Host.Unfix array          before the end of an array with its size in the Dim: the platform's
//                             engine takes its elements for static memory and never frees them
#pragma once

#include <windows.h>
// activscp.h needs windows.h before it.
#include <activscp.h>

#include <memory>
#include <vector>

#include "host/event_sink.h"
#include "server/box_presser.h"
#include "server/directory_provider.h"
#include "server/process.h"

namespace qv::tests {

class HostObject final : public IDispatch {
 public:
  // What the script echoes is printed, all of it or the lines about failures.
  explicit HostObject(bool shows_all) : shows_all_(shows_all) {}
  void set_script(IActiveScript* script);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  // Lives on main's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override;

 private:
  bool shows_all_;
  IActiveScript* script_ = nullptr;
  std::vector<EventSink*> sinks_;
  std::unique_ptr<BoxPresser> presser_;
  std::vector<std::unique_ptr<Process>> processes_;
  std::unique_ptr<DirectoryProvider> directory_;
};

}  // namespace qv::tests
