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

// A reference leads somewhere, in one step or, by way of a Variant, in two.
bool is_sound(const VARIANT& argument) noexcept {
  if ((argument.vt & VT_BYREF) == 0) return true;
  if (argument.byref == nullptr) return false;
  if (argument.vt != (VT_BYREF | VT_VARIANT)) return true;
  const VARIANT& variable = *argument.pvarVal;
  return (variable.vt & VT_BYREF) == 0 ||
         (variable.byref != nullptr && variable.vt != (VT_BYREF | VT_VARIANT));
}

HRESULT place_arguments(const Operation& operation, const DISPPARAMS& parameters, CallFrame& frame,
                        UINT* bad_argument) noexcept {
  const std::size_t count = operation.parameters.size();
  const bool is_put = (operation.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  std::fill_n(frame.positions.begin(), count, nullptr);
  const UINT named = parameters.cNamedArgs;
  if (parameters.cArgs > count || named > parameters.cArgs) return DISP_E_BADPARAMCOUNT;
  const auto fail = [&](UINT index, HRESULT status) {
    if (bad_argument != nullptr) *bad_argument = index;
    return status;
  };
  // The list runs backwards: the named arguments, then the last positional one to the first.
  for (UINT i = 0; i < parameters.cArgs; ++i) {
    VARIANT& argument = parameters.rgvarg[i];
    if (!is_sound(argument)) return fail(i, to_hresult(kInvalidProcedureCall));
    std::size_t position = parameters.cArgs - 1 - i;
    if (i < named) {
      const DISPID name = parameters.rgdispidNamedArgs[i];
      position = name == DISPID_PROPERTYPUT && is_put ? count - 1 : static_cast<std::size_t>(name);
    }
    if (position >= count || frame.positions[position] != nullptr) {
      return fail(i, DISP_E_PARAMNOTFOUND);
    }
    frame.positions[position] = &argument;
  }
  return S_OK;
}

// A number that no error object describes.
HRESULT fill_exception(HRESULT status, EXCEPINFO* exception) noexcept {
  if (exception == nullptr) return DISP_E_EXCEPTION;
  *exception = EXCEPINFO{};
  // Hosts take the number from scode; the older wCode would hide it from some of them.
  const Long number = to_error_number(status);
  exception->scode = to_hresult(number);
  const auto description = run_time_error_text(number);
  exception->bstrSource = SysAllocString(kLibraryName);
  exception->bstrDescription =
      SysAllocStringLen(description.data(), static_cast<UINT>(description.size()));
  return DISP_E_EXCEPTION;
}

// Takes this thread's error object, which the failed method has left.
HRESULT take_exception(HRESULT status, EXCEPINFO* exception) noexcept {
  Object<IErrorInfo> info;
  GetErrorInfo(0, info.receive());
  if (!info) return fill_exception(status, exception);
  if (exception == nullptr) return DISP_E_EXCEPTION;
  *exception = EXCEPINFO{};
  exception->scode = status;
  info.get()->GetSource(&exception->bstrSource);
  info.get()->GetDescription(&exception->bstrDescription);
  info.get()->GetHelpFile(&exception->bstrHelpFile);
  info.get()->GetHelpContext(&exception->dwHelpContext);
  return DISP_E_EXCEPTION;
}

DISPID find_parameter(const Member& member, const wchar_t* name) noexcept {
  for (const Operation& operation : member.operations) {
    const auto found = std::ranges::find_if(
        operation.parameters, [&](const ParameterRow& row) { return same_name(row.name, name); });
    if (found != operation.parameters.end()) {
      return static_cast<DISPID>(found - operation.parameters.begin());
    }
  }
  return DISPID_UNKNOWN;
}

// What the caller gets for an argument that can't be taken or given back: Automation has codes of
// its own for the usual causes, and they tell which argument it was.
HRESULT argument_failure(HRESULT status, const CallFrame& frame, const DISPPARAMS& parameters,
                         EXCEPINFO* exception, UINT* bad_argument) noexcept {
  const VARIANT* bad = frame.positions[frame.position];
  if (bad_argument != nullptr) {
    *bad_argument = bad != nullptr ? static_cast<UINT>(bad - parameters.rgvarg) : 0;
  }
  switch (status) {
    case DISP_E_TYPEMISMATCH:
    case DISP_E_OVERFLOW:
    case DISP_E_PARAMNOTOPTIONAL:
      return status;
    default:
      return fill_exception(status, exception);
  }
}

bool reads_object_without_arguments(const Operation& operation, const DISPPARAMS& parameters,
                                    const VARIANT* result) noexcept {
  return operation.kind == DISPATCH_PROPERTYGET && operation.parameters.empty() &&
         parameters.cArgs > 0 && result != nullptr;
}

// `object.Property(arguments)` where the property itself takes none: what it holds is an object,
// and the arguments are for that object's default member.
HRESULT invoke_default_member(VARIANT* result, WORD flags, DISPPARAMS* parameters,
                              EXCEPINFO* exception, UINT* bad_argument) noexcept {
  if (result->vt != VT_DISPATCH || result->pdispVal == nullptr) {
    VariantClear(result);
    return DISP_E_BADPARAMCOUNT;
  }
  const auto holder = Object<IDispatch>::adopt(result->pdispVal);
  VariantInit(result);
  return holder.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, flags, parameters,
                              result, exception, bad_argument);
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
  const auto is_missing = [](const wchar_t* name) { return name == nullptr; };
  if (std::any_of(names, names + count, is_missing)) return E_POINTER;
  if (count == 0) return S_OK;
  const Member* member = find_member(table, names[0]);
  ids[0] = member != nullptr ? member->id : DISPID_UNKNOWN;
  HRESULT result = member != nullptr ? S_OK : DISP_E_UNKNOWNNAME;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    if (member != nullptr) ids[i] = find_parameter(*member, names[i]);
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT invoke(const MemberTable& table, void* object, DISPID id, WORD flags,
               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept {
  if (parameters == nullptr || (parameters->cArgs > 0 && parameters->rgvarg == nullptr) ||
      (parameters->cNamedArgs > 0 && parameters->rgdispidNamedArgs == nullptr)) {
    return E_POINTER;
  }
  const Member* member = find_member(table, id);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  const Operation* operation = choose(*member, flags);
  if (operation == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (reads_object_without_arguments(*operation, *parameters, result)) {
    DISPPARAMS none{};
    const HRESULT read =
        invoke(table, object, id, DISPATCH_PROPERTYGET, &none, result, exception, bad_argument);
    if (FAILED(read)) return read;
    return invoke_default_member(result, flags, parameters, exception, bad_argument);
  }

  CallFrame frame(*operation, result);
  HRESULT status = place_arguments(*operation, *parameters, frame, bad_argument);
  if (FAILED(status)) {
    return HRESULT_FACILITY(status) == FACILITY_DISPATCH ? status
                                                         : fill_exception(status, exception);
  }
  if (result != nullptr) result->vt = VT_EMPTY;
  status = operation->invoke(object, frame);
  if (SUCCEEDED(status)) return S_OK;
  if (frame.stage == Stage::calling) return take_exception(status, exception);
  return argument_failure(status, frame, *parameters, exception, bad_argument);
}

}  // namespace qv::dispatch
