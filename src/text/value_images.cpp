#include "text/value_images.h"

#include "automation/run_time_error.h"
#include "text/codecs.h"

namespace qv::text {
Long image_width(VARTYPE type) {
  switch (type) {
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_R4:
      return 4;
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    default:
      raise(kTypeMismatch);
  }
}

Variant value_of_image(Text image, VARTYPE type) {
  switch (type) {
    case VT_UI1:
      return Variant(image).to_byte();
    case VT_I2:
    case VT_BOOL:
      return Str_2_Int(image);
    case VT_I4:
      return Str_2_Long(image);
    case VT_R4:
      return Str_2_Single(image);
    case VT_R8:
      return Str_2_Double(image);
    case VT_CY:
      return Str_2_Currency(image);
    case VT_DATE:
      return Str_2_Date(image);
    default:
      return image;
  }
}

}  // namespace qv::text
