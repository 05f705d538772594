#include "automation/text.h"

#include <cstring>
#include <cwchar>
#include <limits>
#include <string>

#include "automation/run_time_error.h"

namespace qv {
namespace {

constexpr std::size_t kTerminator_bytes = sizeof(wchar_t);
constexpr std::size_t kMaxLength = std::numeric_limits<UINT32>::max() / sizeof(wchar_t) / 2;

// The length in bytes lies in the 4 bytes before the characters: that much of the layout of a BSTR
// is public.
void set_length(BSTR bstr, std::size_t length) noexcept {
  const auto bytes = static_cast<UINT32>(length * sizeof(wchar_t));
  std::memcpy(reinterpret_cast<unsigned char*>(bstr) - sizeof bytes, &bytes, sizeof bytes);
  bstr[length] = L'\0';
}

// How far the heap block of a BSTR begins before its characters is not public and differs between
// systems, so it is found out once, on a block of known size. 0 where BSTRs do not come straight
// from the process heap (an allocation spy that shifts its blocks, for one).
std::size_t find_block_head_bytes() noexcept {
  constexpr UINT kProbe_length = 0x12345;
  BSTR probe = SysAllocStringLen(nullptr, kProbe_length);
  if (probe == nullptr) return 0;
  std::size_t found_bytes = 0;
  for (const std::size_t head_bytes : {sizeof(UINT32), sizeof(UINT64), 2 * sizeof(UINT64)}) {
    void* block = reinterpret_cast<unsigned char*>(probe) - head_bytes;
    if (HeapValidate(GetProcessHeap(), 0, block) == FALSE) continue;
    const std::size_t needed_bytes = head_bytes + kProbe_length * sizeof(wchar_t);
    const std::size_t block_bytes = HeapSize(GetProcessHeap(), 0, block);
    if (block_bytes >= needed_bytes && block_bytes < needed_bytes + 64) found_bytes = head_bytes;
  }
  SysFreeString(probe);
  return found_bytes;
}

// The length that the block of `bstr` has room for, or 0 where that can't be told.
std::size_t capacity(BSTR bstr) noexcept {
  static const std::size_t head_bytes = find_block_head_bytes();
  if (bstr == nullptr || head_bytes == 0) return 0;
  void* block = reinterpret_cast<unsigned char*>(bstr) - head_bytes;
  if (HeapValidate(GetProcessHeap(), 0, block) == FALSE) return 0;
  const std::size_t block_bytes = HeapSize(GetProcessHeap(), 0, block);
  if (block_bytes == static_cast<std::size_t>(-1) || block_bytes < head_bytes + kTerminator_bytes) {
    return 0;
  }
  return (block_bytes - head_bytes - kTerminator_bytes) / sizeof(wchar_t);
}

BSTR allocate_uninitialized(std::size_t length) {
  if (length > kMaxLength) raise(kOutOfStringSpace);
  BSTR bstr = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (bstr == nullptr) raise(kOutOfStringSpace);
  return bstr;
}

void copy_characters(wchar_t* target, std::wstring_view characters) noexcept {
  if (!characters.empty()) {
    std::memcpy(target, characters.data(), characters.size() * sizeof(wchar_t));
  }
}

}  // namespace

BSTR Text::allocate(std::wstring_view characters) {
  if (characters.empty()) return nullptr;
  BSTR bstr = allocate_uninitialized(characters.size());
  copy_characters(bstr, characters);
  return bstr;
}

Text Text::uninitialized(std::size_t length) {
  return length == 0 ? Text() : adopt(allocate_uninitialized(length));
}

Text Text::filled(std::size_t length, wchar_t character) {
  Text text = uninitialized(length);
  std::fill_n(text.data(), length, character);
  return text;
}

void Text::grow(std::size_t new_length) {
  const std::size_t old_length = size();
  if (new_length <= old_length) return;
  if (new_length > kMaxLength) raise(kOutOfStringSpace);
  if (new_length > capacity(bstr_)) {
    const std::size_t roomy_length = std::min(new_length + new_length / 2, kMaxLength);
    BSTR larger = SysAllocStringLen(nullptr, static_cast<UINT>(roomy_length));
    if (larger == nullptr) larger = allocate_uninitialized(new_length);
    copy_characters(larger, view());
    SysFreeString(bstr_);
    bstr_ = larger;
  }
  std::fill(bstr_ + old_length, bstr_ + new_length, L'\0');
  set_length(bstr_, new_length);
}

void Text::cut(std::size_t new_length) {
  if (new_length < size()) *this = Text(view().substr(0, new_length));
}

void Text::erase_front(std::size_t count) noexcept {
  if (count == 0) return;
  const std::size_t left = size() - count;
  std::memmove(bstr_, bstr_ + count, left * sizeof(wchar_t));
  set_length(bstr_, left);
}

Text& Text::operator+=(std::wstring_view tail) {
  const std::size_t old_length = size();
  if (!tail.empty() && bstr_ <= tail.data() && tail.data() <= bstr_ + old_length) {
    return *this += Text(tail).view();  // growing may move the block that the tail lies in
  }
  grow(old_length + tail.size());
  copy_characters(bstr_ + old_length, tail);
  return *this;
}

Text concat(std::initializer_list<std::wstring_view> pieces) {
  std::size_t length = 0;
  for (const auto piece : pieces) length += piece.size();
  Text joined = Text::uninitialized(length);
  wchar_t* target = joined.data();
  for (const auto piece : pieces) {
    copy_characters(target, piece);
    target += piece.size();
  }
  return joined;
}

Text decimal(Long number) { return Text(std::to_wstring(number)); }

}  // namespace qv
