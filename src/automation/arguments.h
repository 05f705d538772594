// The kinds of late-bound arguments. Each takes a caller's argument, converts it for as long as the
// call lasts, and gives back what the method made of it.
#pragma once

#include "automation/dispatch.h"
#include "automation/variant.h"

namespace qv::dispatch {

// What Automation knows of a type by its mark: the C++ type and where it lies in a VARIANT.
template <VARTYPE mark>
struct Automation;

#define QV_AUTOMATION_TYPE(mark, Type, member)                             \
  template <>                                                              \
  struct Automation<mark> {                                                \
    using Value = Type;                                                    \
    static Value& in(VARIANT& variant) noexcept { return variant.member; } \
  }
QV_AUTOMATION_TYPE(VT_UI1, BYTE, bVal);
QV_AUTOMATION_TYPE(VT_I2, SHORT, iVal);
QV_AUTOMATION_TYPE(VT_I4, LONG, lVal);
QV_AUTOMATION_TYPE(VT_R4, FLOAT, fltVal);
QV_AUTOMATION_TYPE(VT_R8, DOUBLE, dblVal);
QV_AUTOMATION_TYPE(VT_CY, CY, cyVal);
QV_AUTOMATION_TYPE(VT_DATE, DATE, date);
QV_AUTOMATION_TYPE(VT_BOOL, VARIANT_BOOL, boolVal);
QV_AUTOMATION_TYPE(VT_BSTR, BSTR, bstrVal);
QV_AUTOMATION_TYPE(VT_DISPATCH, IDispatch*, pdispVal);
QV_AUTOMATION_TYPE(VT_UNKNOWN, IUnknown*, punkVal);
#undef QV_AUTOMATION_TYPE

// The caller's argument at the frame's position: null where it was left out, and for a missing one
// likewise.
VARIANT* current_argument(CallFrame& frame) noexcept;
// The description of that argument.
inline const ParameterRow& current_parameter(const CallFrame& frame) noexcept {
  return frame.operation.parameters[frame.position];
}
// The variable behind a Variant by reference, else the argument itself.
VARIANT& variable_of(VARIANT& argument) noexcept;
// Is the argument a variable of the caller's, so that a new value must be given back to it?
inline bool is_variable(const VARIANT& argument) noexcept {
  return argument.vt == (VT_BYREF | VT_VARIANT);
}

// The language's conversion of an argument; the value is the receiver's. An object other than a
// Nothing gives its default value. Fails with Automation's own code where there is one
// (DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW), else with the HRESULT of a run-time error.
HRESULT convert(const VARIANT& source, VARTYPE type, VARIANT* target) noexcept;
// The default of an optional argument, or the type's zero.
HRESULT take_default(const ParameterRow& parameter, VARTYPE type, VARIANT* target) noexcept;
// Stores what became of a converted value in the caller's variable unless it is still what the
// variable was converted to: then that keeps its value and subtype. A variable that is itself a
// reference to a typed one (of another type than the argument) is converted back.
HRESULT give_to_variable(VARIANT& variable, VARIANT& value, const VARIANT& before) noexcept;

// A VARIANT that clears itself.
struct Holder : VARIANT {
  Holder() noexcept : VARIANT{} {}
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() {
    if (!is_plain(vt)) VariantClear(this);
  }
};

// Fills `target` with the frame's current argument as a value of that type.
HRESULT take_value(CallFrame& frame, VARTYPE type, VARIANT* target) noexcept;

// A typed argument by value.
template <VARTYPE mark>
class In {
 public:
  using Parameter = typename Automation<mark>::Value;
  HRESULT take(CallFrame& frame) noexcept {
    if constexpr (mark == VT_BSTR) {
      // A text that is no variable stays as it is during the call, so it need not be copied.
      VARIANT* argument = frame.positions[frame.position];
      if (argument != nullptr && argument->vt == VT_BSTR) {
        value_ = argument->bstrVal;
        return S_OK;
      }
    }
    const HRESULT status = take_value(frame, mark, &holder_);
    value_ = Automation<mark>::in(holder_);
    return status;
  }
  Parameter value() noexcept { return value_; }
  HRESULT give_back(CallFrame&, bool) noexcept { return S_OK; }

