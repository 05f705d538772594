// Late-bound access to the classes: names to ids, and Invoke. Both are driven by tables that the
// build generates from the interface description; no member has code of its own here.
//
// A late-bound caller is served as well as an early-bound one: for a by-reference argument of any
// type it may hand over a Variant variable (VT_BYREF | VT_VARIANT), which is converted, and gets
// what the member made of it back in the argument's type. Text that already is text, and numbers of
// the right type, are used where they lie. Omitted arguments take their defaults, named arguments
// find their places, and an array that comes back to a Variant variable comes as an array of
// Variant, which a script can index. A property without arguments of its own hands those of the
// caller on to the default member of the object that it holds, so that `arg.List(1)` works.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

#include "automation/object.h"

namespace qv::dispatch {

inline constexpr std::size_t kMaxArguments = 24;

// The default of an optional argument, as the interface description has it.
struct Default {
  enum class Kind : std::uint8_t { none, number, text };
  Kind kind = Kind::none;
  Long number = 0;
  std::wstring_view text{};
};

struct ParameterRow {
  const wchar_t* name;
  bool optional = false;
  Default default_value{};
};

struct Operation;

// Whose failure a failed call is: an argument's on its way in, the method's own, or an argument's
// on its way back.
enum class Stage : std::uint8_t { taking, calling, giving_back };

// One Invoke on its way to a method: the caller's arguments by position, null where left out.
struct CallFrame {
  CallFrame(const Operation& its_operation, VARIANT* its_result) noexcept
      : operation(its_operation), result(its_result) {}

  const Operation& operation;
  std::array<VARIANT*, kMaxArguments> positions;  // as many as the operation has parameters
  VARIANT* result;
  Stage stage = Stage::taking;
  std::size_t position = 0;  // of the argument that is being taken or given back
};

// Converts, calls the method in that slot of the object's own function table, and gives back.
using Invoker = HRESULT (*)(void* object, CallFrame& frame);

struct Operation {
  WORD kind;           // DISPATCH_METHOD, _PROPERTYGET, _PROPERTYPUT or _PROPERTYPUTREF
  std::uint16_t slot;  // in the interface's function table
  Invoker invoke;
  std::span<const ParameterRow> parameters;
};

struct Member {
  const wchar_t* name;
  DISPID id;
  std::span<const Operation> operations;
};

// Members of a class in the order of its interface; ids count from 1 in that order, except those
// that Automation fixes (default member, enumerator).
struct MemberTable {
  std::span<const Member> members;
  // Open addressing by hash_name(); an entry is a member's index + 1, 0 is free. The size is a
  // power of two.
  std::span<const std::uint16_t> name_buckets;
};

// Case does not count; only ASCII letters occur in names.
std::uint32_t hash_name(const wchar_t* name) noexcept;

// The buckets of a table that is written by hand.
template <std::size_t count>
std::array<std::uint16_t, std::bit_ceil(2 * count)> name_buckets(
    const Member (&members)[count]) noexcept {
  std::array<std::uint16_t, std::bit_ceil(2 * count)> buckets{};
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t at = hash_name(members[i].name) % buckets.size();
    while (buckets[at] != 0) at = (at + 1) % buckets.size();
    buckets[at] = static_cast<std::uint16_t>(i + 1);
  }
  return buckets;
}

const Member* find_member(const MemberTable& table, const wchar_t* name) noexcept;
const Member* find_member(const MemberTable& table, DISPID id) noexcept;

HRESULT get_ids_of_names(const MemberTable& table, LPOLESTR* names, UINT count,
                         DISPID* ids) noexcept;
HRESULT invoke(const MemberTable& table, void* object, DISPID id, WORD flags,
               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept;

// The invoker of every method whose C++ parameters these are; see arguments.h for the kinds.
template <class... Arguments>
HRESULT invoke_slot(void* object, CallFrame& frame) {
  using Method = HRESULT(STDMETHODCALLTYPE*)(void*, typename Arguments::Parameter...);
  std::tuple<Arguments...> arguments;
  return [&]<std::size_t... Index>(std::index_sequence<Index...>) {
    HRESULT status = S_OK;
    const bool taken = ((frame.position = Index, status = std::get<Index>(arguments).take(frame),
                         SUCCEEDED(status)) &&
                        ...);
    if (!taken) return status;
    // An interface is an array of functions behind the object's first word.
    void* const* functions = *static_cast<void* const* const*>(object);
    const auto method = reinterpret_cast<Method>(functions[frame.operation.slot]);
    frame.stage = Stage::calling;
    const HRESULT called = method(object, std::get<Index>(arguments).value()...);
    // By-reference arguments are variables: what a failing method had stored in them stays stored.
    const bool given_back =
        ((frame.position = Index,
          status = std::get<Index>(arguments).give_back(frame, SUCCEEDED(called)),
          SUCCEEDED(status)) &&
         ...);
    if (FAILED(called) || given_back) return called;
    frame.stage = Stage::giving_back;
    return status;
  }
  (std::index_sequence_for<Arguments...>());
}

}  // namespace qv::dispatch
