#include "runtime/collection.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include "automation/counted_object.h"
#include "native/ordered/keyed_list.h"
#include "runtime/characters.h"

namespace qv {
namespace {

using native::ordered::ItemId;
using native::ordered::kNoItem;

// The system's upper case of every character, without regard to the user's language: a key that is
// found on one machine is found on all.
char16_t folded(char16_t character) noexcept {
  static const auto table = [] {
    std::array<wchar_t, 0x10000> characters;
    for (std::size_t i = 0; i < characters.size(); ++i) characters[i] = static_cast<wchar_t>(i);
    LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, characters.data(),
                 static_cast<int>(characters.size()), characters.data(),
                 static_cast<int>(characters.size()));
    return characters;
  }();
  return static_cast<char16_t>(table[character]);
}

// An index as it was meant.
struct Index {
  bool is_key;
  std::wstring_view key;
  Long position = 0;

  // The error of an item that is not there.
  Long absent() const noexcept { return is_key ? kInvalidProcedureCall : kSubscriptOutOfRange; }
};

Index read_index(const Variant& index) {
  if (index.is_text()) return {true, index.text_view()};
  // Null is the wrong type here, not a wrong use of Null.
  if (index.is_null()) raise(kTypeMismatch);
  return {false, {}, index.to_long()};
}

bool is_given(const Variant& argument) noexcept { return !argument.is_missing(); }

std::size_t zero_based(Long position) noexcept { return static_cast<std::size_t>(position) - 1; }

}  // namespace

class Collection::Items : public native::ordered::KeyedList<Variant> {
 public:
  Items() : KeyedList(&folded) {}

  Long count() const noexcept { return static_cast<Long>(size()); }

  bool is_inside(Long position) const noexcept { return position >= 1 && position <= count(); }
  ItemId locate(const Index& index, Long& error) const noexcept {
    error = index.absent();
    if (index.is_key) return find(code_units(index.key));
    return is_inside(index.position) ? at(zero_based(index.position)) : kNoItem;
  }
  // The item's place, from 0.
  std::size_t place_of(const Variant& index) const {
    const Index meant = read_index(index);
    Long error = 0;
    const ItemId id = locate(meant, error);
    if (id == kNoItem) raise(error);
    return meant.is_key ? position_of(id) : zero_based(meant.position);
  }
};

class Collection::Enumerator final : public CountedObject<IEnumVARIANT> {
 public:
  Enumerator(std::shared_ptr<Items> items, std::size_t passed)
      : items_(std::move(items)), passed_(passed) {
    items_->attach_cursor(passed_);
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (values == nullptr && count > 0) return E_POINTER;
    ULONG done = 0;
    for (; done < count && passed_ < items_->size(); ++done, ++passed_) {
      VariantInit(&values[done]);
      const HRESULT status = VariantCopy(&values[done], items_->value(items_->at(passed_)).raw());
      if (FAILED(status)) {
        for (ULONG i = 0; i < done; ++i) VariantClear(&values[i]);
        passed_ -= done;
        return status;
      }
    }
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = items_->size() - passed_;
    passed_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    passed_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) override {
    if (clone == nullptr) return E_POINTER;
    try {
      *clone = new Enumerator(items_, passed_);
      return S_OK;
    } catch (...) {
      *clone = nullptr;
      return E_OUTOFMEMORY;
    }
  }

 private:
  ~Enumerator() override { items_->detach_cursor(passed_); }

  std::shared_ptr<Items> items_;
  std::size_t passed_;
};

Collection::Collection() noexcept = default;
Collection::Collection(Collection&&) noexcept = default;
Collection& Collection::operator=(Collection&&) noexcept = default;
Collection::~Collection() = default;

Collection::Items& Collection::items() {
  if (items_ == nullptr) items_ = std::make_shared<Items>();
  return *items_;
}

Long Collection::count() const noexcept { return items_ == nullptr ? 0 : items_->count(); }

void Collection::add(const Variant& item, const Variant& key, const Variant& before,
                     const Variant& after) {
  Items& all = items();
  std::optional<std::u16string_view> text;
  if (is_given(key)) {
    if (!key.is_text()) raise(kTypeMismatch);
    text = code_units(key.text_view());
  }
  if (is_given(before) && is_given(after)) raise(kInvalidProcedureCall);
  std::size_t place = all.size();
  if (is_given(before)) place = all.place_of(before);
  if (is_given(after)) place = all.place_of(after) + 1;
  if (all.size() >= static_cast<std::size_t>(std::numeric_limits<Long>::max())) raise(kOverflow);
  if (all.insert(place, Variant(item), text) == kNoItem) raise(kKeyAlreadyAssociated);
}

ItemId Collection::locate(const Variant& index, Long& error) const {
  const Index meant = read_index(index);
  if (items_ != nullptr) return items_->locate(meant, error);
  error = meant.absent();
  return kNoItem;
}

void Collection::remove(const Variant& index) {
  const Index meant = read_index(index);
  if (items_ == nullptr) raise(meant.absent());
  // The value ends last: what its end sets off finds the collection without it, and may drop it.
  const std::shared_ptr<Items> all = items_;
  Variant gone;
  if (meant.is_key) {
    const ItemId id = all->find(code_units(meant.key));
    if (id == kNoItem) raise(meant.absent());
    gone = all->erase(id);
  } else {
    if (!all->is_inside(meant.position)) raise(meant.absent());
    gone = all->erase_at(zero_based(meant.position));
  }
}

const Variant* Collection::find(const Variant& index, Long& error) const noexcept {
  try {
    const ItemId id = locate(index, error);
    return id != kNoItem ? &items_->value(id) : nullptr;
  } catch (...) {
    error = current_run_time_error().number;
    return nullptr;
  }
}

const Variant& Collection::item(const Variant& index) const {
  Long error = 0;
  const ItemId id = locate(index, error);
  if (id == kNoItem) raise(error);
  return items_->value(id);
}

bool Collection::contains(const Variant& index) const noexcept {
  Long error = 0;
  return find(index, error) != nullptr;
}

std::optional<std::wstring_view> Collection::key(const Variant& index) const {
  Long error = 0;
  const ItemId id = locate(index, error);
  if (id == kNoItem) raise(error);
  const auto found = items_->key(id);
  if (!found) return std::nullopt;
  return std::wstring_view(reinterpret_cast<const wchar_t*>(found->data()), found->size());
}

Object<IUnknown> Collection::new_enumerator() {
  items();
  return Object<IUnknown>::adopt(new Enumerator(items_, 0));
}

}  // namespace qv
