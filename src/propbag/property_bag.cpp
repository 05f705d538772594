#include "propbag/property_bag.h"

#include "frame/error_state.h"
#include "native/bags/stored_bag.h"
#include "runtime/comparison.h"
#include "text/codecs.h"
#include "text/text_source.h"
#include "text/typed_buffers.h"

namespace qv::propbag {
namespace {

using native::bags::BagParts;
using native::bags::BagStatus;

constexpr const wchar_t* kMagic = L"PB2";
constexpr Long kVersionOfEmptyBuffer = 512;

// The value at a place that was found, or the error that finding it has left.
Variant read_at(const PropertyStore& store, Long& position) {
  if (position < 0) frame::Raise_Error();
  return store.read(position);
}

Text part_of(const Text& buffer, std::size_t at, std::size_t size) {
  return Text(buffer.view().substr(at, size));
}

}  // namespace

Boolean QvtPropertyBag::Load(const Text& /*Buffer*/, Boolean /*v2*/) {
  return frame::handled(L"QvPropertyBag.Load", frame::kTakeError, True, [&]() -> Boolean {
    store_.assign({}, {});
    Version = 0;
    // Applications know that this class reads nothing back, and use the second form.
    raise(kSubscriptOutOfRange);
  });
}

Variant QvtPropertyBag::ReadProperty(const Text& PropertyName, const Variant& DefaultValue,
                                     Long& Offset) const {
  Offset = store_.find(PropertyName).value;
  return Offset == 0 ? DefaultValue : read_at(store_, Offset);
}

Boolean QvtPropertyBag::WriteProperty(const Variant& Value, const Text& PropertyName,
                                      Variant& DefaultValue, Boolean /*v2*/) {
  return store_.write(Value, PropertyName, DefaultValue);
}

Text QvtPropertyBag::get_Flush() const {
  Text buffer;
  if (text::BufferTyped_Put(buffer, Version) != 0) frame::Raise_Error();
  return concat({buffer, store_.contents()});
}

Boolean QvtPropertyBag2::DeleteProperty(const Text& PropertyName) {
  constexpr const wchar_t* kSource = L"QvPropertyBag.DeleteProperty";
  return frame::handled(kSource, frame::kTakeError, True, [&] {
    const auto place = store_.find(PropertyName);
    if (place.value == 0) return False;
    if (place.value < 0) {
      frame::Set_Error({.Source = kSource}, frame::kChain);
      return True;
    }
    store_.remove(PropertyName, place);
    return False;
  });
}

Boolean QvtPropertyBag2::PropertyReplace(const Variant& Value, const Text& PropertyName,
                                         Variant& DefaultValue) {
  constexpr const wchar_t* kSource = L"QvPropertyBag.PropertyReplace";
  return frame::handled(kSource, frame::kTakeError, True, [&] {
    if (PropertyExists(PropertyName) && compare(ReadProperty(PropertyName, L""), Value) == 0) {
      return False;
    }
    if (DeleteProperty(PropertyName)) {
      frame::Set_Error({.Source = kSource}, frame::kChain);
      return True;
    }
    WriteProperty(Value, PropertyName, DefaultValue);
    return False;
  });
}

Boolean QvtPropertyBag2::Load(const Text& Buffer) {
  return frame::handled(L"QvPropertyBag.Load", frame::kTakeError, True, [&] {
    store_.assign({}, {});
    Version = 0;
    if (Buffer.empty()) {
      Version = kVersionOfEmptyBuffer;
      return False;
    }
    const BagParts parts = native::bags::find_bag_2(text::TextSource(Buffer));
    if (parts.status == BagStatus::kNoBag) {
      raise({.number = frame::kFirstApplicationError,
             .description = L"Il buffer non contiene dati di PropertyBag2."});
    }
    Version = parts.version;
    if (parts.status == BagStatus::kNegativeSize) raise(kInvalidProcedureCall);
    store_.assign(part_of(Buffer, parts.directory, parts.directory_bytes),
                  part_of(Buffer, parts.data, parts.data_bytes));
    if (parts.status == BagStatus::kTooLarge) raise(kOverflow);
    return False;
  });
}

Variant QvtPropertyBag2::ReadProperty(const Text& PropertyName, const Variant& DefaultValue) const {
  Long position = store_.find(PropertyName).value;
  return position == 0 ? DefaultValue : read_at(store_, position);
}

Text QvtPropertyBag2::get_Flush() const {
  return concat({kMagic, text::Long_2_Str(Version), store_.contents()});
}

}  // namespace qv::propbag
