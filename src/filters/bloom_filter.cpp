#include "filters/bloom_filter.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "automation/bytes.h"
#include "constants.h"
#include "files/file_handles.h"
#include "filters/bit_map_store.h"
#include "filters/filter_records.h"
#include "filters/image_files.h"
#include "frame/error_state.h"
#include "native/zlog/bit_algebra.h"
#include "native/zlog/bit_walk.h"
#include "native/zlog/records.h"
#include "runtime/err.h"

namespace qv::filters {
namespace {

using namespace native::zlog;
using namespace File_Open_Const;
using files::system_handle;

// Sets of one extension only can be combined. The Source names the first operation written, for
// all of them: applications know it.
BitSpan suiting_bits(const BFILTER& record, const Object<_QvtBloomFilter>& second) {
  const BFILTER other = record_of(second);
  if (other.Bits != record.Bits) {
    raise({.number = BloomError_Const::ERR_BLOOMSAVE,
           .source = L"BoolAnd",
           .description = L"Filtri con diversa estensione."});
  }
  return bits_of(other);
}

// Opens the file, lets `transfer` work on the handle, and closes it whatever happens.
template <class Transfer>
Boolean with_file(Text& name, Long open_flags, Long sharing, const wchar_t* source,
                  Transfer&& transfer) {
  Long attributes = 0;
  Long handle = 0;
  const Boolean failed = frame::handled(source, frame::kTakeError, True, [&] {
    // The failed open stands in the error state, and is replaced by this number there.
    if (files::File_Open32(name, open_flags, sharing, attributes, handle)) raise(-1);
    return Boolean(transfer(system_handle(handle)));
  });
  files::File_Close32(handle);
  return failed;
}

}  // namespace

Boolean QvtBloomFilter::Init(Long Bits) {
  try {
    auto map = BitMap::make(Bits);
    if (!map) return True;
    const BFILTER before = record_;
    adopt(record_, std::move(*map));
    release(before);
    return False;
  } catch (const std::bad_alloc&) {
    return True;
  }
}

Boolean QvtBloomFilter::Load(Text& FileName) {
  constexpr const wchar_t* kSource = L"QvtBloomFilter.Load";
  return with_file(FileName, O_RDONLY + O_BINARY, SH_DENYWR, kSource, [&](HANDLE file) {
    auto map = load_image(file);
    capture_last_dll_error();
    if (!map) {
      // An image that can't be read has no error number of its own.
      frame::Set_Error({.Source = kSource});
      return true;
    }
    const BFILTER before = record_;
    adopt(record_, std::move(*map));
    release(before);
    return false;
  });
}

Boolean QvtBloomFilter::Save(Text& FileName) {
  return with_file(
      FileName, O_RDWR + O_CREAT + O_TRUNC + O_BINARY, SH_DENYRW, L"QvtBloomFilter.Save",
      [&](HANDLE file) {
        if (!has_bit_map(record_) || !save_image(file, bits_of(record_))) {
          raise({.number = BloomError_Const::ERR_BLOOMSAVE, .description = kSaveFailed});
        }
        return false;
      });
}

void QvtBloomFilter::Free() noexcept {
  release(record_);
  record_ = BFILTER{};
}

Long QvtBloomFilter::Count() const {
  const ConstBitSpan bits = bits_of(record_);
  return static_cast<Long>(count(bits.used()));
}

Boolean QvtBloomFilter::Fill(Long TotRecs) {
  return Boolean(!has_bit_map(record_) || !fill(bits_of(record_), TotRecs));
}

Long QvtBloomFilter::NextBit(Long BitNo) const { return next_set(bits_of(record_), BitNo); }
Long QvtBloomFilter::NextZeroBit(Long BitNo) const { return next_clear(bits_of(record_), BitNo); }
Long QvtBloomFilter::PrevBit(Long BitNo) const { return prev_set(bits_of(record_), BitNo); }

Boolean QvtBloomFilter::Resize(Long Bits) {
  try {
    return Boolean(!resize(record_, Bits));
  } catch (const std::bad_alloc&) {
    return True;
  }
}

Integer QvtBloomFilter::BitSet(Long BitNo, Integer Value) {
  return static_cast<Integer>(set_bit(bits_of(record_), BitNo, Value != 0));
}

Integer QvtBloomFilter::BitTest(Long BitNo) const {
  return static_cast<Integer>(test_bit(bits_of(record_), BitNo));
}

void QvtBloomFilter::IndexReadStr(const Text& Block, Long DWords) {
  const auto wanted = static_cast<std::uint64_t>(std::max<Long>(DWords, 0)) * sizeof(Long);
  const auto bytes = bytes_of_text(Block.view().substr(
      0, static_cast<std::size_t>(std::min<std::uint64_t>(wanted, Block.size()))));
  add_index_block(bits_of(record_), bytes);
}

void QvtBloomFilter::IndexRead(const Long& Block, Long DWords) {
  // The caller answers for what lies behind its variable, but not with its life: memory is read by
  // a service that can fail.
  std::array<std::uint8_t, 4096> piece;
  const auto* at = reinterpret_cast<const std::uint8_t*>(&Block);
  auto left = static_cast<std::uint64_t>(std::max<Long>(DWords, 0)) * sizeof(Long);
  while (left != 0) {
    const auto wanted = static_cast<SIZE_T>(std::min<std::uint64_t>(left, piece.size()));
    SIZE_T read = 0;
    ReadProcessMemory(GetCurrentProcess(), at, piece.data(), wanted, &read);
    add_index_block(bits_of(record_), {piece.data(), read});
    if (read < wanted) return;
    at += wanted;
    left -= wanted;
  }
}

Long QvtBloomFilter::TidSkip(Long TidNo, Long Steps) const {
  return skip_records(bits_of(record_), TidNo, Steps);
}

Long QvtBloomFilter::TidToBit(Long TidNo) const {
  return tid_to_bit(TidNo, bits_of(record_).limit());
}

Long QvtBloomFilter::BitToTid(Long BitNo) const {
  return bit_to_tid(BitNo, bits_of(record_).limit());
}

void QvtBloomFilter::BoolExcl(const Object<_QvtBloomFilter>& SecFilter) {
  const auto source = suiting_bits(record_, SecFilter);
  exclude(bits_of(record_).used(), source.used());
}

void QvtBloomFilter::BoolXor(const Object<_QvtBloomFilter>& SecFilter) {
  const auto source = suiting_bits(record_, SecFilter);
  xor_with(bits_of(record_).used(), source.used());
  trim(bits_of(record_));
}

void QvtBloomFilter::BoolOr(const Object<_QvtBloomFilter>& SecFilter) {
  const auto source = suiting_bits(record_, SecFilter);
  or_with(bits_of(record_).used(), source.used());
  trim(bits_of(record_));
}

Boolean QvtBloomFilter::TopBits(const Object<_QvtBloomFilter>& TopFlt) {
  const BFILTER summary = record_of(TopFlt);
  const ConstBitSpan bits = bits_of(record_);
  return Boolean(!summarise(bits.used(), bits_of(summary)));
}

void QvtBloomFilter::BoolAnd(const Object<_QvtBloomFilter>& SecFilter) {
  const auto source = suiting_bits(record_, SecFilter);
  and_with(bits_of(record_).used(), source.used());
}

void QvtBloomFilter::BoolNot() { invert(bits_of(record_)); }

}  // namespace qv::filters
