#include "server/allocations.h"

#include <windows.h>
// objidl.h needs windows.h before it.
#include <objidl.h>
#include <oleauto.h>

#include <mutex>
#include <unordered_map>

namespace qv::tests::allocations {
namespace {

class Spy final : public IMallocSpy {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IMallocSpy);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T bytes) override { return requested_ = bytes; }
  void* STDMETHODCALLTYPE PostAlloc(void* block) override {
    if (block != nullptr) live_[block] = requested_;
    return block;
  }
  void* STDMETHODCALLTYPE PreFree(void* block, BOOL) override {
    live_.erase(block);
    return block;
  }
  void STDMETHODCALLTYPE PostFree(BOOL) override {}
  SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T bytes, void** actual, BOOL) override {
    live_.erase(block);
    *actual = block;
    return requested_ = bytes;
  }
  void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL spyed) override {
    if (block != nullptr && spyed != FALSE) live_[block] = requested_;
    return block;
  }
  void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) override { return block; }
  SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T bytes, BOOL) override { return bytes; }
  void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) override { return block; }
  int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int result) override { return result; }
  void STDMETHODCALLTYPE PreHeapMinimize() override {}
  void STDMETHODCALLTYPE PostHeapMinimize() override {}

  const std::unordered_map<void*, SIZE_T>& live() const { return live_; }
  void forget() { live_.clear(); }

 private:
  // The allocator holds a lock around its spy, from a Pre to its Post.
  SIZE_T requested_ = 0;
  std::unordered_map<void*, SIZE_T> live_;
};

Spy spy;

// What can be read in a block: texts tell whose it is.
std::string readable(const void* block, SIZE_T bytes) {
  std::string text = "'";
  for (SIZE_T i = 0; i < bytes && text.size() < 60; ++i) {
    const char byte = static_cast<const char*>(block)[i];
    if (byte >= ' ' && byte <= '~') text += byte;
  }
  return text + "'";
}

}  // namespace

void begin() {
  using SwitchOff = void(STDAPICALLTYPE*)();
  const auto switch_off = reinterpret_cast<SwitchOff>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache")));
  if (switch_off != nullptr) switch_off();
  spy.forget();
  CoRegisterMallocSpy(&spy);
}

std::string end() {
  std::string left;
  for (const auto& [block, bytes] : spy.live()) {
    left += (left.empty() ? "" : ", ") + std::to_string(bytes) + " bytes " + readable(block, bytes);
    if (left.size() > 1000) break;
  }
  // Refused while there are blocks; then the spy goes on with the next watch.
  CoRevokeMallocSpy();
  return left;
}

}  // namespace qv::tests::allocations
