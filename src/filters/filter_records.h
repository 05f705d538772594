// The records of filter objects, whoever implements them, and the texts that several operations
// share.
#pragma once

#include "automation/object.h"
#include "interfaces.h"

namespace qv::filters {

inline constexpr const wchar_t* kSaveFailed = L"Errore durante il salvataggio di in filtro.";

// A copy. Nothing is run-time error 91.
inline BFILTER record_of(const Object<_QvtBloomFilter>& filter) {
  BFILTER record{};
  check(filter->get_Struct(&record));
  return record;
}

inline void set_record(const Object<_QvtBloomFilter>& filter, BFILTER record) {
  check(filter->put_Struct(&record));
}

}  // namespace qv::filters
