// Sort keys, masks, distinct parts and the escape language, called early-bound.
#include <gtest/gtest.h>

#include <string>

#include "server/foreign_collection.h"
#include "server/format_page.h"
// constants.h needs Automation's types before it.
#include "constants.h"

namespace qv::tests {
namespace {

using namespace qv::KWZSTR_Constants;

class SortKeys : public testing::Test {
 protected:
  std::wstring key_sort(std::wstring_view key, Long flags, std::wstring_view table = L"") {
    String variable(key), table_text(table);
    auto flag = static_cast<SHORT>(flags);
    EXPECT_EQ(global_->Key_Sort(&variable, &flag, &table_text), S_OK);
    return std::wstring(variable.view());
  }

  std::wstring mask_display(std::wstring_view key) {
    String variable(key);
    EXPECT_EQ(global_->Mask_Display(&variable), S_OK);
    return std::wstring(variable.view());
  }

  std::wstring mask_sort(std::wstring_view key) {
    String variable(key);
    EXPECT_EQ(global_->Mask_Sort(&variable), S_OK);
    return std::wstring(variable.view());
  }

  std::wstring meta_key(std::wstring_view text, Value remove = Value::missing()) {
    String variable(text);
    EXPECT_EQ(global_->TranslMetaKey(&variable, &remove), S_OK);
    return std::wstring(variable.view());
  }

  std::wstring transl_key_sort(std::wstring_view key, Long flags, std::wstring_view table = L"") {
    String variable(key), table_text(table);
    auto flag = static_cast<SHORT>(flags);
    EXPECT_EQ(global_->TranslKeySort(&variable, &flag, &table_text, nullptr), S_OK);
    return std::wstring(variable.view());
  }

  Pointer<_QvtSortTable> sort_table(Long flags, std::wstring_view table = L"") {
    auto object = create<_QvtSortTable>(CLSID_QvtSortTable);
    String text(table);
    EXPECT_EQ(object->put_SortFlags(static_cast<SHORT>(flags)), S_OK);
    EXPECT_EQ(object->put_Table(text), S_OK);
    return object;
  }

  VARIANT_BOOL transl_delim_key(String& key, _kwCollection* tables) {
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->TranslDelimKey(&key, &tables, &failed), S_OK);
    return failed;
  }

  void expect_record(LONG number, const wchar_t* source) {
    LONG recorded = -1;
    String recorded_source;
    EXPECT_EQ(global_->Error_Number(&recorded), S_OK);
    EXPECT_EQ(global_->Error_Source(&recorded_source), S_OK);
    EXPECT_EQ(recorded, number);
    EXPECT_EQ(recorded_source.view(), source);
    global_->Reset_Error();
  }

