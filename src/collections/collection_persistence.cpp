#include "collections/collection_persistence.h"

#include <new>

#include "automation/arguments.h"
#include "automation/foreign_error.h"
#include "automation/late_bound.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "frame/server/forward.h"

namespace qv::collections {
namespace {

constexpr const wchar_t* kItems = L"Items";
constexpr const wchar_t* kItem = L"Item";
constexpr const wchar_t* kKey = L"Key";

Text numbered(const wchar_t* name, Long number) { return concat({name, decimal(number)}); }

// Where named values are kept.
class Bag {
 public:
  Bag() = default;
  Bag(const Bag&) = delete;
  Bag& operator=(const Bag&) = delete;
  virtual ~Bag() = default;

  virtual void write(const Text& name, const Variant& value) = 0;
  // 0 is the default of a count, which a bag does not store.
  virtual void write_count(const Text& name, Long count) = 0;
  // What is absent reads as the default, and is the bag's error where that is missing.
  virtual Variant read(const Text& name, const Variant& default_value) = 0;
};

// The platform's bag knows no defaults, so they are kept here.
class PlatformBag final : public Bag {
 public:
  PlatformBag(Object<IPropertyBag> bag, IErrorLog* log) : bag_(std::move(bag)), log_(log) {}

  void write(const Text& name, const Variant& value) override {
    check_foreign(bag_, bag_->Write(name.c_str(), value.raw()));
  }
  void write_count(const Text& name, Long count) override {
    if (count != 0) write(name, count);
  }
  Variant read(const Text& name, const Variant& default_value) override {
    Variant value;
    const HRESULT status = bag_->Read(name.c_str(), value.raw(), log_);
    // How a bag says that it has no such property.
    if (status == E_INVALIDARG && !default_value.is_missing()) return default_value;
    check_foreign(bag_, status);
    return value;
  }

 private:
  Object<IPropertyBag> bag_;
  IErrorLog* log_;
};

// The language's own bag, or any object that behaves as it does.
class LateBoundBag final : public Bag {
 public:
  explicit LateBoundBag(Object<IDispatch> bag) : bag_(std::move(bag)) {}

  void write(const Text& name, const Variant& value) override {
    late_bound::call(bag_, L"WriteProperty", {name, value, Variant::missing()});
  }
  void write_count(const Text& name, Long count) override {
    late_bound::call(bag_, L"WriteProperty", {name, count, Long{0}});
  }
  Variant read(const Text& name, const Variant& default_value) override {
    return late_bound::get(bag_, L"ReadProperty", {name, default_value});
  }

 private:
  Object<IDispatch> bag_;
};

void save(const kwCollection& collection, Bag& bag) {
  const Long count = collection.Count();
  const bool has_keys = collection.key_count() > 0;
  bag.write_count(kItems, count);
  for (Long i = 1; i <= count; ++i) {
    if (has_keys) bag.write(numbered(kKey, i), collection.get_Key(i));
    bag.write(numbered(kItem, i), collection.get_Item(i));
  }
}

void load(kwCollection& collection, Bag& bag) {
  const Variant none = Variant::missing();
  collection.Clear();
  const Long count = bag.read(kItems, Long{0}).to_long();
  for (Long i = 1; i <= count; ++i) {
    const Text key = bag.read(numbered(kKey, i), L"").to_text();
    const Variant item = bag.read(numbered(kItem, i), none);
    collection.Add(item, key.empty() ? none : Variant(key), none, none);
  }
}

template <class Use>
void with_any_bag(IDispatch* object, Use&& use) {
  if (object == nullptr) raise(kObjectVariableNotSet);
  if (auto platform = Object<IPropertyBag>::from(object)) {
    PlatformBag bag(std::move(platform), nullptr);
    return use(bag);
  }
  LateBoundBag bag{Object<IDispatch>(object)};
  use(bag);
}

// Lives beside its object, which it keeps alive and whose identity it shares.
class Persistence final : public _Persistence {
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
    if (bag == nullptr) return E_POINTER;
    return reported([&] {
      PlatformBag platform(Object<IPropertyBag>(bag), log);
      load(collection_, platform);
    });
  }
  // The whole collection is written, whatever changed of it.
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL, BOOL) override {
    if (bag == nullptr) return E_POINTER;
    return reported([&] {
      PlatformBag platform(Object<IPropertyBag>(bag), nullptr);
      save(collection_, platform);
    });
  }
  HRESULT STDMETHODCALLTYPE WriteProperties(IDispatch* object) override {
    return reported([&] { with_any_bag(object, [&](Bag& bag) { save(collection_, bag); }); });
  }
  HRESULT STDMETHODCALLTYPE ReadProperties(IDispatch* object) override {
    return reported([&] { with_any_bag(object, [&](Bag& bag) { load(collection_, bag); }); });
  }

 private:
  ~Persistence() = default;

  template <class Body>
  HRESULT reported(Body&& body) noexcept {
    const Hold hold(*this);
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

using namespace dispatch;

constexpr ParameterRow kBagParameter[] = {{L"PropBag"}};
// The slots follow the seven of IPersistPropertyBag. The ids are none of the class's own.
constexpr Operation kWriteProperties[] = {
    {DISPATCH_METHOD, 7, &invoke_slot<InObject<IDispatch>>, kBagParameter}};
constexpr Operation kReadProperties[] = {
    {DISPATCH_METHOD, 8, &invoke_slot<InObject<IDispatch>>, kBagParameter}};
constexpr Member kMembers[] = {{L"WriteProperties", 0x1001, kWriteProperties},
                               {L"ReadProperties", 0x1002, kReadProperties}};

}  // namespace

MemberTable persistence_members() noexcept {
  static const auto buckets = name_buckets(kMembers);
  return {kMembers, buckets};
}

HRESULT query_persistence(kwCollection& collection, IUnknown& object, REFIID id,
                          void** found) noexcept {
  if (!IsEqualIID(id, IID_IPersist) && !IsEqualIID(id, IID_IPersistPropertyBag) &&
      !IsEqualIID(id, kPersistenceId)) {
    return E_NOINTERFACE;
  }
  *found = new (std::nothrow) Persistence(collection, object);
  return *found != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace qv::collections
