// Puts a function of the test's own in place of a system service, for everything that this program
// calls, as long as this lives: for failures that a system can't be brought to, and to see what a
// service is given.
#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace qv::tests {

class StandIn {
 public:
  template <class Function>
  StandIn(const char* service, Function* function) {
    const auto address = reinterpret_cast<std::uintptr_t>(function);
    auto* const base = reinterpret_cast<std::uint8_t*>(GetModuleHandleW(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* library =
             reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
         library->FirstThunk != 0; ++library) {
      const auto* name =
          reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
      auto* slot = reinterpret_cast<std::uintptr_t*>(base + library->FirstThunk);
      for (; name->u1.AddressOfData != 0; ++name, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
        const auto* import =
            reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), service) != 0) continue;
        replaced_.push_back({slot, *slot});
        store(slot, address);
      }
    }
  }
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;
  ~StandIn() {
    for (const auto& [slot, original] : replaced_) store(slot, original);
  }

  // The service itself. Null where the program does not call it.
  template <class Function>
  Function* original() const {
    return replaced_.empty() ? nullptr : reinterpret_cast<Function*>(replaced_[0].original);
  }

 private:
  struct Replaced {
    std::uintptr_t* slot;
    std::uintptr_t original;
  };

  static void store(std::uintptr_t* slot, std::uintptr_t address) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = address;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
  }

  std::vector<Replaced> replaced_;
};

}  // namespace qv::tests
