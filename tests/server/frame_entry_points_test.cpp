// Class factories, the interfaces that every object answers, and what keeps the library loaded.
#include <olectl.h>

#include <atomic>
#include <thread>

#include "server/frame_classes.h"

namespace qv::tests {
namespace {

// An interface that no object of the server has.
constexpr IID kForeignId = {
    0x6b1d0e52, 0x9c3f, 0x4a77, {0xb4, 0x1e, 0x53, 0x0a, 0xd1, 0x7c, 0x88, 0x2e}};

Pointer<IUnknown> create_unknown(const LibraryClass& description) {
  Pointer<IUnknown> object;
  EXPECT_EQ(CoCreateInstance(description.class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                             reinterpret_cast<void**>(object.receive())),
            S_OK);
  return object;
}

HRESULT query(IUnknown* object, REFIID id) {
  Pointer<IUnknown> other;
  return object->QueryInterface(id, reinterpret_cast<void**>(other.receive()));
}

TEST(Frame_EntryPoints, every_class_has_a_factory_and_can_be_created) {
  const EntryPoints entry_points;
  const auto classes = library_classes();
  EXPECT_EQ(classes.size(), 23U);
  for (const LibraryClass& description : classes) {
    const auto factory = entry_points.factory(description.class_id);
    Pointer<IUnknown> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, description.interface_id,
                                      reinterpret_cast<void**>(object.receive())),
              S_OK);
  }
}

TEST(Frame_EntryPoints, program_names_lead_to_the_classes) {
  for (const LibraryClass& description : library_classes()) {
    for (const wchar_t* version : {L"", L".1"}) {
      CLSID class_id{};
      const std::wstring name = L"QvRtLibOle." + description.name + version;
      EXPECT_EQ(CLSIDFromProgID(name.c_str(), &class_id), S_OK);
      EXPECT_TRUE(IsEqualCLSID(class_id, description.class_id));
    }
  }
}

TEST(Frame_EntryPoints, unknown_class_is_not_available) {
  const EntryPoints entry_points;
  void* object = &object;
  EXPECT_EQ(entry_points.get_class_object(kForeignId, IID_IClassFactory, &object),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
}

TEST(Frame_EntryPoints, class_object_refuses_other_interfaces_and_null_pointers) {
  const EntryPoints entry_points;
  void* object = &object;
  EXPECT_EQ(entry_points.get_class_object(CLSID_KwRtLib, kForeignId, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(entry_points.get_class_object(CLSID_KwRtLib, IID_IClassFactory, nullptr), E_POINTER);
  const auto factory = entry_points.factory(CLSID_KwRtLib);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(Frame_EntryPoints, aggregation_is_refused) {
  const EntryPoints entry_points;
  const auto outer = create_global();
  for (const LibraryClass& description : library_classes()) {
    void* object = &object;
    EXPECT_EQ(entry_points.factory(description.class_id)
                  ->CreateInstance(outer.get(), IID_IUnknown, &object),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
  }
}

TEST(Frame_EntryPoints, factory_gives_no_object_by_an_unknown_interface) {
  const EntryPoints entry_points;
  void* object = &object;
  EXPECT_EQ(entry_points.factory(CLSID_kwCollection)->CreateInstance(nullptr, kForeignId, &object),
            E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Objects, answer_to_their_interfaces_and_to_no_others) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create_unknown(description);
    for (const IID& id : {IID_IUnknown, IID_IDispatch, description.interface_id,
                          IID_ISupportErrorInfo, IID_IProvideClassInfo, IID_IProvideClassInfo2}) {
      EXPECT_EQ(query(object.get(), id), S_OK);
    }
    for (const IID& id : {kForeignId, IID_IMarshal, IID_IPersistStream, IID_IConnectionPoint}) {
      EXPECT_EQ(query(object.get(), id), E_NOINTERFACE);
    }
    EXPECT_EQ(query(object.get(), IID_IConnectionPointContainer),
              description.raises_events() ? S_OK : E_NOINTERFACE);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  }
}

TEST(Frame_Objects, are_the_same_object_by_every_interface) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create_unknown(description);
    for (const IID& id : {IID_IDispatch, description.interface_id, IID_ISupportErrorInfo,
                          IID_IProvideClassInfo2, IID_IConnectionPointContainer}) {
      Pointer<IUnknown> other;
      if (FAILED(object->QueryInterface(id, reinterpret_cast<void**>(other.receive())))) continue;
      EXPECT_EQ(Pointer<IUnknown>::from(other.get()).get(), object.get());
    }
  }
}

TEST(Frame_Objects, answer_to_the_ids_of_earlier_releases) {
  const auto global = create_global();
  EXPECT_EQ(query(global.get(), IID_KwRtLib___v0), S_OK);
  EXPECT_EQ(query(global.get(), IID_KwRtLib___v1), S_OK);
  EXPECT_EQ(query(global.get(), IID_QVtError___v0), E_NOINTERFACE);
  const auto record = create<_QVtError>(CLSID_QVtError);
  EXPECT_EQ(query(record.get(), IID_QVtError___v0), S_OK);
  EXPECT_EQ(query(record.get(), IID_KwRtLib___v0), E_NOINTERFACE);
}

TEST(Frame_Objects, calls_by_the_id_of_an_earlier_release_reach_the_member) {
  Pointer<_KwRtLib> global;
  ASSERT_EQ(CoCreateInstance(CLSID_KwRtLib, nullptr, CLSCTX_INPROC_SERVER, IID_KwRtLib___v0,
                             reinterpret_cast<void**>(global.receive())),
            S_OK);
  String text;
  LONG number = 0x41424344;
  EXPECT_EQ(global->Long_2_Str(&number, &text), S_OK);
  EXPECT_EQ(text.view(), L"DCBA");
}

TEST(Frame_Objects, tell_that_their_interfaces_give_error_information) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create_unknown(description);
    const auto support = Pointer<ISupportErrorInfo>::from(object.get());
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(description.interface_id), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(kForeignId), S_FALSE);
  }
  const auto support = Pointer<ISupportErrorInfo>::from(create_global().get());
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_KwRtLib___v1), S_OK);
}

