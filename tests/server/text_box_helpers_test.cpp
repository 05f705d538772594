// The helpers for text boxes, on text boxes of the system.
#include <windows.h>
// richedit.h needs windows.h before it.
#include <richedit.h>

#include "server/control.h"

namespace qv::tests {
namespace {

constexpr DWORD kLines = ES_MULTILINE | ES_AUTOHSCROLL | ES_AUTOVSCROLL;

SIZE measured(HWND window, std::wstring_view text) {
  SIZE size{};
  const HDC device = GetDC(window);
  GetTextExtentPoint32W(device, text.data(), static_cast<int>(text.size()), &size);
  ReleaseDC(window, device);
  return size;
}

class TextBoxHelpers : public testing::TestWithParam<bool> {
 protected:
  Pointer<_KwRtLib> global = create_global();
  Control box{L"Edit", kLines, GetParam()};

  LONG line_count() {
    LONG count = 0;
    EXPECT_EQ(global->TX_GetLineCount(box.object(), &count), S_OK);
    return count;
  }
  LONG line_number() {
    LONG number = 0;
    EXPECT_EQ(global->TX_GetLineNo(box.object(), &number), S_OK);
    return number;
  }
  LONG column_number() {
    LONG number = 0;
    EXPECT_EQ(global->TX_GetColNo(box.object(), &number), S_OK);
    return number;
  }
  LONG character_position(LONG line) {
    LONG position = 0;
    EXPECT_EQ(global->TX_GetCharPos(box.object(), &line, &position), S_OK);
    return position;
  }
  SHORT get_line(LONG line, String& buffer) {
    SHORT result = 5;
    EXPECT_EQ(global->TX_GetLine(box.object(), &line, &buffer, &result), S_OK);
    return result;
  }
};

// Boxes of the language are narrow windows, those of newer hosts wide ones.
INSTANTIATE_TEST_SUITE_P(Wide, TextBoxHelpers, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Narrow, TextBoxHelpers, testing::Values(true));

TEST_P(TextBoxHelpers, TX_UndoChk_tells_whether_a_change_can_be_undone_and_TX_Undo_undoes_it) {
  VARIANT_BOOL can = 1;
  EXPECT_EQ(global->TX_UndoChk(box.object(), &can), S_OK);
  EXPECT_EQ(can, VARIANT_FALSE);
  box.set_text(L"one two");
  box.send(EM_SETSEL, 0, 3);
  box.send(EM_REPLACESEL, TRUE, L"three");
  EXPECT_EQ(global->TX_UndoChk(box.object(), &can), S_OK);
  EXPECT_EQ(can, VARIANT_TRUE);
  EXPECT_EQ(box.text(), L"three two");
  EXPECT_EQ(global->TX_Undo(box.object()), S_OK);
  EXPECT_EQ(box.text(), L"one two");
  EXPECT_EQ(box.form().refreshes(), 0);
}

TEST_P(TextBoxHelpers, TX_SetWordWrap_sends_its_number) {
  const MessageWatch watch(box.window(), EM_FMTLINES);
  for (LONG add : {1, 0, -1}) EXPECT_EQ(global->TX_SetWordWrap(box.object(), &add), S_OK);
  ASSERT_EQ(watch.seen().size(), 3U);
  EXPECT_EQ(watch.seen()[0].word, 1U);
  EXPECT_EQ(watch.seen()[1].word, 0U);
  EXPECT_EQ(watch.seen()[2].word, static_cast<WPARAM>(-1));
  EXPECT_EQ(watch.seen()[0].value, 0);
}

TEST_P(TextBoxHelpers, TX_GetLineNo_is_the_line_of_the_caret_without_a_selection) {
  box.set_text(L"one\r\ntwo\r\nthree");
  box.send(EM_SETSEL, 0, LPARAM{0});
  EXPECT_EQ(line_number(), 0);
  box.send(EM_SETSEL, 6, LPARAM{6});
  EXPECT_EQ(line_number(), 1);
  box.send(EM_SETSEL, 15, LPARAM{15});
  EXPECT_EQ(line_number(), 2);
}

TEST_P(TextBoxHelpers, TX_GetLineNo_is_the_line_in_which_the_selection_ends) {
  box.set_text(L"one\r\ntwo\r\nthree");
  box.send(EM_SETSEL, 1, LPARAM{7});
  EXPECT_EQ(line_number(), 1);
  // Selected backwards the caret is at its start, the end is where it was.
  box.send(EM_SETSEL, 12, LPARAM{1});
  EXPECT_EQ(line_number(), 2);
}

TEST_P(TextBoxHelpers, TX_GetLineNo_asks_by_the_position_where_the_selection_ends) {
  box.set_text(L"one\r\ntwo\r\nthree");
  box.send(EM_SETSEL, 1, LPARAM{7});
  const MessageWatch watch(box.window(), EM_LINEFROMCHAR);
  line_number();
  box.send(EM_SETSEL, 1, LPARAM{1});
  line_number();
  ASSERT_EQ(watch.seen().size(), 2U);
  EXPECT_EQ(watch.seen()[0].word, 7U);
  EXPECT_EQ(watch.seen()[1].word, static_cast<WPARAM>(-1));
}

TEST_P(TextBoxHelpers, TX_GetLineNo_of_a_control_without_SelLength_raises_438) {
  box.form().lack(L"SelLength");
  LONG number = 5;
  EXPECT_EQ(global->TX_GetLineNo(box.object(), &number), error_result(438));
  EXPECT_EQ(number, 5);
}

TEST_P(TextBoxHelpers, TX_GetColNo_counts_from_the_start_of_the_line) {
  box.set_text(L"one\r\ntwo\r\nthree");
  box.send(EM_SETSEL, 0, LPARAM{0});
  EXPECT_EQ(column_number(), 0);
  box.send(EM_SETSEL, 7, LPARAM{7});
  EXPECT_EQ(column_number(), 2);
  box.send(EM_SETSEL, 1, LPARAM{13});
  EXPECT_EQ(column_number(), 3);
}

TEST_P(TextBoxHelpers, TX_GetColNo_of_positions_past_32767_is_right) {
  const std::wstring long_line(40000, L'x');
  box.send(EM_SETLIMITTEXT, 0);
  box.set_text((L"one\r\n" + long_line).c_str());
  box.send(EM_SETSEL, 40000, LPARAM{40000});
  EXPECT_EQ(column_number(), 39995);
  EXPECT_EQ(line_number(), 1);
}

TEST_P(TextBoxHelpers, TX_GetCharPos_is_where_a_line_begins) {
  box.set_text(L"one\r\ntwo\r\nthree");
  EXPECT_EQ(character_position(0), 0);
  EXPECT_EQ(character_position(1), 5);
  EXPECT_EQ(character_position(2), 10);
  EXPECT_EQ(character_position(3), -1);
  box.send(EM_SETSEL, 6, LPARAM{6});
  EXPECT_EQ(character_position(-1), 5);
}

TEST_P(TextBoxHelpers, TX_GetLineCount_counts_lines_and_an_empty_box_has_one) {
  EXPECT_EQ(line_count(), 1);
  box.set_text(L"one\r\ntwo\r\n");
  EXPECT_EQ(line_count(), 3);
}

TEST_P(TextBoxHelpers, TX_GetLineCount_keeps_the_low_16_bits) {
  const MessageWatch watch(box.window(), EM_GETLINECOUNT, [](WPARAM, LPARAM) { return 0x19C40; });
  EXPECT_EQ(line_count(), 40000);
}

TEST_P(TextBoxHelpers, TX_GetLine_reads_each_line_without_its_break) {
  box.set_text(L"one\r\ni\r\nthr\u20ac\u00e9");
  String buffer(L"before");
  EXPECT_EQ(get_line(0, buffer), 0);
  EXPECT_EQ(buffer, L"one");
  EXPECT_EQ(get_line(1, buffer), 0);
  EXPECT_EQ(buffer, L"i");
  EXPECT_EQ(get_line(2, buffer), 0);
  EXPECT_EQ(buffer, L"thr\u20ac\u00e9");
}

TEST_P(TextBoxHelpers, TX_GetLine_of_an_empty_line_gives_0_and_an_empty_buffer) {
  box.set_text(L"one\r\n\r\ntwo");
  String buffer(L"before");
  EXPECT_EQ(get_line(1, buffer), 0);
  EXPECT_EQ(buffer, L"");
}

TEST_P(TextBoxHelpers, TX_GetLine_of_a_line_that_is_not_there_fails_and_empties_the_buffer) {
  box.set_text(L"one");
  String buffer(L"before");
  EXPECT_EQ(get_line(1, buffer), -1);
  EXPECT_EQ(buffer, L"");
}

TEST_P(TextBoxHelpers, TX_GetLine_fails_where_the_length_is_refused) {
  const MessageWatch watch(box.window(), EM_LINELENGTH, [](WPARAM, LPARAM) { return -1; });
  String buffer(L"before");
  EXPECT_EQ(get_line(0, buffer), -1);
  EXPECT_EQ(buffer, L"");
}

TEST_P(TextBoxHelpers, TX_GetLine_cuts_at_a_carriage_return_in_the_answer) {
  const MessageWatch length(box.window(), EM_LINELENGTH, [](WPARAM, LPARAM) { return 5; });
  const bool is_wide = IsWindowUnicode(box.window()) != FALSE;
  const MessageWatch watch(box.window(), EM_GETLINE, [is_wide](WPARAM, LPARAM buffer) {
    if (is_wide) {
      std::copy_n(L"ab\rde", 5, reinterpret_cast<wchar_t*>(buffer));
    } else {
      std::copy_n("ab\rde", 5, reinterpret_cast<char*>(buffer));
    }
    return 5;
  });
  String buffer;
  EXPECT_EQ(get_line(0, buffer), 0);
  EXPECT_EQ(buffer, L"ab");
}

TEST_P(TextBoxHelpers, TX_GetLine_reads_a_line_of_32765_characters_and_raises_6_for_a_longer_one) {
  box.send(EM_SETLIMITTEXT, 0);
  const std::wstring longest(32765, L'x');
  box.set_text((longest + L"\r\n" + longest + L"y").c_str());
  String buffer;
  EXPECT_EQ(get_line(0, buffer), 0);
  EXPECT_EQ(buffer, longest);
  LONG line = 1;
  SHORT result = 5;
  EXPECT_EQ(global->TX_GetLine(box.object(), &line, &buffer, &result), error_result(6));
  EXPECT_EQ(buffer, L"");
}

TEST_P(TextBoxHelpers, TX_GetTextWidth_and_height_are_of_the_default_font_whatever_the_box_shows) {
  const HFONT large = CreateFontW(60, 0, 0, 0, FW_BOLD, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma");
  box.send(WM_SETFONT, reinterpret_cast<WPARAM>(large), LPARAM{FALSE});
  String text(L"Some text");
  LONG width = 0;
  LONG height = 0;
  EXPECT_EQ(global->TX_GetTextWidth(box.object(), &text, &width), S_OK);
  EXPECT_EQ(global->TX_GetTextHeight(box.object(), &text, &height), S_OK);
  const SIZE expected = measured(box.window(), L"Some text");
  EXPECT_GT(width, 0);
  EXPECT_EQ(width, expected.cx);
  EXPECT_EQ(height, expected.cy);
  DeleteObject(large);
}

TEST_P(TextBoxHelpers, TX_GetTextWidth_of_an_empty_text_is_0) {
  String text;
  LONG width = 5;
  EXPECT_EQ(global->TX_GetTextWidth(box.object(), &text, &width), S_OK);
  EXPECT_EQ(width, 0);
}

TEST_P(TextBoxHelpers, TX_GetTextWidth_counts_a_character_0) {
  String text(std::wstring_view(L"a\0b", 3));
  LONG width = 0;
  EXPECT_EQ(global->TX_GetTextWidth(box.object(), &text, &width), S_OK);
  EXPECT_EQ(width, measured(box.window(), {L"a\0b", 3}).cx);
}

TEST_P(TextBoxHelpers, TX_SetTextWidth_moves_the_right_edge_alone) {
  RECT before{};
  box.send(EM_GETRECT, 0, &before);
  SHORT count = 8;
  EXPECT_EQ(global->TX_SetTextWidth(box.object(), &count), S_OK);
  RECT after{};
  box.send(EM_GETRECT, 0, &after);
  EXPECT_EQ(after.right, measured(box.window(), L"AAAAAAAA").cx);
  EXPECT_EQ(after.left, before.left);
  EXPECT_EQ(after.top, before.top);
  EXPECT_EQ(box.form().refreshes(), 1);
}

TEST_P(TextBoxHelpers, TX_SetTextWidth_asks_before_and_after) {
  const MessageWatch asked(box.window(), EM_GETRECT);
  const MessageWatch set(box.window(), EM_SETRECT);
  SHORT count = 3;
  EXPECT_EQ(global->TX_SetTextWidth(box.object(), &count), S_OK);
  EXPECT_EQ(asked.seen().size(), 2U);
  EXPECT_EQ(set.seen().size(), 1U);
}

TEST_P(TextBoxHelpers, A_negative_count_of_letters_raises_5) {
  SHORT count = -1;
  EXPECT_EQ(global->TX_SetTextWidth(box.object(), &count), error_result(5));
  EXPECT_EQ(global->TX_SetTabStops(box.object(), &count), error_result(5));
  EXPECT_EQ(box.form().refreshes(), 0);
}

TEST_P(TextBoxHelpers, TX_SetTabStops_sends_one_distance_in_dialog_units) {
  LONG distance = 0;
  const MessageWatch watch(box.window(), EM_SETTABSTOPS, [&](WPARAM, LPARAM stops) {
    distance = *reinterpret_cast<const LONG*>(stops);
    return TRUE;
  });
  SHORT count = 12;
  EXPECT_EQ(global->TX_SetTabStops(box.object(), &count), S_OK);
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 1U);
  const LONG unit = LOWORD(GetDialogBaseUnits()) / 4;
  EXPECT_EQ(distance, measured(box.window(), L"AAAAAAAAAAAA").cx / unit);
  EXPECT_EQ(box.form().refreshes(), 1);
}

TEST_P(TextBoxHelpers, TX_SetTabStops_of_no_letters_does_nothing) {
  const MessageWatch watch(box.window(), EM_SETTABSTOPS);
  SHORT count = 0;
  EXPECT_EQ(global->TX_SetTabStops(box.object(), &count), S_OK);
  EXPECT_TRUE(watch.seen().empty());
  EXPECT_EQ(box.form().refreshes(), 0);
}

TEST_P(TextBoxHelpers, A_control_without_Refresh_raises_438_after_the_change) {
  box.form().lack(L"Refresh");
  SHORT count = 8;
  EXPECT_EQ(global->TX_SetTextWidth(box.object(), &count), error_result(438));
  RECT after{};
  box.send(EM_GETRECT, 0, &after);
  EXPECT_EQ(after.right, measured(box.window(), L"AAAAAAAA").cx);
}

TEST_P(TextBoxHelpers, A_window_that_is_gone_answers_0) {
  box.set_text(L"one\r\ntwo");
  DestroyWindow(box.window());
  EXPECT_EQ(line_count(), 0);
  EXPECT_EQ(character_position(1), 0);
  EXPECT_EQ(line_number(), 0);
  EXPECT_EQ(column_number(), 0);
  String buffer(L"before");
  EXPECT_EQ(get_line(0, buffer), 0);
  EXPECT_EQ(buffer, L"");
  String text(L"text");
  LONG size = 5;
  EXPECT_EQ(global->TX_GetTextWidth(box.object(), &text, &size), S_OK);
  EXPECT_EQ(size, 0);
  size = 5;
  EXPECT_EQ(global->TX_GetTextHeight(box.object(), &text, &size), S_OK);
  EXPECT_EQ(size, 0);
  VARIANT_BOOL can = 1;
  EXPECT_EQ(global->TX_UndoChk(box.object(), &can), S_OK);
  EXPECT_EQ(can, VARIANT_FALSE);
}

class RichTextHelpers : public testing::TestWithParam<bool> {
 protected:
  RichTextHelpers() { box.set_text(L"The cat, the category and the Cat \u00e9t\u00e9"); }

