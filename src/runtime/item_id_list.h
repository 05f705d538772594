// A folder or another thing as the shell names it, by a list of ids.
#pragma once

#include <windows.h>

#include <utility>

#include "automation/text.h"

// The shell's own type: its header needs names that the generated constants take away.
struct _ITEMIDLIST;

namespace qv {

class ItemIdList {
 public:
  // Takes it over; null is no item.
  explicit ItemIdList(_ITEMIDLIST* list) noexcept : list_(list) {}
  ItemIdList(ItemIdList&& other) noexcept : list_(std::exchange(other.list_, nullptr)) {}
  ItemIdList& operator=(ItemIdList&&) = delete;
  ~ItemIdList() { CoTaskMemFree(list_); }

  // By its number, CSIDL_...; no item where the shell has none.
  static ItemIdList special_folder(HWND owner, int id);

  explicit operator bool() const noexcept { return list_ != nullptr; }
  _ITEMIDLIST* get() const noexcept { return list_; }
  // Without a final backslash, except in a root; "" for what is not in the file system, and for no
  // item.
  Text path() const;

 private:
  _ITEMIDLIST* list_;
};

}  // namespace qv
