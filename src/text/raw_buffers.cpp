#include "text/raw_buffers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <string>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "text/value_images.h"

namespace qv::text {
namespace {

constexpr std::int64_t kGrowth_characters = 16384;
constexpr Long kPrefix_characters = 4;

// One character beyond the end of the content always exists, so the test is strict.
void make_room(Text& buffer, Long offset, std::int64_t width) {
  const std::int64_t end = offset + width;
  if (end > std::numeric_limits<Long>::max()) raise(kOverflow);
  const std::int64_t length = buffer.length();
  if (end <= length) return;
  const std::int64_t steps = (end - length + kGrowth_characters - 1) / kGrowth_characters;
  buffer.grow(static_cast<std::size_t>(length + steps * kGrowth_characters));
}

template <class Value>
void put_image(wchar_t* target, const Value& value) {
  put_bytes(std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value), target);
}

void put_value(wchar_t* target, const Variant& value) {
  switch (value.type()) {
    case VT_UI1:
      put_image(target, value.to_byte());
      break;
    case VT_I2:
    case VT_BOOL:
      put_image(target, value.to_integer());
      break;
    case VT_I4:
    case VT_R4:
      put_image(target, value.to_long());
      break;
    default:
      put_image(target, value.to_double());
      break;
  }
}

}  // namespace

Boolean Buffer_Put(Text& Buffer, Long& Offset, const Variant& InVal, Boolean StringPrefix) {
  return frame::handled(L"KwRtLibMod.Buffer_Put", frame::kTakeError, True, [&] {
    const bool is_text = InVal.is_text();
    const auto width =
        is_text ? static_cast<Long>(InVal.text_view().size()) : image_width(InVal.type());
    const Long prefix = is_text && StringPrefix ? kPrefix_characters : 0;
    make_room(Buffer, Offset, std::int64_t{prefix} + width);
    if (Offset < 1) raise(kInvalidProcedureCall);

    wchar_t* target = Buffer.data() + (Offset - 1);
    if (is_text) {
      // The caller may put a buffer into itself: the text lies where it is now, it overlaps, and
      // its prefix may fall upon it.
      std::char_traits<wchar_t>::move(target + prefix, InVal.text_view().data(),
                                      static_cast<std::size_t>(width));
      if (prefix != 0) put_image(target, width);
    } else {
      put_value(target, InVal);
    }
    Offset += prefix + width;
    return False;
  });
}

Boolean Buffer_Get(Text& Buffer, Long& Offset, Variant& RetVal, Boolean StringPrefix) {
  return frame::handled(L"KwRtLibMod.Buffer_Get", frame::kTakeError, True, [&] {
    const VARTYPE type = RetVal.type();
    std::int64_t width = 0;
    if (type == VT_BSTR && StringPrefix) {
      Variant length{Long{0}};
      if (Buffer_Get(Buffer, Offset, length, False)) return True;
      width = length.to_long();
    } else {
      width = type == VT_BSTR ? static_cast<std::int64_t>(RetVal.text_view().size())
                              : image_width(type);
    }
    if (Offset == 0 || Offset + width > std::int64_t{Buffer.length()} + 1) {
      raise(kSubscriptOutOfRange);
    }
    if (Offset < 0 || width < 0) raise(kInvalidProcedureCall);
    const auto start = static_cast<std::size_t>(Offset - 1);
    Text image(Buffer.view().substr(start, static_cast<std::size_t>(width)));
    Offset += static_cast<Long>(width);
    RetVal.assign(value_of_image(std::move(image), type));
    return False;
  });
}

void Buffer_LTrim(Text& Buffer, Long& Offset) {
  const auto text = Buffer.view();
  const auto limit = static_cast<std::size_t>(std::max<Long>(Offset - 1, 0));
  const auto content = text.substr(0, limit);
  const auto blanks = std::min(content.find_first_not_of(L' '), content.size());
  Buffer.erase_front(blanks);
  Offset -= static_cast<Long>(blanks);
}

void Buffer_RTrim(const Text& Buffer, Long& Offset) {
  while (Offset >= 2 && Offset - 1 <= Buffer.length() &&
         Buffer[static_cast<std::size_t>(Offset - 2)] == L' ') {
    --Offset;
  }
}

void Buffer_Complete(Text& Buffer, Long& Offset) {
  if (Offset > 0) {
    --Offset;
    Buffer.cut(static_cast<std::size_t>(Offset));
  } else {
    Buffer = Text();
  }
}

Boolean Buffer_TruncIfLast(const Text& Buffer, Long& Offset, const Text& LastStr) {
  const std::int64_t position = std::int64_t{Offset} - LastStr.length();
  if (!LastStr.empty() && position > 0 && position <= Buffer.length()) {
    const auto start = static_cast<std::size_t>(position - 1);
    if (Buffer.view().substr(start, LastStr.size()) == LastStr.view()) {
      Offset = static_cast<Long>(position);
    }
  }
  return False;
}

Text Buffer_Right(const Text& Buffer, Long Offset, Long Chars) {
  if (Chars < 0) raise(kInvalidProcedureCall);
  if (Chars == 0 || Offset == 1) return {};
  const std::int64_t count = std::min<std::int64_t>(Chars, std::int64_t{Offset} - 1);
  if (count < 0) raise(kInvalidProcedureCall);
  const auto start = static_cast<std::size_t>(Offset - count - 1);
  if (start >= Buffer.size()) return {};
  return Text(Buffer.view().substr(start, static_cast<std::size_t>(count)));
}

}  // namespace qv::text