  LONG find(LONG flags, const wchar_t* text, LONG start, LONG end) {
    String sought(text);
    LONG found = 0;
    start_ = start;
    end_ = end;
    EXPECT_EQ(global->TX_Find(box.object(), &flags, &sought, &start_, &end_, &found), S_OK);
    return found;
  }

  const HMODULE library = LoadLibraryW(L"riched20.dll");
  Pointer<_KwRtLib> global = create_global();
  Control box{GetParam() ? L"RichEdit20A" : L"RichEdit20W", kLines, GetParam()};
  LONG start_ = 0;
  LONG end_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Wide, RichTextHelpers, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Narrow, RichTextHelpers, testing::Values(true));

constexpr LONG kDown = 1;
constexpr LONG kWholeWord = 2;
constexpr LONG kMatchCase = 4;

TEST_P(RichTextHelpers, TX_Find_gives_the_position_of_the_first_hit) {
  EXPECT_EQ(find(kDown, L"cat", 0, -1), 4);
  EXPECT_EQ(find(kDown, L"cat", 5, -1), 13);
  EXPECT_EQ(find(kDown, L"\u00e9t\u00e9", 0, -1), 34);
}

TEST_P(RichTextHelpers, TX_Find_hands_its_flags_over) {
  EXPECT_EQ(find(kDown | kWholeWord, L"cat", 5, -1), 30);
  EXPECT_EQ(find(kDown | kMatchCase, L"Cat", 0, -1), 30);
}

TEST_P(RichTextHelpers, TX_Find_without_a_hit_is_minus_1) {
  EXPECT_EQ(find(kDown, L"dog", 0, -1), -1);
  EXPECT_EQ(find(kDown, L"cat", 5, 12), -1);
}

TEST_P(RichTextHelpers, TX_Find_writes_its_range_back) {
  const bool is_wide = !GetParam();
  const MessageWatch watch(box.window(), EM_FINDTEXT, [is_wide](WPARAM flags, LPARAM value) {
    auto& record = *reinterpret_cast<FINDTEXTW*>(value);
    EXPECT_EQ(flags, 6U);
    EXPECT_EQ(record.chrg.cpMin, 3);
    EXPECT_EQ(record.chrg.cpMax, 9);
    if (is_wide) {
      EXPECT_STREQ(record.lpstrText, L"caf\u00e9");
    } else {
      EXPECT_STREQ(reinterpret_cast<FINDTEXTA*>(value)->lpstrText, "caf\xe9");
    }
    record.chrg = {11, 12};
    return 7;
  });
  EXPECT_EQ(find(6, L"caf\u00e9", 3, 9), 7);
  EXPECT_EQ(start_, 11);
  EXPECT_EQ(end_, 12);
}

TEST(TextBoxHelpersFail, A_control_without_a_window_raises_438_and_Nothing_91) {
  const auto global = create_global();
  String text(L"text");
  LONG number = 0;
  LONG other = 0;
  LONG result = 0;
  SHORT count = 1;
  SHORT short_result = 0;
  VARIANT_BOOL truth = VARIANT_FALSE;
  const std::pair<const char*, std::function<HRESULT(IDispatch**)>> calls[] = {
      {"TX_UndoChk", [&](IDispatch** c) { return global->TX_UndoChk(c, &truth); }},
      {"TX_Undo", [&](IDispatch** c) { return global->TX_Undo(c); }},
      {"TX_SetWordWrap", [&](IDispatch** c) { return global->TX_SetWordWrap(c, &number); }},
      {"TX_SetTextWidth", [&](IDispatch** c) { return global->TX_SetTextWidth(c, &count); }},
      {"TX_SetTabStops", [&](IDispatch** c) { return global->TX_SetTabStops(c, &count); }},
      {"TX_GetTextWidth",
       [&](IDispatch** c) { return global->TX_GetTextWidth(c, &text, &result); }},
      {"TX_GetTextHeight",
       [&](IDispatch** c) { return global->TX_GetTextHeight(c, &text, &result); }},
      {"TX_GetLineNo", [&](IDispatch** c) { return global->TX_GetLineNo(c, &result); }},
      {"TX_GetCharPos", [&](IDispatch** c) { return global->TX_GetCharPos(c, &number, &result); }},
      {"TX_Find",
       [&](IDispatch** c) { return global->TX_Find(c, &number, &text, &number, &other, &result); }},
      {"TX_GetLine",
       [&](IDispatch** c) { return global->TX_GetLine(c, &number, &text, &short_result); }},
      {"TX_GetLineCount", [&](IDispatch** c) { return global->TX_GetLineCount(c, &result); }},
      {"TX_GetColNo", [&](IDispatch** c) { return global->TX_GetColNo(c, &result); }},
  };
  for (const auto& [name, call] : calls) {
    SCOPED_TRACE(name);
    Control windowless{nullptr};
    EXPECT_EQ(call(windowless.object()), error_result(438));
    IDispatch* nothing = nullptr;
    EXPECT_EQ(call(&nothing), error_result(91));
    Control failing{L"Edit", kLines};
    failing.form().fail(L"hwnd");
    EXPECT_EQ(call(failing.object()), error_result(FormControl::kFailureNumber));
    EXPECT_EQ(error_description(), FormControl::kFailureText);
  }
  EXPECT_EQ(text, L"text");
}

}  // namespace
}  // namespace qv::tests
