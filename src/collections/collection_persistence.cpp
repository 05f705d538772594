#include "collections/collection_persistence.h"

#include <new>

#include "automation/foreign_error.h"
#include "automation/late_bound.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "frame/server/forward.h"

namespace qv::collections {
namespace {

Text numbered(const wchar_t* name, Long number) { return concat({name, decimal(number)}); }

// The platform's bag knows no defaults, so they are kept here.
class PlatformBag final : public PropertyStore {
 public:
  PlatformBag(Object<IPropertyBag> bag, IErrorLog* log) : bag_(std::move(bag)), log_(log) {}

  void write(const Text& name, const Variant& value, const Variant& default_value) override {
    if (!default_value.is_missing() && value.to_long() == default_value.to_long()) return;
    check_foreign(bag_->Write(name.c_str(), value.raw()));
  }
  Variant read(const Text& name, const Variant& default_value) override {
    Variant value;
    const HRESULT status = bag_->Read(name.c_str(), value.raw(), log_);
    // How a bag says that it has no such property.
    if (status == E_INVALIDARG && !default_value.is_missing()) return default_value;
    check_foreign(status);
    return value;
  }

 private:
  Object<IPropertyBag> bag_;
  IErrorLog* log_;
};

// The language's own bag, or any object that behaves as it does.
class LateBoundBag final : public PropertyStore {
 public:
  explicit LateBoundBag(Object<IDispatch> bag) : bag_(std::move(bag)) {}

  void write(const Text& name, const Variant& value, const Variant& default_value) override {
    if (default_value.is_missing()) {
      late_bound::call(bag_, L"WriteProperty", {name, value});
    } else {
      late_bound::call(bag_, L"WriteProperty", {name, value, default_value});
    }
  }
  Variant read(const Text& name, const Variant& default_value) override {
    if (default_value.is_missing()) return late_bound::get(bag_, L"ReadProperty", {name});
    return late_bound::get(bag_, L"ReadProperty", {name, default_value});
  }

 private:
  Object<IDispatch> bag_;
};

template <class Use>
void with_store(IUnknown* bag, IErrorLog* log, Use&& use) {
  if (auto platform = Object<IPropertyBag>::from(bag)) {
    PlatformBag store(std::move(platform), log);
    return use(store);
  }
  auto dispatch = Object<IDispatch>::from(bag);
  if (!dispatch) check(E_NOINTERFACE);
  LateBoundBag store(std::move(dispatch));
  use(store);
}

// Lives beside its object, which it keeps alive and whose identity it shares.
class Persistence final : public IPersistPropertyBag {
 public:
  Persistence(kwCollection& collection, IUnknown& object)
      : collection_(collection), object_(&object) {}
  Persistence(const Persistence&) = delete;
  Persistence& operator=(const Persistence&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    return object_.get()->QueryInterface(id, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override {
    if (id == nullptr) return E_POINTER;
    *id = kkwCollectionInfo.class_id;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override {
    return reported(bag, [&] { load_collection(collection_, bag, log); });
  }
  // The whole collection is written, whatever changed of it.
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL, BOOL) override {
    return reported(bag, [&] { save_collection(collection_, bag); });
  }

 private:
  ~Persistence() = default;

  template <class Body>
  static HRESULT reported(IUnknown* bag, Body&& body) noexcept {
    if (bag == nullptr) return E_POINTER;
    try {
      body();
      return S_OK;
    } catch (...) {
      return report_current_exception(IID_IPersistPropertyBag);
    }
  }

  ULONG references_ = 1;
  kwCollection& collection_;
  Object<IUnknown> object_;
};

}  // namespace

void write_properties(const kwCollection& collection, PropertyStore& store) {
  const Long count = collection.Count();
  store.write(L"Items", count, Long{0});
  const bool has_keys = collection.key_count() > 0;
  for (Long i = 1; i <= count; ++i) {
    if (has_keys) store.write(numbered(L"Key", i), collection.get_Key(i), Variant::missing());
    store.write(numbered(L"Item", i), collection.get_Item(i), Variant::missing());
  }
}

void read_properties(kwCollection& collection, PropertyStore& store) {
  const Variant none = Variant::missing();
  collection.Clear();
  const Long count = store.read(L"Items", Long{0}).to_long();
  for (Long i = 1; i <= count; ++i) {
    const Text key = store.read(numbered(L"Key", i), L"").to_text();
    const Variant item = store.read(numbered(L"Item", i), none);
    collection.Add(item, key.empty() ? none : Variant(key), none, none);
  }
}

void save_collection(const kwCollection& collection, IUnknown* bag) {
  with_store(bag, nullptr, [&](PropertyStore& store) { write_properties(collection, store); });
}

void load_collection(kwCollection& collection, IUnknown* bag, IErrorLog* log) {
  with_store(bag, log, [&](PropertyStore& store) { read_properties(collection, store); });
}

HRESULT property_bag_persistence(kwCollection& collection, IUnknown& object, REFIID id,
                                 void** found) noexcept {
  if (!IsEqualIID(id, IID_IPersist) && !IsEqualIID(id, IID_IPersistPropertyBag)) {
    return E_NOINTERFACE;
  }
  *found = new (std::nothrow) Persistence(collection, object);
  return *found != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace qv::collections
