// The four steps of every public method: hold the object, forward, give back the result, turn what
// escapes into a failed HRESULT. The forwarders themselves are generated.
#pragma once

#include <new>
#include <optional>
#include <type_traits>
#include <utility>

#include "automation/class_object.h"
#include "automation/variant.h"

namespace qv {

// For use inside a catch block that catches everything, and there alone: the exception at hand
// becomes the thread's error object for that interface, stays pending as the language's run-time
// error, and gives the HRESULT to return.
HRESULT report_current_exception(const IID& interface_id) noexcept;

// The answer of a member that the library does not have yet.
HRESULT report_not_built(const IID& interface_id) noexcept;

// Keeps an object alive while one of its methods runs: what the method calls may release it.
template <class Held>
class Hold {
 public:
  explicit Hold(Held& object) noexcept : object_(object) { object_.Held::AddRef(); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;
  ~Hold() { object_.Held::Release(); }

 private:
  Held& object_;
};

// A caller's variable as the value type that is laid out alike. A null pointer, which no caller of
// the language can pass, is run-time error 5.
template <class Value, class Raw>
Value& by_reference(Raw* variable) {
  static_assert(sizeof(Value) == sizeof(Raw));
  if (variable == nullptr) raise(kInvalidProcedureCall);
  return reinterpret_cast<Value&>(*variable);
}

// A caller's value, which stays the caller's.
template <class Value, class Raw>
const Value& by_value(const Raw& value) noexcept {
  static_assert(sizeof(Value) == sizeof(Raw));
  return reinterpret_cast<const Value&>(value);
}

// An optional argument by reference: a caller that leaves it out may pass no variable at all, and
// then its default takes the place for the length of the call.
template <class Value>
class OptionalReference {
 public:
  template <class Raw, class MakeDefault>
  OptionalReference(Raw* variable, MakeDefault make_default)
      : variable_(reinterpret_cast<Value*>(variable)) {
    static_assert(sizeof(Value) == sizeof(Raw));
    if (variable_ == nullptr) variable_ = &default_.emplace(make_default());
  }
  operator Value&() noexcept { return *variable_; }

 private:
  Value* variable_;
  std::optional<Value> default_;
};

inline void require(const void* result) {
  if (result == nullptr) raise(kInvalidProcedureCall);
}

// Results, each given away in the caller's form.
inline void store(BSTR* result, Text value) noexcept { *result = value.release(); }
inline void store(VARIANT* result, Variant value) noexcept { *result = value.release(); }
inline void store(CY* result, Currency value) noexcept { result->int64 = value.ten_thousandths; }
template <class Interface>
void store(Interface** result, Object<Interface> value) noexcept {
  *result = value.release();
}
template <class Raw, class Value>
requires(!std::is_pointer_v<Raw>) void store(Raw* result, const Value& value) noexcept {
  static_assert(sizeof(Raw) == sizeof(Value) || std::is_same_v<Value, Boolean>);
  if constexpr (std::is_same_v<Value, Date>) {
    *result = value.days;
  } else {
    *result = value;
  }
}

// Stands for the implementation of a class none of whose members is built.
struct Unbuilt {};

template <class Interface, class Implementation>
class ForwardingObject : public ClassObject<Interface> {
 public:
  explicit ForwardingObject(const ClassInfo& info)
      : ClassObject<Interface>(info), implementation_(make_implementation(*this)) {}

  void* implementation() noexcept override { return &implementation_; }

  // An implementation may have interfaces beyond those that every object has...
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const HRESULT status = ClassObject<Interface>::QueryInterface(id, object);
    if constexpr (requires(IUnknown & self) {
                    implementation_.further_interface(self, id, object);
                  }) {
      if (status == E_NOINTERFACE) {
        return implementation_.further_interface(static_cast<Interface&>(*this), id, object);
      }
    }
    return status;
  }
  // ...and members beyond its interface for late-bound callers.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    const HRESULT status =
        ClassObject<Interface>::GetIDsOfNames(reserved, names, count, locale, ids);
    if constexpr (requires { Implementation::further_members(); }) {
      if (status == DISP_E_UNKNOWNNAME && ids[0] == DISPID_UNKNOWN) {
        return dispatch::get_ids_of_names(Implementation::further_members(), names, count, ids);
      }
    }
    return status;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override {
    const HRESULT status = ClassObject<Interface>::Invoke(id, reserved, locale, flags, parameters,
                                                          result, exception, bad_argument);
    if constexpr (requires { Implementation::further_members(); }) {
      if (status == DISP_E_MEMBERNOTFOUND) {
        Object<IUnknown> owner;
        const HRESULT found = QueryInterface(Implementation::kFurtherMembersId,
                                             reinterpret_cast<void**>(owner.receive()));
        if (FAILED(found)) return found;
        return dispatch::invoke(Implementation::further_members(), owner.get(), id, flags,
                                parameters, result, exception, bad_argument);
      }
    }
    return status;
  }

 protected:
  template <class Body>
  HRESULT forward(Body&& body) noexcept {
    const Hold<ClassObject<Interface>> hold(*this);
    try {
      std::forward<Body>(body)();
      return S_OK;
    } catch (...) {
      return report_current_exception(this->class_info().interface_id);
    }
  }
  HRESULT not_built() noexcept { return report_not_built(this->class_info().interface_id); }

  Implementation implementation_;

 private:
  // An implementation that raises events is given the point where its clients connect.
  static Implementation make_implementation(ForwardingObject& object) {
    if constexpr (std::is_constructible_v<Implementation, ConnectionPoint&>) {
      return Implementation(*object.events());
    } else {
      return Implementation();
    }
  }
};

// A new object with no reference yet. Memory shortage goes up as an exception.
template <class ClassObjectType>
IUnknown* create_object() {
  // By way of its own interface: an object has several bases that are IUnknown.
  return static_cast<IDispatch*>(new ClassObjectType());
}

}  // namespace qv
