// The event sources: connecting, disconnecting, and what the enumerators tell.
#include <olectl.h>

#include "server/frame_classes.h"

namespace qv::tests {
namespace {

// A sink that answers to one interface beside IUnknown.
class Sink final : public IDispatch {
 public:
  explicit Sink(const IID& id) : id_(id) {}
  ULONG references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, id_)) return E_NOINTERFACE;
    *object = this;
    ++references;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }  // lives on the stack
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return S_OK;
  }

 private:
  const IID id_;
};

class Frame_Events : public testing::TestWithParam<LibraryClass> {
 protected:
  void SetUp() override {
    ASSERT_EQ(CoCreateInstance(GetParam().class_id, nullptr, CLSCTX_INPROC_SERVER,
                               IID_IConnectionPointContainer,
                               reinterpret_cast<void**>(container_.receive())),
              S_OK);
    ASSERT_EQ(container_->FindConnectionPoint(GetParam().events_id, point_.receive()), S_OK);
  }
  Pointer<IConnectionPointContainer> container_;
  Pointer<IConnectionPoint> point_;
};

TEST_P(Frame_Events, point_tells_its_interface_and_container) {
  IID id{};
  EXPECT_EQ(point_->GetConnectionInterface(&id), S_OK);
  EXPECT_TRUE(IsEqualIID(id, GetParam().events_id));
  Pointer<IConnectionPointContainer> container;
  EXPECT_EQ(point_->GetConnectionPointContainer(container.receive()), S_OK);
  EXPECT_EQ(container.get(), container_.get());
  EXPECT_EQ(point_->GetConnectionInterface(nullptr), E_POINTER);
  EXPECT_EQ(point_->GetConnectionPointContainer(nullptr), E_POINTER);
}

TEST_P(Frame_Events, other_event_interfaces_have_no_point) {
  Pointer<IConnectionPoint> point;
  EXPECT_EQ(container_->FindConnectionPoint(IID_IDispatch, point.receive()),
            CONNECT_E_NOCONNECTION);
  EXPECT_FALSE(point);
  EXPECT_EQ(container_->FindConnectionPoint(GetParam().events_id, nullptr), E_POINTER);
}

TEST_P(Frame_Events, the_point_keeps_its_object) {
  container_ = {};
  Pointer<IConnectionPointContainer> container;
  EXPECT_EQ(point_->GetConnectionPointContainer(container.receive()), S_OK);
  EXPECT_TRUE(container);
}

TEST_P(Frame_Events, sinks_by_event_interface_or_by_dispatch_alone_are_taken) {
  for (const IID& id : {GetParam().events_id, IID_IDispatch}) {
    Sink sink(id);
    DWORD cookie = 0;
    EXPECT_EQ(point_->Advise(&sink, &cookie), S_OK);
    EXPECT_NE(cookie, 0U);
    EXPECT_EQ(sink.references, 2U);
    EXPECT_EQ(point_->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.references, 1U);
    EXPECT_EQ(point_->Unadvise(cookie), CONNECT_E_NOCONNECTION);
  }
}

TEST_P(Frame_Events, other_objects_and_null_pointers_are_refused) {
  Sink sink(IID_IPersist);
  DWORD cookie = 7;
  EXPECT_EQ(point_->Advise(&sink, &cookie), CONNECT_E_CANNOTCONNECT);
  EXPECT_EQ(cookie, 0U);
  EXPECT_EQ(sink.references, 1U);
  EXPECT_EQ(point_->Advise(nullptr, &cookie), E_POINTER);
  EXPECT_EQ(point_->Advise(&sink, nullptr), E_POINTER);
  EXPECT_EQ(point_->Unadvise(0), CONNECT_E_NOCONNECTION);
}

TEST_P(Frame_Events, sinks_left_connected_are_let_go_with_the_object) {
  Sink sink(IID_IDispatch);
  DWORD cookie = 0;
  ASSERT_EQ(point_->Advise(&sink, &cookie), S_OK);
  container_ = {};
  point_ = {};
  EXPECT_EQ(sink.references, 1U);
}

