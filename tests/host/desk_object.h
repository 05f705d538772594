// The object "Desk" of test scripts: windows, device contexts and printers.
//   Desk.Control(class, style [, parent])   a control of a form (server/form_control.h), or of the
//                                           control `parent`; "": without a window
//   Desk.Form                               the form itself
//   Desk.Send(control, message, word, value)   a message to it; a text goes by its address
//   Desk.Text_By(control, message, word)    the text with which it answers one
//   Desk.Place control, x, y, width, height    moves it there, and shows the form
//   Desk.Form_Size width, height            of the form
//   Desk.Device(control)                    a device context of its window, for good
//   Desk.Fill device, x1, y1, x2, y2, colour   a filled box on it
//   Desk.Canvas(width, height)              a device context over a white bitmap, for good
//   Desk.Pixel(canvas, x, y)                a colour of it
//   Desk.Print_Queue name, port             makes a print queue (server/print_queue.h)
//   Desk.Printed                            the bytes of the last job that left it since this was
//                                           asked
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <memory>

#include "server/print_queue.h"

namespace qv::tests {

class DeskObject final : public IDispatch {
 public:
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
  std::unique_ptr<PrintQueue> queue_;
};

}  // namespace qv::tests
