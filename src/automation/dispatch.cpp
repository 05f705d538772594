#include "automation/dispatch.h"

#include <algorithm>


namespace qv::dispatch {
namespace {

wchar_t fold(wchar_t character) noexcept {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character | 0x20)
                                                : character;
}

bool same_name(const wchar_t* a, const wchar_t* b) noexcept {
  for (; fold(*a) == fold(*b); ++a, ++b) {
    if (*a == L'\0') return true;
  }
  return false;
}

// A member may be asked for in several ways at once ("a method or a property's value"), and a
// caller that can't know which a member is must not fail for having guessed.
const Operation* choose(const Member& member, WORD flags) noexcept {
  constexpr WORD kReads = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  constexpr WORD kPuts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  for (const WORD accepted : {flags, static_cast<WORD>((flags & kReads) != 0 ? kReads : kPuts)}) {
    const auto found = std::ranges::find_if(
        member.operations, [&](const Operation& row) { return (row.kind & accepted) != 0; });
    if (found != member.operations.end()) return &*found;
  }
  return nullptr;
}

HRESULT place_arguments(const Operation& operation, const DISPPARAMS& parameters, CallFrame& frame,
                        UINT* bad_argument) noexcept {
  const std::size_t count = operation.parameters.size();
  std::fill_n(frame.positions.begin(), count, nullptr);
  const UINT named = parameters.cNamedArgs;
  const UINT positional = parameters.cArgs - named;
  if (parameters.cArgs > count) return DISP_E_BADPARAMCOUNT;
  for (UINT i = 0; i < positional; ++i) {
    frame.positions[i] = &parameters.rgvarg[parameters.cArgs - 1 - i];
  }
  for (UINT i = 0; i < named; ++i) {
    const DISPID name = parameters.rgdispidNamedArgs[i];
    const std::size_t position =
        name == DISPID_PROPERTYPUT ? count - 1 : static_cast<std::size_t>(name);
    if (position >= count || frame.positions[position] != nullptr) {
      if (bad_argument != nullptr) *bad_argument = i;
      return DISP_E_PARAMNOTFOUND;
    }
    frame.positions[position] = &parameters.rgvarg[i];
  }
  return S_OK;
}

// Takes this thread's error object for a failed call.
HRESULT fill_exception(HRESULT status, EXCEPINFO* exception) noexcept {
  Object<IErrorInfo> info;
  GetErrorInfo(0, info.receive());
  if (exception == nullptr) return DISP_E_EXCEPTION;
  *exception = EXCEPINFO{};
  // Hosts take the number from scode; the older wCode would hide it from some of them.
  exception->scode = status;
  if (info) {
    info->GetSource(&exception->bstrSource);
    info->GetDescription(&exception->bstrDescription);
    info->GetHelpFile(&exception->bstrHelpFile);
    info->GetHelpContext(&exception->dwHelpContext);
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

std::uint32_t hash_name(const wchar_t* name) noexcept {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (; *name != L'\0'; ++name) hash = (hash ^ fold(*name)) * 16777619U;
  return hash;
}

const Member* find_member(const MemberTable& table, const wchar_t* name) noexcept {
  const std::size_t mask = table.name_buckets.size() - 1;
  for (std::size_t i = hash_name(name) & mask; table.name_buckets[i] != 0; i = (i + 1) & mask) {
    const Member& member = table.members[table.name_buckets[i] - 1U];
    if (same_name(member.name, name)) return &member;
  }
  return nullptr;
}

const Member* find_member(const MemberTable& table, DISPID id) noexcept {
  if (id > 0 && static_cast<std::size_t>(id) <= table.members.size()) {
    const Member& member = table.members[static_cast<std::size_t>(id) - 1];
    if (member.id == id) return &member;
  }
  const auto found = std::ranges::find(table.members, id, &Member::id);
  return found != table.members.end() ? &*found : nullptr;
}

HRESULT get_ids_of_names(const MemberTable& table, LPOLESTR* names, UINT count,
                         DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  const Member* member = find_member(table, names[0]);
  ids[0] = member != nullptr ? member->id : DISPID_UNKNOWN;
  HRESULT result = member != nullptr ? S_OK : DISP_E_UNKNOWNNAME;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    if (member != nullptr) {
      for (const Operation& operation : member->operations) {
        const auto found = std::ranges::find_if(operation.parameters, [&](const ParameterRow& row) {
          return same_name(row.name, names[i]);
        });
        if (found == operation.parameters.end()) continue;
        ids[i] = static_cast<DISPID>(found - operation.parameters.begin());
        break;
      }
    }
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT invoke(const MemberTable& table, void* object, DISPID id, WORD flags,
               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept {
  if (parameters == nullptr) return E_POINTER;
  const Member* member = find_member(table, id);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  const Operation* operation = choose(*member, flags);
  if (operation == nullptr) return DISP_E_MEMBERNOTFOUND;

  CallFrame frame{*operation, {}, result};
  HRESULT status = place_arguments(*operation, *parameters, frame, bad_argument);
  if (FAILED(status)) return status;
  if (result != nullptr) VariantInit(result);
  status = operation->invoke(object, frame);
  if (SUCCEEDED(status)) return S_OK;
  switch (status) {
    case DISP_E_TYPEMISMATCH:
    case DISP_E_OVERFLOW:
    case DISP_E_PARAMNOTOPTIONAL:
      if (bad_argument != nullptr && frame.bad_position < kMaxArguments) {
        const VARIANT* bad = frame.positions[frame.bad_position];
        *bad_argument = bad != nullptr ? static_cast<UINT>(bad - parameters->rgvarg) : 0;
      }
      return status;
    default:
      return fill_exception(status, exception);
  }
}

}  // namespace qv::dispatch
