#include "text/typed_buffers.h"

#include <array>
#include <bit>
#include <limits>

#include "automation/bytes.h"
#include "frame/error_state.h"
#include "native/bags/typed_value.h"
#include "text/text_source.h"

namespace qv::text {
namespace {

using native::bags::fixed_width;
using native::bags::ReadStatus;
using native::bags::Tag;
using native::bags::ValuePlace;

template <class Value>
std::array<std::uint8_t, sizeof(Value)> image_of(const Value& value) {
  return std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value);
}

// Makes the buffer longer; the new characters must be written.
wchar_t* appended(Text& buffer, std::size_t count) {
  const std::size_t before = buffer.size();
  buffer.grow(before + count);
  return buffer.data() + before;
}

template <class Value>
void append_image(Text& buffer, const Value& value) {
  const auto image = image_of(value);
  put_bytes(image, appended(buffer, image.size()));
}

template <class Value>
void append_value(Text& buffer, Tag tag, const Value& value) {
  std::array<std::uint8_t, 1 + sizeof(Value)> bytes{static_cast<std::uint8_t>(tag)};
  std::ranges::copy(image_of(value), bytes.begin() + 1);
  put_bytes(bytes, appended(buffer, bytes.size()));
}

void append_text(Text& buffer, std::wstring_view text) {
  // A buffer may be put into itself, and moves when it grows.
  const bool is_the_buffer = text.data() == buffer.data();
  append_value(buffer, Tag::kString, static_cast<Long>(text.size()));
  wchar_t* target = appended(buffer, text.size());
  const wchar_t* source = is_the_buffer ? buffer.data() : text.data();
  std::copy_n(source, text.size(), target);
}

Long multiplied(std::int64_t a, std::int64_t b) {
  // Both fit 32 bits and a sign, so the product is exact.
  if (a * b > std::numeric_limits<Long>::max()) raise(kOverflow);
  return static_cast<Long>(a * b);
}

class Unlock {
 public:
  explicit Unlock(SAFEARRAY* array) noexcept : array_(array) {}
  Unlock(const Unlock&) = delete;
  Unlock& operator=(const Unlock&) = delete;
  ~Unlock() { SafeArrayUnlock(array_); }

