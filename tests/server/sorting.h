// What the tests of sorting and searching share.
#pragma once

#include <string>
#include <thread>

#include "server/array_variable.h"
#include "server/sort_helper.h"

namespace qv::tests {

// What a failed function has left in the error state.
struct Record {
  LONG number = 0;
  std::wstring description;
  std::wstring source;
  friend bool operator==(const Record&, const Record&) = default;
};

class Sorting : public testing::Test {
 protected:
  VARIANT_BOOL quick_sort(Value& array, Value first = Value::missing(),
                          Value last = Value::missing(), SortHelper* helper = nullptr) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(global_->QuickSort(&array, &first, &last,
                                 helper != nullptr ? helper->variable() : nullptr, &result),
              S_OK);
    return result;
  }
  VARIANT_BOOL quick_sort(Value& array, SortHelper& helper) {
    return quick_sort(array, Value::missing(), Value::missing(), &helper);
  }
  VARIANT_BOOL shell_sort(Value& array) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(global_->ShellSort(&array, &result), S_OK);
    return result;
  }
  LONG binary_search(Value& array, Value key, LONG& nearest, Value first = Value::missing(),
                     Value last = Value::missing(), SortHelper* helper = nullptr) {
    LONG result = 77;
    EXPECT_EQ(global_->BinarySearch(&array, &key, &first, &last, &nearest,
                                    helper != nullptr ? helper->variable() : nullptr, &result),
              S_OK);
    return result;
  }

  // Takes the record.
  Record record() {
    Record record;
    String description, source;
    global_->Error_Number(&record.number);
    global_->Error_Description(&description);
    global_->Error_Source(&source);
    global_->Reset_Error();
    record.description = description.view();
    record.source = source.view();
    return record;
  }

  Pointer<_KwRtLib> global_ = create_global();
};

// Work on a thread of its own, whose random numbers begin where every thread's do.
template <class Work>
void on_fresh_thread(Work&& work) {
  std::thread thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    work();
    CoUninitialize();
  });
  thread.join();
}

inline Value date_value(double days) {
  Value value(days);
  value.vt = VT_DATE;
  return value;
}

inline Value currency_value(LONGLONG ten_thousandths) {
  Value value;
  value.vt = VT_CY;
  value.cyVal.int64 = ten_thousandths;
  return value;
}

inline Value decimal_value(LONG number) {
  Value value;
  VarDecFromI4(number, &value.decVal);
  value.vt = VT_DECIMAL;
  return value;
}

inline Value null_value() {
  Value value;
  value.vt = VT_NULL;
  return value;
}

}  // namespace qv::tests
