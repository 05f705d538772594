// Text: a String of the calling language. It owns one BSTR and is laid out as one, so that a
// by-reference String argument is a Text& over the caller's own variable.
#pragma once

#include <windows.h>
// oleauto.h needs windows.h before it.
#include <oleauto.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "automation/types.h"

namespace qv {

// Lengths and positions count characters (UTF-16 code units); character 0 is data like any other.
// Allocation failure is run-time error 14, "Out of string space".
class Text {
 public:
  Text() noexcept = default;
  Text(std::wstring_view characters) : bstr_(allocate(characters)) {}
  Text(const wchar_t* terminated) : Text(std::wstring_view(terminated)) {}
  Text(const Text& other) : Text(other.view()) {}
  Text(Text&& other) noexcept : bstr_(std::exchange(other.bstr_, nullptr)) {}
  Text& operator=(Text other) noexcept {
    std::swap(bstr_, other.bstr_);
    return *this;
  }
  ~Text() { SysFreeString(bstr_); }

  static Text filled(std::size_t length, wchar_t character);
  // Characters of unspecified content, for a caller that writes every one of them.
  static Text uninitialized(std::size_t length);
  static Text adopt(BSTR bstr) noexcept {
    Text text;
    text.bstr_ = bstr;
    return text;
  }

  std::size_t size() const noexcept { return SysStringLen(bstr_); }
  // The length as the calling language's Len gives it.
  Long length() const noexcept { return static_cast<Long>(SysStringLen(bstr_)); }
  bool empty() const noexcept { return size() == 0; }
  std::wstring_view view() const noexcept {
    return bstr_ == nullptr ? std::wstring_view() : std::wstring_view(bstr_, size());
  }
  operator std::wstring_view() const noexcept { return view(); }
  wchar_t* data() noexcept { return bstr_; }
  const wchar_t* data() const noexcept { return bstr_; }
  // Always terminated, never null, for the platform's services.
  const wchar_t* c_str() const noexcept { return bstr_ == nullptr ? L"" : bstr_; }
  wchar_t& operator[](std::size_t index) noexcept { return bstr_[index]; }
  wchar_t operator[](std::size_t index) const noexcept { return bstr_[index]; }

  // Makes the text longer by characters 0, in place where its block has room. The block is taken
  // larger than asked, so that a text built piece by piece is copied a logarithmic number of
  // times; cut() gives the spare room back.
  void grow(std::size_t new_length);
  // Keeps the first new_length characters, in a block of that size.
  void cut(std::size_t new_length);
  // Drops characters from the front, in place.
  void erase_front(std::size_t count) noexcept;
  Text& operator+=(std::wstring_view tail);

  BSTR release() noexcept { return std::exchange(bstr_, nullptr); }

  friend bool operator==(const Text& a, const Text& b) noexcept { return a.view() == b.view(); }
  friend bool operator==(const Text& a, std::wstring_view b) noexcept { return a.view() == b; }
  friend bool operator==(const Text& a, const wchar_t* b) noexcept { return a.view() == b; }

 private:
  static BSTR allocate(std::wstring_view characters);

  BSTR bstr_ = nullptr;
};

static_assert(sizeof(Text) == sizeof(BSTR));

// The pieces joined in one allocation.
Text concat(std::initializer_list<std::wstring_view> pieces);

// The decimal text of a number.
Text decimal(Long number);

}  // namespace qv
