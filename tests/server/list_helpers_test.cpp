// The helpers for list boxes and combo boxes, on list boxes and combo boxes of the system.
#include <cmath>

#include "server/control.h"

namespace qv::tests {
namespace {

constexpr DWORD kPlainList = LBS_HASSTRINGS | LBS_NOTIFY;

// What a list box and a combo box have in common, with the messages of each.
struct Kind {
  const wchar_t* window_class;
  DWORD style;
  bool is_narrow;
  UINT add;
  UINT count;
  UINT get_text;
  UINT get_data;
  UINT get_height;
};
constexpr Kind kListBox = {L"ListBox",  kPlainList, false,          LB_ADDSTRING,
                           LB_GETCOUNT, LB_GETTEXT, LB_GETITEMDATA, LB_GETITEMHEIGHT};
constexpr Kind kComboBox = {L"ComboBox", CBS_DROPDOWN, false,          CB_ADDSTRING,
                            CB_GETCOUNT, CB_GETLBTEXT, CB_GETITEMDATA, CB_GETITEMHEIGHT};
constexpr Kind narrow(Kind kind) {
  kind.is_narrow = true;
  return kind;
}

std::vector<LONG> elements_of(SAFEARRAY* array) {
  std::vector<LONG> elements;
  LONG lower = 0;
  LONG upper = -1;
  SafeArrayGetLBound(array, 1, &lower);
  SafeArrayGetUBound(array, 1, &upper);
  for (LONG index = lower; index <= upper; ++index) {
    LONG element = 0;
    SafeArrayGetElement(array, &index, &element);
    elements.push_back(element);
  }
  return elements;
}

SAFEARRAY* array_of_longs(LONG lower, const std::vector<LONG>& elements) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), lower};
  SAFEARRAY* array = SafeArrayCreate(VT_I4, 1, &bound);
  for (const LONG element : elements) {
    LONG index = lower++;
    SafeArrayPutElement(array, &index, const_cast<LONG*>(&element));
  }
  return array;
}

class ListHelpers : public testing::TestWithParam<Kind> {
 protected:
  LONG find(const wchar_t* text, LONG start, bool exact) {
    String value(text);
    VARIANT_BOOL is_exact = exact ? VARIANT_TRUE : VARIANT_FALSE;
    LONG found = 5;
    EXPECT_EQ(global->LS_Find(list.object(), &value, &start, &is_exact, &found), S_OK);
    return found;
  }
  LONG insert(LONG place, const wchar_t* text, LONG data, bool sorted) {
    String item(text);
    VARIANT_BOOL is_sorted = sorted ? VARIANT_TRUE : VARIANT_FALSE;
    LONG result = 5;
    EXPECT_EQ(global->LS_InsertItem(list.object(), &place, &item, &data, &is_sorted, &result),
              S_OK);
    return result;
  }
  void add(std::initializer_list<const wchar_t*> items) const {
    for (const wchar_t* item : items) list.send(kind.add, 0, item);
  }
  std::wstring item(WPARAM index) const {
    wchar_t text[64] = {};
    list.send(kind.get_text, index, text);
    return text;
  }

  const Kind kind = GetParam();
  Pointer<_KwRtLib> global = create_global();
  Control list{kind.window_class, kind.style, kind.is_narrow};
};

INSTANTIATE_TEST_SUITE_P(ListBox, ListHelpers, testing::Values(kListBox));
INSTANTIATE_TEST_SUITE_P(ComboBox, ListHelpers, testing::Values(kComboBox));
INSTANTIATE_TEST_SUITE_P(NarrowListBox, ListHelpers, testing::Values(narrow(kListBox)));
INSTANTIATE_TEST_SUITE_P(NarrowComboBox, ListHelpers, testing::Values(narrow(kComboBox)));

TEST_P(ListHelpers, LS_Find_finds_by_the_beginning_without_regard_to_case) {
  add({L"Apple", L"Pear", L"apple pie", L"Plum \u00e9"});
  EXPECT_EQ(find(L"app", -1, false), 0);
  EXPECT_EQ(find(L"app", 0, false), 2);
  EXPECT_EQ(find(L"plum \u00e9", -1, false), 3);
  EXPECT_EQ(find(L"quince", -1, false), -1);
}

TEST_P(ListHelpers, LS_Find_starts_over_at_the_top) {
  add({L"Apple", L"Pear"});
  EXPECT_EQ(find(L"app", 0, false), 0);
  EXPECT_EQ(find(L"app", 1, false), 0);
}

