// Measuring, breaking and drawing text, checked by the pixels of a bitmap.
#include "server/canvas.h"
#include "server/client.h"
#include "server/import_patch.h"

namespace qv::tests {
namespace {

constexpr const wchar_t* kFace = L"Liberation Sans";
const std::wstring kParagraph =
    L"The library measures every line by the device on which it will be drawn, so that a paragraph "
    L"comes out alike on the screen and on paper; incomprehensibilities longer than a line are cut "
    L"inside.";

class TextDrawing : public testing::Test {
 protected:
  SHORT extent(LONG device, std::wstring_view text) {
    String buffer(text);
    SHORT width = -5;
    EXPECT_EQ(global->Text_Extent(device, &buffer, &width), S_OK);
    EXPECT_EQ(buffer, text);
    return width;
  }
  std::wstring justify(String& buffer, LONG device, SHORT indent, SHORT width) {
    String line;
    EXPECT_EQ(global->Text_Justify(&buffer, &device, &indent, &width, &line), S_OK);
    return std::wstring(line.view());
  }
  VARIANT_BOOL rotate(LONG device, const wchar_t* text, LONG tenths, LONG x, LONG y) {
    String drawn(text);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global->Text_Rotate(&device, &drawn, &tenths, &x, &y, &failed), S_OK);
    return failed;
  }
  void expect_record(LONG number, const wchar_t* source, const wchar_t* description) {
    LONG recorded = 0;
    String text;
    global->Error_Number(&recorded);
    EXPECT_EQ(recorded, number);
    global->Error_Source(&text);
    EXPECT_EQ(text, source);
    String recorded_description;
    global->Error_Description(&recorded_description);
    EXPECT_EQ(recorded_description, description);
    global->Reset_Error();
  }

