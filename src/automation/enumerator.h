// The enumerators of Automation (IEnumVARIANT, IEnumConnections...) over a list that was fixed when
// the enumerator was made.
#pragma once

#include <windows.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "automation/counted_object.h"

namespace qv {

// Traits give: Item (what Next hands out), Interface, and how an item is copied and dropped:
//   static HRESULT copy(Item* target, const Item& source) noexcept;
//   static void drop(Item& item) noexcept;
template <class Traits>
class Enumerator final : public CountedObject<typename Traits::Interface> {
 public:
  using Item = typename Traits::Item;
  // The list belongs to all clones together.
  class List {
   public:
    explicit List(std::vector<Item> items) noexcept : items_(std::move(items)) {}
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    ~List() {
      for (Item& item : items_) Traits::drop(item);
    }
    const std::vector<Item>& items() const noexcept { return items_; }

   private:
    std::vector<Item> items_;
  };

  explicit Enumerator(std::shared_ptr<const List> list, std::size_t position = 0) noexcept
      : list_(std::move(list)), position_(position) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    ULONG done = 0;
    for (; done < count && position_ < list_->items().size(); ++done, ++position_) {
      const HRESULT status = Traits::copy(&items[done], list_->items()[position_]);
      if (FAILED(status)) {
        for (ULONG i = 0; i < done; ++i) Traits::drop(items[i]);
        position_ -= done;
        return status;
      }
    }
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = list_->items().size() - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(typename Traits::Interface** clone) override {
    if (clone == nullptr) return E_POINTER;
    *clone = new (std::nothrow) Enumerator(list_, position_);
    return *clone != nullptr ? S_OK : E_OUTOFMEMORY;
  }

 private:
  std::shared_ptr<const List> list_;
  std::size_t position_;
};

// A new enumerator over items whose references it takes over.
template <class Traits>
HRESULT make_enumerator(std::vector<typename Traits::Item> items,
                        typename Traits::Interface** enumerator) noexcept {
  using List = typename Enumerator<Traits>::List;
  if (enumerator == nullptr) return E_POINTER;
  *enumerator = nullptr;
  try {
    const auto list = std::make_shared<const List>(std::move(items));
    *enumerator = new (std::nothrow) Enumerator<Traits>(list);
  } catch (...) {
    // The list was not made, so the items are still here.
    for (auto& item : items) Traits::drop(item);
  }
  return *enumerator != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace qv
