// Requests packed to bytes and unpacked, with objects of the library and of an application.
#include "services/pipe_packet.h"

#include <gtest/gtest.h>

#include <string>

#include "automation/class_object.h"
#include "class_tables.h"
#include "frame/error_state.h"

namespace qv::services {
namespace {

using Bytes = std::vector<Byte>;

Object<_kwPipeData> make_request() {
  const Object<IUnknown> created(create_kwPipeData());
  return Object<_kwPipeData>::from(created.get());
}

// An application's own implementation of the interface. It stands on the stack.
class ForeignRequest final : public _kwPipeData {
 public:
  LONG id = 0;
  DATE date = 0;
  std::wstring data;
  HRESULT refusal = S_OK;  // of the data

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    const bool known = IsEqualIID(wanted, IID_IUnknown) || IsEqualIID(wanted, IID_IDispatch) ||
                       IsEqualIID(wanted, __uuidof(_kwPipeData));
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_ReqId(LONG* value) override {
    *value = id;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_ReqId(LONG value) override {
    id = value;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_ReqDate(DATE* value) override {
    *value = date;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_ReqDate(DATE value) override {
    date = value;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_MaxPacketSize(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AppendData(BSTR*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ReqData(BSTR value) override {
    if (SUCCEEDED(refusal)) data.assign(value, SysStringLen(value));
    return refusal;
  }
  HRESULT STDMETHODCALLTYPE get_ReqData(BSTR* value) override {
    if (FAILED(refusal)) return refusal;
    *value = SysAllocStringLen(data.data(), static_cast<UINT>(data.size()));
    return S_OK;
  }
};

const Bytes kSeven = {7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0x40, 2, 0, 0, 0, 'a', 'b'};

class PipePacket : public testing::Test {
 protected:
  PipePacket() { frame::Reset_Error(); }

  void expect_error(Long number, std::wstring_view description, std::wstring_view function) {
    EXPECT_EQ(frame::Error_Number(), number);
    EXPECT_EQ(frame::Error_Description(), description);
    EXPECT_EQ(frame::Error_Source().view(),
              L"QvRtLibOle.modNamedPipes." + std::wstring(function) + L", 0");
    frame::Reset_Error();
  }
  LONG id() {
    LONG value = 0;
    EXPECT_EQ(request_->get_ReqId(&value), S_OK);
    return value;
  }
  DATE date() {
    DATE value = 0;
    EXPECT_EQ(request_->get_ReqDate(&value), S_OK);
    return value;
  }
  Text data() {
    BSTR value = nullptr;
    EXPECT_EQ(request_->get_ReqData(&value), S_OK);
    return Text::adopt(value);
  }
  void put(LONG id, DATE date, std::wstring_view data) {
    request_->put_ReqId(id);
    request_->put_ReqDate(date);
    EXPECT_EQ(request_->put_ReqData(Text(data).data()), S_OK);
  }

  Object<_kwPipeData> request_ = make_request();
  Bytes packet_;
};

TEST_F(PipePacket, a_request_is_packed_field_by_field) {
  put(7, 2.5, L"ab");
  EXPECT_FALSE(PackRequest(request_, packet_));
  EXPECT_EQ(packet_, kSeven);
}

TEST_F(PipePacket, an_empty_request_has_16_bytes) {
  EXPECT_FALSE(PackRequest(request_, packet_));
  EXPECT_EQ(packet_, Bytes(16, 0));
  put(-1, 0, L"");
  EXPECT_FALSE(PackRequest(request_, packet_));
  EXPECT_EQ(packet_, (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(PipePacket, characters_are_bytes_of_the_code_page) {
  put(0, 0, std::wstring_view(L"\0\x20AC\xFF\x4E00", 4));
  EXPECT_FALSE(PackRequest(request_, packet_));
  EXPECT_EQ(Bytes(packet_.begin() + 12, packet_.end()), (Bytes{4, 0, 0, 0, 0, 0x80, 0xFF, '?'}));
  EXPECT_FALSE(UnpackRequest(packet_, request_));
  EXPECT_EQ(data(), std::wstring_view(L"\0\x20AC\xFF?", 4));
}

TEST_F(PipePacket, the_longest_request_has_100016_bytes) {
  put(1, 1, std::wstring(100000, L'x'));
  EXPECT_FALSE(PackRequest(request_, packet_));
  EXPECT_EQ(packet_.size(), 100016U);
  const auto other = make_request();
  EXPECT_FALSE(UnpackRequest(packet_, other));
  BSTR text = nullptr;
  other->get_ReqData(&text);
  EXPECT_EQ(Text::adopt(text).size(), 100000U);
}

TEST_F(PipePacket, unpacking_overwrites_every_field) {
  put(1, 1, L"before");
  EXPECT_FALSE(UnpackRequest(kSeven, request_));
  EXPECT_EQ(id(), 7);
  EXPECT_EQ(date(), 2.5);
  EXPECT_EQ(data(), L"ab");
  EXPECT_EQ(frame::Error_Number(), 0);
}

TEST_F(PipePacket, bytes_behind_the_packet_are_passed_over) {
  put(1, 1, L"before");
  EXPECT_FALSE(UnpackRequest(Bytes(100017, 0), request_));
  EXPECT_EQ(id(), 0);
  EXPECT_EQ(date(), 0.0);
  EXPECT_EQ(data(), L"");
}

TEST_F(PipePacket, a_cut_packet_gives_the_fields_that_are_whole) {
  for (std::size_t length = 0; length < kSeven.size(); ++length) {
    put(1, 1, L"before");
    const Bytes cut(kSeven.begin(), kSeven.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_FALSE(UnpackRequest(cut, request_)) << length;
    EXPECT_EQ(id(), length >= 4 ? 7 : 0) << length;
    EXPECT_EQ(date(), length >= 12 ? 2.5 : 0.0) << length;
    EXPECT_EQ(data(), length >= 17 ? L"a" : L"") << length;
  }
}

TEST_F(PipePacket, a_negative_length_replaces_number_and_date_and_fails) {
  for (const Byte top : {Byte{0x80}, Byte{0xFF}}) {
    put(1, 1, L"before");
    Bytes packet = kSeven;
    packet[15] = top;
    EXPECT_TRUE(UnpackRequest(packet, request_));
    expect_error(5, L"Invalid procedure call or argument", L"UnpackRequest");
    EXPECT_EQ(id(), 7);
    EXPECT_EQ(date(), 2.5);
    EXPECT_EQ(data(), L"before");
  }
}

TEST_F(PipePacket, more_than_100000_bytes_of_data_replace_number_and_date_and_fail) {
  put(1, 1, L"before");
  Bytes packet(100017, 9);
  std::copy(kSeven.begin(), kSeven.begin() + 15, packet.begin());
  packet[15] = 0x7F;
  EXPECT_TRUE(UnpackRequest(packet, request_));
  expect_error(20000, L"Data exceed buffer size.", L"UnpackRequest");
  EXPECT_EQ(id(), 7);
  EXPECT_EQ(date(), 2.5);
  EXPECT_EQ(data(), L"before");

  packet.pop_back();  // the length is as large, but one byte less follows
  EXPECT_FALSE(UnpackRequest(packet, request_));
  EXPECT_EQ(data().size(), 100000U);
}

TEST_F(PipePacket, an_object_of_the_application_is_packed_and_unpacked_as_well) {
  ForeignRequest foreign;
  foreign.id = 7;
  foreign.date = 2.5;
  foreign.data = L"ab";
  const Object<_kwPipeData> request(&foreign);
  EXPECT_FALSE(PackRequest(request, packet_));
  EXPECT_EQ(packet_, kSeven);
  foreign = ForeignRequest();
  EXPECT_FALSE(UnpackRequest(kSeven, request));
  EXPECT_EQ(foreign.id, 7);
  EXPECT_EQ(foreign.date, 2.5);
  EXPECT_EQ(foreign.data, L"ab");
}

TEST_F(PipePacket, what_an_object_of_the_application_raises_is_recorded) {
  ForeignRequest foreign;
  foreign.refusal = static_cast<HRESULT>(0x800A0000U | 1234);
  const Object<_kwPipeData> request(&foreign);
  EXPECT_TRUE(PackRequest(request, packet_));
  EXPECT_EQ(frame::Error_Number(), 1234);
  EXPECT_TRUE(UnpackRequest(kSeven, request));
  EXPECT_EQ(frame::Error_Number(), 1234);
  EXPECT_EQ(frame::Error_Source(), L"QvRtLibOle.modNamedPipes.UnpackRequest, 0");
  EXPECT_EQ(foreign.id, 7);
}

TEST_F(PipePacket, nothing_is_no_request) {
  EXPECT_TRUE(PackRequest(nullptr, packet_));
  expect_error(91, L"Object variable or With block variable not set", L"PackRequest");
  EXPECT_TRUE(UnpackRequest(kSeven, nullptr));
  expect_error(91, L"Object variable or With block variable not set", L"UnpackRequest");
}

}  // namespace
}  // namespace qv::services
