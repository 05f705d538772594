#include "server/client.h"

namespace qv::tests {
namespace {

// Members that do nothing: whatever they are given, they come back at once.
class MessageBoxes : public testing::Test {
 protected:
  Pointer<_QvMsgBox> box = create<_QvMsgBox>(CLSID_QvMsgBox);
  String text{L"text"};
  LONG result = 7;
};

TEST_F(MessageBoxes, no_box_is_ever_open) {
  VARIANT_BOOL open = VARIANT_TRUE;
  EXPECT_EQ(box->get_QueryStatus(&open), S_OK);
  EXPECT_EQ(open, VARIANT_FALSE);
}

TEST_F(MessageBoxes, message_boxes_return_0_whatever_modal_says) {
  for (const VARIANT_BOOL modal : {VARIANT_FALSE, VARIANT_TRUE}) {
    result = 7;
    EXPECT_EQ(box->Message_Box(text, 4 + 16, text, 1000, nullptr, nullptr, 1, 2, VARIANT_TRUE, 1, 6,
                               modal, VARIANT_TRUE, &result),
              S_OK);
    EXPECT_EQ(result, 0);
    result = 7;
    EXPECT_EQ(box->Message_BoxEx(text, 4 + 16, text, 1000, nullptr, nullptr, 1, 2, VARIANT_TRUE, 1,
                                 6, modal, VARIANT_TRUE, 10, 20, &result),
              S_OK);
    EXPECT_EQ(result, 0);
  }
}

BOOL CALLBACK count_window(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

int windows_of_this_thread() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), count_window, reinterpret_cast<LPARAM>(&count));
  return count;
}

TEST_F(MessageBoxes, no_window_appears) {
  const int before = windows_of_this_thread();
  for (const VARIANT_BOOL modal : {VARIANT_FALSE, VARIANT_TRUE}) {
    EXPECT_EQ(box->Message_Box(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0, modal,
                               VARIANT_TRUE, &result),
              S_OK);
    EXPECT_EQ(box->Progress_Box(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0,
                                modal, VARIANT_TRUE, text, VARIANT_TRUE, 0, 100, &result),
              S_OK);
    EXPECT_EQ(windows_of_this_thread(), before);
  }
}

TEST_F(MessageBoxes, progress_boxes_return_0) {
  EXPECT_EQ(box->Progress_Box(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0,
                              VARIANT_FALSE, VARIANT_FALSE, text, VARIANT_TRUE, 0, 100, &result),
            S_OK);
  EXPECT_EQ(result, 0);
  result = 7;
  EXPECT_EQ(
      box->Progress_BoxEx(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0,
                          VARIANT_FALSE, VARIANT_FALSE, text, VARIANT_TRUE, 0, 100, 1, 2, &result),
      S_OK);
  EXPECT_EQ(result, 0);
}

TEST_F(MessageBoxes, input_boxes_return_0) {
  EXPECT_EQ(box->Input_Box(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0,
                           VARIANT_TRUE, VARIANT_FALSE, text, text, &result),
            S_OK);
  EXPECT_EQ(result, 0);
  result = 7;
  EXPECT_EQ(box->Input_BoxEx(text, 0, text, 0, nullptr, nullptr, 0, 0, VARIANT_FALSE, 0, 0,
                             VARIANT_TRUE, VARIANT_FALSE, text, text, 1, 2, &result),
            S_OK);
  EXPECT_EQ(result, 0);
}

TEST_F(MessageBoxes, what_is_put_is_dropped) {
  EXPECT_EQ(box->put_Progress_Value(50), S_OK);
  LONG progress = 7;
  EXPECT_EQ(box->get_Progress_Value(&progress), S_OK);
  EXPECT_EQ(progress, 0);
  EXPECT_EQ(box->put_Input_Text(&text), S_OK);
  EXPECT_EQ(text, L"text");
  String input(L"before");
  String read;
  EXPECT_EQ(box->get_Input_Text(&read), S_OK);
  EXPECT_EQ(read, L"");
}

TEST_F(MessageBoxes, closing_does_nothing) { EXPECT_EQ(box->Close_Box(), S_OK); }

TEST_F(MessageBoxes, events_can_be_connected_and_none_comes) {
  const auto container = Pointer<IConnectionPointContainer>::from(box.get());
  ASSERT_TRUE(container);
  Pointer<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(DIID___QvMsgBox, point.receive()), S_OK);
}

}  // namespace
}  // namespace qv::tests
