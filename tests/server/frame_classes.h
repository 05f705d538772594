// The classes of the server as its type library lists them, and its entry points.
#pragma once

#include <string>
#include <vector>

#include "server/frame_library_file.h"

namespace qv::tests {

struct LibraryClass {
  std::wstring name;
  CLSID class_id{};
  IID interface_id{};
  IID events_id{};  // zero where the class raises no events

  bool raises_events() const { return !IsEqualIID(events_id, IID{}); }
};

std::vector<LibraryClass> library_classes();

// The entry points of the server's file, the registered one or a copy; it stays loaded while this
// lives.
class EntryPoints {
 public:
  explicit EntryPoints(const std::wstring& path = server_path())
      : module_(LoadLibraryW(path.c_str())) {
    EXPECT_NE(module_, nullptr);
  }
  EntryPoints(const EntryPoints&) = delete;
  EntryPoints& operator=(const EntryPoints&) = delete;
  ~EntryPoints() { FreeLibrary(module_); }

  HMODULE module() const { return module_; }
  HRESULT get_class_object(REFCLSID class_id, REFIID id, void** object) const {
    return function<decltype(&::DllGetClassObject)>("DllGetClassObject")(class_id, id, object);
  }
  HRESULT can_unload_now() const {
    return function<decltype(&::DllCanUnloadNow)>("DllCanUnloadNow")();
  }
  Pointer<IClassFactory> factory(REFCLSID class_id) const {
    Pointer<IClassFactory> factory;
    EXPECT_EQ(
        get_class_object(class_id, IID_IClassFactory, reinterpret_cast<void**>(factory.receive())),
        S_OK);
    return factory;
  }
  template <class Interface>
  Pointer<Interface> create(REFCLSID class_id) const {
    Pointer<Interface> object;
    EXPECT_EQ(factory(class_id)->CreateInstance(nullptr, __uuidof(Interface),
                                                reinterpret_cast<void**>(object.receive())),
              S_OK);
    return object;
  }

 private:
  template <class Function>
  Function function(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  HMODULE module_;
};

}  // namespace qv::tests