 private:
  SAFEARRAY* array_;
};

// False for an array that is not allocated.
bool append_array(Text& buffer, SAFEARRAY* array, std::uint8_t element) {
  const UINT dimensions = array == nullptr ? 0 : SafeArrayGetDim(array);
  if (dimensions == 0) return false;
  const std::array<std::uint8_t, 2> head{static_cast<std::uint8_t>(Tag::kArray), element};
  put_bytes(head, appended(buffer, head.size()));
  append_image(buffer, static_cast<Integer>(dimensions));
  Long count = 1;
  for (UINT dimension = 1; dimension <= dimensions; ++dimension) {
    LONG lower = 0;
    LONG upper = 0;
    check(SafeArrayGetLBound(array, dimension, &lower));
    check(SafeArrayGetUBound(array, dimension, &upper));
    append_image(buffer, std::array{lower, upper});
    count = multiplied(count, std::int64_t{upper} - lower + 1);
  }
  const auto width = static_cast<Long>(fixed_width(element));
  const Long length = multiplied(count, width);
  if (SafeArrayGetElemsize(array) != static_cast<UINT>(width) || SafeArrayLock(array) != S_OK) {
    raise(kTypeMismatch);
  }
  const Unlock unlock(array);
  append_image(buffer, length);
  const auto size = static_cast<std::size_t>(length);
  put_bytes({static_cast<const std::uint8_t*>(array->pvData), size}, appended(buffer, size));
  return true;
}

bool append(Text& buffer, const Variant& value) {
  const VARTYPE type = value.type();
  switch (type) {
    case VT_I2:
      append_value(buffer, Tag::kInteger, value.to_integer());
      return true;
    case VT_I4:
      append_value(buffer, Tag::kLong, value.to_long());
      return true;
    case VT_R4:
      append_value(buffer, Tag::kSingle, value.to_single());
      return true;
    case VT_R8:
      append_value(buffer, Tag::kDouble, value.to_double());
      return true;
    case VT_CY:
      append_value(buffer, Tag::kCurrency, value.to_currency());
      return true;
    case VT_DATE:
      append_value(buffer, Tag::kDate, value.to_date());
      return true;
    case VT_BSTR:
      append_text(buffer, value.text_view());
      return true;
    case VT_BOOL:
      append_value(buffer, Tag::kBoolean, value.to_boolean());
      return true;
    case VT_UI1:
      append_value(buffer, Tag::kByte, value.to_byte());
      return true;
    default:
      break;
  }
  const VARTYPE element = type & ~VT_ARRAY;
  const bool has_form = value.is_array() && element <= std::numeric_limits<std::uint8_t>::max() &&
                        fixed_width(static_cast<std::uint8_t>(element)) != 0;
  if (!has_form) raise(kTypeMismatch);
  return append_array(buffer, value.array(), static_cast<std::uint8_t>(element));
}

template <class Value>
Value value_at(const TextSource& source, std::size_t at) {
  std::array<std::uint8_t, sizeof(Value)> image;
  source.copy(at, image);
  return std::bit_cast<Value>(image);
}

// Of a value that is neither a text nor an array.
Variant fixed_value(const TextSource& source, const ValuePlace& place) {
  switch (static_cast<Tag>(place.tag)) {
    case Tag::kInteger:
      return value_at<Integer>(source, place.data);
    case Tag::kLong:
      return value_at<Long>(source, place.data);
    case Tag::kSingle:
      return value_at<Single>(source, place.data);
    case Tag::kDouble:
      return value_at<Double>(source, place.data);
    case Tag::kCurrency:
      return value_at<Currency>(source, place.data);
    case Tag::kDate:
      return value_at<Date>(source, place.data);
    case Tag::kBoolean:
      return Boolean(value_at<Integer>(source, place.data) != 0);
    default:
      return static_cast<Integer>(value_at<Byte>(source, place.data));
  }
}

void raise_unless_done(ReadStatus status) {
  switch (status) {
    case ReadStatus::kDone:
      return;
    case ReadStatus::kCutShort:
      raise(kSubscriptOutOfRange);
    case ReadStatus::kUnknownTag:
      raise(kTypeMismatch);
    case ReadStatus::kNegativeLength:
      raise(kInvalidProcedureCall);
  }
}

Long position_from_1(std::size_t position) { return static_cast<Long>(position + 1); }

}  // namespace

Integer BufferTyped_Put(Text& Buffer, const Variant& InVal) {
  return frame::handled(L"KwRtLibMod.BufferTyped_Put", frame::kTakeError, Integer{True},
                        [&] { return append(Buffer, InVal) ? Integer{False} : Integer{True}; });
}

Variant BufferTyped_Get(const Text& Buffer, Long& Offset) {
  if (Offset == 0 || Offset > Buffer.length()) raise(kSubscriptOutOfRange);
  if (Offset < 0) raise(kInvalidProcedureCall);
  const TextSource source(Buffer);
  const ValuePlace place = native::bags::find_value(source, static_cast<std::size_t>(Offset - 1));
  Offset = position_from_1(place.end);
  raise_unless_done(place.status);
  switch (static_cast<Tag>(place.tag)) {
    case Tag::kString:
    case Tag::kShortString:
      return Buffer.view().substr(place.data, place.data_bytes);
    case Tag::kArray:
      if (native::bags::array_bytes(source, place, element_bytes(place.element))) {
        raise(kSubscriptOutOfRange);
      }
      // No array has such a descriptor, and its data stays unread.
      Offset = position_from_1(place.data);
      return {};
    default:
      return fixed_value(source, place);
  }
}

}  // namespace qv::text