  Pointer<_KwRtLib> global = create_global();
  Canvas canvas{300, 300};
  CanvasFont font{canvas, 20, kFace};
};

SIZE measured(HDC device, std::wstring_view text) {
  SIZE size{};
  GetTextExtentPoint32W(device, text.data(), static_cast<int>(text.size()), &size);
  return size;
}

TEST_F(TextDrawing, Text_Extent_without_a_device_counts_characters) {
  EXPECT_EQ(extent(0, L"abc"), 3);
  EXPECT_EQ(extent(0, L""), 0);
  EXPECT_EQ(extent(0, {L"a\0b", 3}), 3);
  EXPECT_EQ(extent(0, std::wstring(32767, L'x')), 32767);
}

TEST_F(TextDrawing, Text_Extent_on_a_device_is_the_width_in_its_font) {
  for (const wchar_t* text : {L"abc", L"iii", L"MMM", L"\u20ac \u00e9", L"\u0416\u4e2d"}) {
    EXPECT_EQ(extent(canvas.handle(), text), measured(canvas.device(), text).cx);
  }
  EXPECT_EQ(extent(canvas.handle(), L""), 0);
  EXPECT_LT(extent(canvas.handle(), L"iii"), extent(canvas.handle(), L"MMM"));
}

TEST_F(TextDrawing, Text_Extent_is_in_logical_units) {
  const SHORT pixels = extent(canvas.handle(), L"abcdefgh");
  SetMapMode(canvas.device(), MM_ANISOTROPIC);
  SetWindowExtEx(canvas.device(), 1000, 1000, nullptr);
  SetViewportExtEx(canvas.device(), 100, 100, nullptr);
  EXPECT_EQ(extent(canvas.handle(), L"abcdefgh"), measured(canvas.device(), L"abcdefgh").cx);
  EXPECT_NE(extent(canvas.handle(), L"abcdefgh"), pixels);
}

TEST_F(TextDrawing, Text_Extent_past_an_Integer_raises_6) {
  String buffer(std::wstring(32768, L'x'));
  SHORT width = 5;
  EXPECT_EQ(global->Text_Extent(0, &buffer, &width), error_result(6));
  String long_text(std::wstring(6000, L'M'));
  ASSERT_GT(measured(canvas.device(), long_text.view()).cx, 32767);
  EXPECT_EQ(global->Text_Extent(canvas.handle(), &long_text, &width), error_result(6));
  EXPECT_EQ(width, 5);
}

TEST_F(TextDrawing, Text_Extent_of_what_is_no_device_context_is_0) {
  EXPECT_EQ(extent(1, L"abc"), 0);
  EXPECT_EQ(extent(-1, L"abc"), 0);
  const HPEN pen = CreatePen(PS_SOLID, 1, 0);
  EXPECT_EQ(extent(static_cast<LONG>(reinterpret_cast<LONG_PTR>(pen)), L"abc"), 0);
  DeleteObject(pen);
}

TEST_F(TextDrawing, Text_Justify_returns_a_text_that_fits_with_its_indent_and_leaves_nothing) {
  String buffer(L"two words ");
  EXPECT_EQ(justify(buffer, 0, 2, 12), L"\u00a0\u00a0two words ");
  EXPECT_EQ(buffer, L"");
}

TEST_F(TextDrawing, Text_Justify_of_an_empty_text_is_its_indent) {
  String buffer;
  EXPECT_EQ(justify(buffer, 0, 3, 10), L"\u00a0\u00a0\u00a0");
  EXPECT_EQ(buffer, L"");
  EXPECT_EQ(justify(buffer, 0, 0, 0), L"");
  EXPECT_EQ(justify(buffer, 0, 0, -1), L"");
  EXPECT_EQ(buffer, L"");
}

TEST_F(TextDrawing, Text_Justify_breaks_at_the_last_blank_before_which_the_text_fits) {
  String buffer(L"one two   three");
  EXPECT_EQ(justify(buffer, 0, 0, 7), L"one two ");
  EXPECT_EQ(buffer, L"three");
  String shorter(L"one two three");
  EXPECT_EQ(justify(shorter, 0, 0, 6), L"one ");
  EXPECT_EQ(shorter, L"two three");
}

TEST_F(TextDrawing, Text_Justify_may_break_at_a_leading_blank) {
  String buffer(L" onetwothree");
  EXPECT_EQ(justify(buffer, 0, 0, 5), L" ");
  EXPECT_EQ(buffer, L"onetwothree");
}

TEST_F(TextDrawing, Text_Justify_cuts_a_long_word_where_it_reaches_the_width) {
  String buffer(L"incomprehensible words");
  EXPECT_EQ(justify(buffer, 0, 0, 5), L"incom");
  EXPECT_EQ(buffer, L"prehensible words");
  EXPECT_EQ(justify(buffer, 0, 2, 5), L"\u00a0\u00a0pre");
  EXPECT_EQ(buffer, L"hensible words");
}

TEST_F(TextDrawing, Text_Justify_on_a_device_cuts_a_word_up_to_one_character_wider) {
  const SHORT width = 100;
  String buffer(L"incomprehensibilities");
  const std::wstring line = justify(buffer, canvas.handle(), 0, width);
  EXPECT_EQ(line + std::wstring(buffer.view()), L"incomprehensibilities");
  EXPECT_GE(extent(canvas.handle(), line), width);
  EXPECT_LT(extent(canvas.handle(), line.substr(0, line.size() - 1)), width);
}

TEST_F(TextDrawing, Text_Justify_with_no_width_takes_a_character_away) {
  String buffer(L"word");
  EXPECT_EQ(justify(buffer, 0, 0, 0), L"");
  EXPECT_EQ(buffer, L"ord");
  EXPECT_EQ(justify(buffer, 0, 0, -7), L"");
  EXPECT_EQ(buffer, L"rd");
  EXPECT_EQ(justify(buffer, 0, 1, 0), L"");
  EXPECT_EQ(buffer, L"rd");  // the indent's one character
  String blank(L"a b");
  EXPECT_EQ(justify(blank, 0, 0, 0), L"");
  EXPECT_EQ(blank, L"b");
}

TEST_F(TextDrawing, Text_Justify_takes_blanks_alone_for_breaks) {
  String buffer(L"one\ttwo\u00a0three");
  EXPECT_EQ(justify(buffer, 0, 0, 9), L"one\ttwo\u00a0t");
  EXPECT_EQ(buffer, L"hree");
}

TEST_F(TextDrawing, Text_Justify_with_a_negative_indent_raises_5_and_changes_nothing) {
  String buffer(L"one two");
  LONG device = 0;
  SHORT indent = -1;
  SHORT width = 3;
  String line;
  EXPECT_EQ(global->Text_Justify(&buffer, &device, &indent, &width, &line), error_result(5));
  EXPECT_EQ(buffer, L"one two");
}

TEST_F(TextDrawing, Text_Justify_on_what_is_no_device_context_takes_the_whole_text) {
  // Nothing can be measured, so nothing is too wide.
  String buffer(L"one two three");
  EXPECT_EQ(justify(buffer, 1, 1, 3), L"\u00a0one two three");
  EXPECT_EQ(buffer, L"");
  String none(L"one two");
  EXPECT_EQ(justify(none, 1, 0, -1), L"");
  EXPECT_EQ(none, L"ne two");
}

TEST_F(TextDrawing, Text_Justify_of_a_text_past_an_Integer_raises_6_and_changes_nothing) {
  String buffer(std::wstring(32767, L'x'));
  LONG device = 0;
  SHORT indent = 1;
  SHORT width = 50;
  String line;
  EXPECT_EQ(global->Text_Justify(&buffer, &device, &indent, &width, &line), error_result(6));
  EXPECT_EQ(buffer.view(), std::wstring(32767, L'x'));
}

// Breaks a whole paragraph as an application does: the first line indented.
std::vector<std::wstring> lines_of(const Pointer<_KwRtLib>& global, LONG device, SHORT width) {
  std::vector<std::wstring> lines;
  String buffer(kParagraph);
  for (SHORT indent = 2; buffer.length() > 0; indent = 0) {
    String line;
    EXPECT_EQ(global->Text_Justify(&buffer, &device, &indent, &width, &line), S_OK);
    lines.emplace_back(line.view());
  }
  return lines;
}

TEST_F(TextDrawing, A_paragraph_breaks_alike_without_a_device_and_on_one_of_fixed_pitch) {
  const CanvasFont fixed(canvas, 16, L"Liberation Mono");
  const SHORT pitch = extent(canvas.handle(), L"x");
  const auto counted = lines_of(global, 0, 20);
  EXPECT_EQ(lines_of(global, canvas.handle(), static_cast<SHORT>(20 * pitch)), counted);
  const std::vector<std::wstring> expected = {
      L"\u00a0\u00a0The library ", L"measures every line ", L"by the device on ",
      L"which it will be ",        L"drawn, so that a ",    L"paragraph comes out ",
      L"alike on the screen ",     L"and on paper; ",       L"incomprehensibilitie",
      L"s longer than a line ",    L"are cut inside."};
  EXPECT_EQ(counted, expected);
}

TEST_F(TextDrawing, The_lines_of_a_paragraph_fit_the_device_and_lose_nothing) {
  constexpr SHORT kWidth = 150;
  std::wstring together;
  for (const std::wstring& line : lines_of(global, canvas.handle(), kWidth)) {
    // Without the blank it was broken at, or the character with which a word reached the width.
    const auto shown = std::wstring_view(line).substr(0, line.size() - 1);
    EXPECT_LE(extent(canvas.handle(), shown), kWidth) << testing::PrintToString(line);
    together += line;
  }
  EXPECT_EQ(together, L"\u00a0\u00a0" + kParagraph);
}

TEST_F(TextDrawing, Text_Rotate_by_0_draws_level_text) {
  EXPECT_EQ(rotate(canvas.handle(), L"Sample", 0, 20, 30), VARIANT_FALSE);
  Canvas expected(300, 300);
  const CanvasFont same(expected, 20, kFace);
  TextOutW(expected.device(), 20, 30, L"Sample", 6);
  EXPECT_TRUE(canvas.ink());
  EXPECT_EQ(canvas.pixels(), expected.pixels());
}

TEST_F(TextDrawing, Text_Rotate_draws_at_an_angle) {
  for (const LONG tenths : {450, 900, 1800, 2700, -300}) {
    PatBlt(canvas.device(), 0, 0, 300, 300, WHITENESS);
    EXPECT_EQ(rotate(canvas.handle(), L"Sample", tenths, 150, 150), VARIANT_FALSE);
    Canvas expected(300, 300);
    LOGFONTW description = font.description();
    description.lfEscapement = tenths;
    const HFONT rotated = CreateFontIndirectW(&description);
    const HGDIOBJ before = SelectObject(expected.device(), rotated);
    TextOutW(expected.device(), 150, 150, L"Sample", 6);
    SelectObject(expected.device(), before);
    DeleteObject(rotated);
    EXPECT_TRUE(canvas.ink());
    EXPECT_EQ(canvas.pixels(), expected.pixels()) << tenths;
  }
}

TEST_F(TextDrawing, Text_Rotate_by_900_goes_upwards) {
  EXPECT_EQ(rotate(canvas.handle(), L"Sample", 900, 150, 150), VARIANT_FALSE);
  const auto ink = canvas.ink();
  ASSERT_TRUE(ink);
  EXPECT_GT(ink->bottom - ink->top, ink->right - ink->left);
  EXPECT_LE(ink->bottom, 150);
  EXPECT_GE(ink->left, 150);
}

TEST_F(TextDrawing, Text_Rotate_leaves_the_font_of_the_context_as_it_was) {
  rotate(canvas.handle(), L"Sample", 300, 20, 30);
  EXPECT_EQ(GetCurrentObject(canvas.device(), OBJ_FONT), font.handle());
  LOGFONTW description{};
  GetObjectW(font.handle(), sizeof description, &description);
  EXPECT_EQ(description.lfEscapement, 0);
}

std::vector<HGDIOBJ> made_fonts;
std::vector<HGDIOBJ> deleted_objects;
BOOL drawing_works = FALSE;
HFONT WINAPI make_font(const LOGFONTW* description) {
  const HFONT font = CreateFontIndirectW(description);
  made_fonts.push_back(font);
  return font;
}
HFONT WINAPI make_no_font(const LOGFONTW*) { return nullptr; }
BOOL WINAPI delete_object(HGDIOBJ object) {
  deleted_objects.push_back(object);
  return DeleteObject(object);
}
BOOL WINAPI draw_text(HDC, int, int, LPCWSTR, int) { return drawing_works; }
int WINAPI describe_no_object(HANDLE, int, void*) { return 0; }

TEST_F(TextDrawing, Text_Rotate_deletes_the_font_that_it_makes_after_a_failure_too) {
  const ImportPatch making("CreateFontIndirectW", make_font);
  const ImportPatch deleting("DeleteObject", delete_object);
  const ImportPatch drawing("TextOutW", draw_text);
  for (const BOOL works : {TRUE, FALSE}) {
    made_fonts.clear();
    deleted_objects.clear();
    drawing_works = works;
    EXPECT_EQ(rotate(canvas.handle(), L"Sample", 300, 20, 30),
              works != FALSE ? VARIANT_FALSE : VARIANT_TRUE);
    EXPECT_EQ(made_fonts.size(), 1U);
    EXPECT_EQ(deleted_objects, made_fonts);
    EXPECT_EQ(GetCurrentObject(canvas.device(), OBJ_FONT), font.handle());
  }
  expect_record(20000, L"KwRtLibMod.Text_Rotate", L"TextOut=NULL");
}

TEST_F(TextDrawing, Text_Rotate_without_a_description_of_the_font_is_recorded) {
  const ImportPatch describing("GetObjectW", describe_no_object);
  EXPECT_EQ(rotate(canvas.handle(), L"Sample", 300, 20, 30), VARIANT_TRUE);
  expect_record(20000, L"KwRtLibMod.Text_Rotate", L"GetObject=NULL");
}

TEST_F(TextDrawing, Text_Rotate_draws_in_the_old_font_where_the_system_makes_none) {
  const ImportPatch making("CreateFontIndirectW", make_no_font);
  EXPECT_EQ(rotate(canvas.handle(), L"Sample", 900, 20, 30), VARIANT_FALSE);
  const auto ink = canvas.ink();
  ASSERT_TRUE(ink);
  EXPECT_GT(ink->right - ink->left, ink->bottom - ink->top);
  EXPECT_EQ(GetCurrentObject(canvas.device(), OBJ_FONT), font.handle());
}

TEST_F(TextDrawing, Text_Rotate_of_an_empty_text_draws_nothing) {
  EXPECT_EQ(rotate(canvas.handle(), L"", 900, 20, 30), VARIANT_FALSE);
  EXPECT_FALSE(canvas.ink());
}

TEST_F(TextDrawing, Text_Rotate_on_what_is_no_device_context_is_recorded) {
  for (const LONG device : {0, 1, -1}) {
    EXPECT_EQ(rotate(device, L"Sample", 900, 20, 30), VARIANT_TRUE);
    expect_record(20000, L"KwRtLibMod.Text_Rotate", L"GetCurrentObject=NULL");
  }
}

TEST_F(TextDrawing, StdOut_gives_False) {
  String text;
  VARIANT_BOOL failed = 1;
  EXPECT_EQ(global->StdOut(&text, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

// A form or picture box that paints boxes on a canvas.
class PictureBox final : public IDispatch {
 public:
  struct Box {
    LONG x1, y1, x2, y2;
    COLORREF colour;
  };
  PictureBox(const Canvas& canvas, Value height, Value width)
      : canvas_(canvas), height_(height), width_(width) {}

  const std::vector<Box>& boxes() const { return boxes_; }
  void lack(const wchar_t* name) { lacking_ = name; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    constexpr const wchar_t* kNames[] = {L"ScaleHeight", L"ScaleWidth", L"Line"};
    for (DISPID id = 0; id < 3; ++id) {
      if (lacking_ != kNames[id] && lstrcmpiW(names[0], kNames[id]) == 0) {
        ids[0] = id + 1;
        return S_OK;
      }
    }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    if (id != 3) return VariantCopy(result, id == 1 ? &height_ : &width_);
    // Of the language's own method: Flags, X1, Y1, X2, Y2, Color.
    EXPECT_EQ(parameters->cArgs, 6U);
    const auto argument = [&](UINT i) -> const VARIANT& { return parameters->rgvarg[5 - i]; };
    EXPECT_EQ(argument(0).vt, VT_I2);
    EXPECT_EQ(argument(0).iVal, 38);
    for (UINT i = 1; i < 5; ++i) EXPECT_EQ(argument(i).vt, VT_R4);
    EXPECT_EQ(argument(5).vt, VT_I4);
    const auto pixel = [&](UINT i) { return static_cast<LONG>(argument(i).fltVal); };
    boxes_.push_back(
        {pixel(1), pixel(2), pixel(3), pixel(4), static_cast<COLORREF>(argument(5).lVal)});
    const Box& box = boxes_.back();
    const RECT area{box.x1, box.y1, box.x2, box.y2};
    const HBRUSH brush = CreateSolidBrush(box.colour);
    FillRect(canvas_.device(), &area, brush);
    DeleteObject(brush);
    return S_OK;
  }

 private:
  const Canvas& canvas_;
  Value height_;
  Value width_;
  std::wstring lacking_;
  std::vector<Box> boxes_;
};

class Gradient : public TextDrawing {
 protected:
  HRESULT paint(IDispatch* box) {
    Value control;
    control.vt = VT_DISPATCH;
    control.pdispVal = box;
    Value band = Value::missing();
    Value direction(3);
    Value result(5);
    const HRESULT status = global->Gradient(&control, &band, &direction, &result);
    control.vt = VT_EMPTY;
    EXPECT_EQ(result.vt, status == S_OK ? VT_EMPTY : VT_I4);
    return status;
  }
};

TEST_F(Gradient, Fades_from_blue_to_black) {
  PictureBox box(canvas, Value(100.0f), Value(200.0f));
  EXPECT_EQ(paint(&box), S_OK);
  EXPECT_EQ(canvas.pixel(0, 0), 0x0000FFU);
  EXPECT_EQ(canvas.pixel(199, 0), 0x0000FFU);
  for (LONG y = 2; y < 100; y += 2) {
    EXPECT_LT(canvas.pixel(50, y), canvas.pixel(50, y - 2)) << y;
    EXPECT_EQ(canvas.pixel(50, y) & 0xFFFF00U, 0U);
  }
  EXPECT_EQ(canvas.pixel(50, 100), 0U);
  EXPECT_EQ(canvas.pixel(200, 50), 0xFFFFFFU);
}

TEST_F(Gradient, Draws_a_filled_box_every_two_units) {
  PictureBox box(canvas, Value(SHORT{10}), Value(7));
  EXPECT_EQ(paint(&box), S_OK);
  ASSERT_EQ(box.boxes().size(), 6U);
  constexpr COLORREF kBlues[] = {255, 204, 153, 102, 51, 0};
  for (LONG i = 0; i < 6; ++i) {
    const auto& drawn = box.boxes()[static_cast<std::size_t>(i)];
    EXPECT_EQ(drawn.x1, -1);
    EXPECT_EQ(drawn.y1, 2 * i - 1);
    EXPECT_EQ(drawn.x2, 7);
    EXPECT_EQ(drawn.y2, 2 * i + 2);
    EXPECT_EQ(drawn.colour, kBlues[i] << 16);
  }
}

TEST_F(Gradient, Of_an_odd_height_stops_before_black) {
  PictureBox box(canvas, Value(3), Value(7));
  EXPECT_EQ(paint(&box), S_OK);
  ASSERT_EQ(box.boxes().size(), 2U);
  EXPECT_EQ(box.boxes()[1].colour, 85U << 16);
}

TEST_F(Gradient, Of_the_greatest_height_ends_in_black) {
  PictureBox box(canvas, Value(32766), Value(7));
  EXPECT_EQ(paint(&box), S_OK);
  ASSERT_EQ(box.boxes().size(), 16384U);
  EXPECT_EQ(box.boxes().back().colour, 0U);
}

TEST_F(Gradient, Without_height_raises_11) {
  PictureBox flat(canvas, Value(0), Value(7));
  EXPECT_EQ(paint(&flat), error_result(11));
  EXPECT_TRUE(flat.boxes().empty());
  PictureBox negative(canvas, Value(-4), Value(7));
  EXPECT_EQ(paint(&negative), S_OK);
  EXPECT_TRUE(negative.boxes().empty());
}

TEST_F(Gradient, Of_a_size_past_an_Integer_raises_6) {
  PictureBox high(canvas, Value(32768), Value(7));
  EXPECT_EQ(paint(&high), error_result(6));
  PictureBox wide(canvas, Value(7), Value(32768));
  EXPECT_EQ(paint(&wide), error_result(6));
}

TEST_F(Gradient, Passes_errors_of_the_object_on) {
  for (const wchar_t* name : {L"ScaleHeight", L"ScaleWidth", L"Line"}) {
    PictureBox box(canvas, Value(10), Value(7));
    box.lack(name);
    EXPECT_EQ(paint(&box), error_result(438));
  }
  EXPECT_EQ(paint(nullptr), error_result(91));
  Value number(5);
  Value none = Value::missing();
  Value result;
  EXPECT_EQ(global->Gradient(&number, &none, &none, &result), error_result(424));
}

}  // namespace
}  // namespace qv::tests
