// The filter class, early bound.
#include "server/client.h"
#include "server/temp_folder.h"

#include <array>
#include <vector>

namespace qv::tests {
namespace {

class BloomFilter : public testing::Test {
 protected:
  using Filter = Pointer<_QvtBloomFilter>;

  static Filter make(LONG bits) {
    auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(filter->Init(&bits, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    return filter;
  }
  static SHORT set(const Filter& filter, LONG bit, SHORT value = 1) {
    SHORT old = 99;
    EXPECT_EQ(filter->BitSet(&bit, &value, &old), S_OK);
    return old;
  }
  static SHORT test(const Filter& filter, LONG bit) {
    SHORT value = 99;
    EXPECT_EQ(filter->BitTest(&bit, &value), S_OK);
    return value;
  }
  static LONG count(const Filter& filter) {
    LONG result = -99;
    EXPECT_EQ(filter->Count(&result), S_OK);
    return result;
  }
  using Step = HRESULT (STDMETHODCALLTYPE _QvtBloomFilter::*)(LONG*, LONG*);
  static LONG step(const Filter& filter, Step method, LONG from) {
    LONG result = -99;
    EXPECT_EQ((filter.get()->*method)(&from, &result), S_OK);
    return result;
  }
  static std::vector<LONG> bits(const Filter& filter) {
    std::vector<LONG> result;
    for (LONG bit = step(filter, &_QvtBloomFilter::NextBit, -1); bit >= 0;
         bit = step(filter, &_QvtBloomFilter::NextBit, bit)) {
      result.push_back(bit);
    }
    return result;
  }
  static Filter with(LONG size, std::initializer_list<LONG> set_bits) {
    auto filter = make(size);
    for (const LONG bit : set_bits) set(filter, bit);
    return filter;
  }
  static BFILTER record(const Filter& filter) {
    BFILTER result{};
    EXPECT_EQ(filter->get_Struct(&result), S_OK);
    return result;
  }
  using List = std::vector<LONG>;
};

TEST_F(BloomFilter, A_new_filter_is_all_zero_and_harmless) {
  auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  const BFILTER all = record(filter);
  EXPECT_EQ(all.Bits, 0);
  EXPECT_EQ(all.Words, 0);
  EXPECT_EQ(all.hFilter, 0);
  EXPECT_EQ(all.Filter, 0);
  EXPECT_EQ(count(filter), 0);
  EXPECT_EQ(set(filter, 0), -1);
  EXPECT_EQ(test(filter, 0), 0);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::NextBit, -1), -1);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::NextZeroBit, -1), -1);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::PrevBit, 5), -1);
  EXPECT_EQ(filter->BoolNot(), S_OK);
  EXPECT_EQ(filter->Free(), S_OK);
  VARIANT_BOOL failed = VARIANT_FALSE;
  LONG records = 0;
  EXPECT_EQ(filter->Fill(&records, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
}

TEST_F(BloomFilter, Init_fills_the_record) {
  for (const LONG size : {0, 1, 31, 32, 33, 1000}) {
    const BFILTER all = record(make(size));
    EXPECT_EQ(all.Bits, size);
    EXPECT_EQ(all.Words, (size + 31) / 32);
    EXPECT_NE(all.hFilter, 0);
  }
}

TEST_F(BloomFilter, Init_with_a_negative_number_fails_and_keeps_what_was_there) {
  auto filter = with(10, {3});
  LONG negative = -1;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(filter->Init(&negative, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(bits(filter), (List{3}));
}

TEST_F(BloomFilter, BitSet_gives_the_old_value_and_minus_1_out_of_range) {
  auto filter = make(33);
  EXPECT_EQ(set(filter, 32), 0);
  EXPECT_EQ(set(filter, 32, -7), 1);
  EXPECT_EQ(set(filter, 32, 0), 1);
  EXPECT_EQ(set(filter, 32, 0), 0);
  for (const LONG outside : {-1L, 33L, 2147483647L}) {
    EXPECT_EQ(set(filter, outside), -1);
    EXPECT_EQ(test(filter, outside), 0);
  }
}

TEST_F(BloomFilter, Walks_leave_out_the_bit_given_and_end_in_minus_1) {
  auto filter = with(100, {0, 31, 32, 99});
  EXPECT_EQ(bits(filter), (List{0, 31, 32, 99}));
  EXPECT_EQ(step(filter, &_QvtBloomFilter::PrevBit, 100), 99);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::PrevBit, 99), 32);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::PrevBit, 0), -1);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::NextZeroBit, -1), 1);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::NextZeroBit, 30), 33);
}

