#include "printing/text_drawing.h"

#include <algorithm>

#include "automation/late_bound.h"
#include "frame/error_state.h"
#include "printing/device_context.h"
#include "runtime/err.h"

namespace qv::printing {
namespace {

constexpr wchar_t kBlank = L' ';
constexpr wchar_t kNonBreakingBlank = 0xA0;

Integer extent(Long device, std::wstring_view text) {
  Long width = static_cast<Long>(text.size());
  if (device != 0) {
    SIZE size{};
    const BOOL measured = GetTextExtentPoint32W(device_context(device), text.data(),
                                                static_cast<int>(text.size()), &size);
    capture_last_dll_error();
    width = measured != FALSE ? size.cx : 0;
  }
  return Variant(width).to_integer();
}

// Of a text that is wider than the line: up to the last blank before which it fits, or else as many
// characters as reach the width.
std::size_t line_length(Long device, std::wstring_view text, Integer width) {
  std::size_t length = 0;
  for (std::size_t blank = text.find(kBlank); blank != std::wstring_view::npos;
       blank = text.find(kBlank, length)) {
    if (extent(device, text.substr(0, blank)) > width) break;
    length = blank + 1;
  }
  if (length > 0) return length;
  while (extent(device, text.substr(0, length)) < width) ++length;
  return length;
}

std::wstring_view without_leading_blanks(std::wstring_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlank), text.size()));
}

[[noreturn]] void raise_null(const wchar_t* description) {
  raise({.number = frame::kFirstApplicationError, .description = description});
}

// The font of a device context, in another form as long as this lives.
class ChangedFont {
 public:
  ChangedFont(HDC device, const LOGFONTW& description)
      : device_(device),
        font_(CreateFontIndirectW(&description)),
        before_(SelectObject(device, font_)) {}
  ChangedFont(const ChangedFont&) = delete;
  ChangedFont& operator=(const ChangedFont&) = delete;
  ~ChangedFont() {
    if (before_ != nullptr) SelectObject(device_, before_);
    if (font_ != nullptr) DeleteObject(font_);
  }

 private:
  HDC device_;
  HFONT font_;
  HGDIOBJ before_;
};

LOGFONTW font_of(HDC device) {
  const HGDIOBJ font = GetCurrentObject(device, OBJ_FONT);
  capture_last_dll_error();
  if (font == nullptr) raise_null(L"GetCurrentObject=NULL");
  LOGFONTW description{};
  const int written = GetObjectW(font, sizeof description, &description);
  capture_last_dll_error();
  if (written == 0) raise_null(L"GetObject=NULL");
  return description;
}

}  // namespace

Integer Text_Extent(Long device, const Text& Buffer) { return extent(device, Buffer); }

Text Text_Justify(Text& Buffer, Long device, Integer Idt, Integer Wdt) {
  if (Idt < 0) raise(kInvalidProcedureCall);
  const Text whole =
      concat({Text::filled(static_cast<std::size_t>(Idt), kNonBreakingBlank), Buffer});
  const std::wstring_view text = whole;
  const std::size_t length =
      extent(device, text) <= Wdt ? text.size() : line_length(device, text, Wdt);
  Text line(text.substr(0, length));
  // So that a caller who loops until nothing is left comes to an end, an empty line takes a
  // character away.
  const std::size_t taken = std::min(std::max<std::size_t>(length, 1), text.size());
  Buffer = without_leading_blanks(text.substr(taken));
  return line;
}

Boolean Text_Rotate(Long device, const Text& text, Long DegreesTenths, Long XPixel, Long YPixel) {
  return frame::handled(L"KwRtLibMod.Text_Rotate", frame::kTakeError, True, [&] {
    const HDC context = device_context(device);
    LOGFONTW description = font_of(context);
    description.lfEscapement = DegreesTenths;
    const ChangedFont rotated(context, description);
    const BOOL drawn =
        TextOutW(context, XPixel, YPixel, text.c_str(), static_cast<int>(text.size()));
    capture_last_dll_error();
    if (drawn == FALSE) raise_null(L"TextOut=NULL");
    return False;
  });
}

Variant Gradient(const Variant& Ctl, const Variant&, const Variant&) {
  constexpr Integer kFilledBox = 38;
  const Object<IDispatch> control = Ctl.to_object();
  const Integer height = late_bound::get(control, L"ScaleHeight").to_integer();
  const Integer width = late_bound::get(control, L"ScaleWidth").to_integer();
  if (height == 0) raise(kDivisionByZero);
  const Single step = -510.0F / static_cast<Single>(height);
  Single level = 255;
  for (Long y = 0; y <= height; y += 2) {
    const Long blue = Variant(level).to_integer();
    // The language's statement Line (x1, y1)-(x2, y2), colour, BF as a call.
    late_bound::call(control, L"Line",
                     {kFilledBox, Single{-1}, static_cast<Single>(y - 1),
                      static_cast<Single>(width), static_cast<Single>(y + 2), blue << 16});
    level += step;
  }
  return {};
}

}  // namespace qv::printing