 private:
  Holder holder_;
  Parameter value_{};
};

// A typed argument by reference. Where the caller has a variable of the very type, the method works
// on that variable itself. A Variant variable that holds the very type lends its value: for as long
// as the call lasts the variable is a reference to it. So nothing is copied, the same variable may
// be handed over twice, and a caller's code that runs meanwhile (an event) may store another type
// in the variable without pulling the value from under the method.
template <VARTYPE mark>
class Ref {
 public:
  using Value = typename Automation<mark>::Value;
  using Parameter = Value*;
  Ref() noexcept = default;
  Ref(const Ref&) = delete;
  Ref& operator=(const Ref&) = delete;
  ~Ref() { end_loan(); }

  HRESULT take(CallFrame& frame) noexcept {
    VARIANT* argument = current_argument(frame);
    value_ = &Automation<mark>::in(holder_);
    if (argument != nullptr) {
      VARIANT& variable = variable_of(*argument);
      if (variable.vt == (VT_BYREF | mark)) {
        value_ = static_cast<Value*>(variable.byref);
        return S_OK;
      }
      if (is_variable(*argument) || (argument->vt & VT_BYREF) != 0) variable_ = &variable;
      if (is_variable(*argument) && variable.vt == mark) {
        borrow(variable);
        return S_OK;
      }
    }
    const HRESULT status = take_value(frame, mark, &holder_);
    if (FAILED(status) || variable_ == nullptr) return status;
    return VariantCopy(&before_, &holder_);
  }
  Parameter value() noexcept { return value_; }
  HRESULT give_back(CallFrame&, bool) noexcept {
    if (is_borrowed_) {
      end_loan();
      return S_OK;
    }
    return variable_ == nullptr ? S_OK : give_to_variable(*variable_, holder_, before_);
  }

 private:
  void borrow(VARIANT& variable) noexcept {
    static_cast<VARIANT&>(holder_) = variable;
    variable.vt = VT_BYREF | mark;
    variable.byref = value_;
    is_borrowed_ = true;
  }
  void end_loan() noexcept {
    if (!std::exchange(is_borrowed_, false)) return;
    if (variable_->vt != (VT_BYREF | mark) || variable_->byref != value_) return;
    *variable_ = holder_;
    holder_.vt = VT_EMPTY;
  }

  Value* value_ = nullptr;
  VARIANT* variable_ = nullptr;
  bool is_borrowed_ = false;
  Holder holder_;
  Holder before_;
};

// A Variant by reference: the caller's variable, or else a copy of what it handed over.
class RefVariant {
 public:
  using Parameter = VARIANT*;
  HRESULT take(CallFrame& frame) noexcept;
  Parameter value() noexcept { return value_; }
  HRESULT give_back(CallFrame&, bool) noexcept { return S_OK; }

 private:
  VARIANT* value_ = nullptr;
  Holder holder_;
};

// A Variant by value.
class InVariant {
 public:
  using Parameter = VARIANT;
  HRESULT take(CallFrame& frame) noexcept;
  Parameter value() noexcept { return holder_; }
  HRESULT give_back(CallFrame&, bool) noexcept { return S_OK; }

 private:
  Holder holder_;
};

// An array by reference. An array of Variant (a script knows no other) is converted element by
// element, and what comes back to it is an array of Variant again.
class RefArrayBase {
 public:
  using Parameter = SAFEARRAY**;
  explicit RefArrayBase(VARTYPE element) noexcept : element_(element) {}
  HRESULT take(CallFrame& frame) noexcept;
  Parameter value() noexcept { return value_; }
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept;

 private:
  HRESULT store(SAFEARRAY** array, SAFEARRAY* fresh) noexcept;

  VARTYPE element_;
  SAFEARRAY** value_ = nullptr;
  VARIANT* variable_ = nullptr;
  Holder holder_;
};
template <VARTYPE mark>
class RefArray : public RefArrayBase {
 public:
  RefArray() noexcept : RefArrayBase(mark) {}
};

// Makes an object that only has late-bound members answer to an interface of ours, where the
// interface is one that callers implement; null where there is no such way. The object returned has
// one reference.
using AdaptObject = IUnknown* (*)(IDispatch* object, const IID& interface_id);
void set_object_adapter(AdaptObject adapter) noexcept;

// An object by reference or by value, as one of our interfaces.
class ObjectArgument {
 public:
  explicit ObjectArgument(const IID& interface_id) noexcept : interface_id_(interface_id) {}
  ObjectArgument(const ObjectArgument&) = delete;
  ObjectArgument& operator=(const ObjectArgument&) = delete;
  ~ObjectArgument();
  HRESULT take(CallFrame& frame) noexcept;
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept;

