// CommandLineParmsExtr, CommandLineParmGet and QvCmdArg, called early-bound.
#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "server/client.h"
#include "server/format_page.h"

namespace qv::tests {
namespace {

constexpr LONG kError = -1;
constexpr LONG kOk = 0;
constexpr LONG kBadName = 1;
constexpr LONG kNoMoreItems = 3;

constexpr LONG kUnique = 1;
constexpr LONG kAppend = 2;

using Collection = Pointer<_kwCollection>;

// Name, value, ordinal, and the values of the list.
struct Argument {
  std::wstring name;
  std::wstring value;
  LONG ordinal = 0;
  std::vector<std::wstring> list{};
  friend bool operator==(const Argument&, const Argument&) = default;
};

void PrintTo(const Argument& argument, std::ostream* out) {
  *out << '/' << testing::PrintToString(argument.name) << '='
       << testing::PrintToString(argument.value) << '#' << argument.ordinal << ' '
       << testing::PrintToString(argument.list);
}

Pointer<_QvCmdArg> argument_at(const Collection& arguments, Value index) {
  Value item;
  EXPECT_EQ(arguments->get_Item(&index, &item), S_OK);
  return Pointer<_QvCmdArg>::from(item.vt == VT_DISPATCH ? item.pdispVal : nullptr);
}

LONG count_of(const Collection& collection) {
  LONG count = -1;
  EXPECT_EQ(collection->Count(&count), S_OK);
  return count;
}

Argument read(const Pointer<_QvCmdArg>& object) {
  String name, value;
  Argument argument;
  EXPECT_EQ(object->get_Name(&name), S_OK);
  EXPECT_EQ(object->get_Desc(&value), S_OK);
  EXPECT_EQ(object->get_Ordinal(&argument.ordinal), S_OK);
  argument.name = name.view();
  argument.value = value.view();
  return argument;
}

class CommandLine : public testing::Test {
 protected:
  VARIANT_BOOL extract(const wchar_t* line, LONG flags = 0, Collection valid = {}) {
    VARIANT_BOOL result = 7;
    String text(line);
    EXPECT_EQ(global_->CommandLineParmsExtr(text, arguments_.variable(), &flags, valid.variable(),
                                            &result),
              S_OK);
    return result;
  }
  std::vector<Argument> arguments() {
    std::vector<Argument> all;
    for (LONG i = 1; i <= count_of(arguments_); ++i) {
      const auto object = argument_at(arguments_, i);
      Argument argument = read(object);
      Value key(i), by_key;
      String text;
      EXPECT_EQ(arguments_->get_Key(&key, &text), S_OK);
      EXPECT_EQ(text.view(), argument.name) << "its key is its name";
      Collection list;
      EXPECT_EQ(object->get_List(list.receive()), S_OK);
      LONG last = 0;
      for (LONG k = 1; k <= count_of(list); ++k) {
        const Argument occurrence = read(argument_at(list, k));
        EXPECT_EQ(occurrence.name, L"") << "an occurrence has no name";
        EXPECT_GT(occurrence.ordinal, last) << "occurrences are in order";
        if (k == 1) {
          EXPECT_EQ(occurrence.ordinal, argument.ordinal);
          EXPECT_EQ(occurrence.value, argument.value);
        }
        last = occurrence.ordinal;
        argument.list.push_back(occurrence.value);
      }
      all.push_back(argument);
    }
    return all;
  }
  std::vector<Argument> extracted(const wchar_t* line, LONG flags = 0) {
    EXPECT_EQ(extract(line, flags), VARIANT_FALSE) << line;
    return arguments();
  }

  // The result, the value and the name after the call.
  std::tuple<LONG, std::wstring, std::wstring> get(const wchar_t* name, LONG number) {
    String name_text(name), value(L"before");
    LONG result = 77;
    EXPECT_EQ(
        global_->CommandLineParmGet(arguments_.variable(), &name_text, &number, &value, &result),
        S_OK);
    return {result, std::wstring(value.view()), std::wstring(name_text.view())};
  }

