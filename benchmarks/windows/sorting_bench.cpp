// QuickSort and ShellSort without a helper beside std::sort with a comparer that dispatches on the
// type of its operands, and beside std::sort with the platform's VarCmp.
//
// Each line tells our time for an element, the peer's, and ours over the peer's: the median of the
// ratios of interleaved rounds in one process. Every round sorts a fresh copy of the same elements.
#include <bit>
#include <cstdint>
#include <cwchar>
#include <random>
#include <span>
#include <string>

#include "server/client.h"
#include "windows/bench.h"

namespace {

using namespace qv::bench;
using qv::tests::Pointer;
using qv::tests::Value;

constexpr ULONG kMillion = 1000000;
constexpr ULONG kFewer = 30000;  // VarCmp takes its time
constexpr int kRounds = 3;

void require(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  std::exit(1);
}

Value array_of_type(VARTYPE type, ULONG count, LONG lower_bound = 1) {
  SAFEARRAYBOUND bound{count, lower_bound};
  Value array;
  array.parray = SafeArrayCreate(type, 1, &bound);
  require(array.parray != nullptr, "memory");
  array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  return array;
}

template <class Element>
std::span<Element> elements_of(const Value& array) {
  return {static_cast<Element*>(array.parray->pvData), array.parray->rgsabound[0].cElements};
}

int text_order(BSTR a, BSTR b) {
  const UINT length_a = SysStringLen(a);
  const UINT length_b = SysStringLen(b);
  const int order = std::wmemcmp(a, b, std::min(length_a, length_b));
  return order != 0 ? order : length_a < length_b ? -1 : length_a > length_b;
}

// The peer's comparer of elements of one type that it learns at run time.
struct TypedLess {
  VARTYPE type;

  template <class Element>
  bool operator()(const Element& a, const Element& b) const {
    switch (type) {
      case VT_UI1:
        return less<std::uint8_t>(a, b);
      case VT_I2:
        return less<std::int16_t>(a, b);
      case VT_I4:
        return less<std::int32_t>(a, b);
      case VT_R4:
        return less<float>(a, b);
      case VT_R8:
      case VT_DATE:
        return less<double>(a, b);
      case VT_CY:
        return less<std::int64_t>(a, b);
      default:
        return less<BSTR>(a, b);
    }
  }
  template <class Meant, class Element>
  static bool less(const Element& a, const Element& b) {
    if constexpr (sizeof(Meant) != sizeof(Element)) {
      return false;
    } else if constexpr (std::is_same_v<Meant, BSTR>) {
      return text_order(std::bit_cast<BSTR>(a), std::bit_cast<BSTR>(b)) < 0;
    } else {
      return std::bit_cast<Meant>(a) < std::bit_cast<Meant>(b);
    }
  }
};

double number_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_I2:
      return value.iVal;
    case VT_I4:
      return value.lVal;
    case VT_R4:
      return value.fltVal;
    default:
      return value.dblVal;
  }
}

// Of values that each bear their type.
struct ValueLess {
  bool operator()(const VARIANT& a, const VARIANT& b) const {
    if (a.vt == VT_BSTR) return b.vt == VT_BSTR && text_order(a.bstrVal, b.bstrVal) < 0;
    if (b.vt == VT_BSTR) return true;
    if (a.vt == VT_I4 && b.vt == VT_I4) return a.lVal < b.lVal;
    return number_of(a) < number_of(b);
  }
};

struct PlatformLess {
  bool operator()(const VARIANT& a, const VARIANT& b) const {
    return VarCmp(const_cast<VARIANT*>(&a), const_cast<VARIANT*>(&b), LOCALE_USER_DEFAULT, 0) ==
           static_cast<HRESULT>(VARCMP_LT);
  }
};

using Member = HRESULT (*)(_KwRtLib*, VARIANT*, VARIANT_BOOL*);

HRESULT quick_sort(_KwRtLib* global, VARIANT* array, VARIANT_BOOL* result) {
  Value first = Value::missing(), last = Value::missing();
  return global->QuickSort(array, &first, &last, nullptr, result);
}
HRESULT shell_sort(_KwRtLib* global, VARIANT* array, VARIANT_BOOL* result) {
  return global->ShellSort(array, result);
}

const Pointer<_KwRtLib>& global() {
  static const auto object = qv::tests::create_global();
  return object;
}

template <class Element, class Less>
void compare(const char* what, const Goal& goal, const Value& array, const Less& less,
             Member member = &quick_sort) {
  Times times;
  for (int round = 0; round < kRounds; ++round) {
    Value ours = array;
    const auto source = elements_of<Element>(array);
    std::vector<Element> peers(source.begin(), source.end());
    VARIANT_BOOL result = VARIANT_TRUE;
    const double our_time =
        seconds([&] { require(member(global().get(), &ours, &result) == S_OK, what); });
    const double peers_time = seconds([&] { std::sort(peers.begin(), peers.end(), less); });
    times.add(our_time, peers_time);
    require(result == VARIANT_FALSE, what);
  }
  times.print(what, elements_of<Element>(array).size(), goal);
}

