// kwLemma: the entry of a kwDictionary, an object with the late-bound properties Value and Item.
#pragma once

#include "automation/object.h"
#include "automation/variant.h"

namespace qv::collections {

// The interface in its order; private, so it has no place in the type library.
struct _kwLemma : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT* result) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Item(VARIANT value) = 0;
};

Object<IDispatch> make_lemma(const Variant& item, const Variant& value);

}  // namespace qv::collections