  void SetUp() override { global_->Reset_Error(); }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(SortKeys, QvtSortTable_keeps_its_two_properties) {
  const auto table = create<_QvtSortTable>(CLSID_QvtSortTable);
  SHORT flags = 5;
  String text(L"x");
  ASSERT_EQ(table->get_SortFlags(&flags), S_OK);
  EXPECT_EQ(flags, 0);
  String empty;
  ASSERT_EQ(table->get_Table(&empty), S_OK);
  EXPECT_EQ(empty.view(), L"");
  ASSERT_EQ(table->put_SortFlags(-32768), S_OK);
  ASSERT_EQ(table->put_Table(text), S_OK);
  String kept;
  ASSERT_EQ(table->get_SortFlags(&flags), S_OK);
  ASSERT_EQ(table->get_Table(&kept), S_OK);
  EXPECT_EQ(flags, -32768);
  EXPECT_EQ(kept.view(), L"x");
}

TEST_F(SortKeys, Key_Sort_of_an_empty_key_stays_empty) {
  EXPECT_EQ(key_sort(L"", SRT_UCASE | SRT_MASK), L"");
  EXPECT_EQ(mask_display(L""), L"");
  EXPECT_EQ(mask_sort(L""), L"");
}

TEST_F(SortKeys, Key_Sort_does_what_each_flag_says) {
  EXPECT_EQ(key_sort(L"ab\u00E0 1", 0), L"ab\u00E0 1");
  EXPECT_EQ(key_sort(L"ab\u00E0 1", SRT_UCASE), L"AB\u00C0 1");
  EXPECT_EQ(key_sort(L"ab\u00E0 1", SRT_PRIMARY), L"aba 1");
  EXPECT_EQ(key_sort(L"a1b22", SRT_NONUM), L"ab");
  EXPECT_EQ(key_sort(L"<La >Bibbia", SRT_MASK), L"Bibbia");
  EXPECT_EQ(key_sort(L"<La >Bibbia", SRT_MASK | SRT_NOMASK), L"<La >Bibbia");
}

TEST_F(SortKeys, Key_Sort_weighs_through_a_table) {
  std::wstring table;
  for (wchar_t code = 0; code < L'c'; ++code) table += code;
  table[L'a'] = L'z';
  EXPECT_EQ(key_sort(L"abc", SRT_TABLE, table), L"zbc") << "c lies behind the table";
  EXPECT_EQ(key_sort(L"abc", SRT_TABLE | SRT_NOTABLE, table), L"abc");
  EXPECT_EQ(key_sort(L"abc", 0, table), L"abc");
  EXPECT_EQ(key_sort(L"abc", SRT_TABLE), L"abc") << "an empty table weighs nothing";
  EXPECT_EQ(key_sort(L"Abc", SRT_TABLE | SRT_UCASE, table), L"ABC") << "case goes first";
}

TEST_F(SortKeys, marks_of_an_index_do_not_change_a_key) {
  const Long marks = SRT_UNIQUE | SRT_TIDLIST | SRT_PASSWORD | SRT_EXTSORT;
  EXPECT_EQ(key_sort(L"a b", marks), L"a b");
  EXPECT_EQ(key_sort(L"a b", SRT_32BIT), L"a b") << "a negative Integer is no SRT_NOSPACES";
}

TEST_F(SortKeys, a_key_ends_before_its_first_character_0) {
  EXPECT_EQ(key_sort(std::wstring_view(L"ab\0c", 4), SRT_UCASE), L"AB");
  EXPECT_EQ(mask_display(std::wstring_view(L"ab\0c", 4)), L"ab");
  std::wstring table(256, L'\0');
  for (wchar_t code = 1; code < 256; ++code) table[code] = code;
  table[L'b'] = L'\0';
  EXPECT_EQ(key_sort(L"abc", SRT_TABLE, table), L"a") << "a weight of 0 ends it as well";
}

TEST_F(SortKeys, XLate_is_the_weighing_alone) {
  String text(L"abA"), table(std::wstring(98, L'x'));
  ASSERT_EQ(global_->XLate(&text, &table), S_OK);
  EXPECT_EQ(text.view(), L"xbx");
  String plain(L"ab"), none;
  ASSERT_EQ(global_->XLate(&plain, &none), S_OK);
  EXPECT_EQ(plain.view(), L"ab");
}

TEST_F(SortKeys, masks_keep_what_shows_or_what_sorts) {
  EXPECT_EQ(mask_display(L"<La >Bibbia@1@"), L"La Bibbia");
  EXPECT_EQ(mask_sort(L"<La >Bibbia@1@"), L"Bibbia1");
  EXPECT_EQ(mask_display(L"\"<a>\"b"), L"<a>b");
  EXPECT_EQ(mask_sort(L"\"<a>\"b"), L"<a>b");
  EXPECT_EQ(mask_display(L"a<b"), L"ab") << "an unclosed mark runs to the end";
  EXPECT_EQ(mask_sort(L"a<b"), L"a");
}

TEST_F(SortKeys, an_escaped_mark_is_the_marks_own_character) {
  EXPECT_EQ(mask_display(L"a\x1B<b"), L"a\x1B<b");
  EXPECT_EQ(meta_key(mask_display(L"a\x1B<b@c@")), L"a<b");
}

TEST_F(SortKeys, DistinctSplit_takes_the_key_apart_at_the_first_separator) {
  String key(
      L"abc\x1B\x1F"
      L"def\x1B\x1Fg"),
      distinct(L"old");
  ASSERT_EQ(global_->DistinctSplit(&key, &distinct), S_OK);
  EXPECT_EQ(key.view(), L"abc");
  EXPECT_EQ(distinct.view(), L"def\x1B\x1Fg");
}

TEST_F(SortKeys, DistinctSplit_without_a_separator_leaves_the_key_and_gives_an_empty_text) {
  String key(L"abc\x1B"), distinct(L"old");
  ASSERT_EQ(global_->DistinctSplit(&key, &distinct), S_OK);
  EXPECT_EQ(key.view(), L"abc\x1B");
  EXPECT_EQ(distinct.view(), L"");
}

TEST_F(SortKeys, DistinctAppend_puts_27_and_31_between) {
  String key(L"abc"), distinct(L"de");
  ASSERT_EQ(global_->DistinctAppend(&key, &distinct), S_OK);
  EXPECT_EQ(key.view(),
            L"abc\x1B\x1F"
            L"de");
  String twice(L"a");
  ASSERT_EQ(global_->DistinctAppend(&twice, &twice), S_OK);
  EXPECT_EQ(twice.view(),
            L"a\x1B\x1F"
            L"a");
}

TEST_F(SortKeys, TranslKeySort_splits_the_distinct_text_off) {
  String key(
      L"abc\x1B\x1F"
      L"def"),
      table;
  SHORT flags = SRT_UCASE;
  Value distinct;
  ASSERT_EQ(global_->TranslKeySort(&key, &flags, &table, &distinct), S_OK);
  EXPECT_EQ(key.view(), L"ABC");
  EXPECT_EQ(distinct.text(), L"def") << "as it stands, not weighed";
  EXPECT_EQ(transl_key_sort(L"abc\x1B\x1F"
                            L"def",
                            0),
            L"abc");
  EXPECT_EQ(transl_key_sort(L"", SRT_UCASE), L"");
}

TEST_F(SortKeys, TranslKeySort_makes_one_blank_of_each_pair_in_a_single_pass) {
  EXPECT_EQ(transl_key_sort(L"a  b", SRT_NOBLANKS), L"a b");
  EXPECT_EQ(transl_key_sort(L"a    b", SRT_NOBLANKS), L"a  b");
  EXPECT_EQ(transl_key_sort(L"a   b", SRT_NOBLANKS), L"a  b");
  EXPECT_EQ(transl_key_sort(L"a  b", 0), L"a  b");
}

TEST_F(SortKeys, TranslKeyDisplay_drops_the_distinct_text_and_what_only_sorts) {
  String key(
      L"<La >Bibbia@1@\x1B\x1F"
      L"def");
  ASSERT_EQ(global_->TranslKeyDisplay(&key), S_OK);
  EXPECT_EQ(key.view(), L"La Bibbia");
}

TEST_F(SortKeys, TranslMetaKey_translates_each_letter) {
  EXPECT_EQ(meta_key(L"a\x1B"
                     L"bc"),
            L"a\x01\x02"
            L"c");
  EXPECT_EQ(meta_key(L"\x1Bi"), L"\x01\x01");
  EXPECT_EQ(meta_key(L"\x1Bk"), L"\x01\x04");
  EXPECT_EQ(meta_key(L"\x1Bu"), L"\x01\x08");
  EXPECT_EQ(meta_key(L"\x1Bl\x1Bn"), L"\r\n\r\n");
  EXPECT_EQ(meta_key(L"x\x1Bsy\x1Btz"), L"x y\tz");
  EXPECT_EQ(meta_key(L"\x1B<\x1B>\x1B@\x1B\""), L"<>@\"");
}

TEST_F(SortKeys, TranslMetaKey_drops_letters_that_it_does_not_know) {
  EXPECT_EQ(meta_key(L"a\x1Bzb"), L"ab");
  EXPECT_EQ(meta_key(L"a\x1B"
                     L"Bb"),
            L"ab")
      << "case counts";
  EXPECT_EQ(meta_key(L"a\x1B\x1B"
                     L"b"),
            L"ab");
  EXPECT_EQ(meta_key(L"a\x1B"), L"a") << "an escape at the end goes alone";
  EXPECT_EQ(meta_key(L"abc"), L"abc");
  EXPECT_EQ(meta_key(L""), L"");
}

TEST_F(SortKeys, TranslMetaKey_with_EscRemove_removes_every_pair) {
  EXPECT_EQ(meta_key(L"a\x1B"
                     L"bc\x1Bhd\x1B<e",
                     Value(true)),
            L"acde");
  EXPECT_EQ(meta_key(L"a\x1B\x1B"
                     L"b\x1B",
                     Value(1)),
            L"ab");
  EXPECT_EQ(meta_key(L"a\x1Bsb", Value(0)), L"a b");
  EXPECT_EQ(meta_key(L"a  <b>@c@\t", Value(true)), L"a  <b>@c@\t") << "with no other change";
}

TEST_F(SortKeys, an_escaped_h_raises_13) {
  String text(L"x\x1Bsy\x1Bhz\x1Bs"), description;
  ASSERT_EQ(global_->TranslMetaKey(&text, nullptr), error_result(13));
  EXPECT_EQ(error_description(), L"Type mismatch");
  EXPECT_EQ(text.view(), L"x y\x1Bhz\x1Bs") << "what stands before it is translated";
  expect_record(0, L"");
}

TEST_F(SortKeys, TranslDelimKey_sorts_each_field_by_its_own_table) {
  ForeignCollection tables;
  tables.add(sort_table(SRT_UCASE).get());
  tables.add(sort_table(SRT_NONUM).get());
  String key(L"ab1\tcd2\tef3  ");
  EXPECT_EQ(transl_delim_key(key, &tables), VARIANT_FALSE);
  EXPECT_EQ(key.view(), L"AB1cdef") << "the last table serves all further fields";
}

TEST_F(SortKeys, TranslDelimKey_removes_escapes_before_it_splits_the_distinct_text_off) {
  ForeignCollection tables;
  tables.add(sort_table(0).get());
  String key(
      L"a\x1B"
      L"bb\t\tc\x1B\x1F"
      L"d");
  EXPECT_EQ(transl_delim_key(key, &tables), VARIANT_FALSE);
  EXPECT_EQ(key.view(), L"abcd");
}

TEST_F(SortKeys, TranslDelimKey_takes_its_tables_from_a_kwCollection) {
  const auto tables = create<_kwCollection>(CLSID_kwCollection);
  for (const Long flags : {SRT_UCASE, SRT_NONUM}) {
    const auto table = sort_table(flags);
    Value item, missing = Value::missing();
    item.vt = VT_DISPATCH;
    item.pdispVal = table.get();
    item.pdispVal->AddRef();
    ASSERT_EQ(tables->Add(&item, &missing, &missing, &missing), S_OK);
  }
  String key(L"ab1\tcd2\tef3  ");
  EXPECT_EQ(transl_delim_key(key, tables.get()), VARIANT_FALSE);
  EXPECT_EQ(key.view(), L"AB1cdef");
  const auto empty = create<_kwCollection>(CLSID_kwCollection);
  EXPECT_EQ(transl_delim_key(key, empty.get()), VARIANT_TRUE);
  expect_record(9, L"KwRtLibMod.TranslDelimKey");
}

TEST_F(SortKeys, the_example_of_the_format_page_shows_and_sorts_as_told) {
  String key(bytes_of_page("record-key.md"));
  ASSERT_EQ(global_->TranslKeyDisplay(&key), S_OK);
  EXPECT_EQ(meta_key(key.view()), bytes_of_page("record-key.md", 2));
  String stored(bytes_of_page("record-key.md")), distinct;
  ASSERT_EQ(global_->DistinctSplit(&stored, &distinct), S_OK);
  EXPECT_EQ(distinct.view(), L"7");
  EXPECT_EQ(transl_key_sort(meta_key(stored.view(), Value(true)), SRT_MASK | SRT_UCASE),
            bytes_of_page("record-key.md", 3));
  ASSERT_EQ(global_->DistinctAppend(&stored, &distinct), S_OK);
  EXPECT_EQ(stored.view(), bytes_of_page("record-key.md"));
}

TEST_F(SortKeys, TranslDelimKey_of_an_empty_key_needs_no_table) {
  ForeignCollection tables;
  String key;
  EXPECT_EQ(transl_delim_key(key, &tables), VARIANT_FALSE);
  EXPECT_EQ(key.view(), L"");
  expect_record(0, L"");
}

TEST_F(SortKeys, TranslDelimKey_without_tables_fails_at_the_lookup) {
  ForeignCollection tables;
  String key(L"a\tb");
  EXPECT_EQ(transl_delim_key(key, &tables), VARIANT_TRUE);
  expect_record(9, L"KwRtLibMod.TranslDelimKey");
  EXPECT_EQ(key.view(), L"b") << "the field that failed is taken by then";
}

TEST_F(SortKeys, TranslDelimKey_without_a_collection_fails_with_91) {
  String key(L"a");
  EXPECT_EQ(transl_delim_key(key, nullptr), VARIANT_TRUE);
  expect_record(91, L"KwRtLibMod.TranslDelimKey");
}

TEST_F(SortKeys, TranslDelimKey_with_an_object_that_is_no_sort_table_fails_with_438) {
  ForeignCollection tables;
  tables.add(create<_QVtError>(CLSID_QVtError).get());
  String key(L"a");
  EXPECT_EQ(transl_delim_key(key, &tables), VARIANT_TRUE);
  expect_record(438, L"KwRtLibMod.TranslDelimKey");
}

}  // namespace
}  // namespace qv::tests