template <class Number>
void compare_numbers(const char* what, VARTYPE type) {
  std::mt19937_64 random(1);
  const Value array = array_of_type(type, kMillion);
  for (Number& number : elements_of<Number>(array)) {
    if constexpr (std::is_floating_point_v<Number>) {
      number = static_cast<Number>(static_cast<double>(random()) / 1e9 - 9e9);
    } else {
      number = static_cast<Number>(random());
    }
  }
  compare<Number>(what, at_most(0.9), array, TypedLess{type});
}

BSTR random_text(std::mt19937_64& random) {
  wchar_t text[11];
  for (wchar_t& character : text) character = static_cast<wchar_t>(L'a' + random() % 26);
  return SysAllocStringLen(text, 11);
}

Value texts(ULONG count) {
  std::mt19937_64 random(2);
  Value array = array_of_type(VT_BSTR, count);
  for (BSTR& text : elements_of<BSTR>(array)) text = random_text(random);
  return array;
}

// kinds: 1 Long, 2 Double, 4 String; values below `range`.
Value values(ULONG count, unsigned kinds, unsigned range) {
  std::mt19937_64 random(3);
  Value array = array_of_type(VT_VARIANT, count);
  for (VARIANT& value : elements_of<VARIANT>(array)) {
    unsigned kind = 0;
    while ((kind & kinds) == 0) kind = 1U << random() % 3;
    value.vt = kind == 1 ? VT_I4 : kind == 2 ? VT_R8 : VT_BSTR;
    const auto number = static_cast<LONG>(random() % range);
    if (kind == 1) value.lVal = number;
    if (kind == 2) value.dblVal = number;
    if (kind == 4) value.bstrVal = random_text(random);
  }
  return array;
}

}  // namespace

int main() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const std::string million = std::to_string(kMillion);
  const std::string fewer = std::to_string(kFewer);
  print_heading(("QuickSort of " + million).c_str(), "std::sort with a type-dispatching comparer");
  compare_numbers<std::uint8_t>("array of Byte", VT_UI1);
  compare_numbers<std::int16_t>("array of Integer", VT_I2);
  compare_numbers<std::int32_t>("array of Long", VT_I4);
  compare_numbers<float>("array of Single", VT_R4);
  compare_numbers<double>("array of Double", VT_R8);
  compare_numbers<double>("array of Date", VT_DATE);
  compare_numbers<std::int64_t>("array of Currency", VT_CY);
  compare<BSTR>("array of String", at_most(0.7), texts(kMillion), TypedLess{VT_BSTR});
  compare<VARIANT>("Variants of Long", at_most(0.9), values(kMillion, 1, 1U << 31), ValueLess());
  compare<VARIANT>("Variants of Double", at_most(0.9), values(kMillion, 2, 1U << 31), ValueLess());
  compare<VARIANT>("Variants of String", at_most(0.7), values(kMillion, 4, 1), ValueLess());
  compare<VARIANT>("Long, Double, String", at_most(1), values(kMillion, 7, 1U << 31), ValueLess());
  compare<VARIANT>("Long, Double, many equal ones", at_most(1), values(kMillion, 3, 1000),
                   ValueLess());
  {
    Value sorted = values(kMillion, 1, 1U << 31);
    const auto elements = elements_of<VARIANT>(sorted);
    std::sort(elements.begin(), elements.end(), ValueLess());
    compare<VARIANT>("Variants of Long in order", at_most(0.9), sorted, ValueLess());
  }
  print_heading(("ShellSort of " + million).c_str(), "std::sort with a type-dispatching comparer");
  for (const LONG lower_bound : {1, 2}) {
    std::mt19937_64 random(4);
    const Value array = array_of_type(VT_R8, kMillion, lower_bound);
    for (double& number : elements_of<double>(array)) number = static_cast<double>(random());
    compare<double>(lower_bound == 1 ? "array of Double from 1" : "array of Double from 2",
                    at_most(0.9), array, TypedLess{VT_R8}, &shell_sort);
  }
  compare<VARIANT>("Long, Double, many equal ones", at_most(1), values(kMillion, 3, 1000),
                   ValueLess(), &shell_sort);
  print_heading(("QuickSort of " + fewer).c_str(), "std::sort with the platform's VarCmp");
  compare<VARIANT>("Variants of Long", at_most(0.1), values(kFewer, 1, 1U << 31), PlatformLess());
  compare<VARIANT>("Variants of String", at_most(0.1), values(kFewer, 4, 1), PlatformLess());
  compare<VARIANT>("Long, Double", at_most(0.1), values(kFewer, 3, 1U << 31), PlatformLess());
  return 0;
}
