// What clients and servers of the library say to each other in tests, scripts too: the client sends
// kRequest, the server answers kAnswer without data. The answer arrives without its first byte, so
// that the client sees kAnswer >> 8 with the lowest byte of the date on top.
#pragma once

#include <windows.h>

namespace qv::companion::dialogue {

inline constexpr LONG kRequest = 7;
inline constexpr LONG kAnswer = 0x11223344;
// Of a server that throws out whoever connected before it serves.
inline constexpr LONG kNotYet = 0x7F7F7F7F;
inline constexpr double kDate = 2.5;
// As many characters has the data that the server gives to NPServerRead.
inline constexpr int kRoom = 1000;

}  // namespace qv::companion::dialogue