TEST_P(ListHelpers, LS_Find_exact_takes_whole_items_only) {
  add({L"apple pie", L"Apple"});
  EXPECT_EQ(find(L"apple", -1, true), 1);
  EXPECT_EQ(find(L"app", -1, true), -1);
}

TEST_P(ListHelpers, LS_Find_in_an_empty_list_finds_nothing) {
  EXPECT_EQ(find(L"apple", -1, false), -1);
  EXPECT_EQ(find(L"", -1, true), -1);
}

TEST_P(ListHelpers, LS_InsertItem_puts_items_at_the_top_whatever_the_number) {
  add({L"one", L"two"});
  EXPECT_GE(insert(3, L"\u20ac three", 33, false), 0);
  EXPECT_EQ(item(0), L"\u20ac three");
  EXPECT_EQ(list.send(kind.get_data, 0), 33);
  EXPECT_GE(insert(0, L"four", -4, false), 0);
  EXPECT_EQ(item(0), L"four");
  EXPECT_EQ(static_cast<LONG>(list.send(kind.get_data, 0)), -4);
  EXPECT_EQ(list.send(kind.count), 4);
  EXPECT_EQ(list.form().refreshes(), 2);
}

TEST_P(ListHelpers, LS_InsertItem_adds_at_the_end_for_a_negative_number_or_sorted) {
  add({L"two", L"one"});
  EXPECT_GE(insert(-1, L"three", 3, false), 0);
  EXPECT_EQ(item(2), L"three");
  EXPECT_EQ(list.send(kind.get_data, 2), 3);
  EXPECT_GE(insert(0, L"four", 4, true), 0);
  EXPECT_EQ(item(3), L"four");
  EXPECT_EQ(list.send(kind.get_data, 3), 4);
}

TEST_P(ListHelpers, LS_InsertItem_finds_its_place_in_a_sorted_list) {
  const DWORD sort = kind.window_class == std::wstring(L"ListBox") ? LBS_SORT : CBS_SORT;
  Control sorted{kind.window_class, kind.style | sort, kind.is_narrow};
  for (const wchar_t* text : {L"a", L"c"}) sorted.send(kind.add, 0, text);
  LONG place = 0;
  String text(L"b");
  LONG data = 22;
  VARIANT_BOOL is_sorted = VARIANT_TRUE;
  LONG result = -5;
  EXPECT_EQ(global->LS_InsertItem(sorted.object(), &place, &text, &data, &is_sorted, &result),
            S_OK);
  EXPECT_GE(result, 0);
  EXPECT_EQ(sorted.send(kind.get_data, 1), 22);
}

TEST_P(ListHelpers, LS_InsertItem_gives_the_refusal_of_the_insertion) {
  const bool is_list = kind.window_class == std::wstring(L"ListBox");
  const MessageWatch refusing(list.window(), is_list ? LB_INSERTSTRING : CB_INSERTSTRING,
                              [](WPARAM, LPARAM) { return -2; });
  const MessageWatch data(list.window(), is_list ? LB_SETITEMDATA : CB_SETITEMDATA);
  EXPECT_EQ(insert(0, L"one", 1, false), -2);
  EXPECT_TRUE(data.seen().empty());
  EXPECT_EQ(list.form().refreshes(), 1);
}

TEST_P(ListHelpers, LS_InsertItem_gives_the_answer_to_the_item_data) {
  const bool is_list = kind.window_class == std::wstring(L"ListBox");
  const MessageWatch data(list.window(), is_list ? LB_SETITEMDATA : CB_SETITEMDATA,
                          [](WPARAM, LPARAM) { return 77; });
  add({L"zero"});
  EXPECT_EQ(insert(-1, L"one", -6, false), 77);
  ASSERT_EQ(data.seen().size(), 1U);
  EXPECT_EQ(data.seen()[0].word, 1U);
  EXPECT_EQ(data.seen()[0].value, -6);
}

