// Measures and colours of the system's windows, and a few facts about the machine: the system's own
// answers under names of the library. Measures are pixels, colours RGB values.
#pragma once

#include "automation/text.h"

namespace qv::ui {

Long CaptionSmall_Height();
Long CaptionButton_Width();
Long CaptionButton_Height();
Long CaptionSmallButton_Height();
Long CaptionSmallButton_Width();
Long Minimized_Width();
Long Minimized_Height();
Integer Caption_Height();
Integer ControlBox_BitmapHeight();
Integer ControlBox_BitmapWidth();
Integer HScroll_BitmapHeight();
Integer HScroll_BitmapWidth();
Integer HScroll_ThumbWidth();
Integer VScroll_BitmapHeight();
Integer VScroll_BitmapWidth();
Integer VScroll_ThumbHeight();
Integer Menu_Height();
// By the BorderStyle of a form; 0 for one that has no border.
Long Border_Height(Long BorderStyle);
Long Border_Width(Long BorderStyle);
void DblClick_Rect(Integer& Wdt, Integer& hgt);

Long BorderActive_BackColor();
Long BorderInActive_BackColor();
Long CaptionActive_BackColor();
Long CaptionActive_ForeColor();
Long CaptionInActive_BackColor();
Long CaptionInActive_ForeColor();
Long Frame_BackColor();
Long Menu_BackColor();
Long Menu_ForeColor();
Long Scroll_BackColor();
Long TextGray_ForeColor();
Long TextHigh_BackColor();
Long TextHigh_ForeColor();

void Win_VersionEx(Long& maj, Long& min, Long& Build, Boolean& IsNt, Text& OsINfo);
// The two numbers come exchanged: compiled applications expect it.
void Win_Version(Integer& maj, Integer& min);
void Dos_Version(Integer& maj, Integer& min);
// Bytes and percent; run-time error 6 where either sum passes a Long. FMem has its value then
// already, if it fits.
void Win_Free(Long& FMem, Integer& FRes);
// Run-time error 453 on a system without the service; MathProc and Mode are -1 and 1 then.
void Win_Equipment(Text& Cpu, Integer& MathProc, Integer& Mode);
Boolean Get_ScreenSaverStatus();
// True = failure, which what the system answers never is.
Boolean Set_ScreenSaverStatus(Boolean Mode);
void Taskman_Enable(Boolean Mode);
Text Get_ComputerName();

}  // namespace qv::ui
