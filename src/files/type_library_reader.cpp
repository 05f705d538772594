#include "files/type_library_reader.h"

#include "automation/late_bound.h"
#include "frame/error_state.h"

namespace qv::files {
namespace {

constexpr CLSID kComponent = {
    0x8b217745, 0x717d, 0x11ce, {0xab, 0x5b, 0xd4, 0x12, 0x03, 0xc1, 0x00, 0x00}};

Object<IDispatch> make_component() {
  Object<IDispatch> component;
  check(CoCreateInstance(kComponent, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                         reinterpret_cast<void**>(component.receive())));
  return component;
}

}  // namespace

void TypeLibraryReader::describe(const Text& file, QvtFileInfo& record) {
  Object<IDispatch> library;
  frame::attempt([&] {
    if (!component_) component_ = make_component();
    library = late_bound::call(component_, L"TypeLibInfoFromFile", {file}).to_object();
  });
  if (library) {
    frame::attempt([&] { record.RegName = late_bound::get(library, L"Name").to_text(); });
    frame::attempt([&] { record.CLSID = late_bound::get(library, L"GUID").to_text(); });
  }
  err().forget_error();
}

}  // namespace qv::files
