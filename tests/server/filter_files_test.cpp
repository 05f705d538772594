// Filters to files, buffers and counters, early bound.
#include "server/client.h"
#include "server/temp_folder.h"

#include <string>
#include <vector>

namespace qv::tests {
namespace {

class FilterFiles : public testing::Test {
 protected:
  using Filter = Pointer<_QvtBloomFilter>;
  using List = std::vector<LONG>;

  static Filter with(LONG size, std::initializer_list<LONG> set_bits) {
    auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(filter->Init(&size, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    for (LONG bit : set_bits) {
      SHORT one = 1;
      SHORT old = 0;
      filter->BitSet(&bit, &one, &old);
    }
    return filter;
  }
  static List bits(const Filter& filter) {
    List result;
    LONG bit = -1;
    while (SUCCEEDED(filter->NextBit(&bit, &bit)) && bit >= 0) result.push_back(bit);
    return result;
  }
  static BFILTER record(const Filter& filter) {
    BFILTER all{};
    filter->get_Struct(&all);
    return all;
  }
  void expect_record(LONG number, std::wstring_view source) {
    LONG found = -99;
    String text;
    global->Error_Number(&found);
    global->Error_Source(&text);
    EXPECT_EQ(found, number);
    EXPECT_EQ(text.view(), source);
    global->Reset_Error();
  }
  LONG open(const TempFolder& folder, const wchar_t* name, bool write) {
    String path(folder.file(name));
    VARIANT_BOOL access = write ? VARIANT_TRUE : VARIANT_FALSE;
    LONG handle = 0;
    EXPECT_EQ(global->Bloom_Open(&path, &access, &handle), S_OK);
    return handle;
  }
  void close(LONG handle) {
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(global->Bloom_Close(&handle, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
  }
  SHORT load(Filter& filter, LONG handle) {
    SHORT result = 99;
    EXPECT_EQ(global->Bloom_Load(filter.variable(), &handle, &result), S_OK);
    return result;
  }
  SHORT save(Filter& filter, LONG handle) {
    SHORT result = 99;
    EXPECT_EQ(global->Bloom_Save(filter.variable(), &handle, &result), S_OK);
    return result;
  }

  Pointer<_KwRtLib> global = create_global();
};

TEST_F(FilterFiles, Images_follow_each_other_on_one_handle) {
  const TempFolder folder;
  auto first = with(100, {5, 99});
  auto second = with(7, {0, 6});
  LONG handle = open(folder, L"two.flt", true);
  EXPECT_EQ(save(first, handle), 0);
  EXPECT_EQ(save(second, handle), 0);
  close(handle);
  handle = open(folder, L"two.flt", false);
  auto one = with(1, {});
  auto two = with(1, {});
  auto three = with(3, {1});
  EXPECT_EQ(load(one, handle), 0);
  EXPECT_EQ(load(two, handle), 0);
  EXPECT_EQ(load(three, handle), -1);
  close(handle);
  EXPECT_EQ(bits(one), bits(first));
  EXPECT_EQ(bits(two), bits(second));
  EXPECT_EQ(bits(three), (List{1}));
  expect_record(0, L"");
}

TEST_F(FilterFiles, Bloom_Open_of_a_missing_file_for_reading_gives_minus_1) {
  const TempFolder folder;
  EXPECT_EQ(open(folder, L"missing.flt", false), -1);
}

TEST_F(FilterFiles, Bloom_Close_of_no_handle_is_True) {
  LONG handle = -1;
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Bloom_Close(&handle, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
}

TEST_F(FilterFiles, Bloom_Write_and_Bloom_Read_move_bytes_within_the_buffer) {
  const TempFolder folder;
  LONG handle = open(folder, L"raw.bin", true);
  String buffer(std::wstring_view(L"ab\0\x00FFz", 5));
  LONG size = 4;
  LONG done = 0;
  EXPECT_EQ(global->Bloom_Write(&handle, &buffer, &size, &done), S_OK);
  EXPECT_EQ(done, 4);
  close(handle);
  EXPECT_EQ(folder.read(L"raw.bin"), std::string("ab\0\xFF", 4));
  handle = open(folder, L"raw.bin", false);
  String target(L"......");
  size = 100;
  EXPECT_EQ(global->Bloom_Read(&handle, &target, &size, &done), S_OK);
  EXPECT_EQ(done, 4);
  EXPECT_EQ(target.view(), std::wstring_view(L"ab\0\x00FF..", 6));
  size = -1;
  EXPECT_EQ(global->Bloom_Read(&handle, &target, &size, &done), S_OK);
  EXPECT_EQ(done, -1);
  close(handle);
}

TEST_F(FilterFiles, The_older_layout_is_a_number_and_raw_bytes) {
  const TempFolder folder;
  folder.write(L"old.flt", std::string_view("\x0A\0\0\0\x05\x02", 6));
  LONG handle = open(folder, L"old.flt", false);
  auto filter = with(1, {});
  SHORT result = 99;
  EXPECT_EQ(global->Bloom_LoadOld(filter.variable(), &handle, &result), S_OK);
  close(handle);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(record(filter).Bits, 10);
  EXPECT_EQ(bits(filter), (List{0, 2, 9}));
}

TEST_F(FilterFiles, An_older_image_that_promises_more_than_the_file_holds_fails) {
  const TempFolder folder;
  folder.write(L"old.flt", std::string_view("\xFF\xFF\xFF\x7F\x05", 5));
  LONG handle = open(folder, L"old.flt", false);
  auto filter = with(4, {2});
  SHORT result = 99;
  EXPECT_EQ(global->Bloom_LoadOld(filter.variable(), &handle, &result), S_OK);
  close(handle);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(bits(filter), (List{2}));
}

TEST_F(FilterFiles, Every_cut_image_fails_and_leaves_the_filter) {
  const TempFolder folder;
  auto filter = with(40, {1, 33});
  LONG handle = open(folder, L"whole.flt", true);
  ASSERT_EQ(save(filter, handle), 0);
  close(handle);
  const std::string image = folder.read(L"whole.flt");
  for (std::size_t length = 0; length < image.size(); ++length) {
    folder.write(L"cut.flt", std::string_view(image).substr(0, length));
    handle = open(folder, L"cut.flt", false);
    auto target = with(5, {4});
    EXPECT_EQ(load(target, handle), -1);
    EXPECT_EQ(bits(target), (List{4}));
    close(handle);
  }
}

TEST_F(FilterFiles, A_pair_is_saved_and_loaded) {
  const TempFolder folder;
  auto first = with(10, {1});
  auto second = with(20, {19});
  String name(folder.file(L"pair.flt"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->BloomSaveExt(&name, first.variable(), second.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  auto one = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  auto two = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  EXPECT_EQ(global->BloomLoadExt(&name, one.variable(), two.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(bits(one), (List{1}));
  EXPECT_EQ(bits(two), (List{19}));
}

TEST_F(FilterFiles, The_same_filter_twice_is_written_twice) {
  const TempFolder folder;
  auto filter = with(10, {1});
  String name(folder.file(L"pair.flt"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->BloomSaveExt(&name, filter.variable(), filter.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  const std::string bytes = folder.read(L"pair.flt");
  EXPECT_EQ(bytes.substr(0, bytes.size() / 2), bytes.substr(bytes.size() / 2));
}

TEST_F(FilterFiles, A_pair_file_with_one_image_fails_with_20001_and_changes_neither) {
  const TempFolder folder;
  auto filter = with(10, {1});
  LONG handle = open(folder, L"one.flt", true);
  ASSERT_EQ(save(filter, handle), 0);
  close(handle);
  auto one = with(3, {0});
  auto two = with(3, {2});
  String name(folder.file(L"one.flt"));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->BloomLoadExt(&name, one.variable(), two.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  String description;
  global->Error_Description(&description);
  EXPECT_EQ(description.view(), L"Errore durante il caricamento di in filtro.");
  expect_record(20001, L"KwRtLibMod.BloomLoadExt");
  EXPECT_EQ(bits(one), (List{0}));
  EXPECT_EQ(bits(two), (List{2}));
}

TEST_F(FilterFiles, BloomLoadExt_of_a_missing_file_records_minus_1) {
  const TempFolder folder;
  auto one = with(3, {0});
  String name(folder.file(L"missing.flt"));
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->BloomLoadExt(&name, one.variable(), one.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(-1, L"KwRtLibMod.BloomLoadExt");
}

TEST_F(FilterFiles, A_failed_save_of_a_pair_only_grows_the_chain) {
  const TempFolder folder;
  auto one = with(3, {0});
  auto none = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  const std::wstring path = folder.file(L"half.flt");
  String name(path);
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->BloomSaveExt(&name, one.variable(), none.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  EXPECT_TRUE(folder.exists(L"half.flt"));
  expect_record(0, L" < QvRtLibOle.KwRtLibMod.BloomSaveExt, 0 (" + path + L")");
}

TEST_F(FilterFiles, Raw_images_go_to_arrays_and_texts_and_back) {
  auto filter = with(9, {0, 8});
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyBufferSize(filter.variable(), &size), S_OK);
  EXPECT_EQ(size, 2);
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(global->Bloom_CopyTo(filter.variable(), &array, &size), S_OK);
  EXPECT_EQ(size, 2);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->rgsabound[0].cElements, 2U);
  EXPECT_EQ(static_cast<BYTE*>(array->pvData)[0], 1);
  EXPECT_EQ(static_cast<BYTE*>(array->pvData)[1], 1);
  auto made = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  EXPECT_EQ(global->Bloom_CopyFrom(made.variable(), &array, &size), S_OK);
  EXPECT_EQ(size, 2);
  EXPECT_EQ(record(made).Bits, 16);
  EXPECT_EQ(bits(made), (List{0, 8}));
  SafeArrayDestroy(array);
  String text;
  EXPECT_EQ(global->Bloom_CopyToString(filter.variable(), &text, &size), S_OK);
  EXPECT_EQ(text.view(), L"\x01\x01");
}

TEST_F(FilterFiles, A_filter_without_bits_still_gets_a_buffer_of_one_byte) {
  auto filter = with(0, {});
  LONG size = 99;
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(global->Bloom_CopyTo(filter.variable(), &array, &size), S_OK);
  EXPECT_EQ(size, 0);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->rgsabound[0].cElements, 1U);
  SafeArrayDestroy(array);
}

TEST_F(FilterFiles, A_freed_map_gives_a_negative_size_and_leaves_the_buffer) {
  auto filter = with(9, {0});
  auto copy = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  BFILTER all = record(filter);
  copy->put_Struct(&all);
  filter->Free();
  String text(L"kept");
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyToString(copy.variable(), &text, &size), S_OK);
  EXPECT_EQ(size, -1);
  EXPECT_EQ(text.view(), L"kept");
}

TEST_F(FilterFiles, CopyFromString_takes_what_the_extension_needs_and_keeps_the_extension) {
  auto filter = with(9, {3});
  String longer(L"\x01\xFF\xFF");
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyFromString(filter.variable(), &longer, &size), S_OK);
  EXPECT_EQ(size, 2);
  EXPECT_EQ(record(filter).Bits, 9);
  EXPECT_EQ(bits(filter), (List{0, 8}));
  String shorter(L"\x02");
  EXPECT_EQ(global->Bloom_CopyFromString(filter.variable(), &shorter, &size), S_OK);
  EXPECT_EQ(bits(filter), (List{1}));
}

TEST_F(FilterFiles, CopyFromString_raises_20000_when_bits_and_words_differ) {
  auto filter = with(9, {3});
  EXPECT_EQ(filter->put_Words(5), S_OK);
  String text(L"\x01\x01");
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyFromString(filter.variable(), &text, &size), error_result(20000));
  EXPECT_EQ(error_description(), L"Filtro incompatibile con la richiesta.");
  EXPECT_EQ(bits(filter), (List{3}));
}

TEST_F(FilterFiles, CopyFromString_into_a_negative_extension_is_minus_1) {
  auto filter = create<_QvtBloomFilter>(CLSID_QvtBloomFilter);
  EXPECT_EQ(filter->put_Bits(-5), S_OK);
  String text(L"\x01");
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyFromString(filter.variable(), &text, &size), S_OK);
  EXPECT_EQ(size, -1);
  EXPECT_EQ(record(filter).Bits, -5);
  EXPECT_EQ(record(filter).hFilter, 0);
}

TEST_F(FilterFiles, CopyFromString_gives_the_buffer_back_as_the_code_page_has_it) {
  auto filter = with(24, {});
  String text(
      L"\x4E2D\xE8"
      L"A");
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyFromString(filter.variable(), &text, &size), S_OK);
  EXPECT_EQ(size, 3);
  EXPECT_EQ(text.view(),
            L"?\xE8"
            L"A");
}

TEST_F(FilterFiles, A_pair_that_cannot_be_opened_for_writing_grows_the_opener_s_chain) {
  const TempFolder folder;
  auto filter = with(3, {0});
  const std::wstring path = folder.file(L"missing\\pair.flt");
  String name(path);
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->BloomSaveExt(&name, filter.variable(), filter.variable(), &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(20000,
                L"KwRtLibMod.File_Open32 < QvRtLibOle.KwRtLibMod.BloomSaveExt, 0 (" + path + L")");
}

TEST_F(FilterFiles, CopyFrom_an_unallocated_array_is_error_9) {
  auto filter = with(9, {3});
  SAFEARRAY* array = nullptr;
  LONG size = 0;
  EXPECT_EQ(global->Bloom_CopyFrom(filter.variable(), &array, &size), error_result(9));
}

class FilterCounters : public FilterFiles {
 protected:
  static SAFEARRAY* counters(LONG lower, std::initializer_list<SHORT> values) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), lower};
    SAFEARRAY* array = SafeArrayCreate(VT_I2, 1, &bound);
    std::copy(values.begin(), values.end(), static_cast<SHORT*>(array->pvData));
    return array;
  }
  static std::vector<SHORT> values(SAFEARRAY* array) {
    const auto* first = static_cast<SHORT*>(array->pvData);
    return {first, first + array->rgsabound[0].cElements};
  }
};

TEST_F(FilterCounters, Bloom_Sum_adds_1_for_each_record_whatever_the_lower_bound) {
  auto filter = with(3, {0, 2});
  SAFEARRAY* array = counters(1, {5, 6, 32767});
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(global->Bloom_Sum(filter.variable(), &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(values(array), (std::vector<SHORT>{6, 6, 32767}));
  SafeArrayDestroy(array);
}

TEST_F(FilterCounters, Bloom_Sum_with_too_few_counters_grows_the_chain_only) {
  auto filter = with(3, {0, 2});
  SAFEARRAY* array = counters(0, {5, 6});
  VARIANT_BOOL failed = VARIANT_FALSE;
  EXPECT_EQ(global->Bloom_Sum(filter.variable(), &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(0, L" < KwRtLibMod.Bloom_Sum");
  SafeArrayDestroy(array);
}

TEST_F(FilterCounters, Bloom_SumMax_keeps_the_records_with_the_greatest_counter) {
  auto filter = with(4, {1});
  SAFEARRAY* array = counters(0, {2, 7, 0, 7});
  SHORT greatest = 0;
  EXPECT_EQ(global->Bloom_SumMax(&array, filter.variable(), &greatest), S_OK);
  EXPECT_EQ(greatest, 7);
  EXPECT_EQ(bits(filter), (List{1, 3}));
  SafeArrayDestroy(array);
  array = counters(3, {4});
  EXPECT_EQ(global->Bloom_SumMax(&array, filter.variable(), &greatest), S_OK);
  EXPECT_EQ(greatest, 4);
  EXPECT_EQ(bits(filter), (List{0}));
  SafeArrayDestroy(array);
}

TEST_F(FilterCounters, Unallocated_counters_land_in_the_handler) {
  auto filter = with(4, {1});
  SAFEARRAY* array = nullptr;
  VARIANT_BOOL failed = VARIANT_FALSE;
  SHORT greatest = 0;
  EXPECT_EQ(global->Bloom_Sum(filter.variable(), &array, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_TRUE);
  expect_record(0, L" < KwRtLibMod.Bloom_Sum");
  EXPECT_EQ(global->Bloom_SumMax(&array, filter.variable(), &greatest), S_OK);
  EXPECT_EQ(greatest, -1);
  expect_record(0, L" < KwRtLibMod.Bloom_SumMax");
}

TEST_F(FilterCounters, Bloom_Sum_Ex_counts_in_a_text_of_two_bytes_a_record) {
  auto filter = with(3, {0, 2});
  String text(std::wstring_view(L"\x01\0\0\0\xFF\0", 6));
  SHORT result = 99;
  EXPECT_EQ(global->Bloom_Sum_Ex(filter.variable(), &text, &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(text.view(), std::wstring_view(L"\x02\0\0\0\0\x01", 6));
  String shorter(L"abcd");
  EXPECT_EQ(global->Bloom_Sum_Ex(filter.variable(), &shorter, &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(shorter.view(), L"abcd");
}

TEST_F(FilterCounters, Bloom_Merge_and_Bloom_Result_rank_records) {
  auto counter = with(64, {});  // two planes of 32 bits
  SHORT result = 99;
  for (Filter filter : {with(32, {1, 5}), with(32, {5, 9}), with(32, {5})}) {
    EXPECT_EQ(global->Bloom_Merge(filter.variable(), counter.variable(), &result), S_OK);
    EXPECT_EQ(result, 0);
  }
  auto best = with(32, {});
  EXPECT_EQ(global->Bloom_Result(best.variable(), counter.variable(), &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(bits(best), (List{5}));
}

TEST_F(FilterCounters, A_counter_without_a_plane_is_minus_1_and_nothing_changes) {
  auto counter = with(10, {3});
  auto filter = with(32, {1});
  SHORT result = 99;
  EXPECT_EQ(global->Bloom_Merge(filter.variable(), counter.variable(), &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(global->Bloom_Result(filter.variable(), counter.variable(), &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(bits(filter), (List{1}));
  EXPECT_EQ(bits(counter), (List{3}));
  expect_record(0, L"");
}

}  // namespace
}  // namespace qv::tests