TEST(Frame_Objects, describe_their_class_and_events) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create_unknown(description);
    const auto provider = Pointer<IProvideClassInfo2>::from(object.get());
    Pointer<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, description.class_id));
    info->ReleaseTypeAttr(attributes);

    GUID events = kForeignId;
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events),
              description.raises_events() ? S_OK : E_INVALIDARG);
    EXPECT_TRUE(IsEqualGUID(events, description.events_id));
    EXPECT_EQ(provider->GetGUID(99, &events), E_INVALIDARG);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
  }
}

TEST(Frame_Objects, give_the_description_of_their_interface) {
  for (const LibraryClass& description : library_classes()) {
    const auto object = create_unknown(description);
    const auto dispatch = Pointer<IDispatch>::from(object.get());
    UINT count = 0;
    EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(dispatch->GetTypeInfoCount(nullptr), E_POINTER);
    Pointer<ITypeInfo> info;
    ASSERT_EQ(dispatch->GetTypeInfo(0, 0, info.receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, description.interface_id));
    info->ReleaseTypeAttr(attributes);
    EXPECT_EQ(dispatch->GetTypeInfo(1, 0, info.receive()), DISP_E_BADINDEX);
    EXPECT_EQ(dispatch->GetTypeInfo(0, 0, nullptr), E_POINTER);
  }
}

TEST(Frame_Unloading, objects_factories_and_locks_keep_the_library) {
  const EntryPoints entry_points;
  ASSERT_EQ(entry_points.can_unload_now(), S_OK);
  {
    const auto object = create<_kwCollection>(CLSID_kwCollection);
    EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  }
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
  const auto factory = entry_points.factory(CLSID_QvSort);
  EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  Pointer<IClassFactory> moved = factory;
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
}

TEST(Frame_Unloading, a_lock_alone_keeps_the_library) {
  const EntryPoints entry_points;
  entry_points.factory(CLSID_QvSort)->LockServer(TRUE);
  EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  entry_points.factory(CLSID_QvSort)->LockServer(FALSE);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Unloading, an_enumerator_of_connections_keeps_the_library) {
  const EntryPoints entry_points;
  Pointer<IEnumConnections> connections;
  {
    const auto object = create<_QvtNotify>(CLSID_QvtNotify);
    const auto container = Pointer<IConnectionPointContainer>::from(object.get());
    Pointer<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(DIID___QvtNotify, point.receive()), S_OK);
    ASSERT_EQ(point->EnumConnections(connections.receive()), S_OK);
  }
  EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  connections = {};
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

TEST(Frame_Unloading, count_is_right_under_threads) {
  const EntryPoints entry_points;
  ASSERT_EQ(entry_points.can_unload_now(), S_OK);
  std::atomic<int> wrong{0};
  const auto work = [&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    for (int i = 0; i < 2000; ++i) {
      const auto factory = entry_points.factory(CLSID_QvtRect);
      Pointer<IUnknown> object;
      factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(object.receive()));
      factory->LockServer(TRUE);
      factory->LockServer(FALSE);
      if (entry_points.can_unload_now() != S_FALSE) ++wrong;
    }
    CoUninitialize();
  };
  std::thread first(work);
  std::thread second(work);
  std::thread third(work);
  first.join();
  second.join();
  third.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

}  // namespace
}  // namespace qv::tests