TEST_F(BloomFilter, Tids_are_bit_numbers_plus_1_within_the_filter) {
  auto filter = with(10, {2, 5, 9});
  EXPECT_EQ(step(filter, &_QvtBloomFilter::BitToTid, 9), 10);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::BitToTid, 10), 0);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::BitToTid, -1), 0);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::TidToBit, 1), 0);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::TidToBit, 0), -1);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::TidToBit, 11), -1);
  const auto skip = [&](LONG tid, LONG steps) {
    LONG result = -99;
    EXPECT_EQ(filter->TidSkip(&tid, &steps, &result), S_OK);
    return result;
  };
  EXPECT_EQ(skip(3, 0), 3);
  EXPECT_EQ(skip(4, 0), 0);
  EXPECT_EQ(skip(3, 2), 10);
  EXPECT_EQ(skip(3, 3), 0);
  EXPECT_EQ(skip(10, -2), 3);
}

TEST_F(BloomFilter, Fill_sets_exactly_the_first_records) {
  auto filter = with(40, {39});
  VARIANT_BOOL failed = VARIANT_TRUE;
  LONG records = 33;
  EXPECT_EQ(filter->Fill(&records, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(count(filter), 33);
  EXPECT_EQ(test(filter, 39), 0);
  for (const LONG bad : {-1L, 41L}) {
    records = bad;
    EXPECT_EQ(filter->Fill(&records, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_TRUE);
    EXPECT_EQ(count(filter), 33);
  }
}

TEST_F(BloomFilter, Resize_keeps_the_bits_that_fit) {
  auto filter = with(100, {3, 50, 99});
  VARIANT_BOOL failed = VARIANT_TRUE;
  LONG size = 51;
  EXPECT_EQ(filter->Resize(&size, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(bits(filter), (List{3, 50}));
  size = 200;
  EXPECT_EQ(filter->Resize(&size, &failed), S_OK);
  EXPECT_EQ(bits(filter), (List{3, 50}));
  EXPECT_EQ(record(filter).Bits, 200);
  size = -1;
  EXPECT_EQ(filter->Resize(&size, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
}

TEST_F(BloomFilter, Boolean_operations_change_this_filter_only) {
  const auto check = [&](HRESULT (STDMETHODCALLTYPE _QvtBloomFilter::*operation)(_QvtBloomFilter**),
                         const List& expected) {
    auto filter = with(70, {1, 2, 65});
    auto second = with(70, {2, 3, 65, 69});
    EXPECT_EQ((filter.get()->*operation)(second.variable()), S_OK);
    EXPECT_EQ(bits(filter), expected);
    EXPECT_EQ(bits(second), (List{2, 3, 65, 69}));
  };
  check(&_QvtBloomFilter::BoolAnd, {2, 65});
  check(&_QvtBloomFilter::BoolOr, {1, 2, 3, 65, 69});
  check(&_QvtBloomFilter::BoolXor, {1, 3, 69});
  check(&_QvtBloomFilter::BoolExcl, {1});
}

TEST_F(BloomFilter, A_filter_may_be_its_own_second) {
  auto filter = with(10, {4});
  EXPECT_EQ(filter->BoolXor(filter.variable()), S_OK);
  EXPECT_EQ(count(filter), 0);
}

TEST_F(BloomFilter, Different_extensions_raise_20000_from_BoolAnd_in_all_four) {
  for (const auto operation : {&_QvtBloomFilter::BoolAnd, &_QvtBloomFilter::BoolOr,
                               &_QvtBloomFilter::BoolXor, &_QvtBloomFilter::BoolExcl}) {
    auto filter = with(10, {4});
    auto second = make(11);
    EXPECT_EQ((filter.get()->*operation)(second.variable()), error_result(20000));
    Pointer<IErrorInfo> info;
    GetErrorInfo(0, info.receive());
    ASSERT_TRUE(info);
    String source;
    String description;
    info->GetSource(&source);
    info->GetDescription(&description);
    EXPECT_EQ(source.view(), L"BoolAnd");
    EXPECT_EQ(description.view(), L"Filtri con diversa estensione.");
    EXPECT_EQ(bits(filter), (List{4}));
  }
}

TEST_F(BloomFilter, Nothing_as_second_filter_is_error_91) {
  auto filter = make(10);
  _QvtBloomFilter* nothing = nullptr;
  EXPECT_EQ(filter->BoolOr(&nothing), error_result(91));
}

TEST_F(BloomFilter, Equal_Bits_and_different_Words_pass_the_check) {
  auto filter = with(10, {4});
  auto second = with(10, {5});
  EXPECT_EQ(second->put_Words(77), S_OK);
  EXPECT_EQ(filter->BoolOr(second.variable()), S_OK);
  EXPECT_EQ(bits(filter), (List{4, 5}));
}

TEST_F(BloomFilter, TopBits_sums_up_words_without_an_extension_check) {
  auto filter = with(100, {0, 40});
  auto summary = with(4, {3});
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(filter->TopBits(summary.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(bits(summary), (List{0, 1}));
  auto small = with(3, {2});
  EXPECT_EQ(filter->TopBits(small.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_EQ(bits(small), (List{2}));
}

TEST_F(BloomFilter, BoolNot_leaves_no_bits_past_the_extension) {
  auto filter = with(33, {0});
  EXPECT_EQ(filter->BoolNot(), S_OK);
  EXPECT_EQ(count(filter), 32);
  EXPECT_EQ(step(filter, &_QvtBloomFilter::PrevBit, 33), 32);
}

TEST_F(BloomFilter, Let_Bits_changes_the_field_and_nothing_else) {
  auto filter = with(100, {90});
  EXPECT_EQ(filter->put_Bits(50), S_OK);
  EXPECT_EQ(record(filter).Bits, 50);
  EXPECT_EQ(count(filter), 1);
}

TEST_F(BloomFilter, Copied_records_share_a_map_until_one_owner_frees_it) {
  auto first = with(10, {1});
  auto second = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  BFILTER all = record(first);
  EXPECT_EQ(second->put_Struct(&all), S_OK);
  set(second, 2);
  EXPECT_EQ(bits(first), (List{1, 2}));
  EXPECT_EQ(second->Free(), S_OK);
  EXPECT_EQ(count(first), 0);
  EXPECT_EQ(set(first, 1), -1);
  EXPECT_EQ(first->Free(), S_OK);
  EXPECT_EQ(first->Free(), S_OK);
}

TEST_F(BloomFilter, IndexRead_sets_a_block_of_tids_and_passes_over_others) {
  auto filter = make(10);
  std::array<LONG, 5> block{1, 10, 11, 0, -5};
  LONG count_of_words = 5;
  EXPECT_EQ(filter->IndexRead(block.data(), &count_of_words), S_OK);
  EXPECT_EQ(bits(filter), (List{0, 9}));
}

TEST_F(BloomFilter, IndexRead_beyond_readable_memory_stops_there) {
  auto filter = make(10);
  SYSTEM_INFO system{};
  GetSystemInfo(&system);
  auto* page = static_cast<LONG*>(
      VirtualAlloc(nullptr, system.dwPageSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  LONG* last = page + system.dwPageSize / sizeof(LONG) - 1;
  *last = 7;
  LONG count_of_words = 1000000;
  EXPECT_EQ(filter->IndexRead(last, &count_of_words), S_OK);
  VirtualFree(page, 0, MEM_RELEASE);
}

TEST_F(BloomFilter, IndexReadStr_takes_as_many_whole_words_as_the_text_holds) {
  auto filter = make(300);
  String block(std::wstring_view(L"\x02\0\0\0\x05\x01\0\0\x03\0\0", 11));
  LONG count_of_words = 100;
  EXPECT_EQ(filter->IndexReadStr(&block, &count_of_words), S_OK);
  EXPECT_EQ(bits(filter), (List{1, 260}));
  count_of_words = -1;
  EXPECT_EQ(filter->IndexReadStr(&block, &count_of_words), S_OK);
}

#ifndef _WIN64
TEST_F(BloomFilter, A_record_with_an_address_alone_describes_a_map_of_the_application) {
  auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  std::array<std::uint32_t, 2> words{0x80000001U, 1U};
  BFILTER own{40, 2, 0, static_cast<LONG>(reinterpret_cast<std::uintptr_t>(words.data()))};
  EXPECT_EQ(filter->put_Struct(&own), S_OK);
  EXPECT_EQ(bits(filter), (List{0, 31, 32}));
  set(filter, 1);
  EXPECT_EQ(words[0], 0x80000003U);
  own.Filter = 8;  // nowhere
  EXPECT_EQ(filter->put_Struct(&own), S_OK);
  EXPECT_EQ(count(filter), 0);
}
#endif

TEST_F(BloomFilter, Save_and_Load_restore_dense_and_sparse_filters) {
  const TempFolder folder;
  for (const LONG size : {0, 1, 31, 32, 33, 100000}) {
    auto filter = make(size);
    if (size > 0) set(filter, size - 1);
    String name(folder.file(L"one.flt"));
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(filter->Save(&name, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    auto loaded = with(5, {1});
    EXPECT_EQ(loaded->Load(&name, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    EXPECT_EQ(record(loaded).Bits, size);
    EXPECT_EQ(bits(loaded), bits(filter));
  }
}

TEST_F(BloomFilter, Load_of_a_missing_file_records_error_minus_1) {
  const TempFolder folder;
  const auto global = create_global();
  auto filter = with(5, {1});
  String name(folder.file(L"missing.flt"));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(filter->Load(&name, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  LONG number = 0;
  String source;
  global->Error_Number(&number);
  global->Error_Source(&source);
  EXPECT_EQ(number, -1);
  EXPECT_EQ(source.view(), L"QvtBloomFilter.Load");
  EXPECT_EQ(bits(filter), (List{1}));
  global->Reset_Error();
}

TEST_F(BloomFilter, Load_of_a_damaged_image_fails_without_a_number) {
  const TempFolder folder;
  const auto global = create_global();
  folder.write(L"bad.flt", "this is no filter image at all, but long enough");
  auto filter = with(5, {1});
  String name(folder.file(L"bad.flt"));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(filter->Load(&name, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  LONG number = 99;
  String source;
  global->Error_Number(&number);
  global->Error_Source(&source);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(source.view(), L"QvtBloomFilter.Load");
  EXPECT_EQ(bits(filter), (List{1}));
  global->Reset_Error();
}

TEST_F(BloomFilter, Save_of_a_filter_without_a_map_records_20000) {
  const TempFolder folder;
  const auto global = create_global();
  auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  String name(folder.file(L"none.flt"));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(filter->Save(&name, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  LONG number = 0;
  String description;
  global->Error_Number(&number);
  global->Error_Description(&description);
  EXPECT_EQ(number, 20000);
  EXPECT_EQ(description.view(), L"Errore durante il salvataggio di in filtro.");
  global->Reset_Error();
}

}  // namespace
}  // namespace qv::tests