 protected:
  void* object() const noexcept { return object_; }
  void** reference() noexcept { return reinterpret_cast<void**>(&object_); }

 private:
  const IID& interface_id_;
  IUnknown* object_ = nullptr;  // by that interface
  Object<IUnknown> before_;     // what object_ was; held, so that its address stays its own
  IDispatch** typed_variable_ = nullptr;
  VARIANT* variable_ = nullptr;
};
template <class Interface>
class RefObject : public ObjectArgument {
 public:
  using Parameter = Interface**;
  RefObject() noexcept : ObjectArgument(__uuidof(Interface)) {}
  Parameter value() noexcept { return reinterpret_cast<Interface**>(reference()); }
};
template <class Interface>
class InObject : public ObjectArgument {
 public:
  using Parameter = Interface*;
  InObject() noexcept : ObjectArgument(__uuidof(Interface)) {}
  Parameter value() noexcept { return static_cast<Interface*>(object()); }
  HRESULT give_back(CallFrame&, bool) noexcept { return S_OK; }
};

// The description of a record of ours, from the library's own type library.
using FindRecord = HRESULT (*)(IRecordInfo** info);
void set_record_finder(FindRecord finder) noexcept;

// A record by reference (the language passes records in no other way) and as a result.
class RecordArgument {
 public:
  RecordArgument() noexcept = default;
  RecordArgument(const RecordArgument&) = delete;
  RecordArgument& operator=(const RecordArgument&) = delete;
  HRESULT take_reference(CallFrame& frame, void** data) noexcept;
  static HRESULT give_result(CallFrame& frame, const void* data) noexcept;
};
template <class Record>
class RefRecord : public RecordArgument {
 public:
  using Parameter = Record*;
  HRESULT take(CallFrame& frame) noexcept { return take_reference(frame, &data_); }
  Parameter value() noexcept { return static_cast<Record*>(data_); }
  HRESULT give_back(CallFrame&, bool) noexcept { return S_OK; }

 private:
  void* data_ = nullptr;
};

// The argument that receives the result of a method.
template <VARTYPE mark>
class Out {
 public:
  using Parameter = typename Automation<mark>::Value*;
  HRESULT take(CallFrame&) noexcept {
    holder_.vt = mark;
    holder_.llVal = 0;
    return S_OK;
  }
  Parameter value() noexcept { return &Automation<mark>::in(holder_); }
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept {
    if (succeeded && frame.result != nullptr) {
      std::swap(static_cast<VARIANT&>(holder_), *frame.result);
    }
    return S_OK;
  }

 private:
  Holder holder_;
};
class OutVariant {
 public:
  using Parameter = VARIANT*;
  HRESULT take(CallFrame&) noexcept { return S_OK; }
  Parameter value() noexcept { return &holder_; }
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept {
    if (!succeeded || frame.result == nullptr) return S_OK;
    std::swap(static_cast<VARIANT&>(holder_), *frame.result);
    return S_OK;
  }

 private:
  Holder holder_;
};
template <class Interface>
class OutObject {
 public:
  using Parameter = Interface**;
  HRESULT take(CallFrame&) noexcept { return S_OK; }
  Parameter value() noexcept { return object_.receive(); }
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept {
    if (!succeeded || frame.result == nullptr) return S_OK;
    frame.result->vt = VT_DISPATCH;
    frame.result->pdispVal = object_.release();
    return S_OK;
  }

 private:
  Object<Interface> object_;
};
template <class Record>
class OutRecord {
 public:
  using Parameter = Record*;
  HRESULT take(CallFrame&) noexcept { return S_OK; }
  Parameter value() noexcept { return &record_; }
  HRESULT give_back(CallFrame& frame, bool succeeded) noexcept {
    if (!succeeded || frame.result == nullptr) return S_OK;
    return RecordArgument::give_result(frame, &record_);
  }

 private:
  Record record_{};
};

}  // namespace qv::dispatch
