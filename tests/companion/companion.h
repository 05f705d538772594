// companion.exe COMMAND ARGUMENT...: the other process of tests. Each command is one task that a
// test needs somebody else to do; what it has to tell goes to the standard output, a line each.
#pragma once

#include <string>
#include <vector>

namespace qv::companion {

using Arguments = std::vector<std::wstring>;
// The exit code of the process.
using Command = int (*)(const Arguments& arguments);

// raw-client PIPE BYTES: sends a message over a pipe by the system's own calls and prints the
// answer's bytes, or "error" and a number.
int raw_client(const Arguments& arguments);
// raw-server PIPE BYTES: makes a pipe by the system's own calls, waits for one message, answers
// with those bytes, and prints what came.
int raw_server(const Arguments& arguments);
// server PIPE COUNT: serves requests by the library, early bound, and prints each result of
// NPServerRead and NPServerWrite.
int library_server(const Arguments& arguments);
// client PIPE DATA: sends a request by the library, early bound, once the server serves, and prints
// the result and the fields of the answer.
int library_client(const Arguments& arguments);
// change FOLDER KIND: changes something in a folder again and again, half a minute at most, until
// it is ended, and prints a line after the first time. KIND is write (into a file that is there),
// create (a file), folder (make one), attributes (of a file), below (make a folder and write into a
// file in it).
int change(const Arguments& arguments);
// dde SERVICE: takes what the shell tells a running application to open, by the topic "System", and
// prints it; half a minute at most, or until it is ended. The first line is printed when it is
// ready.
int dde(const Arguments& arguments);
// windows: shows the window that tests look for: of class QvParent, with children of the classes
// QvChild, QvOther and QvChild, and in QvOther one of class QvGrandchild; half a minute at most.
int windows(const Arguments& arguments);
// application PROGRAM: an application with a window, for a person at a display or who stands in for
// one. It has seven fields, 40 pixels wide each; pressed, they make it call the library, and it
// prints what comes of that, and that the window is painted. From the left: look for the windows of
// `windows`; give them the focus by their process; put an icon into the task bar; take it away;
// start PROGRAM, a stand-in, and wait for it; stop that wait; end the application.
int application(const Arguments& arguments);

// A copy of this program under another name stands in for that program. It keeps how it was called
// in a file beside it, NAME.log, and then does what the words among its arguments ask for:
// until=EVENT waits for an event of the system, sleep=MS waits, exit=CODE is the exit code. The
// name instsrv.exe makes and removes services' keys as the program of that name does.
int stand_in(const std::wstring& path);

std::wstring own_path();
// BYTES are written as hexadecimal digits, "+" between pieces and "*COUNT" behind a piece that is
// repeated: "0700+41*1000"; "-" is no byte.
std::string bytes_of(const std::wstring& text);
std::string hex_of(const std::string& bytes);

}  // namespace qv::companion