  void expect_record(LONG number, const wchar_t* description, const wchar_t* source) {
    LONG recorded = -1;
    String text, place;
    global_->Error_Number(&recorded);
    global_->Error_Description(&text);
    global_->Error_Source(&place);
    global_->Reset_Error();
    EXPECT_EQ(recorded, number);
    EXPECT_EQ(text.view(), description);
    EXPECT_EQ(place.view(), source);
  }

  Collection valid_names(const std::vector<const wchar_t*>& names) {
    const auto collection = create<_kwCollection>(CLSID_kwCollection);
    for (const wchar_t* name : names) {
      Value item(1), key(name), missing = Value::missing();
      EXPECT_EQ(collection->Add(&item, &key, &missing, &missing), S_OK);
    }
    return collection;
  }

  Pointer<_KwRtLib> global_ = create_global();
  Collection arguments_ = create<_kwCollection>(CLSID_kwCollection);
};

using Arguments = std::vector<Argument>;

TEST_F(CommandLine, names_are_folded_and_values_stand_behind_the_first_equals_sign) {
  EXPECT_EQ(extracted(L"/File=a.txt -verbose"),
            (Arguments{{L"FILE", L"a.txt", 1}, {L"VERBOSE", L"", 2}}));
  EXPECT_EQ(extracted(L"-x"), (Arguments{{L"X", L"", 1}}));
  EXPECT_EQ(extracted(L"/a=b=c"), (Arguments{{L"A", L"b=c", 1}}));
  EXPECT_EQ(extracted(L"/\u00E8=1"), (Arguments{{L"\u00C8", L"1", 1}}));
  EXPECT_EQ(extracted(L"/=1 -"), (Arguments{{L"", L"1", 1, {L"1", L""}}}));
}

TEST_F(CommandLine, a_repeated_name_has_all_its_values_in_the_list) {
  EXPECT_EQ(extracted(L"/a=1 /A=2"), (Arguments{{L"A", L"1", 1, {L"1", L"2"}}}));
  EXPECT_EQ(extracted(L"/a=1 /b=x /A=2 -a=3"),
            (Arguments{{L"A", L"1", 1, {L"1", L"2", L"3"}}, {L"B", L"x", 2}}));
}

TEST_F(CommandLine, words_without_a_switch_are_named_NONAME) {
  EXPECT_EQ(extracted(L"one two"), (Arguments{{L"NONAME", L"one", 1, {L"one", L"two"}}}));
  EXPECT_EQ(extracted(L"one /noname=two"), (Arguments{{L"NONAME", L"one", 1, {L"one", L"two"}}}));
}

TEST_F(CommandLine, quotes_keep_blanks_and_may_open_anywhere) {
  EXPECT_EQ(extracted(L"\"one two\" three"),
            (Arguments{{L"NONAME", L"one two", 1, {L"one two", L"three"}}}));
  EXPECT_EQ(extracted(L"/a=\"one two\""), (Arguments{{L"A", L"one two", 1}}));
  EXPECT_EQ(extracted(L"/a=x\" y \"z"), (Arguments{{L"A", L"x y z", 1}}));
  EXPECT_EQ(extracted(L"\"/a b=c d\""), (Arguments{{L"A B", L"c d", 1}})) << "around a switch too";
  EXPECT_EQ(extracted(L"/a=\"one two"), (Arguments{{L"A", L"one two", 1}})) << "unclosed";
  EXPECT_EQ(extracted(L"\" /a\""), (Arguments{{L"NONAME", L" /a", 1}}));
}

TEST_F(CommandLine, values_of_names_are_trimmed_and_others_are_not) {
  EXPECT_EQ(extracted(L"/\"a =  b \""), (Arguments{{L"A", L"b", 1}}));
  EXPECT_EQ(extracted(L"\"  b \""), (Arguments{{L"NONAME", L"  b ", 1}}));
}

TEST_F(CommandLine, two_blanks_in_a_row_make_an_unnamed_argument_without_a_value) {
  EXPECT_EQ(extracted(L"/a  /b"), (Arguments{{L"A", L"", 1}, {L"NONAME", L"", 2}, {L"B", L"", 3}}));
  EXPECT_EQ(extracted(L"   /a   "), (Arguments{{L"A", L"", 1}})) << "at the ends they don't count";
}

TEST_F(CommandLine, an_empty_line_has_no_arguments) {
  EXPECT_EQ(extracted(L""), Arguments());
  EXPECT_EQ(extracted(L"   "), Arguments());
  EXPECT_EQ(extracted(L"\"\""), Arguments());
}

TEST_F(CommandLine, character_255_becomes_a_blank) {
  EXPECT_EQ(extracted(L"a\u00FFb"), (Arguments{{L"NONAME", L"a b", 1}}));
}

TEST_F(CommandLine, a_line_replaces_the_one_before_unless_it_is_appended) {
  extracted(L"/a=1 /b=2");
  EXPECT_EQ(extracted(L"/c"), (Arguments{{L"C", L"", 1}}));
  EXPECT_EQ(extracted(L"/d /c=2", kAppend),
            (Arguments{{L"C", L"", 1, {L"", L"2"}}, {L"D", L"", 1}}))
      << "the count of places begins anew with every line";
}

TEST_F(CommandLine, a_name_that_is_not_valid_fails_with_the_whole_line) {
  EXPECT_EQ(extract(L"/a=1 \"x y\" /c", 0, valid_names({L"A", L"B", L"NONAME"})), VARIANT_TRUE);
  expect_record(20000, L"Parametro /a=1 x\u00FFy /c sconosciuto.",
                L"KwRtLibMod.CommandLineParmsExtr");
  EXPECT_EQ(arguments(), (Arguments{{L"A", L"1", 1}, {L"NONAME", L"x y", 2}}))
      << "the arguments before it stay";
  EXPECT_EQ(extract(L"/a /b", 0, valid_names({L"a", L"b"})), VARIANT_FALSE) << "in any case";
}

TEST_F(CommandLine, an_unnamed_argument_needs_its_name_among_the_valid_ones) {
  EXPECT_EQ(extract(L"/a x", 0, valid_names({L"A"})), VARIANT_TRUE);
  expect_record(20000, L"Parametro /a x sconosciuto.", L"KwRtLibMod.CommandLineParmsExtr");
  EXPECT_EQ(extract(L"/a x", 0, valid_names({L"A", L"NONAME"})), VARIANT_FALSE);
}

TEST_F(CommandLine, no_valid_names_at_all_refuse_everything) {
  EXPECT_EQ(extract(L"", 0, valid_names({})), VARIANT_FALSE);
  EXPECT_EQ(extract(L"x", 0, valid_names({})), VARIANT_TRUE);
  expect_record(20000, L"Parametro x sconosciuto.", L"KwRtLibMod.CommandLineParmsExtr");
}

TEST_F(CommandLine, a_repeated_name_fails_where_names_must_be_unique) {
  EXPECT_EQ(extract(L"/a=1 /b /A=2 /c", kUnique), VARIANT_TRUE);
  expect_record(20001, L"Parametro duplicato: A", L"KwRtLibMod.CommandLineParmsExtr");
  EXPECT_EQ(arguments(), (Arguments{{L"A", L"1", 1}, {L"B", L"", 2}}));
  EXPECT_EQ(extract(L"x y", kUnique), VARIANT_TRUE);
  expect_record(20001, L"Parametro duplicato: NONAME", L"KwRtLibMod.CommandLineParmsExtr");
  extracted(L"/a");
  EXPECT_EQ(extract(L"/a", kUnique | kAppend), VARIANT_TRUE) << "also of the lines before";
  expect_record(20001, L"Parametro duplicato: A", L"KwRtLibMod.CommandLineParmsExtr");
}

TEST_F(CommandLine, an_unknown_name_is_found_before_a_repeated_one) {
  EXPECT_EQ(extract(L"/a /a", kUnique, valid_names({L"B"})), VARIANT_TRUE);
  expect_record(20000, L"Parametro /a /a sconosciuto.", L"KwRtLibMod.CommandLineParmsExtr");
}

TEST_F(CommandLine, no_collection_fails) {
  arguments_ = {};
  EXPECT_EQ(extract(L"/a"), VARIANT_TRUE);
  expect_record(91, L"Object variable or With block variable not set",
                L"KwRtLibMod.CommandLineParmsExtr");
  EXPECT_EQ(get(L"A", 1), (std::tuple<LONG, std::wstring, std::wstring>(kError, L"", L"A")));
  expect_record(91, L"Object variable or With block variable not set",
                L"KwRtLibMod.CommandLineParmGet");
}

TEST_F(CommandLine, optional_arguments_may_be_left_out) {
  VARIANT_BOOL result = 7;
  String line(L"/a=1");
  EXPECT_EQ(global_->CommandLineParmsExtr(line, arguments_.variable(), nullptr, nullptr, &result),
            S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
  LONG found = 77;
  EXPECT_EQ(global_->CommandLineParmGet(arguments_.variable(), nullptr, nullptr, nullptr, &found),
            S_OK);
  EXPECT_EQ(found, kOk);
}

TEST_F(CommandLine, what_a_kept_collection_holds_besides_must_be_arguments) {
  Value item(5), key(L"A"), missing = Value::missing();
  ASSERT_EQ(arguments_->Add(&item, &key, &missing, &missing), S_OK);
  EXPECT_EQ(extract(L"/a", kAppend), VARIANT_TRUE);
  expect_record(424, L"Object required", L"KwRtLibMod.CommandLineParmsExtr");
  Value object;
  object.vt = VT_DISPATCH;
  object.pdispVal = arguments_.get();
  object.pdispVal->AddRef();
  arguments_ = create<_kwCollection>(CLSID_kwCollection);
  ASSERT_EQ(arguments_->Add(&object, &key, &missing, &missing), S_OK);
  EXPECT_EQ(std::get<0>(get(L"a", 1)), kError);
  expect_record(13, L"Type mismatch", L"KwRtLibMod.CommandLineParmGet");
}

using Got = std::tuple<LONG, std::wstring, std::wstring>;

TEST_F(CommandLine, Get_by_name_gives_every_occurrence_by_number) {
  extracted(L"/a=1 x /A=2 /b=3 /a=4");
  EXPECT_EQ(get(L"a", 1), Got(kOk, L"1", L"a")) << "the name given stays as it was given";
  EXPECT_EQ(get(L"A", 2), Got(kOk, L"2", L"A"));
  EXPECT_EQ(get(L"A", 3), Got(kOk, L"4", L"A"));
  EXPECT_EQ(get(L"A", 4), Got(kNoMoreItems, L"", L"A"));
  EXPECT_EQ(get(L"B", 1), Got(kOk, L"3", L"B"));
  EXPECT_EQ(get(L"B", 2), Got(kNoMoreItems, L"", L"B"));
  EXPECT_EQ(get(L"NONAME", 1), Got(kOk, L"x", L"NONAME"));
  EXPECT_EQ(get(L"C", 1), Got(kBadName, L"", L"C"));
}

TEST_F(CommandLine, Get_without_a_name_counts_name_by_name_and_fills_the_name_in) {
  extracted(L"/a=1 x /A=2 /b=3 /a=4");
  EXPECT_EQ(get(L"", 1), Got(kOk, L"1", L"A"));
  EXPECT_EQ(get(L"", 2), Got(kOk, L"2", L"A"));
  EXPECT_EQ(get(L"", 3), Got(kOk, L"4", L"A"));
  EXPECT_EQ(get(L"", 4), Got(kOk, L"x", L"NONAME"));
  EXPECT_EQ(get(L"", 5), Got(kOk, L"3", L"B"));
  EXPECT_EQ(get(L"", 6), Got(kNoMoreItems, L"", L""));
  extracted(L"");
  EXPECT_EQ(get(L"", 1), Got(kNoMoreItems, L"", L""));
}

TEST_F(CommandLine, Get_of_an_item_before_the_first_fails_in_a_list_alone) {
  extracted(L"/a=1 /a=2");
  EXPECT_EQ(get(L"A", 0), Got(kError, L"", L"A"));
  expect_record(9, L"Subscript out of range", L"KwRtLibMod.CommandLineParmGet");
  EXPECT_EQ(get(L"A", -1), Got(kError, L"", L"A"));
  expect_record(9, L"Subscript out of range", L"KwRtLibMod.CommandLineParmGet");
  EXPECT_EQ(get(L"", 0), Got(kError, L"", L""));
  expect_record(9, L"Subscript out of range", L"KwRtLibMod.CommandLineParmGet");
  extracted(L"/b=1");
  EXPECT_EQ(get(L"B", 0), Got(kError, L"", L"B"));
  expect_record(9, L"Subscript out of range", L"KwRtLibMod.CommandLineParmGet");
  EXPECT_EQ(get(L"", 0), Got(kNoMoreItems, L"", L""));
  EXPECT_EQ(get(L"", -2147483647 - 1), Got(kNoMoreItems, L"", L""));
}

TEST_F(CommandLine, the_example_of_the_format_page_is_read) {
  const auto line = wide_line(block_of_page("command-line.md", "text", 1).front());
  ASSERT_EQ(extract(line.c_str()), VARIANT_FALSE);
  std::vector<std::wstring> expected, found;
  for (const auto& row : block_of_page("command-line.md", "text", 2)) {
    expected.push_back(wide_line(row));
  }
  for (LONG i = 1; i <= count_of(arguments_); ++i) {
    const auto argument = argument_at(arguments_, i);
    const auto note = [&, name = read(argument).name](const Argument& occurrence) {
      found.push_back(name + L"=" + occurrence.value + L" #" + std::to_wstring(occurrence.ordinal));
    };
    Collection list;
    ASSERT_EQ(argument->get_List(list.receive()), S_OK);
    if (count_of(list) == 0) note(read(argument));
    for (LONG k = 1; k <= count_of(list); ++k) note(read(argument_at(list, k)));
  }
  EXPECT_EQ(found, expected);
  for (LONG number = 1; number <= static_cast<LONG>(expected.size()); ++number) {
    const auto [result, value, name] = get(L"", number);
    EXPECT_EQ(result, kOk);
    EXPECT_TRUE(
        expected[static_cast<std::size_t>(number - 1)].starts_with(name + L"=" + value + L" #"));
  }
}

TEST_F(CommandLine, an_argument_of_its_own_has_properties_to_set) {
  const auto argument = create<_QvCmdArg>(CLSID_QvCmdArg);
  EXPECT_EQ(read(argument), Argument());
  EXPECT_EQ(argument->put_Name(String(L"n")), S_OK);
  EXPECT_EQ(argument->put_Desc(String(L"d")), S_OK);
  EXPECT_EQ(argument->put_Ordinal(-7), S_OK);
  EXPECT_EQ(read(argument), (Argument{L"n", L"d", -7}));
  Collection list, again;
  EXPECT_EQ(argument->get_List(list.receive()), S_OK);
  EXPECT_EQ(argument->get_List(again.receive()), S_OK);
  EXPECT_EQ(count_of(list), 0);
  EXPECT_EQ(list.get(), again.get()) << "it is made once";
  const auto other = create<_kwCollection>(CLSID_kwCollection);
  EXPECT_EQ(argument->putref_List(other.get()), S_OK);
  EXPECT_EQ(argument->get_List(again.receive()), S_OK);
  EXPECT_EQ(again.get(), other.get());
  EXPECT_EQ(argument->putref_List(nullptr), S_OK);
  EXPECT_EQ(argument->get_List(again.receive()), S_OK);
  EXPECT_TRUE(again);
  EXPECT_NE(again.get(), other.get());
}

TEST_F(CommandLine, a_list_that_the_application_puts_in_counts) {
  extracted(L"/a=1");
  const auto list = create<_kwCollection>(CLSID_kwCollection);
  for (const wchar_t* value : {L"x", L"y"}) {
    const auto occurrence = create<_QvCmdArg>(CLSID_QvCmdArg);
    occurrence->put_Desc(String(value));
    Value item, missing = Value::missing();
    item.vt = VT_DISPATCH;
    item.pdispVal = occurrence.get();
    item.pdispVal->AddRef();
    ASSERT_EQ(list->Add(&item, &missing, &missing, &missing), S_OK);
  }
  ASSERT_EQ(argument_at(arguments_, L"A")->putref_List(list.get()), S_OK);
  EXPECT_EQ(get(L"A", 1), Got(kOk, L"1", L"A"));
  EXPECT_EQ(get(L"A", 2), Got(kOk, L"y", L"A"));
  EXPECT_EQ(get(L"", 1), Got(kOk, L"x", L"A"));
  EXPECT_EQ(get(L"", 3), Got(kNoMoreItems, L"", L""));
}

}  // namespace
}  // namespace qv::tests
