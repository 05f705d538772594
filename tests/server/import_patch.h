// Puts a function of the test in the place of one that the server imports from the system, as long
// as it lives: for services whose work can't be seen, and for failures that the system does not
// produce when asked.
#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>

namespace qv::tests {

class ImportPatch {
 public:
  // `replacement` has the signature of the function. The server must be loaded.
  template <class Function>
  ImportPatch(const char* name, Function* replacement)
      : slot_(find(name)), original_(slot_ != nullptr ? *slot_ : nullptr) {
    store(reinterpret_cast<void*>(replacement));
  }
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch() { store(original_); }

  bool is_in_place() const { return slot_ != nullptr; }
  template <class Function>
  Function* original() const {
    return reinterpret_cast<Function*>(original_);
  }

 private:
  static void** find(const char* name) {
    auto* base = reinterpret_cast<std::uint8_t*>(GetModuleHandleW(L"QvRtLibOle.dll"));
    if (base == nullptr) return nullptr;
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* head = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
      const auto* names =
          reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
      auto* functions = reinterpret_cast<void**>(base + library->FirstThunk);
      for (; names->u1.AddressOfData != 0; ++names, ++functions) {
        if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
        const auto* by_name =
            reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(by_name->Name), name) == 0) {
          return functions;
        }
      }
    }
    return nullptr;
  }

  void store(void* function) {
    if (slot_ == nullptr) return;
    DWORD before = 0;
    VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &before);
    *slot_ = function;
    VirtualProtect(slot_, sizeof *slot_, before, &before);
  }

  void** slot_;
  void* original_;
};

}  // namespace qv::tests
