// kwPipeData: one request or one answer of a named pipe.
#include "server/client.h"

namespace qv::tests {
namespace {

class PipeData : public testing::Test {
 protected:
  PipeData() { global_->Reset_Error(); }

  std::wstring data() {
    String text;
    EXPECT_EQ(pipe_data_->get_ReqData(&text), S_OK);
    return std::wstring(text.view());
  }
  bool append(std::wstring_view text) {
    String buffer(text);
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(pipe_data_->AppendData(&buffer, &failed), S_OK);
    EXPECT_EQ(buffer.view(), text);
    return failed != VARIANT_FALSE;
  }
  LONG error_number() {
    LONG number = -1;
    EXPECT_EQ(global_->Error_Number(&number), S_OK);
    return number;
  }

  Pointer<_KwRtLib> global_ = create_global();
  Pointer<_kwPipeData> pipe_data_ = create<_kwPipeData>(CLSID_kwPipeData);
};

TEST_F(PipeData, new_object_is_empty) {
  LONG id = 7;
  DATE date = 7;
  EXPECT_EQ(pipe_data_->get_ReqId(&id), S_OK);
  EXPECT_EQ(pipe_data_->get_ReqDate(&date), S_OK);
  EXPECT_EQ(id, 0);
  EXPECT_EQ(date, 0.0);
  EXPECT_EQ(data(), L"");
}

TEST_F(PipeData, number_and_date_are_kept_as_they_are_given) {
  for (const LONG given : {-1L, 2147483647L, -2147483647L - 1}) {
    LONG id = 0;
    EXPECT_EQ(pipe_data_->put_ReqId(given), S_OK);
    EXPECT_EQ(pipe_data_->get_ReqId(&id), S_OK);
    EXPECT_EQ(id, given);
  }
  for (const DATE given : {36955.588, -1.25, 1e300}) {
    DATE date = 0;
    EXPECT_EQ(pipe_data_->put_ReqDate(given), S_OK);
    EXPECT_EQ(pipe_data_->get_ReqDate(&date), S_OK);
    EXPECT_EQ(date, given);
  }
}

TEST_F(PipeData, greatest_size_is_100000) {
  LONG size = 0;
  EXPECT_EQ(pipe_data_->get_MaxPacketSize(&size), S_OK);
  EXPECT_EQ(size, 100000);
}

TEST_F(PipeData, data_hold_every_character) {
  const std::wstring_view text(L"a\0\x20AC\xFFFF", 4);
  EXPECT_EQ(pipe_data_->put_ReqData(String(text)), S_OK);
  EXPECT_EQ(data(), text);
  EXPECT_EQ(pipe_data_->put_ReqData(nullptr), S_OK);
  EXPECT_EQ(data(), L"");
}

TEST_F(PipeData, AppendData_adds_behind_the_data) {
  EXPECT_FALSE(append(L"ab"));
  EXPECT_FALSE(append(L""));
  EXPECT_FALSE(append(std::wstring_view(L"\0c", 2)));
  EXPECT_EQ(data(), std::wstring_view(L"ab\0c", 4));
  EXPECT_EQ(error_number(), 0);
}

TEST_F(PipeData, one_hundred_thousand_characters_are_taken_and_one_more_is_refused) {
  const std::wstring full(100000, L'x');
  EXPECT_EQ(pipe_data_->put_ReqData(String(full)), S_OK);
  EXPECT_EQ(data(), full);

  EXPECT_EQ(pipe_data_->put_ReqData(String(full + L"y")), error_result(20000));
  EXPECT_EQ(error_description(), L"Data exceed buffer size.");
  EXPECT_EQ(data(), full);
  EXPECT_EQ(error_number(), 0) << "the error state is not touched";
}

TEST_F(PipeData, AppendData_fills_up_to_one_hundred_thousand_characters) {
  EXPECT_FALSE(append(std::wstring(99999, L'x')));
  EXPECT_FALSE(append(L"y"));
  EXPECT_FALSE(append(L"")) << "nothing more fits into a full object";
  const std::wstring full = std::wstring(99999, L'x') + L"y";
  EXPECT_EQ(data(), full);
  EXPECT_EQ(error_number(), 0);

  EXPECT_TRUE(append(L"z"));
  EXPECT_EQ(data(), full);
  String description;
  String source;
  EXPECT_EQ(error_number(), 20000);
  EXPECT_EQ(global_->Error_Description(&description), S_OK);
  EXPECT_EQ(description, L"Data exceed buffer size.");
  EXPECT_EQ(global_->Error_Source(&source), S_OK);
  EXPECT_EQ(source, L"QvRtLibOle.kwPipeData.AppendData, 0");
}

TEST_F(PipeData, AppendData_of_too_much_at_once_adds_nothing) {
  EXPECT_FALSE(append(L"ab"));
  EXPECT_TRUE(append(std::wstring(99999, L'x')));
  EXPECT_EQ(data(), L"ab");
  EXPECT_EQ(error_number(), 20000);
}

}  // namespace
}  // namespace qv::tests
