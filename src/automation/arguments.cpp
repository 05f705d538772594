#include "automation/arguments.h"

#include <dispex.h>

#include <cstring>

namespace qv::dispatch {
namespace {

AdaptObject adapt_object = nullptr;
FindRecord find_record = nullptr;

// Automation has codes of its own for these, which tell a caller more than a run-time error does.
HRESULT automation_code(Long number) noexcept {
  switch (number) {
    case kTypeMismatch:
      return DISP_E_TYPEMISMATCH;
    case kOverflow:
      return DISP_E_OVERFLOW;
    default:
      return to_hresult(number);
  }
}

bool is_missing(const VARIANT& value) noexcept {
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

// Not given at all, or a gap among the arguments. A variable that holds a missing value is given,
// and so is whatever is assigned to a property.
bool is_left_out(const CallFrame& frame) noexcept {
  constexpr WORD kPuts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const VARIANT* argument = frame.positions[frame.position];
  return argument == nullptr || (is_missing(*argument) && (frame.operation.kind & kPuts) == 0);
}

HRESULT leave_missing(const CallFrame& frame, VARIANT* target) noexcept {
  if (!current_parameter(frame).optional) return DISP_E_PARAMNOTOPTIONAL;
  target->vt = VT_ERROR;
  target->scode = DISP_E_PARAMNOTFOUND;
  return S_OK;
}

bool equal_values(const VARIANT& a, const VARIANT& b) noexcept {
  if (a.vt != VT_BSTR) return a.llVal == b.llVal;
  const UINT bytes = SysStringByteLen(a.bstrVal);
  return bytes == SysStringByteLen(b.bstrVal) &&
         (bytes == 0 || std::memcmp(a.bstrVal, b.bstrVal, bytes) == 0);
}

IUnknown* object_in(const VARIANT& value) noexcept {
  return (value.vt & VT_BYREF) != 0 ? *value.ppunkVal : value.punkVal;
}

bool holds_object(const VARIANT& value) noexcept {
  const VARTYPE type = value.vt & ~VT_BYREF;
  return type == VT_DISPATCH || type == VT_UNKNOWN;
}

bool is_nothing(const VARIANT& value) noexcept {
  const VARIANT& inner = is_variable(value) ? *value.pvarVal : value;
  return holds_object(inner) && object_in(inner) == nullptr;
}

// A one-dimensional array as an array of another element type, elements converted.
HRESULT convert_array(SAFEARRAY* source, VARTYPE from, VARTYPE to, SAFEARRAY** target) noexcept {
  *target = nullptr;
  if (source == nullptr) return S_OK;
  if (SafeArrayGetDim(source) != 1) return DISP_E_TYPEMISMATCH;
  SAFEARRAYBOUND bound = source->rgsabound[0];
  SAFEARRAY* fresh = SafeArrayCreate(to, 1, &bound);
  if (fresh == nullptr) return E_OUTOFMEMORY;
  HRESULT status = S_OK;
  for (ULONG i = 0; i < bound.cElements && SUCCEEDED(status); ++i) {
    LONG index = bound.lLbound + static_cast<LONG>(i);
    Holder element;
    Holder copy;
    // Elements go through a Variant that refers to them, so that one conversion serves all types.
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | from);
    status = SafeArrayPtrOfIndex(source, &index, &reference.byref);
    if (FAILED(status)) break;
    if (to == VT_VARIANT) {
      status = VariantCopyInd(&element, &reference);
      if (SUCCEEDED(status)) status = SafeArrayPutElement(fresh, &index, &element);
    } else {
      status = convert(reference, to, &element);
      if (FAILED(status)) break;
      void* data = to == VT_BSTR ? static_cast<void*>(element.bstrVal) : &element.llVal;
      status = SafeArrayPutElement(fresh, &index, data);
    }
  }
  if (FAILED(status)) {
    SafeArrayDestroy(fresh);
    return status;
  }
  *target = fresh;
  return S_OK;
}

}  // namespace

void set_object_adapter(AdaptObject adapter) noexcept { adapt_object = adapter; }
void set_record_finder(FindRecord finder) noexcept { find_record = finder; }

VARIANT& variable_of(VARIANT& argument) noexcept {
  return is_variable(argument) ? *argument.pvarVal : argument;
}

VARIANT* current_argument(CallFrame& frame) noexcept {
  VARIANT* argument = frame.positions[frame.position];
  return argument == nullptr || is_missing(variable_of(*argument)) ? nullptr : argument;
}

HRESULT convert(const VARIANT& source, VARTYPE type, VARIANT* target) noexcept {
  if (is_nothing(source)) return DISP_E_TYPEMISMATCH;
  try {
    // A Variant is laid out as a VARIANT: this one stays the caller's.
    *target = converted(reinterpret_cast<const Variant&>(source), type).release();
    return S_OK;
  } catch (...) {
    return automation_code(current_run_time_error().number);
  }
}

HRESULT take_default(const ParameterRow& parameter, VARTYPE type, VARIANT* target) noexcept {
  target->vt = type;
  target->llVal = 0;
  switch (parameter.default_value.kind) {
    case Default::Kind::text:
      target->bstrVal = SysAllocStringLen(parameter.default_value.text.data(),
                                          static_cast<UINT>(parameter.default_value.text.size()));
      return target->bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
    case Default::Kind::number: {
      VARIANT number{};
      number.vt = VT_I4;
      number.lVal = parameter.default_value.number;
      return type == VT_I4 ? (*target = number, S_OK) : convert(number, type, target);
    }
    case Default::Kind::none:
      break;
  }
  return S_OK;
}

HRESULT take_value(CallFrame& frame, VARTYPE type, VARIANT* target) noexcept {
  VARIANT* argument = current_argument(frame);
  if (argument == nullptr) {
    const ParameterRow& parameter = current_parameter(frame);
    return parameter.optional ? take_default(parameter, type, target) : DISP_E_PARAMNOTOPTIONAL;
  }
  const VARIANT& value = variable_of(*argument);
  if (value.vt == type && type != VT_BSTR) {
    target->vt = type;
    target->llVal = value.llVal;
    return S_OK;
  }
  if ((value.vt & VT_ARRAY) != 0) return DISP_E_TYPEMISMATCH;
  return convert(*argument, type, target);
}

HRESULT give_to_variable(VARIANT& variable, VARIANT& value, const VARIANT& before) noexcept {
  if (variable.vt != VT_EMPTY && equal_values(value, before)) return S_OK;
  if ((variable.vt & VT_BYREF) != 0) {
    Holder back;
    const HRESULT status = convert(value, variable.vt & ~VT_BYREF, &back);
    if (SUCCEEDED(status)) store_by_reference(variable, back);
    return status;
  }
  const HRESULT status = VariantClear(&variable);
  if (FAILED(status)) return status;
  variable = value;
  value.vt = VT_EMPTY;
  return S_OK;
}

HRESULT RefVariant::take(CallFrame& frame) noexcept {
  VARIANT* argument = frame.positions[frame.position];
  value_ = &holder_;
  const ParameterRow& parameter = current_parameter(frame);
  if (parameter.default_value.kind == Default::Kind::text && current_argument(frame) == nullptr) {
    return take_default(parameter, VT_BSTR, &holder_);
  }
  if (is_left_out(frame)) return leave_missing(frame, &holder_);
  if (is_variable(*argument)) {
    value_ = argument->pvarVal;
    return S_OK;
  }
  if ((argument->vt & VT_BYREF) != 0) {
    // The reference itself travels on: reading and assigning go through to the typed variable.
    static_cast<VARIANT&>(holder_) = *argument;
    return S_OK;
  }
  return VariantCopy(&holder_, argument);
}

HRESULT InVariant::take(CallFrame& frame) noexcept {
  if (is_left_out(frame)) return leave_missing(frame, &holder_);
  return VariantCopyInd(&holder_, frame.positions[frame.position]);
}

HRESULT RefArrayBase::take(CallFrame& frame) noexcept {
  VARIANT* argument = current_argument(frame);
  const auto own_type = static_cast<VARTYPE>(VT_ARRAY | element_);
  value_ = &holder_.parray;
  holder_.vt = own_type;
  holder_.parray = nullptr;
  if (argument == nullptr) {
    return current_parameter(frame).optional ? S_OK : DISP_E_PARAMNOTOPTIONAL;
  }
  VARIANT& variable = variable_of(*argument);
  if (variable.vt == (VT_BYREF | own_type)) {
    value_ = variable.pparray;
    return S_OK;
  }
  if (is_variable(*argument) && variable.vt == own_type) {
    value_ = &variable.parray;
    return S_OK;
  }
  if (is_variable(*argument) || (variable.vt & VT_BYREF) != 0) variable_ = &variable;
  // An empty variable is an array that the method is to make.
  if (variable.vt == VT_EMPTY) return S_OK;
  if ((variable.vt & VT_ARRAY) == 0) return DISP_E_TYPEMISMATCH;
  SAFEARRAY* source = (variable.vt & VT_BYREF) != 0 ? *variable.pparray : variable.parray;
  const auto from = static_cast<VARTYPE>(variable.vt & VT_TYPEMASK);
  return convert_array(source, from, element_, &holder_.parray);
}

// Puts `fresh` into a variable of the caller's that may be an array of fixed size: then the
// elements alone move, and only where the bounds are still the same.
HRESULT RefArrayBase::store(SAFEARRAY** array, SAFEARRAY* fresh) noexcept {
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  if (*array != nullptr && ((*array)->fFeatures & kFixed) != 0) {
    const bool is_alike = fresh != nullptr && SafeArrayGetDim(*array) == 1 &&
                          fresh->rgsabound[0].lLbound == (*array)->rgsabound[0].lLbound &&
                          fresh->rgsabound[0].cElements == (*array)->rgsabound[0].cElements;
    const USHORT features = (*array)->fFeatures;
    const HRESULT status = is_alike ? SafeArrayCopyData(fresh, *array) : DISP_E_ARRAYISLOCKED;
    (*array)->fFeatures = features;  // some systems copy the source's
    SafeArrayDestroy(fresh);
    return status;
  }
  const HRESULT status = SafeArrayDestroy(*array);
  if (FAILED(status)) {
    SafeArrayDestroy(fresh);
    return status;
  }
  *array = fresh;
  return S_OK;
}

HRESULT RefArrayBase::give_back(CallFrame&, bool) noexcept {
  if (variable_ == nullptr) return S_OK;
  // A reference to an array keeps its element type; a Variant gets what a script can index.
  const bool is_reference = (variable_->vt & VT_BYREF) != 0;
  const auto type = static_cast<VARTYPE>(is_reference ? variable_->vt & VT_TYPEMASK : +VT_VARIANT);
  SAFEARRAY* fresh = nullptr;
  const HRESULT status = convert_array(holder_.parray, element_, type, &fresh);
  if (FAILED(status)) return status;
  if (is_reference) return store(variable_->pparray, fresh);
  SAFEARRAY* held = (variable_->vt & VT_ARRAY) != 0 ? variable_->parray : nullptr;
  if (held != nullptr) {
    const HRESULT stored = store(&held, fresh);
    if (FAILED(stored)) return stored;
  } else {
    held = fresh;
    VariantClear(variable_);
  }
  variable_->vt = held != nullptr ? VT_ARRAY | VT_VARIANT : +VT_EMPTY;
  variable_->parray = held;
  return S_OK;
}

ObjectArgument::~ObjectArgument() {
  if (object_ != nullptr) object_->Release();
}

HRESULT ObjectArgument::take(CallFrame& frame) noexcept {
  VARIANT* argument = current_argument(frame);
  if (argument == nullptr) {
    return current_parameter(frame).optional ? S_OK : DISP_E_PARAMNOTOPTIONAL;
  }
  VARIANT& variable = variable_of(*argument);
  if (is_variable(*argument)) variable_ = &variable;
  // An empty variable is an object variable that nothing was assigned to.
  if (variable.vt == VT_EMPTY) return S_OK;
  if (!holds_object(variable)) return DISP_E_TYPEMISMATCH;
  if ((variable.vt & VT_BYREF) != 0) {
    typed_variable_ = variable.ppdispVal;
    variable_ = nullptr;
  }
  IUnknown* source = object_in(variable);
  if (source == nullptr) return S_OK;
  if (SUCCEEDED(source->QueryInterface(interface_id_, reference()))) {
    before_ = Object<IUnknown>(object_);
    return S_OK;
  }
  if (adapt_object != nullptr) {
    const auto dispatch = Object<IDispatch>::from(source);
    if (dispatch) object_ = adapt_object(dispatch.get(), interface_id_);
  }
  before_ = Object<IUnknown>(object_);
  return object_ != nullptr ? S_OK : DISP_E_TYPEMISMATCH;
}

HRESULT ObjectArgument::give_back(CallFrame&, bool) noexcept {
  if (object_ == before_.get()) return S_OK;
  // Every interface of ours is a dual one, so its pointer is an IDispatch.
  auto* fresh = static_cast<IDispatch*>(std::exchange(object_, nullptr));
  if (typed_variable_ != nullptr) {
    if (*typed_variable_ != nullptr) (*typed_variable_)->Release();
    *typed_variable_ = fresh;
    return S_OK;
  }
  if (variable_ == nullptr) {
    if (fresh != nullptr) fresh->Release();
    return S_OK;
  }
  VariantClear(variable_);
  variable_->vt = VT_DISPATCH;
  variable_->pdispVal = fresh;
  return S_OK;
}

HRESULT RecordArgument::take_reference(CallFrame& frame, void** data) noexcept {
  VARIANT* argument = current_argument(frame);
  if (argument == nullptr) return DISP_E_PARAMNOTOPTIONAL;
  const VARIANT& variable = variable_of(*argument);
  if ((variable.vt & ~VT_BYREF) != VT_RECORD || variable.pRecInfo == nullptr) {
    return DISP_E_TYPEMISMATCH;
  }
  Object<IRecordInfo> own;
  const HRESULT status = find_record(own.receive());
  if (FAILED(status)) return status;
  if (own->IsMatchingType(variable.pRecInfo) == FALSE) return DISP_E_TYPEMISMATCH;
  *data = variable.pvRecord;
  return S_OK;
}

HRESULT RecordArgument::give_result(CallFrame& frame, const void* data) noexcept {
  Object<IRecordInfo> info;
  HRESULT status = find_record(info.receive());
  if (FAILED(status)) return status;
  void* copy = nullptr;
  status = info->RecordCreateCopy(const_cast<void*>(data), &copy);
  if (FAILED(status)) return status;
  frame.result->vt = VT_RECORD;
  frame.result->pvRecord = copy;
  frame.result->pRecInfo = info.release();
  return S_OK;
}

}  // namespace qv::dispatch