TEST_P(Frame_Events, connections_are_enumerated_with_their_cookies) {
  Sink first(IID_IDispatch);
  Sink second(IID_IDispatch);
  DWORD cookies[2] = {};
  ASSERT_EQ(point_->Advise(&first, &cookies[0]), S_OK);
  ASSERT_EQ(point_->Advise(&second, &cookies[1]), S_OK);
  EXPECT_NE(cookies[0], cookies[1]);
  Pointer<IEnumConnections> connections;
  ASSERT_EQ(point_->EnumConnections(connections.receive()), S_OK);

  CONNECTDATA data[3] = {};
  ULONG fetched = 99;
  EXPECT_EQ(connections->Next(3, data, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 2U);
  EXPECT_EQ(data[0].pUnk, &first);
  EXPECT_EQ(data[0].dwCookie, cookies[0]);
  EXPECT_EQ(data[1].pUnk, &second);
  EXPECT_EQ(data[1].dwCookie, cookies[1]);
  data[0].pUnk->Release();
  data[1].pUnk->Release();
  EXPECT_EQ(connections->Next(1, data, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0U);

  EXPECT_EQ(connections->Reset(), S_OK);
  EXPECT_EQ(connections->Skip(1), S_OK);
  Pointer<IEnumConnections> clone;
  EXPECT_EQ(connections->Clone(clone.receive()), S_OK);
  EXPECT_EQ(clone->Next(1, data, nullptr), S_OK);
  EXPECT_EQ(data[0].dwCookie, cookies[1]);
  data[0].pUnk->Release();
  EXPECT_EQ(connections->Skip(2), S_FALSE);
  EXPECT_EQ(connections->Next(2, data, nullptr), E_POINTER);
  EXPECT_EQ(connections->Next(1, nullptr, &fetched), E_POINTER);
  EXPECT_EQ(connections->Clone(nullptr), E_POINTER);
  EXPECT_EQ(point_->EnumConnections(nullptr), E_POINTER);

  // The list was fixed when the enumerator was made.
  EXPECT_EQ(point_->Unadvise(cookies[0]), S_OK);
  connections->Reset();
  EXPECT_EQ(connections->Next(1, data, nullptr), S_OK);
  EXPECT_EQ(data[0].dwCookie, cookies[0]);
  data[0].pUnk->Release();
  clone = {};
  connections = {};
  EXPECT_EQ(point_->Unadvise(cookies[1]), S_OK);
  EXPECT_EQ(first.references, 1U);
  EXPECT_EQ(second.references, 1U);
}

TEST_P(Frame_Events, container_lists_its_one_point) {
  Pointer<IEnumConnectionPoints> points;
  ASSERT_EQ(container_->EnumConnectionPoints(points.receive()), S_OK);
  IConnectionPoint* found[2] = {};
  ULONG fetched = 99;
  EXPECT_EQ(points->Next(2, found, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 1U);
  EXPECT_EQ(found[0], point_.get());
  found[0]->Release();
  EXPECT_EQ(points->Next(1, found, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(points->Reset(), S_OK);
  EXPECT_EQ(points->Next(1, found, nullptr), S_OK);
  found[0]->Release();
  EXPECT_EQ(container_->EnumConnectionPoints(nullptr), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(
    Sources, Frame_Events,
    testing::Values(LibraryClass{L"QvMsgBox", CLSID_QvMsgBox, {}, DIID___QvMsgBox},
                    LibraryClass{L"ZipFile", CLSID_ZipFile, {}, DIID___ZipFile},
                    LibraryClass{L"QvtNotify", CLSID_QvtNotify, {}, DIID___QvtNotify}),
    [](const auto& test) { return std::string(test.param.name.begin(), test.param.name.end()); });

}  // namespace
}  // namespace qv::tests