TEST_P(ListHelpers, LS_SetItemHeight_changes_what_LS_GetItemHeight_gives) {
  const bool is_list = kind.window_class == std::wstring(L"ListBox");
  // Items of a combo box have a height of their own only where its owner draws them.
  Control drawn{kind.window_class,
                is_list ? kind.style : CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS,
                kind.is_narrow};
  LONG height = 33;
  LONG result = -5;
  EXPECT_EQ(global->LS_SetItemHeight(drawn.object(), &height, &result), S_OK);
  EXPECT_GE(result, 0);
  EXPECT_EQ(drawn.send(kind.get_height), 33);
  EXPECT_EQ(drawn.form().refreshes(), 1);
  EXPECT_EQ(global->LS_GetItemHeight(drawn.object(), &result), S_OK);
  EXPECT_EQ(result, 33);
}

TEST_P(ListHelpers, LS_SetItemHeight_sends_the_height_of_the_first_item_and_gives_the_answer) {
  const bool is_list = kind.window_class == std::wstring(L"ListBox");
  const MessageWatch watch(list.window(), is_list ? LB_SETITEMHEIGHT : CB_SETITEMHEIGHT,
                           [](WPARAM, LPARAM) { return -1; });
  LONG height = 44;
  LONG result = 5;
  EXPECT_EQ(global->LS_SetItemHeight(list.object(), &height, &result), S_OK);
  EXPECT_EQ(result, -1);
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 0U);
  EXPECT_EQ(watch.seen()[0].value, 44);
  EXPECT_EQ(list.form().refreshes(), 1);
}

TEST_P(ListHelpers, LS_GetIndexFromData_is_the_first_item_with_that_number) {
  add({L"one", L"two", L"three", L"four"});
  const UINT set_data =
      kind.window_class == std::wstring(L"ListBox") ? LB_SETITEMDATA : CB_SETITEMDATA;
  const LONG numbers[] = {5, -7, 8, -7};
  for (WPARAM i = 0; i < 4; ++i) list.send(set_data, i, LPARAM{numbers[i]});
  for (const auto& [sought, expected] : {std::pair<LONG, LONG>{5, 0}, {-7, 1}, {8, 2}, {9, -1}}) {
    LONG data = sought;
    LONG index = 5;
    EXPECT_EQ(global->LS_GetIndexFromData(list.object(), &data, &index), S_OK);
    EXPECT_EQ(index, expected);
  }
}

