// The filter class: a set of records, one bit each. Bits count from 0, records (Tid) from 1.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::filters {

class QvtBloomFilter {
 public:
  QvtBloomFilter() = default;
  QvtBloomFilter(const QvtBloomFilter&) = delete;
  QvtBloomFilter& operator=(const QvtBloomFilter&) = delete;
  ~QvtBloomFilter() { Free(); }

  BFILTER get_Struct() const { return record_; }
  // What the record held before is not freed.
  void put_Struct(const BFILTER& Value) { record_ = Value; }
  Long get_Bits() const { return record_.Bits; }
  void put_Bits(Long Value) { record_.Bits = Value; }
  Long get_Words() const { return record_.Words; }
  void put_Words(Long Value) { record_.Words = Value; }
  Long get_Filter() const { return record_.Filter; }
  Long get_hFilter() const { return record_.hFilter; }

  // True = failure: a negative number, or no memory. What the filter held is freed.
  Boolean Init(Long Bits);
  Boolean Load(Text& FileName);
  Boolean Save(Text& FileName);
  Long BitToTid(Long BitNo) const;
  void put_Filter(Long Value) { record_.Filter = Value; }
  void put_hFilter(Long Value) { record_.hFilter = Value; }
  void Free() noexcept;
  Long Count() const;
  Boolean Fill(Long TotRecs);
  Long NextBit(Long BitNo) const;
  Long NextZeroBit(Long BitNo) const;
  Long PrevBit(Long BitNo) const;
  Boolean Resize(Long Bits);
  Integer BitSet(Long BitNo, Integer Value);
  Integer BitTest(Long BitNo) const;
  void IndexReadStr(const Text& Block, Long DWords);
  // Block is the first of DWords numbers that lie one behind the other.
  void IndexRead(const Long& Block, Long DWords);
  Long TidSkip(Long TidNo, Long Steps) const;
  Long TidToBit(Long TidNo) const;
  void BoolExcl(const Object<_QvtBloomFilter>& SecFilter);
  void BoolXor(const Object<_QvtBloomFilter>& SecFilter);
  void BoolOr(const Object<_QvtBloomFilter>& SecFilter);
  Boolean TopBits(const Object<_QvtBloomFilter>& TopFlt);
  void BoolAnd(const Object<_QvtBloomFilter>& SecFilter);
  void BoolNot();

 private:
  BFILTER record_{};
};

}  // namespace qv::filters
