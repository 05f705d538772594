// Texts and numbers at fixed lengths, called early-bound.
#include <gtest/gtest.h>

#include <string>

#include "server/client.h"

namespace qv::tests {
namespace {

class Padding : public testing::Test {
 protected:
  std::wstring round_num(Value number, SHORT size) {
    String result;
    EXPECT_EQ(global_->Round_Num(number, &size, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring pad_hex(Value number, SHORT length) {
    String result;
    EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), S_OK);
    return std::wstring(result.view());
  }

  std::wstring pad_number(Value number, SHORT length, const wchar_t* fill) {
    String result, fill_text(fill);
    EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill_text, &result), S_OK);
    return std::wstring(result.view());
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(Padding, Pad_Left_and_Pad_Right_give_exactly_that_length) {
  const auto padded = [&](bool left, std::wstring_view text, SHORT length) {
    String variable(text), result;
    EXPECT_EQ(left ? global_->Pad_Left(&variable, &length, &result)
                   : global_->Pad_Right(&variable, &length, &result),
              S_OK);
    return std::wstring(result.view());
  };
  EXPECT_EQ(padded(true, L"abc", 2), L"ab");
  EXPECT_EQ(padded(true, L"abc", 5), L"abc  ");
  EXPECT_EQ(padded(true, L"abc", 0), L"");
  EXPECT_EQ(padded(false, L"abc", 5), L"  abc");
  EXPECT_EQ(padded(false, L"abc", 2), L"ab") << "the first characters stay, not the last";
}

TEST_F(Padding, a_length_below_0_raises_5) {
  SHORT length = -1;
  String text(L"a"), fill(L"0"), result;
  Value number(1);
  EXPECT_EQ(global_->Pad_Left(&text, &length, &result), error_result(5));
  EXPECT_EQ(error_description(), L"Invalid procedure call or argument");
  EXPECT_EQ(global_->Pad_Right(&text, &length, &result), error_result(5));
  EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Round_Num(number, &length, &result), error_result(5));
}

TEST_F(Padding, Pad_HexLeft_keeps_the_last_digits) {
  EXPECT_EQ(pad_hex(255, 4), L"00FF");
  EXPECT_EQ(pad_hex(0x12345, 3), L"345");
  EXPECT_EQ(pad_hex(0, 2), L"00");
  EXPECT_EQ(pad_hex(10, 0), L"");
}

TEST_F(Padding, Pad_HexLeft_of_a_negative_Integer_has_4_digits_and_of_a_Long_8) {
  EXPECT_EQ(pad_hex(static_cast<SHORT>(-1), 8), L"0000FFFF");
  EXPECT_EQ(pad_hex(-1, 8), L"FFFFFFFF");
  EXPECT_EQ(pad_hex(-1.0, 8), L"FFFFFFFF");
  EXPECT_EQ(pad_hex(2.5, 2), L"02") << "rounded, ties to even";
  EXPECT_EQ(pad_hex(L"255", 4), L"00FF");
}

TEST_F(Padding, what_is_no_number_raises_13) {
  SHORT length = 4;
  String fill(L"0"), result;
  Value text(L"abc");
  EXPECT_EQ(global_->Pad_HexLeft(&text, &length, &result), error_result(13));
  EXPECT_EQ(error_description(), L"Type mismatch");
  EXPECT_EQ(global_->Pad_NumLeft(&text, &length, &fill, &result), error_result(13));
  EXPECT_EQ(global_->Pad_NumRight(&text, &length, &fill, &result), error_result(13));
  EXPECT_EQ(global_->Round_Num(text, &length, &result), error_result(13));
  Value null;
  null.vt = VT_NULL;
  EXPECT_EQ(global_->Pad_NumLeft(&null, &length, &fill, &result), error_result(94));
}

TEST_F(Padding, Pad_HexLeft_past_a_Long_raises_6) {
  SHORT length = 4;
  String result;
  Value number(3e9);
  EXPECT_EQ(global_->Pad_HexLeft(&number, &length, &result), error_result(6));
}

TEST_F(Padding, Pad_NumLeft_fills_in_front_and_keeps_the_first_characters) {
  EXPECT_EQ(pad_number(12, 5, L"0"), L"00012");
  EXPECT_EQ(pad_number(12345, 3, L"0"), L"123");
  EXPECT_EQ(pad_number(-7, 4, L"*+"), L"**-7") << "only the first character fills";
  EXPECT_EQ(pad_number(0.5, 4, L" "), L"  .5") << "no 0 before the point";
  EXPECT_EQ(pad_number(1234.5, 8, L"_"), L"__1234.5") << "a point in every locale";
  EXPECT_EQ(pad_number(L"17", 3, L"0"), L"017");
  EXPECT_EQ(pad_number(Value(), 3, L"0"), L"000") << "Empty is 0";
}

TEST_F(Padding, Pad_NumRight_fills_behind) {
  Value number(12);
  SHORT length = 5;
  String fill(L"0"), result;
  ASSERT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), S_OK);
  EXPECT_EQ(result.view(), L"12000");
}

TEST_F(Padding, a_fill_that_is_needed_and_empty_raises_5) {
  Value number(12);
  SHORT length = 5;
  String fill, result;
  EXPECT_EQ(global_->Pad_NumLeft(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(global_->Pad_NumRight(&number, &length, &fill, &result), error_result(5));
  EXPECT_EQ(pad_number(12, 2, L""), L"12");
}

TEST_F(Padding, Round_Num_looks_at_the_first_decimal_digit_alone) {
  EXPECT_EQ(round_num(3.47, 1), L"3.0");
  EXPECT_EQ(round_num(3.57, 1), L"3.5");
  EXPECT_EQ(round_num(3.47, 2), L"3.40");
  EXPECT_EQ(round_num(3.0, 2), L"3.00");
  EXPECT_EQ(round_num(3.99, 1), L"3.9");
  EXPECT_EQ(round_num(0.5, 1), L"0.5");
  EXPECT_EQ(round_num(7, 1), L"7.0");
}

TEST_F(Padding, Round_Num_takes_the_fraction_of_a_negative_number_from_the_wrong_side) {
  EXPECT_EQ(round_num(-3.2, 1), L"-3.6");
  EXPECT_EQ(round_num(-3.2, 2), L"-3.62");
  EXPECT_EQ(round_num(-0.3, 1), L"-0.0");
}

TEST_F(Padding, Round_Num_reads_the_digit_that_the_number_is_written_with) {
  EXPECT_EQ(round_num(9.7, 1), L"9.7");
  EXPECT_EQ(round_num(2.3, 2), L"2.30");
  for (int tenths = 0; tenths < 327670; ++tenths) {
    const std::wstring expected =
        std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L"0";
    ASSERT_EQ(round_num(tenths / 10.0, 2), expected);
  }
}

TEST_F(Padding, Round_Num_with_another_Size_shows_zeros) {
  EXPECT_EQ(round_num(3.57, 3), L"3.000");
  EXPECT_EQ(round_num(3.57, 0), L"3.");
}

TEST_F(Padding, Round_Num_past_an_Integer_raises_6) {
  SHORT size = 1;
  String result;
  EXPECT_EQ(round_num(32767.5, 1), L"32767.5");
  EXPECT_EQ(global_->Round_Num(Value(32768.0), &size, &result), error_result(6));
  EXPECT_EQ(error_description(), L"Overflow");
  EXPECT_EQ(global_->Round_Num(Value(-32768.0), &size, &result), error_result(6));
}

}  // namespace
}  // namespace qv::tests