TEST_P(ListHelpers, A_window_that_is_gone_answers_0) {
  DestroyWindow(list.window());
  // Only the object could tell the kind of such a control.
  const auto type = type_named(kind.window_class);
  Control gone{list.window(), type.get()};
  String text(L"text");
  LONG number = 0;
  VARIANT_BOOL truth = VARIANT_FALSE;
  LONG result = 5;
  EXPECT_EQ(global->LS_Find(gone.object(), &text, &number, &truth, &result), S_OK);
  EXPECT_EQ(result, 0);
  result = 5;
  EXPECT_EQ(global->LS_GetItemHeight(gone.object(), &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(global->LS_Find(list.object(), &text, &number, &truth, &result), S_OK);
  EXPECT_EQ(result, -1);
}

class ListBoxHelpers : public testing::Test {
 protected:
  explicit ListBoxHelpers(DWORD style = kPlainList | LBS_MULTIPLESEL | LBS_USETABSTOPS)
      : list(L"ListBox", style) {
    for (const wchar_t* item : {L"one", L"two", L"three", L"four"}) {
      list.send(LB_ADDSTRING, 0, item);
    }
  }

  LONG selected_items(SAFEARRAY** array) {
    LONG count = 5;
    EXPECT_EQ(global->LS_GetSelItems(list.object(), array, &count), S_OK);
    return count;
  }
  LONG set_tab_stops(SAFEARRAY* stops) {
    LONG result = 5;
    EXPECT_EQ(global->LS_SetTabStops(list.object(), &stops, &result), S_OK);
    return result;
  }
  std::vector<bool> selection() const {
    std::vector<bool> selected;
    for (WPARAM i = 0; i < 4; ++i) selected.push_back(list.send(LB_GETSEL, i) != 0);
    return selected;
  }

  Pointer<_KwRtLib> global = create_global();
  Control list;
};

class SingleSelectionHelpers : public ListBoxHelpers {
 protected:
  SingleSelectionHelpers() : ListBoxHelpers(kPlainList) {}
};

TEST_F(ListBoxHelpers, LS_GetSelItems_lists_the_selected_items_from_1) {
  list.send(LB_SETSEL, TRUE, LPARAM{1});
  list.send(LB_SETSEL, TRUE, LPARAM{3});
  SAFEARRAY* items = nullptr;
  EXPECT_EQ(selected_items(&items), 2);
  EXPECT_EQ(elements_of(items), (std::vector<LONG>{1, 3}));
  LONG lower = 0;
  SafeArrayGetLBound(items, 1, &lower);
  EXPECT_EQ(lower, 1);
  SafeArrayDestroy(items);
}

TEST_F(ListBoxHelpers, LS_GetSelItems_replaces_an_array_of_other_bounds) {
  list.send(LB_SETSEL, TRUE, LPARAM{2});
  SAFEARRAY* items = array_of_longs(-4, {9, 9, 9});
  EXPECT_EQ(selected_items(&items), 1);
  EXPECT_EQ(elements_of(items), std::vector<LONG>{2});
  SafeArrayDestroy(items);
}

TEST_F(ListBoxHelpers, LS_GetSelItems_without_a_selection_is_0_with_minus_1) {
  SAFEARRAY* items = nullptr;
  EXPECT_EQ(selected_items(&items), 0);
  EXPECT_EQ(elements_of(items), std::vector<LONG>{-1});
  SafeArrayDestroy(items);
}

TEST_F(ListBoxHelpers, LS_GetSelItems_into_a_locked_array_raises_10) {
  SAFEARRAY* items = array_of_longs(1, {9});
  SafeArrayLock(items);
  LONG count = 5;
  EXPECT_EQ(global->LS_GetSelItems(list.object(), &items, &count), error_result(10));
  SafeArrayUnlock(items);
  EXPECT_EQ(elements_of(items), std::vector<LONG>{9});
  SafeArrayDestroy(items);
}

TEST_F(ListBoxHelpers, LS_GetSelItems_with_a_count_that_no_array_has_raises_9) {
  const MessageWatch watch(list.window(), LB_GETSELCOUNT, [](WPARAM, LPARAM) { return -2; });
  SAFEARRAY* items = nullptr;
  LONG count = 5;
  EXPECT_EQ(global->LS_GetSelItems(list.object(), &items, &count), error_result(9));
  EXPECT_EQ(items, nullptr);
}

TEST_F(SingleSelectionHelpers, LS_GetSelItems_is_0_with_minus_1_though_an_item_is_selected) {
  list.send(LB_SETCURSEL, 2);
  SAFEARRAY* items = nullptr;
  EXPECT_EQ(selected_items(&items), 0);
  EXPECT_EQ(elements_of(items), std::vector<LONG>{-1});
  SafeArrayDestroy(items);
}

TEST_F(SingleSelectionHelpers, LS_SelectAll_gives_the_refusal_of_the_list_box) {
  const MessageWatch watch(list.window(), LB_SETSEL, [](WPARAM, LPARAM) { return LB_ERR; });
  LONG result = 5;
  EXPECT_EQ(global->LS_SelectAll(list.object(), 1, &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(list.form().refreshes(), 1);
}

TEST_F(ListBoxHelpers, LS_SelectAll_selects_for_any_flag_but_0_and_clears_for_0) {
  for (const LONG flag : {1, 0, -1, 0, 7}) {
    LONG result = -5;
    EXPECT_EQ(global->LS_SelectAll(list.object(), flag, &result), S_OK);
    EXPECT_GE(result, 0);
    EXPECT_EQ(selection(), std::vector<bool>(4, flag != 0));
  }
  EXPECT_EQ(list.form().refreshes(), 5);
}

TEST_F(ListBoxHelpers, LS_SelectAll_sends_one_message_for_all_items) {
  const MessageWatch watch(list.window(), LB_SETSEL);
  LONG result = 0;
  EXPECT_EQ(global->LS_SelectAll(list.object(), -9, &result), S_OK);
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 1U);
  EXPECT_EQ(watch.seen()[0].value, -1);
}

TEST_F(ListBoxHelpers, LS_SelItemRange_sends_the_address_of_the_packed_pair) {
  LONG pair = 0;
  const MessageWatch watch(list.window(), LB_SELITEMRANGE, [&](WPARAM, LPARAM address) {
    pair = *reinterpret_cast<const LONG*>(address);
    return 6;
  });
  LONG first = 1;
  LONG last = 3;
  LONG flag = 1;
  LONG result = 0;
  EXPECT_EQ(global->LS_SelItemRange(list.object(), &first, &last, &flag, &result), S_OK);
  EXPECT_EQ(result, 6);
  EXPECT_EQ(pair, 0x00030001);
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 1U);
  EXPECT_EQ(last, 3);
  EXPECT_EQ(list.form().refreshes(), 1);
}

TEST_F(ListBoxHelpers, LS_SelItemRange_puts_the_last_item_for_a_negative_number) {
  LONG pair = 0;
  const MessageWatch watch(list.window(), LB_SELITEMRANGE, [&](WPARAM, LPARAM address) {
    pair = *reinterpret_cast<const LONG*>(address);
    return 0;
  });
  LONG first = 0;
  LONG last = -5;
  LONG flag = 0;
  LONG result = 5;
  EXPECT_EQ(global->LS_SelItemRange(list.object(), &first, &last, &flag, &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(last, 3);
  EXPECT_EQ(pair, 0x00030000);
  EXPECT_EQ(watch.seen()[0].word, 0U);
}

TEST_F(ListBoxHelpers, LS_SelItemRange_of_an_index_past_an_Integer_raises_6) {
  const MessageWatch watch(list.window(), LB_SELITEMRANGE);
  LONG first = 32768;
  LONG last = 0;
  LONG flag = 1;
  LONG result = 5;
  EXPECT_EQ(global->LS_SelItemRange(list.object(), &first, &last, &flag, &result), error_result(6));
  first = 0;
  last = 32768;
  EXPECT_EQ(global->LS_SelItemRange(list.object(), &first, &last, &flag, &result), error_result(6));
  EXPECT_TRUE(watch.seen().empty());
  EXPECT_EQ(list.form().refreshes(), 0);
}

TEST_F(ListBoxHelpers, LS_SetTabStops_sends_the_stops_in_dialog_units) {
  std::vector<LONG> sent;
  const MessageWatch watch(list.window(), LB_SETTABSTOPS, [&](WPARAM count, LPARAM stops) {
    const auto* first = reinterpret_cast<const LONG*>(stops);
    sent.assign(first, first + count);
    return TRUE;
  });
  const double unit = LOWORD(GetDialogBaseUnits()) / 4.0;
  for (const LONG lower : {1, 0, -3}) {
    SAFEARRAY* stops = array_of_longs(lower, {10, 33, 77});
    EXPECT_EQ(set_tab_stops(stops), 1);
    EXPECT_EQ(elements_of(stops), (std::vector<LONG>{10, 33, 77}));
    SafeArrayDestroy(stops);
    EXPECT_EQ(sent, (std::vector<LONG>{std::lrint(10 / unit), std::lrint(33 / unit),
                                       std::lrint(77 / unit)}));
  }
  EXPECT_EQ(list.form().refreshes(), 0);
}

TEST_F(ListBoxHelpers, LS_SetTabStops_gives_the_answer_of_a_list_box) {
  SAFEARRAY* stops = array_of_longs(1, {10, 33});
  EXPECT_EQ(set_tab_stops(stops), 1);
  Control without{L"ListBox", kPlainList};
  LONG result = 5;
  EXPECT_EQ(global->LS_SetTabStops(without.object(), &stops, &result), S_OK);
  EXPECT_EQ(result, 0);
  SafeArrayDestroy(stops);
}

TEST_F(ListBoxHelpers, LS_SetTabStops_sends_a_single_stop_as_the_number_itself) {
  const MessageWatch watch(list.window(), LB_SETTABSTOPS, [](WPARAM, LPARAM) { return 1; });
  SAFEARRAY* stops = array_of_longs(1, {-100});
  EXPECT_EQ(set_tab_stops(stops), 1);
  SafeArrayDestroy(stops);
  ASSERT_EQ(watch.seen().size(), 1U);
  EXPECT_EQ(watch.seen()[0].word, 1U);
  EXPECT_EQ(watch.seen()[0].value, std::lrint(-100 / (LOWORD(GetDialogBaseUnits()) / 4.0)));
}

TEST_F(ListBoxHelpers, LS_SetTabStops_of_an_array_that_is_not_allocated_raises_9) {
  const MessageWatch watch(list.window(), LB_SETTABSTOPS);
  SAFEARRAY* stops = nullptr;
  LONG result = 5;
  EXPECT_EQ(global->LS_SetTabStops(list.object(), &stops, &result), error_result(9));
  EXPECT_TRUE(watch.seen().empty());
}

TEST_F(ListBoxHelpers, LS_GetItemRect_copies_the_four_edges) {
  RECT expected{};
  list.send(LB_GETITEMRECT, 2, &expected);
  const auto area = create<_QvtRect>(CLSID_QvtRect);
  auto variable = area;
  LONG item = 2;
  LONG result = -5;
  EXPECT_EQ(global->LS_GetItemRect(list.object(), variable.variable(), &item, &result), S_OK);
  EXPECT_NE(result, -1);
  LONG left = -5;
  LONG top = -5;
  LONG right = -5;
  LONG bottom = -5;
  area->get_RcLeft(&left);
  area->get_RcTop(&top);
  area->get_RcRight(&right);
  area->get_RcBottom(&bottom);
  EXPECT_EQ(left, expected.left);
  EXPECT_EQ(top, expected.top);
  EXPECT_EQ(right, expected.right);
  EXPECT_EQ(bottom, expected.bottom);
  EXPECT_GT(bottom, top);
}

TEST_F(ListBoxHelpers, LS_GetItemRect_of_no_item_is_minus_1) {
  auto area = create<_QvtRect>(CLSID_QvtRect);
  LONG item = 4;
  LONG result = 5;
  EXPECT_EQ(global->LS_GetItemRect(list.object(), area.variable(), &item, &result), S_OK);
  EXPECT_EQ(result, -1);
}

TEST_F(ListBoxHelpers, LS_GetItemRect_into_Nothing_raises_91) {
  _QvtRect* nothing = nullptr;
  LONG item = 0;
  LONG result = 5;
  EXPECT_EQ(global->LS_GetItemRect(list.object(), &nothing, &item, &result), error_result(91));
}

TEST_F(ListBoxHelpers, LS_RedrawOff_and_LS_RedrawOn_switch_drawing) {
  const MessageWatch watch(list.window(), WM_SETREDRAW);
  EXPECT_EQ(global->LS_RedrawOff(list.object()), S_OK);
  EXPECT_EQ(global->LS_RedrawOn(list.object()), S_OK);
  ASSERT_EQ(watch.seen().size(), 2U);
  EXPECT_EQ(watch.seen()[0].word, 0U);
  EXPECT_EQ(watch.seen()[1].word, 1U);
  EXPECT_EQ(list.form().refreshes(), 0);
}

TEST_F(ListBoxHelpers, LS_GetIndexFromData_passes_errors_of_the_control_on) {
  LONG data = 0;
  LONG index = 5;
  list.form().fail(L"ItemData");
  EXPECT_EQ(global->LS_GetIndexFromData(list.object(), &data, &index),
            error_result(FormControl::kFailureNumber));
  list.form().lack(L"ListCount");
  EXPECT_EQ(global->LS_GetIndexFromData(list.object(), &data, &index), error_result(438));
  IDispatch* nothing = nullptr;
  EXPECT_EQ(global->LS_GetIndexFromData(&nothing, &data, &index), error_result(91));
}

TEST_F(ListBoxHelpers, LS_GetIndexFromData_asks_no_window) {
  Control values{nullptr};
  values.form().define(L"ListCount", Value(SHORT{3}));
  values.form().define(L"ItemData", Value(L"42"));
  LONG data = 42;
  LONG index = 5;
  EXPECT_EQ(global->LS_GetIndexFromData(values.object(), &data, &index), S_OK);
  EXPECT_EQ(index, 0);
}

TEST_F(ListBoxHelpers, LS_GetSelItems_of_a_control_without_a_window_raises_438) {
  Control windowless{nullptr};
  SAFEARRAY* items = nullptr;
  LONG count = 5;
  EXPECT_EQ(global->LS_GetSelItems(windowless.object(), &items, &count), error_result(438));
  IDispatch* nothing = nullptr;
  EXPECT_EQ(global->LS_GetSelItems(&nothing, &items, &count), error_result(91));
}

// A helper that serves some kinds of controls only, and what it gives for another.
struct KindCall {
  const char* name;
  bool serves_lists;
  bool serves_combos;
  std::function<HRESULT(IDispatch**, LONG*)> call;
  LONG failure;
};

class KindHelpers : public testing::Test {
 protected:
  std::vector<KindCall> calls() {
    return {
        {"LS_Find", true, true,
         [this](auto c, auto r) { return global->LS_Find(c, &text_, &zero_, &truth_, r); }, -1},
        {"LS_GetItemHeight", true, true,
         [this](auto c, auto r) { return global->LS_GetItemHeight(c, r); }, -1},
        {"LS_SetItemHeight", true, true,
         [this](auto c, auto r) { return global->LS_SetItemHeight(c, &height_, r); }, -1},
        {"LS_InsertItem", true, true,
         [this](auto c, auto r) {
           return global->LS_InsertItem(c, &zero_, &text_, &zero_, &truth_, r);
         },
         -1},
        {"LS_SetTabStops", true, false,
         [this](auto c, auto r) { return global->LS_SetTabStops(c, &stops_, r); }, -1},
        {"LS_SelItemRange", true, false,
         [this](auto c, auto r) { return global->LS_SelItemRange(c, &zero_, &last_, &zero_, r); },
         -1},
        {"LS_SelectAll", true, false,
         [this](auto c, auto r) { return global->LS_SelectAll(c, 1, r); }, -1},
        {"LS_GetItemRect", true, false,
         [this](auto c, auto r) { return global->LS_GetItemRect(c, area_.variable(), &zero_, r); },
         -1},
        {"LS_RedrawOn", true, false, [this](auto c, auto) { return global->LS_RedrawOn(c); },
         kUntouched},
        {"LS_RedrawOff", true, false, [this](auto c, auto) { return global->LS_RedrawOff(c); },
         kUntouched},
        {"CB_DropDownCheck", false, true,
         [this](auto c, auto r) { return global->CB_DropDownCheck(c, r); }, 0},
        {"CB_DropDownOpen", false, true,
         [this](auto c, auto) { return global->CB_DropDownOpen(c); }, kUntouched},
        {"CB_DropDownClose", false, true,
         [this](auto c, auto) { return global->CB_DropDownClose(c); }, kUntouched},
        {"CB_MaxLenght", false, true,
         [this](auto c, auto r) { return global->CB_MaxLenght(c, &height_, r); }, -1},
    };
  }
  ~KindHelpers() override { SafeArrayDestroy(stops_); }

  static constexpr LONG kUntouched = 99;
  Pointer<_KwRtLib> global = create_global();

 private:
  String text_{L"text"};
  LONG zero_ = 0;
  LONG last_ = 0;
  LONG height_ = 20;
  VARIANT_BOOL truth_ = VARIANT_FALSE;
  SAFEARRAY* stops_ = array_of_longs(1, {10, 20});
  Pointer<_QvtRect> area_ = create<_QvtRect>(CLSID_QvtRect);
};

TEST_F(KindHelpers, Another_control_is_sent_nothing_and_gives_the_failure_value) {
  for (const auto& [name, lists, combos, call, failure] : calls()) {
    SCOPED_TRACE(name);
    // A text box, an object of another type around a text box, an object without a window.
    const auto type = type_named(L"_TextBox");
    Control box{L"Edit", 0};
    Control typed{create_control_window(L"Edit", 0), type.get()};
    Control windowless{nullptr};
    for (Control* control : {&box, &typed, &windowless}) {
      LONG result = kUntouched;
      EXPECT_EQ(call(control->object(), &result), S_OK);
      EXPECT_EQ(result, failure);
      EXPECT_EQ(control->form().refreshes(), 0);
    }
  }
}

TEST_F(KindHelpers, A_list_box_is_no_combo_box_and_the_reverse) {
  for (const auto& [name, lists, combos, call, failure] : calls()) {
    if (lists && combos) continue;
    SCOPED_TRACE(name);
    Control other{lists ? L"ComboBox" : L"ListBox", lists ? DWORD{CBS_DROPDOWN} : kPlainList};
    LONG result = kUntouched;
    EXPECT_EQ(call(other.object(), &result), S_OK);
    EXPECT_EQ(result, failure);
    EXPECT_EQ(other.form().refreshes(), 0);
  }
}

TEST_F(KindHelpers, The_name_of_the_objects_type_is_enough) {
  for (const auto& [name, lists, combos, call, failure] : calls()) {
    SCOPED_TRACE(name);
    for (const wchar_t* type_name :
         {lists ? L"ListBox" : L"ComboBox", lists ? L"_ListBox" : L"_ComboBox"}) {
      const auto type = type_named(type_name);
      Control windowless{nullptr, type.get()};
      LONG result = kUntouched;
      EXPECT_EQ(call(windowless.object(), &result), error_result(438));
    }
  }
}

TEST_F(KindHelpers, Nothing_raises_91) {
  for (const auto& [name, lists, combos, call, failure] : calls()) {
    SCOPED_TRACE(name);
    IDispatch* nothing = nullptr;
    LONG result = kUntouched;
    EXPECT_EQ(call(&nothing, &result), error_result(91));
  }
}

TEST_F(KindHelpers, An_error_of_hwnd_reaches_the_caller) {
  for (const auto& [name, lists, combos, call, failure] : calls()) {
    SCOPED_TRACE(name);
    Control control{lists ? L"ListBox" : L"ComboBox", lists ? kPlainList : DWORD{CBS_DROPDOWN}};
    control.form().fail(L"hwnd");
    LONG result = kUntouched;
    EXPECT_EQ(call(control.object(), &result), error_result(FormControl::kFailureNumber));
  }
}

TEST_F(KindHelpers, Windows_of_the_languages_own_classes_are_known) {
  for (const wchar_t* window_class : {L"ThunderListBox", L"ThunderRT6ListBox"}) {
    WNDCLASSW list_class{};
    GetClassInfoW(nullptr, L"ListBox", &list_class);
    list_class.lpszClassName = window_class;
    list_class.hInstance = GetModuleHandleW(nullptr);
    RegisterClassW(&list_class);
    Control list{window_class, kPlainList};
    LONG height = 0;
    EXPECT_EQ(global->LS_GetItemHeight(list.object(), &height), S_OK);
    EXPECT_EQ(height, list.send(LB_GETITEMHEIGHT));
    EXPECT_GT(height, 0);
  }
}

TEST_F(KindHelpers, A_class_that_only_ends_alike_is_another) {
  WNDCLASSW list_class{};
  GetClassInfoW(nullptr, L"ListBox", &list_class);
  list_class.lpszClassName = L"OtherListBox";
  list_class.hInstance = GetModuleHandleW(nullptr);
  RegisterClassW(&list_class);
  Control list{L"OtherListBox", kPlainList};
  LONG height = 5;
  EXPECT_EQ(global->LS_GetItemHeight(list.object(), &height), S_OK);
  EXPECT_EQ(height, -1);
}

class ComboBoxHelpers : public testing::Test {
 protected:
  Pointer<_KwRtLib> global = create_global();
  Control box{L"ComboBox", CBS_DROPDOWN};

  LONG is_open() {
    LONG open = 5;
    EXPECT_EQ(global->CB_DropDownCheck(box.object(), &open), S_OK);
    return open;
  }
};

TEST_F(ComboBoxHelpers, CB_DropDownOpen_and_CB_DropDownClose_move_the_list) {
  EXPECT_EQ(is_open(), 0);
  EXPECT_EQ(global->CB_DropDownOpen(box.object()), S_OK);
  EXPECT_NE(box.send(CB_GETDROPPEDSTATE), 0);
  EXPECT_NE(is_open(), 0);
  EXPECT_EQ(global->CB_DropDownClose(box.object()), S_OK);
  EXPECT_EQ(box.send(CB_GETDROPPEDSTATE), 0);
  EXPECT_EQ(is_open(), 0);
  EXPECT_EQ(box.form().refreshes(), 2);
}

TEST_F(ComboBoxHelpers, CB_MaxLenght_limits_the_edit_part) {
  LONG most = 7;
  LONG result = 5;
  EXPECT_EQ(global->CB_MaxLenght(box.object(), &most, &result), S_OK);
  const HWND edit = FindWindowExW(box.window(), nullptr, L"Edit", nullptr);
  EXPECT_EQ(SendMessageW(edit, EM_GETLIMITTEXT, 0, 0), 7);
}

TEST_F(ComboBoxHelpers, CB_MaxLenght_gives_the_answer_less_1) {
  for (const LRESULT answer : {TRUE, FALSE}) {
    const MessageWatch watch(box.window(), CB_LIMITTEXT,
                             [answer](WPARAM, LPARAM) { return answer; });
    LONG most = 7;
    LONG result = 5;
    EXPECT_EQ(global->CB_MaxLenght(box.object(), &most, &result), S_OK);
    EXPECT_EQ(result, answer - 1);
    ASSERT_EQ(watch.seen().size(), 1U);
    EXPECT_EQ(watch.seen()[0].word, 7U);
  }
  EXPECT_EQ(box.form().refreshes(), 0);
}

}  // namespace
}  // namespace qv::tests
