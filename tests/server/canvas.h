// A device context over a white bitmap, and its pixels.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace qv::tests {

class Canvas {
 public:
  Canvas(LONG width, LONG height) : width_(width), height_(height) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    bitmap_ = CreateDIBSection(device_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
    before_ = SelectObject(device_, bitmap_);
    PatBlt(device_, 0, 0, width, height, WHITENESS);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    SelectObject(device_, before_);
    DeleteObject(bitmap_);
    DeleteDC(device_);
  }

  HDC device() const { return device_; }
  LONG handle() const { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(device_)); }

  // 00RRGGBB, row by row.
  std::vector<std::uint32_t> pixels() const {
    GdiFlush();
    const auto* stored = static_cast<const std::uint32_t*>(bits_);
    std::vector<std::uint32_t> all(static_cast<std::size_t>(width_ * height_));
    for (auto& pixel : all) pixel = *stored++ & 0xFFFFFF;
    return all;
  }
  std::uint32_t pixel(LONG x, LONG y) const {
    return pixels()[static_cast<std::size_t>(y * width_ + x)];
  }
  // The smallest rectangle around all that is not white.
  std::optional<RECT> ink() const {
    std::optional<RECT> area;
    const auto all = pixels();
    for (LONG y = 0; y < height_; ++y) {
      for (LONG x = 0; x < width_; ++x) {
        if (all[static_cast<std::size_t>(y * width_ + x)] == 0xFFFFFF) continue;
        if (!area) area = RECT{x, y, x, y};
        area->left = x < area->left ? x : area->left;
        area->right = x > area->right ? x : area->right;
        area->bottom = y;
      }
    }
    return area;
  }

 private:
  LONG width_;
  LONG height_;
  HDC device_ = CreateCompatibleDC(nullptr);
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  void* bits_ = nullptr;
};

// Chooses a font for a canvas as long as this lives.
class CanvasFont {
 public:
  CanvasFont(const Canvas& canvas, int height, const wchar_t* face) : device_(canvas.device()) {
    description_.lfHeight = height;
    description_.lfOutPrecision = OUT_TT_ONLY_PRECIS;
    lstrcpynW(description_.lfFaceName, face, LF_FACESIZE);
    font_ = CreateFontIndirectW(&description_);
    before_ = SelectObject(device_, font_);
  }
  CanvasFont(const CanvasFont&) = delete;
  CanvasFont& operator=(const CanvasFont&) = delete;
  ~CanvasFont() {
    SelectObject(device_, before_);
    DeleteObject(font_);
  }
  HFONT handle() const { return font_; }
  const LOGFONTW& description() const { return description_; }

 private:
  HDC device_;
  LOGFONTW description_{};
  HFONT font_ = nullptr;
  HGDIOBJ before_ = nullptr;
};

}  // namespace qv::tests
