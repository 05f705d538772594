// What the programs ask of the system they run on: console_posix.cpp and console_windows.cpp.
#pragma once

#include <string_view>

#include "native/rtlib/code_page.h"

namespace qv::console {

enum class Stream { output, error };
// UTF-8, whatever the stream is: a console, a file or a pipe.
void write(Stream stream, std::string_view text);
bool is_terminal(Stream stream);
// In columns; 80 where it is unknown.
std::size_t terminal_width(Stream stream);

// The characters of stored bytes: the system's ANSI code page where that is a single-byte one, else
// Windows 1252.
const native::rtlib::ForwardTable& characters();

}  // namespace qv::console
