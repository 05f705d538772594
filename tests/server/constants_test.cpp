// The constants, through the typed interface. The type of each is its property's.
#include "server/client.h"

#include <utility>

namespace qv::tests {
namespace {

using GetLong = HRESULT (STDMETHODCALLTYPE _QvRtLib::*)(LONG*);
using GetInteger = HRESULT (STDMETHODCALLTYPE _QvRtLib::*)(SHORT*);
using GetSingle = HRESULT (STDMETHODCALLTYPE _QvRtLib::*)(FLOAT*);
using GetDouble = HRESULT (STDMETHODCALLTYPE _QvRtLib::*)(DOUBLE*);
using GetCurrency = HRESULT (STDMETHODCALLTYPE _QvRtLib::*)(CY*);

class Constants : public testing::Test {
 protected:
  template <class Get, class Type>
  void expect(Get get, Type expected) {
    Type value{};
    EXPECT_EQ((constants.get()->*get)(&value), S_OK);
    EXPECT_EQ(value, expected);
  }

  Pointer<_QvRtLib> constants = create<_QvRtLib>(CLSID_QvRtLib);
};

TEST_F(Constants, vbQuote_is_the_character_34) {
  String quote;
  EXPECT_EQ(constants->get_vbQuote(&quote), S_OK);
  EXPECT_EQ(quote, L"\"");
}

TEST_F(Constants, Longs_have_their_values) {
  const std::pair<GetLong, LONG> rows[] = {{&_QvRtLib::get_vbApplicationNotModal, 8192},
                                           {&_QvRtLib::get_vbAsterisk, 64},
                                           {&_QvRtLib::get_vbIconHand, 16},
                                           {&_QvRtLib::get_vbStop, 16},
                                           {&_QvRtLib::get_vbMaxLong, 2147483647},
                                           {&_QvRtLib::get_vbMinLong, -2147483647 - 1},
                                           {&_QvRtLib::get_vbTwipsPerInch, 1440},
                                           {&_QvRtLib::get_vbTwipsPerCent, 567},
                                           {&_QvRtLib::get_vbTwipsPerChaX, 120},
                                           {&_QvRtLib::get_vbTwipsPerCharY, 240},
                                           {&_QvRtLib::get_vbPointsPerInch, 72},
                                           {&_QvRtLib::get_vbicons, 112}};
  for (const auto& [get, value] : rows) expect(get, value);
}

TEST_F(Constants, Integers_have_their_values) {
  expect(GetInteger{&_QvRtLib::get_vbMinInt}, SHORT{-32768});
  expect(GetInteger{&_QvRtLib::get_vbMaxInt}, SHORT{32767});
}

TEST_F(Constants, Currency_limits_are_the_nearest_values_that_a_Currency_holds) {
  CY value{};
  EXPECT_EQ(constants->get_vbMaxCurrency(&value), S_OK);
  EXPECT_EQ(value.int64, 9223372036854775807);  // 922337203685477.5807
  EXPECT_EQ(constants->get_vbMinCurrency(&value), S_OK);
  EXPECT_EQ(value.int64, -9223372036854775807);
}

TEST_F(Constants, Double_and_Single_limits_are_rounded_values) {
  expect(GetDouble{&_QvRtLib::get_vbMaxDouble}, 1.7E+308);
  expect(GetDouble{&_QvRtLib::get_vbMinDouble}, 1.7E-308);
  expect(GetSingle{&_QvRtLib::get_vbMaxSingle}, 3.4E+38F);
  expect(GetSingle{&_QvRtLib::get_vbMinSingle}, 3.4E-38F);
}

TEST_F(Constants, Singles_have_their_values) {
  const std::pair<GetSingle, FLOAT> rows[] = {{&_QvRtLib::get_vbTwipsPerMill, 56.7F},
                                              {&_QvRtLib::get_vbPointsPerCent, 28.34F},
                                              {&_QvRtLib::get_vbPointsPerMill, 2.83F},
                                              {&_QvRtLib::get_vbCentPerInch, 2.54F}};
  for (const auto& [get, value] : rows) expect(get, value);
}

TEST_F(Constants, vbAsterisk_is_the_information_style_of_the_message_box) {
  expect(GetLong{&_QvRtLib::get_vbAsterisk}, LONG{MB_ICONINFORMATION});
  expect(GetLong{&_QvRtLib::get_vbStop}, LONG{MB_ICONHAND});
  expect(GetLong{&_QvRtLib::get_vbicons}, LONG{MB_ICONMASK & 0x70});
}

TEST_F(Constants, late_bound_values_have_the_subtype_of_their_property) {
  const std::pair<const wchar_t*, VARTYPE> rows[] = {
      {L"vbQuote", VT_BSTR},       {L"vbApplicationNotModal", VT_I4},
      {L"vbAsterisk", VT_I4},      {L"vbIconHand", VT_I4},
      {L"vbStop", VT_I4},          {L"vbMaxCurrency", VT_CY},
      {L"vbMinCurrency", VT_CY},   {L"vbMaxDouble", VT_R8},
      {L"vbMinDouble", VT_R8},     {L"vbMaxSingle", VT_R4},
      {L"vbMinSingle", VT_R4},     {L"vbMaxLong", VT_I4},
      {L"vbMinLong", VT_I4},       {L"vbMinInt", VT_I2},
      {L"vbMaxInt", VT_I2},        {L"vbTwipsPerInch", VT_I4},
      {L"vbTwipsPerCent", VT_I4},  {L"vbTwipsPerMill", VT_R4},
      {L"vbTwipsPerChaX", VT_I4},  {L"vbTwipsPerCharY", VT_I4},
      {L"vbPointsPerInch", VT_I4}, {L"vbPointsPerCent", VT_R4},
      {L"vbPointsPerMill", VT_R4}, {L"vbCentPerInch", VT_R4},
      {L"vbicons", VT_I4}};
  for (const auto& [name, type] : rows) {
    DISPID id = DISPID_UNKNOWN;
    auto* text = const_cast<wchar_t*>(name);
    ASSERT_EQ(constants->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), S_OK) << name;
    DISPPARAMS none{};
    Value value;
    EXPECT_EQ(constants->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                &value, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(value.vt, type) << name;
  }
}

TEST_F(Constants, can_not_be_put) {
  auto* name = const_cast<wchar_t*>(L"vbMaxInt");
  DISPID id = DISPID_UNKNOWN;
  ASSERT_EQ(constants->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  Value value(SHORT{1});
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&value, &named, 1, 1};
  EXPECT_EQ(constants->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                              nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
}

}  // namespace
}  // namespace qv::tests
