// What a call costs: early bound beside a bare virtual call, late bound beside the system's generic
// Invoke on the same object and beside the platform's own dictionary object; names to numbers
// beside the type library's; texts by reference, and buffers built value by value.
//
// Each line tells our time for one operation, the peer's, and ours over the peer's: the median of
// the ratios of interleaved rounds in one process.

#include <cstdlib>
#include <cstring>
#include <string>

#include "server/client.h"
#include "windows/bench.h"

// Needs the platform's types before it.
#include <cguid.h>

namespace {

using namespace qv::bench;
using qv::tests::create_global;
using qv::tests::Pointer;
using qv::tests::String;
using qv::tests::Value;

constexpr int kRounds = 7;

void require(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  std::exit(1);
}

template <class Ours, class Peers>
void compare(const char* what, const Goal& goal, int count, Ours&& ours, Peers&& peers) {
  Times times;
  ours(count / 10);
  peers(count / 10);
  for (int i = 0; i < kRounds; ++i) {
    const double our_time_s = seconds([&] { ours(count); });
    times.add(our_time_s, seconds([&] { peers(count); }));
  }
  times.print(what, static_cast<std::size_t>(count), goal);
}

// A method as bare as they come, which the compiler can't see through.
struct Bare {
  Bare() = default;
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;
  virtual HRESULT STDMETHODCALLTYPE Check_Error(VARIANT_BOOL* result) {
    *result = VARIANT_FALSE;
    return S_OK;
  }

 protected:
  ~Bare() = default;
};
struct BareObject final : Bare {};

DISPID id_of(IDispatch* object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  auto* text = const_cast<wchar_t*>(name);
  require(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id) == S_OK, "a name");
  return id;
}

// A member called late bound over and over with the same arguments (last one first).
struct LateCall {
  IDispatch* object;
  const wchar_t* name;
  WORD kind;
  std::vector<VARIANT> arguments;

  DISPPARAMS parameters() {
    return {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  }
  void by_object(int count) {
    const DISPID id = id_of(object, name);
    DISPPARAMS list = parameters();
    for (int i = 0; i < count; ++i) {
      Value result;
      if (FAILED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &list, &result, nullptr,
                                nullptr))) {
        require(false, "our Invoke");
      }
    }
  }
  void by_system(ITypeInfo* info, int count) {
    const DISPID id = id_of(object, name);
    DISPPARAMS list = parameters();
    for (int i = 0; i < count; ++i) {
      Value result;
      if (FAILED(DispInvoke(object, info, id, kind, &list, &result, nullptr, nullptr))) {
        require(false, "the system's Invoke");
      }
    }
  }
};

VARIANT reference_to(LONG& number) {
  VARIANT variant{};
  variant.vt = VT_BYREF | VT_I4;
  variant.plVal = &number;
  return variant;
}

// The description of the dual interface, which is what the system's Invoke works from.
Pointer<ITypeInfo> interface_of(IDispatch* object) {
  Pointer<ITypeInfo> dispatch;
  require(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, dispatch.receive()) == S_OK, "GetTypeInfo");
  HREFTYPE reference = 0;
  require(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference) == S_OK,
          "the dual interface");
  Pointer<ITypeInfo> info;
  require(dispatch->GetRefTypeInfo(reference, info.receive()) == S_OK, "its description");
  return info;
}

void early_bound(_KwRtLib* global) {
  print_heading("Early bound", "a bare virtual call");
  BareObject object;
  Bare* volatile bare = &object;
  compare(
      "Check_Error", at_most(1, 10), 1000000,
      [&](int count) {
        VARIANT_BOOL result = VARIANT_FALSE;
        for (int i = 0; i < count; ++i) global->Check_Error(&result);
      },
      [&](int count) {
        VARIANT_BOOL result = VARIANT_FALSE;
        for (int i = 0; i < count; ++i) bare->Check_Error(&result);
      });
}

void late_bound(_KwRtLib* global) {
  print_heading("Late bound", "the system's generic Invoke on the same object");
  const auto info = interface_of(global);
  LONG number = 0x41424344;
  LONG low = 1;
  LateCall calls[] = {
      {global, L"Check_Error", DISPATCH_METHOD, {}},
      {global, L"Lo_Word", DISPATCH_METHOD, {reference_to(number)}},
      {global, L"Long_2_Str", DISPATCH_METHOD, {reference_to(number)}},
      {global, L"Lshl", DISPATCH_METHOD, {reference_to(low), reference_to(number)}},
  };
  for (LateCall& call : calls) {
    const std::string name(call.name, call.name + std::wcslen(call.name));
    compare(
        name.c_str(), at_most(0.1), 100000, [&](int count) { call.by_object(count); },
        [&](int count) { call.by_system(info.get(), count); });
  }
}

