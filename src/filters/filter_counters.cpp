#include "filters/filter_counters.h"

#include "automation/bytes.h"
#include "constants.h"
#include "filters/bit_map_store.h"
#include "filters/filter_records.h"
#include "frame/error_state.h"
#include "native/zlog/counters.h"

namespace qv::filters {
namespace {

using namespace native::zlog;

[[noreturn]] void raise_bloom_error() {
  raise({.number = BloomError_Const::ERR_BLOOMSAVE, .description = L"Bloom error"});
}

}  // namespace

Boolean Bloom_Sum(const Object<_QvtBloomFilter>& Filter, const Array<Integer>& Counter) {
  return frame::handled(L"KwRtLibMod.Bloom_Sum", frame::kChain, True, [&] {
    const BFILTER record = record_of(Filter);
    const auto counters = Counter.lock();
    if (!add_to_counters(bits_of(record), counters.span())) raise_bloom_error();
    set_record(Filter, record);
    return False;
  });
}

Integer Bloom_SumMax(const Array<Integer>& Counter, const Object<_QvtBloomFilter>& Filter) {
  return frame::handled(L"KwRtLibMod.Bloom_SumMax", frame::kChain, Integer{-1}, [&] {
    const BFILTER record = record_of(Filter);
    const auto counters = Counter.lock();
    const Integer greatest = keep_greatest(bits_of(record), counters.span());
    set_record(Filter, record);
    return greatest;
  });
}

Integer Bloom_Sum_Ex(const Object<_QvtBloomFilter>& Filter, Text& Counters) {
  return frame::handled(L"KwRtLibMod.Bloom_Sum_Ex", frame::kChain, Integer{0}, [&] {
    const BFILTER record = record_of(Filter);
    auto bytes = bytes_of_text(Counters);
    const bool done = add_to_counters(bits_of(record), std::span<std::uint8_t>(bytes));
    put_bytes(bytes, Counters.data());
    return static_cast<Integer>(done ? 0 : -1);
  });
}

Integer Bloom_Merge(const Object<_QvtBloomFilter>& Filter, const Object<_QvtBloomFilter>& Counter) {
  const BFILTER filter = record_of(Filter);
  const BFILTER counter = record_of(Counter);
  if (!merge_into_planes(bits_of(filter), bits_of(counter))) return -1;
  set_record(Filter, filter);
  set_record(Counter, counter);
  return 0;
}

Integer Bloom_Result(const Object<_QvtBloomFilter>& Filter,
                     const Object<_QvtBloomFilter>& Counter) {
  const BFILTER filter = record_of(Filter);
  const BFILTER counter = record_of(Counter);
  if (!keep_greatest_of_planes(bits_of(filter), bits_of(counter))) return -1;
  set_record(Filter, filter);
  set_record(Counter, counter);
  return 0;
}

}  // namespace qv::filters
