#include "ui/system_metrics.h"

#include <algorithm>
#include <array>
#include <limits>

#include "automation/variant.h"
#include "frame/error_state.h"
#include "runtime/err.h"
#include "text/codecs.h"

namespace qv::ui {
namespace {

Integer measure(int index) { return static_cast<Integer>(GetSystemMetrics(index)); }
Long colour(int index) { return static_cast<Long>(GetSysColor(index)); }

struct Border {
  Long style;  // of a form
  int height;
  int width;
};

constexpr Border kBorders[] = {{1, SM_CYBORDER, SM_CXBORDER},
                               {2, SM_CYFRAME, SM_CXFRAME},
                               {3, SM_CYDLGFRAME, SM_CXDLGFRAME},
                               {4, SM_CYDLGFRAME, SM_CXDLGFRAME},
                               {5, SM_CYFRAME, SM_CXFRAME}};

Long border_measure(Long style, int Border::*index) {
  const auto found = std::ranges::find(kBorders, style, &Border::style);
  return found != std::end(kBorders) ? GetSystemMetrics((*found).*index) : 0;
}

Long sum(SIZE_T a, SIZE_T b) {
  const std::uint64_t exact = std::uint64_t{a} + b;
  if (exact > static_cast<std::uint64_t>(std::numeric_limits<Long>::max())) raise(kOverflow);
  return static_cast<Long>(exact);
}

// Flags with which 16-bit Windows described itself. An 80286 shows as an 80186.
struct Processor {
  DWORD flag;
  const wchar_t* name;
};

// In the order in which they are asked for.
constexpr Processor kProcessors[] = {
    {0x40, L"8086"}, {0x2, L"80186"}, {0x4, L"80386"}, {0x8, L"80486"}};
constexpr DWORD kWithoutSeparateCoprocessor = 0x8;
constexpr DWORD kCoprocessor = 0x400;

DWORD windows_flags() {
  using GetWinFlags = DWORD(WINAPI*)();
  // By way of void*: the platform's type for any function has no arguments.
  const auto service = reinterpret_cast<GetWinFlags>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetWinFlags")));
  if (service == nullptr) {
    raise(
        {.number = 453, .description = L"Can't find DLL entry point GetWinFlags in Kernel32.dll"});
  }
  return service();
}

}  // namespace

Long CaptionSmall_Height() { return GetSystemMetrics(SM_CYSMCAPTION); }
Long CaptionButton_Width() { return GetSystemMetrics(SM_CXSIZE); }
Long CaptionButton_Height() { return GetSystemMetrics(SM_CYSIZE); }
Long CaptionSmallButton_Height() { return GetSystemMetrics(SM_CYSMSIZE); }
Long CaptionSmallButton_Width() { return GetSystemMetrics(SM_CXSMSIZE); }
Long Minimized_Width() { return GetSystemMetrics(SM_CXMINIMIZED); }
Long Minimized_Height() { return GetSystemMetrics(SM_CYMINIMIZED); }
Integer Caption_Height() { return measure(SM_CYCAPTION); }
Integer ControlBox_BitmapHeight() { return measure(SM_CYSIZE); }
Integer ControlBox_BitmapWidth() { return measure(SM_CXSIZE); }
Integer HScroll_BitmapHeight() { return measure(SM_CYHSCROLL); }
Integer HScroll_BitmapWidth() { return measure(SM_CXHSCROLL); }
Integer HScroll_ThumbWidth() { return measure(SM_CXHTHUMB); }
Integer VScroll_BitmapHeight() { return measure(SM_CYVSCROLL); }
Integer VScroll_BitmapWidth() { return measure(SM_CXVSCROLL); }
Integer VScroll_ThumbHeight() { return measure(SM_CYVTHUMB); }
Integer Menu_Height() { return measure(SM_CYMENU); }

Long Border_Height(Long BorderStyle) { return border_measure(BorderStyle, &Border::height); }
Long Border_Width(Long BorderStyle) { return border_measure(BorderStyle, &Border::width); }

void DblClick_Rect(Integer& Wdt, Integer& hgt) {
  Wdt = measure(SM_CXDOUBLECLK);
  hgt = measure(SM_CYDOUBLECLK);
}

Long BorderActive_BackColor() { return colour(COLOR_ACTIVEBORDER); }
Long BorderInActive_BackColor() { return colour(COLOR_INACTIVEBORDER); }
Long CaptionActive_BackColor() { return colour(COLOR_ACTIVECAPTION); }
Long CaptionActive_ForeColor() { return colour(COLOR_CAPTIONTEXT); }
Long CaptionInActive_BackColor() { return colour(COLOR_INACTIVECAPTION); }
Long CaptionInActive_ForeColor() { return colour(COLOR_INACTIVECAPTIONTEXT); }
Long Frame_BackColor() { return colour(COLOR_WINDOWFRAME); }
Long Menu_BackColor() { return colour(COLOR_MENU); }
Long Menu_ForeColor() { return colour(COLOR_MENUTEXT); }
Long Scroll_BackColor() { return colour(COLOR_SCROLLBAR); }
Long TextGray_ForeColor() { return colour(COLOR_GRAYTEXT); }
Long TextHigh_BackColor() { return colour(COLOR_HIGHLIGHT); }
Long TextHigh_ForeColor() { return colour(COLOR_HIGHLIGHTTEXT); }

void Win_VersionEx(Long& maj, Long& min, Long& Build, Boolean& IsNt, Text& OsINfo) {
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  GetVersionExW(&version);
  capture_last_dll_error();
  maj = static_cast<Long>(version.dwMajorVersion);
  min = static_cast<Long>(version.dwMinorVersion);
  IsNt = version.dwPlatformId == VER_PLATFORM_WIN32_NT;
  // The other systems repeat the version in the high word.
  const auto build = static_cast<Long>(version.dwBuildNumber);
  Build = IsNt ? build : text::Lo_Word(build);
  OsINfo = version.szCSDVersion;
}

void Win_Version(Integer& maj, Integer& min) {
  const WORD version = LOWORD(GetVersion());
  maj = HIBYTE(version);
  min = LOBYTE(version);
}

void Dos_Version(Integer& maj, Integer& min) {
  const WORD version = HIWORD(GetVersion());
  maj = LOBYTE(version);
  min = HIBYTE(version);
}

void Win_Free(Long& FMem, Integer& FRes) {
  MEMORYSTATUS status{};
  status.dwLength = sizeof status;
  GlobalMemoryStatus(&status);
  capture_last_dll_error();
  FMem = sum(status.dwAvailPhys, status.dwAvailPageFile);
  const Long total = sum(status.dwTotalPhys, status.dwTotalPageFile);
  if (total == 0) raise(kDivisionByZero);
  FRes = Variant(100.0 / total * FMem).to_integer();
}

void Win_Equipment(Text& Cpu, Integer& MathProc, Integer& Mode) {
  MathProc = True;
  Mode = 1;
  const DWORD flags = windows_flags();
  const auto processor = std::ranges::find_if(
      kProcessors, [&](const Processor& known) { return (flags & known.flag) != 0; });
  if (processor != std::end(kProcessors)) {
    Cpu = processor->name;
    if (processor->flag == kWithoutSeparateCoprocessor) MathProc = 0;
  }
  if ((flags & kCoprocessor) != 0) MathProc = 1;
  if (flags != 0) Mode = 0;
}

Boolean Get_ScreenSaverStatus() {
  BOOL active = FALSE;
  const BOOL success = SystemParametersInfoW(SPI_GETSCREENSAVEACTIVE, 0, &active, 0);
  capture_last_dll_error();
  return success && active;
}

Boolean Set_ScreenSaverStatus(Boolean Mode) {
  return frame::handled(L"KwRtLibMod.Set_ScreenSaverStatus", frame::kTakeError, True, [&] {
    SystemParametersInfoW(SPI_SETSCREENSAVEACTIVE, Mode ? TRUE : FALSE, nullptr, SPIF_SENDCHANGE);
    capture_last_dll_error();
    return False;
  });
}

void Taskman_Enable(Boolean Mode) {
  // The service wants the complement of the Boolean's number: 0 for True, every bit for False.
  const auto is_running = static_cast<UINT>(~Long{Mode});
  BOOL before = FALSE;
  SystemParametersInfoW(SPI_SETSCREENSAVERRUNNING, is_running, &before, SPIF_SENDCHANGE);
  capture_last_dll_error();
}

Text Get_ComputerName() {
  std::array<wchar_t, 1024> name{};
  auto length = static_cast<DWORD>(name.size());
  GetComputerNameW(name.data(), &length);
  capture_last_dll_error();
  return name.data();
}

}  // namespace qv::ui