void names(_KwRtLib* global) {
  print_heading("Names to numbers", "the type library's");
  const auto info = interface_of(global);
  for (const wchar_t* name : {L"Error_Source", L"TRUNC_LAST", L"ShowBrowseFolder"}) {
    auto* text = const_cast<wchar_t*>(name);
    const std::string title(name, name + std::wcslen(name));
    compare(
        title.c_str(), at_most(0, 100), 1000,
        [&](int count) {
          for (int i = 0; i < count; ++i) id_of(global, name);
        },
        [&](int count) {
          DISPID id = DISPID_UNKNOWN;
          for (int i = 0; i < count; ++i) {
            require(DispGetIDsOfNames(info.get(), &text, 1, &id) == S_OK, "the system's name");
          }
        });
  }
}

void dictionary() {
  print_heading("kwCollection late bound", "Scripting.Dictionary late bound");
  CLSID class_id{};
  Pointer<IDispatch> peer;
  if (CLSIDFromProgID(L"Scripting.Dictionary", &class_id) != S_OK ||
      CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                       reinterpret_cast<void**>(peer.receive())) != S_OK) {
    std::puts("  the platform has none");
    return;
  }
  const auto ours = qv::tests::create<IDispatch>(CLSID_kwCollection);
  Value key(L"key");
  Value item(1);
  LateCall{ours.get(), L"Add", DISPATCH_METHOD, {key, item}}.by_object(1);
  LateCall{peer.get(), L"Add", DISPATCH_METHOD, {item, key}}.by_object(1);
  constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  for (const wchar_t* name : {L"Count", L"Item"}) {
    const bool is_item = name[0] == L'I';
    const std::vector<VARIANT> arguments =
        is_item ? std::vector<VARIANT>{key} : std::vector<VARIANT>();
    LateCall our_call{ours.get(), name, kRead, arguments};
    LateCall peers_call{peer.get(), name, kRead, arguments};
    compare(
        is_item ? "Item" : "Count", at_most(1), 100000,
        [&](int count) { our_call.by_object(count); },
        [&](int count) { peers_call.by_object(count); });
  }
}

void text_by_reference(_KwRtLib* global) {
  print_heading("A Long from 64 MB by reference", "from 64 characters");
  String large(std::wstring(64U << 20, L'A'));
  String small(std::wstring(64, L'A'));
  const auto get = [&](String& buffer, int count) {
    Value value(1);
    VARIANT_BOOL failed = VARIANT_FALSE;
    for (int i = 0; i < count; ++i) {
      LONG offset = 1;
      global->Buffer_Get(&buffer, &offset, &value, nullptr, &failed);
      if (failed != VARIANT_FALSE) require(false, "Buffer_Get");
    }
  };
  compare(
      "Buffer_Get", at_most(1.1), 100000, [&](int count) { get(large, count); },
      [&](int count) { get(small, count); });
}

void building(_KwRtLib* global) {
  print_heading("A buffer built by Buffer_Put of Longs, a value", "one of 1 MB");
  double first_ns = 0;
  for (const unsigned megabytes : {1U, 4U, 16U, 64U}) {
    const LONG count = static_cast<LONG>((megabytes << 20) / sizeof(LONG));
    String buffer;
    const double time_s = seconds([&] {
      LONG offset = 1;
      VARIANT_BOOL failed = VARIANT_FALSE;
      for (LONG i = 0; i < count; ++i) {
        Value value(i);
        global->Buffer_Put(&buffer, &offset, &value, nullptr, &failed);
        if (failed != VARIANT_FALSE) require(false, "Buffer_Put");
      }
      global->Buffer_Complete(&buffer, &offset);
    });
    require(buffer.length() == megabytes << 20, "the buffer's length");
    const double call_ns = time_s * 1e9 / count;
    if (first_ns == 0) first_ns = call_ns;
    print_row((std::to_string(megabytes) + " MB").c_str(), call_ns, first_ns, "ns",
              call_ns / first_ns, at_most(1.2));
  }
}

}  // namespace

int main() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    const auto global = create_global();
    require(static_cast<bool>(global), "the server is registered");
    early_bound(global.get());
    late_bound(global.get());
    names(global.get());
    dictionary();
    text_by_reference(global.get());
    building(global.get());
  }
  CoUninitialize();
  return 0;
}
